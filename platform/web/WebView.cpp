#include "platform/web/WebView.h"

#include "platform/web/Addresses.h"
#include "shell/contracts/common/Language.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <QWebEngineView>

namespace kivo::web {

namespace {

QString FindText(const char16_t* id)
{
    return QString::fromStdU16String(common::CMutiLanSupport::GetInstance()->GetStringViaID(id));
}

// As the page's link gave it, for http and https and the rest of ASCII addresses.
String ToText(const QUrl& url)
{
    return QString::fromLatin1(url.toEncoded()).toStdU16String();
}

} // namespace

WebView::WebView(ui::IWebViewListener& listener, QWidget* parent)
    : listener_(listener)
    , widget_(new QWidget(parent))
    , layout_(new QStackedLayout(widget_))
{
    auto* const view = new QWebEngineView(&page_, widget_);
    view->setContextMenuPolicy(Qt::PreventContextMenu);
    view->setAcceptDrops(false);
    layout_->addWidget(view);
    layout_->addWidget(MakeNotice());
    widget_->setFocusProxy(view);

    connect(&page_, &LockedPage::Navigating, this, [this](const QUrl& url) {
        listener_.OnNavigation(ToText(url));
    });
    connect(&page_, &LockedPage::NewWindowWanted, this, &WebView::OnNewWindowWanted);
    connect(
        &page_,
        &QWebEnginePage::loadStarted,
        this,
        [this] { listener_.OnLoadStarted(); },
        Qt::QueuedConnection);
    connect(
        &page_,
        &QWebEnginePage::loadFinished,
        this,
        [this] { listener_.OnLoadFinished(); },
        Qt::QueuedConnection);
    connect(
        &page_,
        &QWebEnginePage::renderProcessTerminated,
        this,
        [this] { ShowNotice(/*isShown=*/true); },
        Qt::QueuedConnection);
}

WebView::~WebView()
{
    delete widget_; // Before the page that it shows.
}

void WebView::Navigate(const String& url)
{
    ShowNotice(/*isShown=*/false);
    page_.load(QUrl::fromEncoded(QString::fromStdU16String(url).toUtf8()));
}

QWidget* WebView::MakeNotice()
{
    auto* const notice = new QWidget(widget_);
    auto* const label = new QLabel(FindText(u"STRID_TUNEHIVE_WEB_ENDED"), notice);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    auto* const button = new QPushButton(FindText(u"STRID_TUNEHIVE_WEB_RELOAD"), notice);
    connect(button, &QPushButton::clicked, this, [this] {
        ShowNotice(/*isShown=*/false);
        page_.triggerAction(QWebEnginePage::Reload);
    });
    auto* const column = new QVBoxLayout(notice);
    column->addStretch();
    column->addWidget(label);
    column->addWidget(button, 0, Qt::AlignHCenter);
    column->addStretch();
    return notice;
}

void WebView::ShowNotice(bool isShown)
{
    if (layout_ != nullptr)
        layout_->setCurrentIndex(isShown ? 1 : 0);
}

void WebView::OnNewWindowWanted(const QUrl& url)
{
    // While one link is being followed, perhaps by a form, a page can't pile up others.
    if (isReportingNewWindow_ || !IsLinkAddress(url))
        return;
    isReportingNewWindow_ = true;
    QMetaObject::invokeMethod(
        this, [this, link = ToText(url)] { ReportNewWindow(link); }, Qt::QueuedConnection);
}

void WebView::ReportNewWindow(const String& url)
{
    const QPointer<WebView> self = this;
    listener_.OnNewWindow(url);
    if (self != nullptr)
        isReportingNewWindow_ = false;
}

} // namespace kivo::web
