#include "shell/base/Settings.h"

#include "shell/base/DataFolder.h"
#include "shell/base/XmlRecords.h"
#include "shell/base/XmlRecordWriter.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <array>
#include <string>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr const char* kRoot = "TuneHive";

struct Values {
    int playMode = 2;
    String openPath;
    int volume = 60;
};
Values values;

// What the last ReadConfig found; WriteConfig asks for it.
enum class FileState {
    Unknown, // not read since the last write
    Read,    // or none there
    Unread,  // it stands there and gave nothing
};
FileState fileState = FileState::Unknown;

struct Setting {
    const char* element;
    const char* attribute;
    void (*take)(std::string_view value, bool isDeclared);
    std::string (*give)();
};

constexpr Setting kSettings[] = {
    {"PlayMode",
     "mode", [](std::string_view value, bool) { values.playMode = common::BytesToInt(value); },
     [] { return std::to_string(values.playMode); }                                                                                                    },
    {"OpenPath",
     "path", [](std::string_view value, bool isDeclared) {
         values.openPath =
             isDeclared ? common::utf8_to_CString(value) : common::MBCS2CString(value, 0);
     },                                                  [] { return common::CString_to_utf8(values.openPath); }},
    {"Volume",
     "vol",  [](std::string_view value, bool) { values.volume = common::BytesToInt(value); },
     [] { return std::to_string(values.volume); }                                                                                                      },
};

// The attribute of the first element of each name.
using FoundValues = std::array<std::pair<bool, std::string>, std::size(kSettings)>;

void Collect(const XmlRecord& record, FoundValues& found)
{
    for (std::size_t i = 0; i < found.size(); ++i)
        if (!found[i].first && IsNamed(record, kSettings[i].element))
            found[i] = {true, std::string(GetAttribute(record, kSettings[i].attribute))};
}

} // namespace

int GetPlayMode()
{
    return values.playMode;
}

void SetPlayMode(int mode)
{
    values.playMode = mode;
}

const String& GetOpenPath()
{
    return values.openPath;
}

void SetOpenPath(const String& folder)
{
    values.openPath = folder;
}

int GetRememberedVolume()
{
    return values.volume;
}

void SetRememberedVolume(int volume)
{
    values.volume = volume;
}

void ReadConfig()
{
    const std::optional<String> folder = GetDataFolder();
    if (!folder)
        return;
    fileState = FileState::Read;
    const String path = *folder + u"config.xml";
    if (!common::IsFileExist(path))
        return;

    FoundValues found;
    XmlProlog prolog;
    const XmlResult result = ReadXmlRecords(
        path, kRoot, prolog, [&found](const XmlRecord& record) { Collect(record, found); });
    if (result == XmlResult::Read) {
        for (std::size_t i = 0; i < found.size(); ++i)
            if (!found[i].second.empty())
                kSettings[i].take(found[i].second, prolog.isDeclared);
        if (!prolog.isDeclared)
            SetOlderAside(path);
    } else if (result == XmlResult::NoRoot && !prolog.isDeclared) {
        // An older file goes in any case; this one gave nothing, so it goes where it is kept.
        KeepAside(path);
    } else if (IsUnread(result)) {
        fileState = FileState::Unread;
    }
}

void WriteConfig()
{
    const FileState state = std::exchange(fileState, FileState::Unknown);
    const std::optional<String> folder = GetDataFolder();
    if (state == FileState::Unknown || !folder)
        return;
    CreateDirectoryW(*folder);
    const String path = *folder + u"config.xml";
    if (state == FileState::Unread && KeepAside(path) == 0)
        return;

    XmlRecordWriter writer(path, kRoot);
    for (const Setting& setting : kSettings)
        writer.Write(setting.element,
                     {
                         {setting.attribute, setting.give()}
        });
    if (writer.Commit())
        DropOlder(path);
}

} // namespace kivo::tunehive
