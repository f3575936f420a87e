#include "mediares/MediaResGroup.h"

#include "medialib/IMediaLibManager.h"
#include "mediares/GroupIds.h"
#include "mediares/GroupInfo.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <string>

namespace kivo::tunehive {

MediaResGroup::MediaResGroup(const String& id, const String& path, CGroupInfo* names)
    : id_(id)
    , path_(path)
    , names_(names)
{
}

void MediaResGroup::Release()
{
    delete this;
}

String MediaResGroup::GetID()
{
    return id_;
}

String MediaResGroup::GetName()
{
    return names_ != nullptr ? names_->GetDisplayName(id_) : String();
}

int MediaResGroup::IsUserGroup()
{
    return IsFixedGroupID(id_) ? 0 : 1;
}

int MediaResGroup::IsEditable()
{
    return id_ == kHotGroup ? 0 : 1;
}

void MediaResGroup::Load(std::vector<String>& sids)
{
    const std::size_t before = sids.size();
    const String lastSid = idGenerator_.GetCurrent();
    DropAll();
    const XmlResult result = ReadItemFile(
        path_,
        [this, &sids](const String& path, const String& name) {
            if (!path.empty())
                Insert(path, sids.emplace_back()).name = tracks_->names.Pack(name);
        },
        /*keepsOlder=*/IsEditable() == 0);
    isUnread_ = IsUnread(result);
    if (result == XmlResult::Read)
        return;
    // What came before the fault in the file never was.
    DropAll();
    sids.resize(before);
    idGenerator_.SetCurrent(lastSid);
}

void MediaResGroup::Save(const std::vector<String>& sids)
{
    if (IsEditable() == 0 || (isUnread_ && KeepAside(path_) == 0))
        return;
    const int isWritten =
        WriteItemFile(path_, [this, &sids](const WriteItem& write) { WriteItems(sids, write); });
    if (isWritten != 0)
        isUnread_ = false;
}

void MediaResGroup::WriteItems(const std::vector<String>& sids, const WriteItem& write)
{
    std::string path;
    std::string name;
    for (const String& sid : sids) {
        const Item* const item = tracks_->items.Find(sid);
        if (item == nullptr)
            continue;
        if (item->whole != nullptr)
            write(common::CString_to_utf8(GetInfoText(*item->whole, kItemPath)),
                  common::CString_to_utf8(GetInfoText(*item->whole, kItemName)));
        else
            write(ItemPathIndex::GetPath(item->path).ToUtf8(path), item->name.ToUtf8(name));
    }
}

String MediaResGroup::AddItem(MediaInfo item)
{
    const String path = GetInfoText(item, kItemPath);
    String sid;
    if (IsEditable() != 0 && !path.empty())
        SetRecord(Insert(path, sid), item);
    return sid;
}

void MediaResGroup::RemoveItem(const String& sid)
{
    const Item* const item = IsEditable() != 0 ? tracks_->items.Find(sid) : nullptr;
    if (item == nullptr)
        return;
    tracks_->index.Remove(SIDGenerator::ToNumber(sid).value_or(0), item->path);
    tracks_->names.Drop(item->name);
    tracks_->items.Remove(sid);
}

void MediaResGroup::Clear()
{
    if (IsEditable() != 0)
        DropAll();
}

void MediaResGroup::GetItemMediaInfo(const String& sid, MediaInfo& info)
{
    MediaInfo item;
    if (GetItem(sid, item) == 0)
        return;
    const String path = GetInfoText(item, kItemPath);
    IMediaLibManager* const library = FindMediaLibManager();
    if (!path.empty() && library != nullptr)
        library->GetMediaInfo(path, info);
}

int MediaResGroup::GetItem(const String& sid, MediaInfo& item)
{
    const Item* const found = tracks_->items.Find(sid);
    if (found == nullptr)
        return 0;
    item = MakeRecord(*found);
    return 1;
}

int MediaResGroup::SetItem(const String& sid, const MediaInfo& item)
{
    Item* const found = tracks_->items.Find(sid);
    if (found == nullptr)
        return 0;
    SetRecord(*found, item);
    return 1;
}

void MediaResGroup::FindItems(const String& path, std::set<String>& sids)
{
    tracks_->index.Find(path, sids);
}

// Under a new SID, without a name. `path` isn't empty.
MediaResGroup::Item& MediaResGroup::Insert(StringView path, String& sid)
{
    sid = idGenerator_.Next();
    Item& item = tracks_->items.Add(sid, Item());
    item.path = tracks_->index.Add(SIDGenerator::ToNumber(sid).value_or(0), path);
    return item;
}

void MediaResGroup::SetRecord(Item& item, const MediaInfo& record)
{
    const auto path = record.find(kItemPath);
    const auto name = record.find(kItemName);
    tracks_->names.Drop(item.name);
    item.name = name != record.end() ? tracks_->names.Pack(name->second) : PackedText();
    const std::size_t packed = name != record.end() ? 2 : 1;
    const bool fits =
        path != record.end() && ItemPathIndex::GetPath(item.path).Unpack() == path->second;
    item.whole = fits && record.size() == packed ? nullptr : std::make_unique<MediaInfo>(record);
}

MediaInfo MediaResGroup::MakeRecord(const Item& item)
{
    if (item.whole != nullptr)
        return *item.whole;
    MediaInfo record;
    record.emplace(kItemPath, ItemPathIndex::GetPath(item.path).Unpack());
    if (item.name.IsSet())
        record.emplace_hint(record.end(), kItemName, item.name.Unpack());
    return record;
}

} // namespace kivo::tunehive
