#include "host/Messages.h"

#include "host/QtText.h"
#include "host/Terminal.h"
#include "host/Texts.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace kivo::host {

namespace {

QMessageBox::Icon GetIcon(MessageKind kind)
{
    switch (kind) {
    case MessageKind::Question: return QMessageBox::Question;
    case MessageKind::Error: return QMessageBox::Critical;
    default: return QMessageBox::Information;
    }
}

// In the program's language: Qt's own texts may be missing or follow another.
void Name(const QMessageBox& box, QMessageBox::StandardButton button, const char16_t* id)
{
    box.button(button)->setText(ToQString(GetText(id)));
}

class BoxMessages : public IMessages {
public:
    bool Show(MessageKind kind, const String& title, const String& text) override
    {
        // On the heap and watched: the window that it belongs to may go while it is open.
        const QPointer<QMessageBox> box = new QMessageBox(FindWindow());
        box->setTextFormat(Qt::PlainText); // Before the text, which may come from anywhere.
        box->setIcon(GetIcon(kind));
        box->setWindowTitle(ToQString(title));
        box->setText(ToQString(text));
        if (kind == MessageKind::Question) {
            box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            Name(*box, QMessageBox::Yes, u"STRID_KIVO_YES");
            Name(*box, QMessageBox::No, u"STRID_KIVO_NO");
            box->setDefaultButton(QMessageBox::No);
            box->setEscapeButton(QMessageBox::No);
        } else {
            box->setStandardButtons(QMessageBox::Ok);
            Name(*box, QMessageBox::Ok, u"STRID_KIVO_OK");
        }
        const int answer = box->exec();
        delete box.data();
        return kind != MessageKind::Question || answer == QMessageBox::Yes;
    }

private:
    // Never a menu: the one whose entry led here is about to go.
    static QWidget* FindWindow()
    {
        QWidget* window = QApplication::activeWindow();
        while (window != nullptr && window->windowType() == Qt::Popup)
            window = window->parentWidget() != nullptr ? window->parentWidget()->window() : nullptr;
        return window;
    }
};

class TerminalMessages : public IMessages {
public:
    explicit TerminalMessages(Terminal& terminal)
        : terminal_(terminal)
    {
    }

    bool Show(MessageKind kind, const String& title, const String& text) override
    {
        terminal_.PrintLine(title.empty() ? ForTerminal(text)
                                          : ForTerminal(title) + ": " + ForTerminal(text));
        return kind != MessageKind::Question;
    }

private:
    Terminal& terminal_;
};

} // namespace

std::unique_ptr<IMessages> MakeBoxMessages()
{
    return std::make_unique<BoxMessages>();
}

std::unique_ptr<IMessages> MakeTerminalMessages(Terminal& terminal)
{
    return std::make_unique<TerminalMessages>(terminal);
}

} // namespace kivo::host
