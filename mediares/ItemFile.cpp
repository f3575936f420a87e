#include "mediares/ItemFile.h"

#include "mediares/CharacterSets.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <tinyxml.h>

namespace kivo::tunehive {

namespace {

constexpr const char* kRoot = "Items";
constexpr const char* kItem = "Item";
constexpr const char* kPath = "path";
constexpr const char* kName = "name";
constexpr const char* kOlderCharacterSet = "gbk";

} // namespace

XmlResult ReadItemFile(const String& path, const TakeItem& take, bool keepsOlder)
{
    XmlProlog prolog;
    const XmlResult result =
        ReadXmlRecords(path, kRoot, prolog, [&prolog, &take](const TiXmlElement& element) {
            if (!IsNamed(element, kItem))
                return;
            const int codePage =
                FindCodePage(prolog.isDeclared ? prolog.encoding : kOlderCharacterSet);
            MediaInfo item;
            item[kItemPath] = common::MBCS2CString(GetAttribute(element, kPath), codePage);
            item[kItemName] = common::MBCS2CString(GetAttribute(element, kName), codePage);
            take(item);
        });
    if (result == XmlResult::Read && !prolog.isDeclared && !keepsOlder)
        SetOlderAside(path);
    return result;
}

int WriteItemFile(const String& path, const GiveItems& give)
{
    XmlRecordWriter writer(path, kRoot);
    give([&writer](const MediaInfo& item) {
        TiXmlElement element(kItem);
        element.SetAttribute(kPath, common::CString_to_utf8(GetInfoText(item, kItemPath)));
        element.SetAttribute(kName, common::CString_to_utf8(GetInfoText(item, kItemName)));
        writer.Write(element);
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
