#include "mediares/ItemFile.h"

#include "mediares/CharacterSets.h"
#include "shell/base/XmlRecordWriter.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <optional>

namespace kivo::tunehive {

namespace {

constexpr const char* kRoot = "Items";
constexpr const char* kItem = "Item";
constexpr const char* kPath = "path";
constexpr const char* kName = "name";
constexpr const char* kOlderCharacterSet = "gbk";

// A reference to U+0000, which no save could bring back, is left out.
String ReadText(const XmlRecord& record, const char* name, int codePage)
{
    String text = common::MBCS2CString(GetAttribute(record, name), codePage);
    std::erase(text, u'\0');
    return text;
}

} // namespace

XmlResult ReadItemFile(const String& path, const TakeItem& take, bool keepsOlder)
{
    XmlProlog prolog;
    std::optional<int> codePage; // The prolog is known from the first record on.
    const XmlResult result = ReadXmlRecords(path, kRoot, prolog, [&](const XmlRecord& record) {
        if (!IsNamed(record, kItem))
            return;
        if (!codePage)
            codePage = FindCodePage(prolog.isDeclared ? prolog.encoding : kOlderCharacterSet);
        take(ReadText(record, kPath, *codePage), ReadText(record, kName, *codePage));
    });
    if (result == XmlResult::Read && !prolog.isDeclared && !keepsOlder)
        SetOlderAside(path);
    return result;
}

int WriteItemFile(const String& path, const GiveItems& give)
{
    XmlRecordWriter writer(path, kRoot);
    give([&writer](std::string_view itemPath, std::string_view name) {
        writer.Write(kItem,
                     {
                         {kPath, itemPath},
                         {kName, name    }
        });
    });
    if (!writer.Commit())
        return 0;
    DropOlder(path);
    return 1;
}

int CreateFileIfAbsent(const String& path)
{
    return CreateFileIfMissing(path);
}

int DeleteGroupFile(const String& path)
{
    const int isGone = DeleteFileW(path);
    DropOlder(path);
    return isGone;
}

} // namespace kivo::tunehive
