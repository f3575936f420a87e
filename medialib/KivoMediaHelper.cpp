#include "medialib/KivoMediaHelper.h"

#include "medialib/NewerFormats.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/FileFind.h"

#include <algorithm>
#include <span>

namespace kivo::tunehive {

namespace {

// The lists differ on purpose, and neither is the manager's table of types.
constexpr StringView kMediaExtensions[] = {u"mp3",
                                           u"wma",
                                           u"wmv",
                                           u"wav",
                                           u"asf",
                                           u"midi",
                                           u"avi",
                                           u"mpg",
                                           u"mpeg",
                                           u"rm",
                                           u"rmvb",
                                           u"ape"};
constexpr StringView kVideoExtensions[] = {
    u"avi", u"mpg", u"mpeg", u"mov", u"asf", u"mp4", u"rm", u"rmvb", u"wmv"};

bool Holds(std::span<const StringView> extensions, StringView extension)
{
    const String lower = common::ToLowerAscii(extension);
    return std::find(extensions.begin(), extensions.end(), lower) != extensions.end();
}

// What follows the last dot of the whole path; nothing without a dot.
std::optional<String> GetDottedEnd(const String& path)
{
    const std::size_t dot = path.rfind(u'.');
    if (dot == String::npos)
        return std::nullopt;
    return path.substr(dot + 1);
}

} // namespace

CKivoMediaHelper& GetMediaHelperInstance()
{
    static CKivoMediaHelper helper;
    return helper;
}

bool CKivoMediaHelper::IsMediaExtension(const String& extension) const
{
    return Holds(kMediaExtensions, extension) || FindNewerFormat(extension) != nullptr;
}

bool CKivoMediaHelper::IsVideoFile(const String& path) const
{
    const auto extension = GetDottedEnd(path);
    if (!extension)
        return false;
    if (Holds(kVideoExtensions, *extension))
        return true;
    const NewerFormat* newer = FindNewerFormat(*extension);
    return newer != nullptr && newer->isVideo;
}

void CKivoMediaHelper::ListMediaFiles(const String& folder,
                                      CStringArray& paths,
                                      const std::function<bool()>& goesOn) const
{
    class Visitor final : public IFolderVisitor {
    public:
        Visitor(const CKivoMediaHelper& helper,
                CStringArray& paths,
                const std::function<bool()>& goesOn)
            : helper_(helper)
            , paths_(paths)
            , goesOn_(goesOn)
        {
        }
        void OnFile(const String& path) override
        {
            if (const auto end = GetDottedEnd(path); end && helper_.IsMediaExtension(*end))
                paths_.push_back(path);
        }
        bool GoesOn() override { return !goesOn_ || goesOn_(); }

    private:
        const CKivoMediaHelper& helper_;
        CStringArray& paths_;
        const std::function<bool()>& goesOn_;
    };

    paths.clear();
    if (folder.empty())
        return;
    Visitor visitor(*this, paths, goesOn);
    WalkFolder(folder, visitor);
}

} // namespace kivo::tunehive
