#include "platform/ui/qt/FlatButton.h"

#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/TextLine.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

constexpr int kSquare = 32;
constexpr int kPicture = 20;
constexpr int kCellHeight = 38;
constexpr int kWordEnd = 8; // Behind the word.
constexpr int kFormSide = 18;
constexpr int kTabPicture = 18;
constexpr int kTabGap = 8;
constexpr int kFormHeight = 32;
constexpr int kBoxGap = 8;
constexpr int kCheckHeight = 28;
constexpr qreal kRing = 2.0;
constexpr qreal kLongestWord = 0.4; // Of the strip that the button stands in.

QFont WithWeight(QFont font, QFont::Weight weight)
{
    font.setWeight(weight);
    return font;
}

} // namespace

FlatButton::FlatButton(QWidget* parent)
    : QPushButton(parent)
{
    setAutoDefault(false);
    setFocusPolicy(Qt::TabFocus); // A click leaves the keyboard where it is.
    setAttribute(Qt::WA_Hover);
}

FlatButton::Kind FlatButton::KindOf(StringView skinClass)
{
    struct Named {
        StringView name;
        Kind kind;
    };
    static constexpr Named kKinds[] = {
        {u"big",     Kind::Big    },
        {u"word",    Kind::Word   },
        {u"plain",   Kind::Plain  },
        {u"default", Kind::Default},
        {u"link",    Kind::Link   },
        {u"tab",     Kind::Tab    },
        {u"check",   Kind::Check  },
    };
    for (const Named& named : kKinds)
        if (named.name == skinClass)
            return named.kind;
    return Kind::Flat;
}

void FlatButton::SetKind(Kind kind)
{
    kind_ = kind;
    setCheckable(kind == Kind::Check); // A screen reader then calls it a check box.
    updateGeometry();
    update();
}

void FlatButton::SetPictureFile(const String& file)
{
    picture_ = file;
    updateGeometry();
    update();
}

void FlatButton::SetWord(const QString& text)
{
    word_ = ToLine(text);
    QString name = word_;
    setText(name.replace(u'&', QLatin1String("&&"))); // For screen readers.
    updateGeometry();
    update();
}

void FlatButton::SetOpen(bool open)
{
    open_ = open;
    setChecked(open); // Nothing where there is no box.
    update();
}

void FlatButton::SetLabelFont(const QFont& font)
{
    setFont(font);
    updateGeometry();
}

QSize FlatButton::sizeHint() const
{
    const QFont medium = WithWeight(font(), QFont::Medium);
    const auto grown = [&medium] { return QFontMetrics(medium).height() + 10; };
    const auto boldWidth = [this] {
        return MeasureWidth(WithWeight(font(), QFont::DemiBold), word_);
    };
    switch (kind_) {
    case Kind::Big: return {44, 44};
    case Kind::Word: {
        int width = MeasureWidth(medium, word_);
        if (const QWidget* strip = parentWidget(); strip != nullptr && strip->width() > 0)
            width = std::min(width, static_cast<int>(strip->width() * kLongestWord));
        return {kSquare + width + 1 + kWordEnd, std::max(kSquare, grown())};
    }
    case Kind::Plain:
    case Kind::Default: return {boldWidth() + 2 * kFormSide, std::max(kFormHeight, grown())};
    case Kind::Link: return {MeasureWidth(medium, word_) + 1, std::max(28, grown())};
    case Kind::Tab: // As wide as it is when chosen, so that no choice moves the others.
        return {kTabPicture + (word_.isEmpty() ? 0 : kTabGap + boldWidth() + 1),
                std::max(kSquare, grown())};
    case Kind::Check:
        return {style()->pixelMetric(QStyle::PM_IndicatorWidth) + kBoxGap +
                    MeasureWidth(font(), word_) + 1,
                std::max(kCheckHeight, QFontMetrics(font()).height() + 8)};
    default: return {kSquare, kSquare};
    }
}

void FlatButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setFont(font());
    switch (kind_) {
    case Kind::Big: PaintBig(painter); break;
    case Kind::Word: PaintWord(painter); break;
    case Kind::Plain:
    case Kind::Default: PaintForm(painter); break;
    case Kind::Link: PaintLink(painter); break;
    case Kind::Tab: PaintTab(painter); break;
    case Kind::Check: PaintCheck(painter); break;
    default: PaintFlat(painter); break;
    }
}

void FlatButton::keyPressEvent(QKeyEvent* event)
{
    // Also in a form: Enter means the button that has the keyboard, not the form's default.
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !event->isAutoRepeat()) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

bool FlatButton::hitButton(const QPoint& point) const
{
    return GetPlace().contains(point);
}

// Whether it is ticked is its control's to say.
void FlatButton::nextCheckState() {}

void FlatButton::enterEvent(QEnterEvent* event)
{
    QPushButton::enterEvent(event);
    update();
}

void FlatButton::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    update();
}

QRect FlatButton::GetPlace() const
{
    return rect().adjusted(kReach, kReach, -kReach, -kReach);
}

QRect FlatButton::GetSquare() const
{
    const QRect place = GetPlace();
    const int side = std::min({kSquare, place.width(), place.height()});
    return QRect(place.x() + (place.width() - side) / 2,
                 place.y() + (place.height() - side) / 2,
                 side,
                 side);
}

bool FlatButton::IsHovered() const
{
    return isEnabled() && underMouse();
}

bool FlatButton::ShowsRing() const
{
    return hasFocus() && InputWatch::IsAtKeys();
}

QColor FlatButton::GetHoney() const
{
    const QColor honey = GetToken(u"honey");
    if (isDown())
        return Mix(honey, Qt::black, 0.14);
    return IsHovered() ? Mix(honey, Qt::white, 0.18) : honey;
}

void FlatButton::PaintFlat(QPainter& painter) const
{
    const QRect square = GetSquare();
    if (isEnabled() && (isDown() || open_))
        FillRounded(painter, square, radius::kButton, GetToken(u"press"));
    else if (IsHovered())
        FillRounded(painter, square, radius::kButton, GetToken(u"hover"));
    const QColor tint = isEnabled() ? QColor() : GetToken(u"off");
    PaintPicture(painter,
                 square,
                 picture_,
                 {},
                 tint,
                 isEnabled() ? QStringLiteral("normal") : QStringLiteral("disabled"));
    if (ShowsRing())
        DrawFrame(painter, square, radius::kButton, GetToken(u"mark"), kRing);
}

void FlatButton::PaintBig(QPainter& painter) const
{
    const QRectF place = GetPlace();
    const qreal height = std::min<qreal>(kCellHeight, place.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? GetHoney() : GetToken(u"press"));
    painter.drawPath(MakeCell(place.center(), height));
    if (ShowsRing()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(GetToken(u"mark"), kRing));
        // 2 pixels off the cell's sides: along its height that is more.
        painter.drawPath(MakeCell(place.center(), height + 7.0));
    }
    painter.restore();
    PaintPicture(painter, GetPlace(), picture_, {}, GetToken(isEnabled() ? u"onhoney" : u"soft"));
}

void FlatButton::PaintWord(QPainter& painter) const
{
    const QRect place = GetPlace();
    const int height = std::max(kSquare, painter.fontMetrics().height() + 8);
    const QRect body(place.x(), place.y() + (place.height() - height) / 2, place.width(), height);
    if (isEnabled() && (isDown() || open_))
        FillRounded(painter, body, radius::kButton, GetToken(u"press"));
    else if (IsHovered())
        FillRounded(painter, body, radius::kButton, GetToken(u"hover"));
    const QColor off = GetToken(u"off");
    const QRect icon = QStyle::visualRect(
        layoutDirection(),
        body,
        QRect(body.x() + (kSquare - kPicture) / 2, body.y(), kPicture, body.height()));
    PaintPicture(painter, icon, picture_, {}, isEnabled() ? QColor() : off);
    painter.setFont(WithWeight(font(), QFont::Medium));
    painter.setPen(isEnabled() ? GetToken(u"text") : off);
    const QRect text =
        QStyle::visualRect(layoutDirection(), body, body.adjusted(kSquare, 0, -kWordEnd, 0));
    DrawLine(painter, text, word_, TextSide::Leading, /*elided=*/true);
    if (ShowsRing())
        DrawFrame(painter, body, radius::kButton, GetToken(u"mark"), kRing);
}

void FlatButton::PaintForm(QPainter& painter) const
{
    const QRectF body = GetPlace();
    const bool honey = kind_ == Kind::Default;
    if (!isEnabled()) {
        FillRounded(painter, body, radius::kButton, GetToken(honey ? u"press" : u"window"));
        DrawFrame(painter, body, radius::kButton, GetToken(u"line"), 1.0);
    } else if (honey) {
        FillRounded(painter, body, radius::kButton, GetHoney());
    } else {
        FillRounded(painter,
                    body,
                    radius::kButton,
                    GetToken(isDown() ? u"press" : (IsHovered() ? u"hover" : u"raised")));
        DrawFrame(painter, body, radius::kButton, GetToken(u"edge"), 1.0);
    }
    painter.setFont(WithWeight(font(), honey ? QFont::DemiBold : QFont::Medium));
    painter.setPen(GetToken(!isEnabled() ? u"soft" : (honey ? u"onhoney" : u"text")));
    DrawLine(painter, GetPlace().adjusted(6, 0, -6, 0), word_, TextSide::Centre, /*elided=*/true);
    if (ShowsRing())
        DrawFrame(painter, rect(), radius::kButton + kReach, GetToken(u"mark"), kRing);
}

void FlatButton::PaintLink(QPainter& painter) const
{
    QFont line = WithWeight(font(), QFont::Medium);
    line.setUnderline(true);
    painter.setFont(line);
    painter.setPen(GetToken(isEnabled() ? (isDown() ? u"text" : u"ink") : u"off"));
    DrawLine(painter, GetPlace(), word_, TextSide::Leading, /*elided=*/true);
    if (ShowsRing())
        DrawFrame(painter, rect().adjusted(0, 2, 0, -2), radius::kEntry, GetToken(u"mark"), kRing);
}

// Picture and word stand in the middle together; the tab of the page in front is the open one.
void FlatButton::PaintTab(QPainter& painter) const
{
    const QRect place = GetPlace();
    const QRect body = place.adjusted(0, 2, 0, -2 - static_cast<int>(kRing));
    if (isEnabled() && isDown())
        FillRounded(painter, body, radius::kButton, GetToken(u"press"));
    else if (IsHovered() && !open_)
        FillRounded(painter, body, radius::kButton, GetToken(u"hover"));
    const int width = std::min(sizeHint().width(), place.width());
    const QRect group(place.x() + (place.width() - width) / 2, place.y(), width, place.height());
    const QRect icon(group.x(), group.y(), kTabPicture, group.height());
    PaintPicture(painter, QStyle::visualRect(layoutDirection(), group, icon), picture_);
    painter.setPen(GetToken(open_ ? u"text" : u"soft"));
    const QRect text = group.adjusted(kTabPicture + kTabGap, 0, 0, 0);
    if (!word_.isEmpty())
        DrawLine(painter,
                 QStyle::visualRect(layoutDirection(), group, text),
                 word_,
                 TextSide::Leading,
                 /*elided=*/true);
    if (ShowsRing())
        DrawFrame(painter, body, radius::kButton, GetToken(u"mark"), kRing);
}

void FlatButton::PaintCheck(QPainter& painter) const
{
    const QRect place = GetPlace();
    const int side = style()->pixelMetric(QStyle::PM_IndicatorWidth);
    QStyleOption box;
    box.initFrom(this);
    box.rect =
        QStyle::visualRect(layoutDirection(),
                           place,
                           QRect(place.x(), place.y() + (place.height() - side) / 2, side, side));
    box.state.setFlag(QStyle::State_On, isChecked());
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, this);
    painter.setFont(font());
    painter.setPen(GetToken(isEnabled() ? u"text" : u"off"));
    const QRect text =
        QStyle::visualRect(layoutDirection(), place, place.adjusted(side + kBoxGap, 0, 0, 0));
    DrawLine(painter, text, word_, TextSide::Leading, /*elided=*/true);
    if (ShowsRing())
        DrawFrame(painter, rect().adjusted(0, 1, 0, -1), radius::kButton, GetToken(u"mark"), kRing);
}

} // namespace kivo::ui::qt
