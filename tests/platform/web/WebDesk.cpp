#include "tests/platform/web/WebDesk.h"

#include "platform/base/DesktopHooks.h"
#include "shell/base/MusicServer.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinManager.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QTest>

#include <stdexcept>

namespace kivo::test {

namespace {

QWidget* FindPage()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        for (QWidget* const child : window->findChildren<QWidget*>()) {
            if (child->inherits("QWebEngineView") && child->isVisible())
                return child;
        }
    }
    return nullptr;
}

std::string MakeNumber()
{
    static int number = 0;
    return std::to_string(++number);
}

} // namespace

bool WaitUntil(const std::function<bool()>& isDone, int milliseconds)
{
    return QTest::qWaitFor(isDone, milliseconds);
}

WebDesk& WebDesk::Get()
{
    static auto* const desk = new WebDesk; // Until the process ends, as the browser is.
    return *desk;
}

WebDesk::WebDesk()
{
    common::SetAppPath(common::utf8_to_CString(KIVO_APP_FOLDER));
    common::CMutiLanSupport::GetInstance()->AddTable(
        common::utf8_to_CString(KIVO_DATA_FOLDER "lang/en/stringid.ini"));
    ui::CSkinManager::GetInstance()->IncludeSkinFile(
        common::utf8_to_CString(KIVO_DATA_FOLDER "skin.xml"));
    ui::CSkinManager::GetInstance()->IncludeSkinBuildFile(
        common::utf8_to_CString(KIVO_DATA_FOLDER "build.xml"));
    desktop_ = std::make_unique<ui::qt::QtDesktop>();
    DesktopHooks hooks;
    hooks.openWeb = [this](const String& url) { opened.push_back(url); };
    SetDesktopHooks(hooks);
    const std::string root = server.GetUrl("");
    tunehive::SetMusicServer(common::utf8_to_CString(root.substr(root.find("://") + 3)));
}

void NotingOwner::StopPlayer()
{
    calls += u"stop;";
}

void NotingOwner::AddTrack(
    const String& group, const String& url, const String& name, int allowDuplicate, String& sid)
{
    calls += u"add " + group + u" | " + url + u" | " + name;
    calls += allowDuplicate != 0 ? u";" : u" | once;";
    sid = u"s";
}

void NotingOwner::PlayTrack(const String& group, const String& sid)
{
    calls += u"play " + group + u" " + sid + u";";
}

int NotingOwner::ShowAddURLForm(CWnd* /*parent*/, String& group, String& url, String& name)
{
    calls += u"ask " + url + u" | " + name + u";";
    const bool isConfirmed = ask && ask();
    group = u"mine";
    return isConfirmed ? 1 : 0;
}

Cabinet::Cabinet(const std::string& html)
    : form_(new tunehive::CMusicCabForm(&owner))
    , life_(form_->Watch())
    , number_(MakeNumber())
{
    WebDesk& desk = WebDesk::Get();
    desk.opened.clear();
    desk.server.ServeBytes("/music/kivo_tj.jsp",
                           "<!DOCTYPE html><meta charset=utf-8><script>"
                           "function tell(word) { return fetch('/told/" +
                               number_ + "/' + word, {method: 'POST'}); }</script>" + html,
                           "text/html");
    EXPECT_EQ(form_->Create(nullptr), 1);
    if (!form_->HasBrowser())
        throw std::runtime_error("there is no browser to test");
    form_->ShowWindow(5);
    page_ = FindPage();
    EXPECT_NE(page_, nullptr);
}

Cabinet::~Cabinet()
{
    Close();
}

bool Cabinet::HasSaid(const std::string& word) const
{
    return WebDesk::Get().server.CountRequests("/told/" + number_ + "/" + word) > 0;
}

bool Cabinet::WaitForWord(const std::string& word) const
{
    return WaitUntil([this, &word] { return HasSaid(word); });
}

void Cabinet::Click() const
{
    ASSERT_NE(page_, nullptr);
    QTest::mouseClick(page_->focusProxy(), Qt::LeftButton, {}, page_->rect().center());
}

void Cabinet::Close()
{
    if (life_.IsAlive())
        form_->OnSysButton(ui::kSysButtonClose);
}

std::string MakeLinkPage(const std::string& href, const std::string& script)
{
    return "<body onclick=\"run()\"><script>function later(f) { setTimeout(f, 200); }"
           "function run() {" +
           script +
           "} onload = () => requestAnimationFrame(() => requestAnimationFrame("
           "() => tell('ready')));</script><a id=link target=_blank "
           "style='position:fixed;inset:0'" +
           (href.empty() ? std::string() : " href=\"" + href + "\"") + ">link</a>";
}

} // namespace kivo::test
