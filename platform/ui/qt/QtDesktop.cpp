#include "platform/ui/qt/QtDesktop.h"

#include "platform/base/DesktopHooks.h"
#include "platform/ui/qt/DesktopWishes.h"
#include "platform/ui/qt/FormPeer.h"
#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/KivoStyle.h"
#include "platform/ui/qt/PeerFactory.h"
#include "platform/ui/qt/Pickers.h"
#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/TextLine.h"
#include "platform/ui/qt/VideoPeer.h"
#include "platform/ui/qt/WidgetAccess.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinManager.h"

#include <QApplication>
#include <QDialog>
#include <QLibraryInfo>
#include <QLocale>
#include <QToolTip>
#include <QTranslator>

#include <algorithm>
#include <cmath>

namespace kivo::ui::qt {

namespace {

constexpr int kDarkBelow = 128; // A ground of less lightness is a dark desktop's.

// High contrast without a palette of the desktop's own for it: black and white.
QPalette MakeContrastPalette(bool dark)
{
    const QColor ground = dark ? Qt::black : Qt::white;
    const QColor text = dark ? Qt::white : Qt::black;
    const QColor accent = dark ? QColor(0xFFE000) : QColor(0x0000B0);
    QPalette palette(text, ground, text, text, text, text, ground);
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::AlternateBase, dark ? QColor(0x303030) : QColor(0xE0E0E0));
    palette.setColor(QPalette::Button, ground);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, dark ? Qt::black : Qt::white);
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::Midlight, dark ? QColor(0x303030) : QColor(0xE0E0E0));
    palette.setColor(QPalette::Mid, dark ? QColor(0x606060) : QColor(0xB0B0B0));
    palette.setColor(QPalette::PlaceholderText, text);
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::ToolTipText, text);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, dark ? QColor(0xA0A0A0) : QColor(0x606060));
    return palette;
}

// The contrast of two colours by WCAG 2: 1 to 21.
double GetContrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& colour) {
        const auto part = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
               0.0722 * part(colour.blueF());
    };
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

// Without a platform theme the palette is Qt's own, which knows nothing of the wish.
bool IsHighInContrast(const QPalette& palette)
{
    constexpr double kEnough = 7.0;
    return GetContrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window)) >=
               kEnough &&
           GetContrast(palette.color(QPalette::HighlightedText),
                       palette.color(QPalette::Highlight)) >= kEnough;
}

bool IsLanguageRightToLeft()
{
    const QString language = ToQt(common::CMutiLanSupport::GetInstance()->GetLangSetting());
    return QLocale(language).textDirection() == Qt::RightToLeft;
}

} // namespace

struct QtDesktop::Impl : QObject {
    explicit Impl(const DesktopOptions& given)
        : options(given)
        , desktopPalette(QApplication::palette())
    {
    }

    // The desktop's font or screen has changed under us.
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::ApplicationFontChange && !applying)
            ApplySkin();
        return false;
    }

    void ApplySkin()
    {
        applying = true;
        FollowLanguage();
        CSkinManager& skin = *CSkinManager::GetInstance();
        const bool darkPalette = desktopPalette.color(QPalette::Window).lightness() < kDarkBelow;
        const bool dark = options.dark.value_or(darkPalette || wishes->IsDark());
        const bool contrast = options.highContrast.value_or(wishes->IsHighContrast());
        const bool mirrored = options.rightToLeft.value_or(IsLanguageRightToLeft());
        skin.SetDark(dark);
        skin.SetRightToLeft(mirrored);
        SetHighContrast(contrast);
        DropPictures();
        ForgetWidths();
        QGuiApplication::setLayoutDirection(mirrored ? Qt::RightToLeft : Qt::LeftToRight);
        const bool isOwn = contrast && (darkPalette != dark || !IsHighInContrast(desktopPalette));
        QApplication::setPalette(MakePalette(isOwn ? MakeContrastPalette(dark) : desktopPalette));
        QPalette tip = QApplication::palette();
        tip.setColor(QPalette::ToolTipBase, GetToken(u"tip"));
        tip.setColor(QPalette::ToolTipText, GetToken(u"ontip"));
        QToolTip::setPalette(tip);
        QToolTip::setFont(GetScaledFont(0.92, 0));
        ResetForms();
        applying = false;
    }

    // The texts of Qt's own dialogs, menus of fields and names of keys; English where the system
    // has none for the language.
    void FollowLanguage()
    {
        const QLocale locale(ToQt(common::CMutiLanSupport::GetInstance()->GetLangSetting()));
        if (locale == translated)
            return;
        translated = locale;
        QCoreApplication::removeTranslator(&translator);
        if (translator.load(locale,
                            QStringLiteral("qtbase"),
                            QStringLiteral("_"),
                            QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&translator);
    }

    DesktopOptions options;
    QTranslator translator;
    QLocale translated{QLocale::C};
    QPalette desktopPalette;
    PeerFactory factory;
    DesktopWishes* wishes = new DesktopWishes(this);
    InputWatch* input = new InputWatch(qApp);
    bool applying = false;
};

QtDesktop::QtDesktop(const DesktopOptions& options)
    : impl_(std::make_unique<Impl>(options))
{
    InstallWidgetAccess();
    // A style that the user has chosen stays; then only what we paint ourselves wears our colours.
    if (qEnvironmentVariableIsEmpty("QT_STYLE_OVERRIDE"))
        QApplication::setStyle(new KivoStyle);
    SetPeerFactory(&impl_->factory);
    SetVideoSurfacePeerFactory(MakeVideoPeer);
    DesktopHooks hooks;
    hooks.openWeb = OpenAddress;
    hooks.showFolder = ShowFolder;
    const bool native = options.nativePickers;
    hooks.chooseFiles = [native](CWnd* parent, const String& filter, const String& directory) {
        return ChooseFiles(parent, filter, directory, native);
    };
    hooks.chooseFolder = [native](CWnd* parent, const String& title) {
        return ChooseFolder(parent, title, native);
    };
    SetDesktopHooks(hooks);
    qApp->installEventFilter(impl_.get());
    QObject::connect(impl_->wishes, &DesktopWishes::Changed, impl_.get(), [this] { ApplySkin(); });
    impl_->wishes->Ask();
    ApplySkin();
}

QtDesktop::~QtDesktop()
{
    delete impl_->input;
    SetDesktopHooks({});
    SetVideoSurfacePeerFactory({});
    SetPeerFactory(nullptr);
}

void QtDesktop::ApplySkin()
{
    impl_->ApplySkin();
}

void QtDesktop::CloseDialogs()
{
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
        if (QApplication::activePopupWidget() == popup)
            break;
    }
    // From a copy: a dialog that ends may take others with it.
    QList<QPointer<QDialog>> dialogs;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QDialog*>(widget);
            dialog != nullptr && dialog->isModal() && dialog->isVisible() && !IsForm(*dialog))
            dialogs.append(dialog);
    for (const QPointer<QDialog>& dialog : dialogs)
        if (dialog != nullptr)
            dialog->reject();
}

} // namespace kivo::ui::qt
