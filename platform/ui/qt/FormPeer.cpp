#include "platform/ui/qt/FormPeer.h"

#include "platform/ui/qt/FlatButton.h"
#include "platform/ui/qt/FocusOrder.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinManager.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <vector>

namespace kivo::ui::qt {

namespace {

// Screen readers say the label of a box beside its choice, which stands in the place of its name.
void LinkLabels(const CSkinObject& root, const CSkinObject& object)
{
    for (const CSkinObject* const control : object.GetControls()) {
        if (control == nullptr)
            continue;
        const auto* const label = dynamic_cast<const CSkinLabel*>(control);
        auto* const widget = label != nullptr ? qobject_cast<QLabel*>(WidgetOf(label)) : nullptr;
        if (widget != nullptr && !label->GetBuddy().empty())
            widget->setBuddy(WidgetOf(root.FindControlRecusive(label->GetBuddy())));
        LinkLabels(root, *control);
    }
}

// A top-level window. What the user does to it goes to the form as messages, which decides.
class FormWidget final : public QDialog {
public:
    FormWidget(CSkinForm& form, QWidget* owner)
        : QDialog(owner, Qt::Window)
        , form_(&form)
    {
        GetAll().push_back(this);
    }
    FormWidget(const FormWidget&) = delete;
    FormWidget& operator=(const FormWidget&) = delete;
    ~FormWidget() override { std::erase(GetAll(), this); }

    void Detach() { form_ = nullptr; }
    [[nodiscard]] CSkinForm* GetForm() const { return form_; }

    static std::vector<FormWidget*>& GetAll()
    {
        static std::vector<FormWidget*> all;
        return all;
    }

    // Else a default button would have the keyboard from the start, or nothing in a pop-up.
    void FocusFirst()
    {
        if (focusWidget() == nullptr)
            focusNextChild();
    }

    // What the plain form does to the window must not come back as the user's doing.
    // Nor may the user's doing come back to the window: a frame that is still being put around it
    // would lose its place.
    void Place(const QRect& place, bool move)
    {
        if (reporting_)
            return;
        placing_ = true;
        if (move)
            setGeometry(place);
        else
            resize(place.size());
        placing_ = false;
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (form_ != nullptr && form_->IsPopup()) {
            event->accept();
            return;
        }
        event->ignore();
        Send(wndmessage::kClose, 0);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        const bool escape = event->key() == Qt::Key_Escape;
        if (escape && form_ != nullptr && !form_->IsPopup() && !form_->IsModal()) {
            event->ignore(); // A window that stays is closed by its frame alone.
            return;
        }
        QDialog::keyPressEvent(event);
    }

    bool focusNextPrevChild(bool next) override
    {
        const QList<QWidget*> order =
            form_ != nullptr ? GetFocusOrder(*form_, *this) : QList<QWidget*>();
        if (order.isEmpty())
            return QDialog::focusNextPrevChild(next);
        const QWidget* const now = focusWidget();
        // From behind: a button on a list is nearer than the list.
        const auto found = std::find_if(order.rbegin(), order.rend(), [now](const QWidget* one) {
            return now != nullptr && (one == now || one->isAncestorOf(now));
        });
        const qsizetype count = order.size();
        qsizetype place = next ? 0 : count - 1;
        if (found != order.rend())
            place = (std::distance(found, order.rend()) - 1 + (next ? 1 : count - 1)) % count;
        order[place]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }

    void reject() override
    {
        if (form_ != nullptr)
            Send(wndmessage::kClose, 0);
        else
            QDialog::reject();
    }

    void showEvent(QShowEvent* event) override
    {
        QDialog::showEvent(event);
        if (form_ == nullptr || !form_->IsPopup())
            return;
        FocusFirst();
        Send(wndmessage::kActivate, 1);
    }

    void hideEvent(QHideEvent* event) override
    {
        QDialog::hideEvent(event);
        if (form_ == nullptr || !form_->IsPopup() || event->spontaneous())
            return;
        const LifeWatch life = form_->Watch();
        Send(wndmessage::kActivate, 0);
        if (life.IsAlive() && form_ != nullptr && form_->IsSetVisible())
            form_->ShowWindow(0);
    }

    void changeEvent(QEvent* event) override
    {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::ActivationChange && form_ != nullptr && !form_->IsPopup())
            Send(wndmessage::kActivate, isActiveWindow() ? 1 : 0);
    }

    void resizeEvent(QResizeEvent* event) override
    {
        QDialog::resizeEvent(event);
        if (form_ != nullptr && form_->IsPopup())
            setMask(MakeRoundMask(rect(), radius::kPanel));
        ReportPlace();
    }
    void moveEvent(QMoveEvent* event) override
    {
        QDialog::moveEvent(event);
        ReportPlace();
    }

    void paintEvent(QPaintEvent* /*event*/) override
    {
        if (form_ == nullptr)
            return;
        QPainter painter(this);
        const QColor ground = GetGround(form_->GetSkinName());
        if (form_->IsPopup()) {
            const QColor raised = ground.isValid() ? ground : GetToken(u"raised");
            FillRounded(
                painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius::kPanel, raised);
            DrawFrame(painter, rect(), radius::kPanel, GetToken(u"line"), 1.0);
        } else {
            painter.fillRect(rect(), ground.isValid() ? ground : GetToken(u"window"));
        }
    }

private:
    void Send(unsigned message, WPARAM wParam)
    {
        if (form_ != nullptr)
            form_->WindowProc(message, wParam, 0);
    }
    void ReportPlace()
    {
        if (form_ == nullptr || placing_ || form_->IsPopup())
            return;
        const QPointer<FormWidget> self = this;
        reporting_ = true;
        form_->CalculateBounds(FromQt(geometry()));
        if (self != nullptr)
            reporting_ = false;
    }

    CSkinForm* form_;
    bool placing_ = false;
    bool reporting_ = false;
};

class FormPeer final : public WindowPeer<IFormPeer, CSkinForm, FormWidget> {
public:
    FormPeer(CSkinForm& form, FormWidget* widget)
        : WindowPeer(form, widget)
    {
        widget->setAttribute(Qt::WA_Moved, false); // Until somebody places it, the desktop does.
        for (const Change change : {Change::Style, Change::Title, Change::Bounds})
            Apply(change);
    }

    void Apply(Change change) override
    {
        if (widget_ == nullptr)
            return;
        switch (change) {
        case Change::Bounds: PlaceWindow(); break;
        case Change::Visible: Show(); break;
        case Change::Title: ApplyTitle(); break;
        case Change::Style: ApplyStyle(); break;
        case Change::DefaultButton: ApplyDefaultButton(); break;
        case Change::Cursor: ApplyCursor(*widget_, control_.GetCursor()); break;
        case Change::Skin:
            ApplyTitle();
            widget_->update();
            break;
        default: WidgetPeer::Apply(change); break;
        }
    }

    int RunModal() override
    {
        if (widget_ == nullptr)
            return 0;
        const QPointer<FormWidget> widget = widget_;
        // Flags before the window exists: a dialog has neither the frame's minimising nor resizing.
        widget->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                               Qt::WindowCloseButtonHint);
        widget->setFixedSize(ToQt(control_.GetBoundsRect()).size());
        ApplyDefaultButton();
        LinkLabels(control_, control_);
        widget->FocusFirst();
        return widget->exec(); // The form may be gone when it returns.
    }

    void EndModal(int result) override
    {
        if (widget_ != nullptr)
            widget_->done(result);
    }

    void BringToTop() override
    {
        if (widget_ == nullptr)
            return;
        if (widget_->isMinimized())
            widget_->showNormal();
        widget_->raise();
        widget_->activateWindow();
        if (!widget_->isActiveWindow())
            QApplication::alert(widget_); // Where the desktop doesn't let us come to the front.
    }

private:
    void PlaceWindow()
    {
        QRect place = ToQt(control_.GetBoundsRect());
        const Size minimum = control_.GetMinimumSize();
        if (control_.IsModal() && widget_->isVisible())
            widget_->setFixedSize(place.size()); // More or less is shown in it now.
        else
            widget_->setMinimumSize(minimum.width, minimum.height);
        if (control_.IsPopup())
            place = ClampedPopup(place);
        const bool move = placed_ || place.topLeft() != QPoint() || control_.IsPopup();
        placed_ = move;
        widget_->Place(place, move);
    }

    // The margin of a pop-up shifts it against the place that it is asked to; it stays on screen.
    [[nodiscard]] QRect ClampedPopup(QRect place) const
    {
        const Rect margin = control_.GetMargin();
        place.translate(margin.left, margin.top);
        const QScreen* screen = QGuiApplication::screenAt(place.topLeft());
        if (screen == nullptr)
            screen = widget_->screen();
        if (screen == nullptr)
            return place;
        const QRect room = screen->availableGeometry();
        place.moveLeft(std::clamp(
            place.x(), room.x(), std::max(room.x(), room.x() + room.width() - place.width())));
        place.moveTop(std::clamp(
            place.y(), room.y(), std::max(room.y(), room.y() + room.height() - place.height())));
        return place;
    }

    void Show()
    {
        // A modal form is shown by its loop.
        if (control_.IsSetVisible() && control_.IsModal())
            return;
        if (control_.IsSetVisible())
            PlaceWindow();
        widget_->setVisible(control_.IsSetVisible());
    }

    void ApplyTitle()
    {
        widget_->setWindowTitle(ToScreen(control_.GetTitle()));
        const String picture = CSkinManager::GetInstance()->GetIconPicture(control_.GetIcon());
        if (!picture.empty())
            widget_->setWindowIcon(
                QIcon(MakePicture(picture, QSize(32, 32), widget_->devicePixelRatioF())));
    }

    void ApplyStyle()
    {
        if (!control_.IsPopup())
            return;
        const bool shown = widget_->isVisible();
        widget_->setWindowFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
        widget_->setAttribute(Qt::WA_TranslucentBackground); // For the round corners.
        widget_->setAttribute(Qt::WA_NoMouseReplay); // A click on its button closes it, no more.
        widget_->setVisible(shown);
    }

    void ApplyDefaultButton()
    {
        auto* button = qobject_cast<QPushButton*>(WidgetOf(control_.GetDefaultOKButton()));
        if (button != nullptr)
            button->setDefault(true);
    }

    bool placed_ = false;
};

} // namespace

void ResetForms()
{
    const std::vector<FormWidget*> all = FormWidget::GetAll();
    for (const FormWidget* widget : all) {
        CSkinForm* form = widget->GetForm();
        if (form == nullptr)
            continue;
        form->ResetSkinData();
        form->RePositionSubControls();
    }
}

bool IsForm(const QWidget& widget)
{
    return dynamic_cast<const FormWidget*>(&widget) != nullptr;
}

std::unique_ptr<IFormPeer> MakeFormPeer(CSkinForm& form)
{
    return std::make_unique<FormPeer>(form, new FormWidget(form, OwnerWidgetOf(form)));
}

} // namespace kivo::ui::qt
