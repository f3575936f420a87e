#pragma once

#include "platform/ui/qt/QtDesktop.h"
#include "tests/host/ContactsRoom.h"

#include <QImage>

#include <functional>
#include <memory>
#include <string>

class QAbstractButton;
class QLineEdit;
class QTreeView;
class QWidget;

namespace kivo::host {

struct StageLook {
    const char* name = "light";
    bool dark = false;
    bool rightToLeft = false;
    double fontScale = 1.0;
    const char* language = "en";
};

// The program's window with the contacts in front, on a network that a test speaks for.
class Stage : public ContactsRoom {
public:
    explicit Stage(const StageLook& look = {});
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    void Open(int width = 340, int height = 680);
    void SignIn();     // Online, with an account and nobody there.
    void AddSamples(); // People in several scripts, with and without signs.

    // Widgets by what a screen reader calls them, and by the id of their control in the innermost
    // modal form; a test ends when there is none.
    [[nodiscard]] QWidget& GetWindow();
    [[nodiscard]] QTreeView& GetList();
    [[nodiscard]] static QAbstractButton& GetButton(QWidget& below, const QString& name);
    [[nodiscard]] static QAbstractButton& GetButtonAt(QWidget& form, const String& id);
    [[nodiscard]] static QLineEdit& GetField(QWidget& below, const QString& name);

    // Runs `act` inside the next modal form, once it is shown and active.
    static void InModal(std::function<void(QWidget& form)> act);
    static void Settle();
    // The widget's picture; written to the folder KIVO_PICTURES, if that is set, to be looked at.
    static QImage Grab(QWidget& widget, const std::string& name);

private:
    std::unique_ptr<ui::qt::QtDesktop> desktop_;
    std::unique_ptr<MainForm> form_;
};

} // namespace kivo::host
