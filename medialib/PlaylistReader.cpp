#include "medialib/KivoMediaHelper.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/common/Xml.h"
#include "shell/contracts/framework/FileFind.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/framework/StdioFile.h"

#include <tinyxml.h>

#include <string_view>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

enum PlaylistKey : unsigned { kEntryTitle = 0, kEntryAuthor = 1, kEntryUrl = 14 };

bool IsFound(const String& pattern)
{
    return CFileFind().FindFile(pattern) != 0;
}

// From `node` on, the first of its siblings of that name, whatever kind of node it is.
const TiXmlNode* FindNamed(const TiXmlNode* node, const char* name)
{
    while (node != nullptr && common::string_compare_no_case(node->ValueStr(), name) != 0)
        node = node->NextSibling();
    return node;
}

Property ReadEntry(const TiXmlNode& entry)
{
    Property record;
    const TiXmlNode* const child = entry.FirstChild();
    if (const TiXmlNode* title = FindNamed(child, "Title"))
        record.SetText(kEntryTitle, common::CXmlDocument::GetNodeText(title));
    if (const TiXmlNode* author = FindNamed(child, "Author"))
        record.SetText(kEntryAuthor, common::CXmlDocument::GetNodeText(author));
    const TiXmlNode* const reference = FindNamed(child, "Ref");
    if (reference != nullptr && reference->ToElement() != nullptr)
        record.SetText(kEntryUrl, common::CXmlDocument::GetNodeAttribute(reference, u"href"));
    return record;
}

} // namespace

void CKivoMediaHelper::ReadM3UPlaylist(const String& path, CStringArray& paths) const
{
    CStdioFile file;
    const std::size_t end = path.rfind(kSeparator);
    if (!IsFound(path) || !file.Open(path) || end == String::npos)
        return;
    const String folder = path.substr(0, end + 1);
    const String root(1, kSeparator);
    std::string bytes;
    for (bool first = true; file.ReadString(bytes) && !bytes.empty(); first = false) {
        if (first && bytes.starts_with(kUtf8Mark))
            bytes.erase(0, kUtf8Mark.size());
        // Each line by itself: lists are glued together from files of several origins.
        const String line = common::Trim(common::MBCS2CString(bytes, 0));
        if (line.empty() || line.front() == u'#')
            continue;
        const bool hasDrive = line.size() > 1 && line[1] == u':';
        if (hasDrive || line.front() == kSeparator)
            paths.push_back(line);
        else if (IsFound(root + line))
            paths.push_back(root + line);
        else if (IsFound(folder + line))
            paths.push_back(folder + line);
    }
}

void CKivoMediaHelper::ReadASXPlaylist(const String& path,
                                       std::map<String, Property>& entries) const
{
    common::CXmlDocument document;
    if (!document.LoadFile(path))
        return;
    const TiXmlNode* const root = document.PathWalk(u"ASX");
    if (root == nullptr)
        return;
    // Behind the first entry every node counts as one, whatever its name.
    for (const TiXmlNode* node = FindNamed(root->FirstChild(), "Entry"); node != nullptr;
         node = node->NextSibling()) {
        Property entry = ReadEntry(*node);
        const String url = entry.GetText(kEntryUrl);
        entries.insert_or_assign(url, std::move(entry));
    }
}

} // namespace kivo::tunehive
