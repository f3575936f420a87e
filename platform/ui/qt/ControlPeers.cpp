#include "platform/ui/qt/ControlPeers.h"

#include "platform/ui/qt/FlatButton.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QWheelEvent>

namespace kivo::ui::qt {

namespace {

constexpr int kLongestText = 32767; // Qt's own limit of a field.

QFont GetFontOf(const CSkinObject& control)
{
    const LOGFONT font = control.GetFont();
    return GetScaledFont(font.scale, font.weight);
}

// A button of the toolkit. Its press may destroy it.
class ButtonWidget final : public FlatButton {
public:
    ButtonWidget(CSkinButton& control, QWidget* parent)
        : FlatButton(parent)
        , control_(&control)
    {
        connect(this, &QPushButton::clicked, this, [this] {
            if (control_ != nullptr)
                control_->OnPeerPressed();
        });
    }

    void Detach() { control_ = nullptr; }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        const int turn = event->angleDelta().y();
        event->setAccepted(control_ != nullptr && turn != 0 && control_->OnPeerWheel(turn));
    }

private:
    CSkinButton* control_;
};

class ButtonPeer final : public WidgetPeer<IPeer, CSkinButton, ButtonWidget> {
public:
    ButtonPeer(CSkinButton& button, ButtonWidget* widget)
        : WidgetPeer(
              button,
              widget,
              {FlatButton::kReach, FlatButton::kReach, FlatButton::kReach, FlatButton::kReach})
    {
        WatchTooltip(button, *widget);
        ApplyOwn(Change::Skin);
        Apply(Change::Visible);
    }

protected:
    void ApplyOwn(Change change) override
    {
        switch (change) {
        case Change::Text: widget_->SetWord(ToScreen(control_.GetText())); break;
        case Change::Picture: widget_->SetPictureFile(control_.GetPicture()); break;
        case Change::Look:
            widget_->SetKind(FlatButton::KindOf(control_.GetSkinName()));
            widget_->SetOpen(control_.IsChecked());
            break;
        case Change::Font: widget_->SetLabelFont(GetFontOf(control_)); break;
        case Change::Skin:
            for (const Change each : {Change::Font, Change::Look, Change::Picture, Change::Text})
                ApplyOwn(each);
            break;
        default: widget_->update(); break;
        }
        ApplyCommon(control_, *widget_, Change::Name, reach_);
    }
};

class EditWidget final : public QLineEdit {
public:
    EditWidget(CSWColorEdit& control, QWidget* parent)
        : QLineEdit(parent)
        , control_(&control)
    {
        setTextMargins(6, 0, 6, 0);
        connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
            if (control_ != nullptr)
                control_->OnPeerText(FromQt(text));
        });
    }

    void Detach() { control_ = nullptr; }

private:
    CSWColorEdit* control_;
};

class EditPeer final : public WindowPeer<IWindowPeer, CSWColorEdit, EditWidget> {
public:
    EditPeer(CSWColorEdit& edit, EditWidget* widget)
        : WindowPeer(edit, widget)
    {
        WatchTooltip(edit, *widget);
        for (const Change change : {Change::Font, Change::Look, Change::Text})
            ApplyOwn(change);
        Apply(Change::Visible);
    }

protected:
    void ApplyOwn(Change change) override
    {
        switch (change) {
        case Change::Text:
            if (FromQt(widget_->text()) != control_.GetText())
                widget_->setText(ToQt(control_.GetText()));
            break;
        case Change::Look:
            widget_->setMaxLength(control_.GetLimitText() > 0 ? control_.GetLimitText()
                                                              : kLongestText);
            widget_->setEchoMode(control_.IsPassword() ? QLineEdit::Password : QLineEdit::Normal);
            break;
        case Change::Font:
        case Change::Skin: widget_->setFont(GetFontOf(control_)); break;
        case Change::Cursor: break; // A field keeps its own.
        default: widget_->update(); break;
        }
    }
};

class ComboWidget final : public QComboBox {
public:
    ComboWidget(CSkinCombox& control, QWidget* parent)
        : QComboBox(parent)
        , control_(&control)
    {
        setItemDelegate(new QStyledItemDelegate(this)); // Qt's own for boxes asks no style.
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        connect(this, &QComboBox::activated, this, [this](int row) {
            if (control_ != nullptr)
                control_->OnPeerSelected(row);
        });
    }

    void Detach() { control_ = nullptr; }

protected:
    // A wheel that was meant for the window must not change a choice.
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }

private:
    CSkinCombox* control_;
};

class ComboxPeer final : public WindowPeer<IWindowPeer, CSkinCombox, ComboWidget> {
public:
    ComboxPeer(CSkinCombox& combox, ComboWidget* widget)
        : WindowPeer(combox, widget)
    {
        WatchTooltip(combox, *widget);
        for (const Change change : {Change::Font, Change::Items})
            ApplyOwn(change);
        Apply(Change::Visible);
    }

protected:
    void ApplyOwn(Change change) override
    {
        const QSignalBlocker quiet(widget_);
        switch (change) {
        case Change::Items:
            widget_->clear();
            for (const String& item : control_.GetItems())
                widget_->addItem(ToScreen(item));
            widget_->setCurrentIndex(control_.GetCurSel());
            break;
        case Change::Selection: widget_->setCurrentIndex(control_.GetCurSel()); break;
        case Change::Font:
        case Change::Skin: widget_->setFont(GetFontOf(control_)); break;
        case Change::Cursor: ApplyCursor(*widget_, control_.GetCursor()); break;
        default: widget_->update(); break;
        }
    }
};

} // namespace

std::unique_ptr<IPeer> MakeButtonPeer(CSkinButton& button)
{
    return std::make_unique<ButtonPeer>(button, new ButtonWidget(button, ParentWidgetOf(button)));
}

std::unique_ptr<IWindowPeer> MakeEditPeer(CSWColorEdit& edit)
{
    return std::make_unique<EditPeer>(edit, new EditWidget(edit, ParentWidgetOf(edit)));
}

std::unique_ptr<IWindowPeer> MakeComboxPeer(CSkinCombox& combox)
{
    return std::make_unique<ComboxPeer>(combox, new ComboWidget(combox, ParentWidgetOf(combox)));
}

} // namespace kivo::ui::qt
