#pragma once

#include "mediares/BySid.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/ItemFile.h"
#include "mediares/ItemPathIndex.h"
#include "mediares/PackedText.h"
#include "mediares/SIDGenerator.h"

#include <cstdint>
#include <memory>
#include <memory_resource>

namespace kivo::tunehive {

class CGroupInfo;

// Keeps a record in few bytes: its path's text stands in the index alone. Thread: user interface.
class MediaResGroup : public IMediaResGroup {
public:
    // `path` is the group's file, which isn't read here. `names` is borrowed; without one the
    // group has no name.
    MediaResGroup(const String& id, const String& path, CGroupInfo* names);
    MediaResGroup(const MediaResGroup&) = delete;
    MediaResGroup& operator=(const MediaResGroup&) = delete;

    void Release() override;
    String GetID() override;
    String GetName() override;
    int IsUserGroup() override;
    int IsEditable() override;
    void Load(std::vector<String>& sids) override;
    void Save(const std::vector<String>& sids) override;
    String AddItem(MediaInfo item) override;
    void RemoveItem(const String& sid) override;
    void Clear() override;
    void GetItemMediaInfo(const String& sid, MediaInfo& info) override;
    int GetItem(const String& sid, MediaInfo& item) override;
    int SetItem(const String& sid, const MediaInfo& item) override;
    void FindItems(const String& path, std::set<String>& sids) override;
    ~MediaResGroup() override = default;

private:
    struct Item {
        ItemPathIndex::Place path;
        PackedText name;                  // Not set: the record has none.
        std::unique_ptr<MediaInfo> whole; // A record that is more than that path and a name.
    };

    // All tracks with the memory that their texts stand in, which is given back as a whole: freed
    // one by one, 100,000 of them would hold up each end of the program.
    struct Tracks {
        std::pmr::unsynchronized_pool_resource memory;
        PackedTexts names{memory};
        ItemPathIndex index{memory};
        BySid<Item> items;
    };

    Item& Insert(StringView path, String& sid);
    void WriteItems(const std::vector<String>& sids, const WriteItem& write);
    void SetRecord(Item& item, const MediaInfo& record);
    [[nodiscard]] static MediaInfo MakeRecord(const Item& item);
    void DropAll() { tracks_ = std::make_unique<Tracks>(); }

    const String id_;
    const String path_;
    CGroupInfo* const names_;
    SIDGenerator idGenerator_;
    std::unique_ptr<Tracks> tracks_ = std::make_unique<Tracks>();
    bool isUnread_ = false; // The file stands there and did not give its content.
};

} // namespace kivo::tunehive
