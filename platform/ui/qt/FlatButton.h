#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <QPushButton>

namespace kivo::ui::qt {

// The buttons of the skin, by their class: "" a picture on a square that is washed under the
// pointer, "big" the honey cell, "word" picture and text, "plain" and "default" the buttons of a
// form, "link" a text in ink, "check" a box with a text. Around its place it keeps kReach pixels
// for the focus ring. Thread: user interface.
class KIVO_API FlatButton : public QPushButton {
    Q_OBJECT

public:
    static constexpr int kReach = 4;

    enum class Kind { Flat, Big, Word, Plain, Default, Link, Tab, Check };

    explicit FlatButton(QWidget* parent);

    void SetKind(Kind kind);
    [[nodiscard]] Kind GetKind() const { return kind_; }
    [[nodiscard]] static Kind KindOf(StringView skinClass);
    void SetPictureFile(const String& file);
    void SetWord(const QString& text); // Plain text.
    // The button of an open pane keeps the wash of a pressed one; a box is ticked.
    void SetOpen(bool open);
    void SetLabelFont(const QFont& font);

    [[nodiscard]] QSize sizeHint() const override; // Of the place, without the reach.

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool hitButton(const QPoint& point) const override;
    void nextCheckState() override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    [[nodiscard]] QRect GetPlace() const;
    [[nodiscard]] QRect GetSquare() const;
    [[nodiscard]] bool IsHovered() const;
    [[nodiscard]] bool ShowsRing() const;
    [[nodiscard]] QColor GetHoney() const;
    void PaintFlat(QPainter& painter) const;
    void PaintBig(QPainter& painter) const;
    void PaintWord(QPainter& painter) const;
    void PaintForm(QPainter& painter) const;
    void PaintLink(QPainter& painter) const;
    void PaintTab(QPainter& painter) const;
    void PaintCheck(QPainter& painter) const;

    Kind kind_ = Kind::Flat;
    String picture_;
    QString word_;
    bool open_ = false;
};

} // namespace kivo::ui::qt
