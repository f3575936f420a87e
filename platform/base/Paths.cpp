#include "shell/contracts/framework/Paths.h"

#include "platform/base/Descriptor.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace kivo {
namespace {

bool IsLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

bool IsSchemeUnit(char16_t unit)
{
    return IsLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' ||
           unit == u'.';
}

bool StatusOf(const String& path, struct stat& status)
{
    const auto native = NativePath(path);
    return native && stat(native->c_str(), &status) == 0;
}

} // namespace

bool PathFileExistsW(const String& path)
{
    const auto native = NativePath(path);
    return native && access(native->c_str(), F_OK) == 0;
}

bool PathIsDirectoryW(const String& path)
{
    struct stat status = {};
    return StatusOf(path, status) && S_ISDIR(status.st_mode);
}

String PathFindExtensionW(const String& path)
{
    const std::size_t dot = path.rfind(u'.');
    const std::size_t separator = path.rfind(kSeparator);
    if (dot == String::npos || (separator != String::npos && dot < separator))
        return {};
    return path.substr(dot);
}

String PathFindFileNameW(const String& path)
{
    return path.substr(path.rfind(kSeparator) + 1); // Without a separator: npos + 1 is 0.
}

bool UrlIsW(const String& text, int kind)
{
    const std::size_t colon = text.find(u"://");
    if (kind != URLIS_URL || colon == String::npos || colon < 2 || !IsLetter(text[0]))
        return false;
    return std::all_of(
        text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(colon), IsSchemeUnit);
}

int CreateDirectoryW(const String& path)
{
    const auto native = NativePath(path);
    return native && mkdir(native->c_str(), 0777) == 0 ? 1 : 0;
}

int DeleteFileW(const String& path)
{
    const auto native = NativePath(path);
    return native && unlink(native->c_str()) == 0 ? 1 : 0;
}

String ComposePath(StringView pattern, std::initializer_list<StringView> arguments)
{
    String separated(pattern);
    std::replace(separated.begin(), separated.end(), u'\\', kSeparator);
    return common::FormatText(separated, arguments);
}

namespace common {
namespace {

String& AppPath()
{
    static String path;
    return path;
}

} // namespace

String GetAppPath()
{
    return AppPath();
}

void SetAppPath(const String& folder)
{
    AppPath() = folder;
    if (!folder.empty() && folder.back() != kSeparator)
        AppPath() += kSeparator;
}

bool IsFileExist(const String& path)
{
    struct stat status = {};
    return StatusOf(path, status) && !S_ISDIR(status.st_mode);
}

String GetFileDirFromPath(const String& path)
{
    return path.substr(0, path.rfind(kSeparator) + 1);
}

String GetFileNameFromPath(const String& path)
{
    return PathFindFileNameW(path);
}

} // namespace common
} // namespace kivo
