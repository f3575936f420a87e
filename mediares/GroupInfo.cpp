#include "mediares/GroupInfo.h"

#include "mediares/GroupIds.h"
#include "shell/base/XmlRecords.h"
#include "shell/base/XmlRecordWriter.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr const char* kRoot = "Groups";
constexpr const char* kGroup = "Group";
constexpr const char* kId = "id";
constexpr const char* kName = "name";

} // namespace

void CGroupInfo::Load(const String& folder)
{
    path_ = folder + u"ginfo.xml";
    names_.clear();
    refused_.clear();

    // Gathered first: of a file that turns out to be broken nothing is taken over.
    std::vector<std::pair<std::string, std::string>> entries;
    XmlProlog prolog;
    const XmlResult result =
        ReadXmlRecords(path_, kRoot, prolog, [&entries](const XmlRecord& record) {
            if (IsNamed(record, kGroup))
                entries.emplace_back(GetAttribute(record, kId), GetAttribute(record, kName));
        });
    isUnread_ = IsUnread(result);
    if (result != XmlResult::Read)
        return;

    isLoading_ = true;
    const auto decode = [&prolog](const std::string& bytes) {
        return prolog.isDeclared ? common::utf8_to_CString(bytes) : common::MBCS2CString(bytes, 0);
    };
    for (const auto& [id, name] : entries)
        TakeEntry(decode(id), decode(name));
    isLoading_ = false;
    if (!prolog.isDeclared)
        SetOlderAside(path_);
    else if (!names_.empty())
        Save();
}

void CGroupInfo::TakeEntry(const String& id, const String& name)
{
    if (name.empty() || !IsUserGroupID(id))
        return;
    if (SetName(id, name) == 0 && IsBeyond())
        refused_[id] = name;
}

int CGroupInfo::Save()
{
    if (isLoading_)
        return 1;
    if (isUnread_ && KeepAside(path_) == 0)
        return 0;
    std::map<String, String> entries = names_;
    entries.insert(refused_.begin(), refused_.end());
    XmlRecordWriter writer(path_, kRoot);
    for (const auto& [id, name] : entries)
        writer.Write(
            kGroup,
            {
                {kId,   common::CString_to_utf8(id)  },
                {kName, common::CString_to_utf8(name)}
        });
    if (!writer.Commit())
        return 0;
    isUnread_ = false;
    DropOlder(path_);
    return 1;
}

int CGroupInfo::HasName(const String& name) const
{
    return std::any_of(names_.begin(),
                       names_.end(),
                       [&name](const auto& entry) { return entry.second == name; })
               ? 1
               : 0;
}

int CGroupInfo::IsNameValid(const String& name) const
{
    return IsDefaultGroupName(name) || HasName(name) != 0 ? 0 : 1;
}

String CGroupInfo::GetName(const String& id) const
{
    const auto found = names_.find(id);
    return found != names_.end() ? found->second : id;
}

String CGroupInfo::GetDisplayName(const String& id) const
{
    if (IsFixedGroupID(id))
        return GroupDefaultName(id);
    return IsUserGroupID(id) ? GetName(id) : String();
}

int CGroupInfo::SetName(const String& id, const String& name)
{
    if (IsNameValid(name) == 0)
        return 0;
    names_[id] = name;
    refused_.erase(id);
    return Save();
}

int CGroupInfo::Remove(const String& id)
{
    return names_.erase(id) + refused_.erase(id) != 0 ? Save() : 0;
}

String CGroupInfo::GetNewName() const
{
    const String base = GroupDefaultName(kUserGroup);
    for (int number = 1;; ++number) {
        String name = base + common::ToText(number);
        if (HasName(name) == 0)
            return name;
    }
}

} // namespace kivo::tunehive
