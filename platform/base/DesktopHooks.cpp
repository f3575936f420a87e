#include "platform/base/DesktopHooks.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/FileDialog.h"
#include "shell/contracts/framework/Paths.h"

#include <algorithm>
#include <utility>

namespace kivo {
namespace {

constexpr std::size_t kMostUrl = 8192;

DesktopHooks& Hooks()
{
    static DesktopHooks hooks;
    return hooks;
}

// An address that a browser may be given: http or https with a host, and nothing in it that a
// command line or a desktop's launcher could take for something else.
bool IsWebAddress(const String& url)
{
    const String lower = common::ToLowerAscii(StringView(url).substr(0, 8));
    std::size_t host = 0;
    if (lower.starts_with(u"http://"))
        host = 7;
    else if (lower.starts_with(u"https://"))
        host = 8;
    else
        return false;
    const bool plain = std::all_of(url.begin(), url.end(), [](char16_t unit) {
        return unit > 0x20 && (unit < 0x7F || unit > 0x9F) && unit != u'\\';
    });
    return plain && url.size() <= kMostUrl && common::ToDisplayText(url) == url &&
           url.find_first_of(u"/?#", host) != host && url.size() > host;
}

} // namespace

void SetDesktopHooks(DesktopHooks hooks)
{
    Hooks() = std::move(hooks);
}

void ShellExecuteW(const String& verb, const String& path)
{
    if (verb == u"explore" && Hooks().showFolder && PathIsDirectoryW(path))
        Hooks().showFolder(path);
}

void common::SafeOpenWeb(const String& url, int /*mode*/)
{
    if (Hooks().openWeb && IsWebAddress(url))
        Hooks().openWeb(url);
}

CFileDialog::CFileDialog(CWnd* parent, const String& filter)
    : parent_(parent)
    , filter_(filter)
{
}

void CFileDialog::SetInitialDirectory(const String& folder)
{
    directory_ = folder;
}

bool CFileDialog::DoModal()
{
    paths_ =
        Hooks().chooseFiles ? Hooks().chooseFiles(parent_, filter_, directory_) : CStringArray();
    return !paths_.empty();
}

String SHBrowseForFolderW(CWnd* owner, const String& title)
{
    return Hooks().chooseFolder ? Hooks().chooseFolder(owner, title) : String();
}

} // namespace kivo
