#include "mediares/MediaResManager.h"

#include "medialib/IMediaLibManager.h"
#include "mediares/GroupIds.h"
#include "mediares/ItemFile.h"
#include "mediares/MediaResGroup.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/FileFind.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {
IMediaResManager* manager = nullptr;
}

IMediaResManager* GetMediaResManager()
{
    if (manager == nullptr)
        manager = new MediaResManager;
    return manager;
}

IMediaResManager* FindMediaResManager()
{
    return manager;
}

void DestroyMediaResManager()
{
    if (manager != nullptr)
        manager->Release();
    manager = nullptr;
}

int MediaResManager::Init(const String& folder)
{
    if (isInitialised_ != 0)
        return 0;
    folder_ = folder;
    CreateDirectoryW(folder_);
    // Before anything is read or made: a file set aside by a run that died is that file.
    RestoreOlder(folder_);
    isInitialised_ = 1;
    names_.Load(folder_);
    GetMediaLibManager()->AddListener(MediaLibListener(this, &MediaResManager::OnLibraryChanged));
    LoadGroups();
    return 1;
}

int MediaResManager::Uninit()
{
    if (isInitialised_ == 0)
        return 1;
    if (IMediaLibManager* const library = FindMediaLibManager())
        library->RemoveListener(MediaLibListener(this, &MediaResManager::OnLibraryChanged));
    names_.Save();
    groups_.clear();
    isInitialised_ = 0;
    return 1;
}

void MediaResManager::GetGroupIDs(std::set<String>& ids)
{
    for (const auto& [id, group] : groups_)
        ids.insert(id);
}

void MediaResManager::GetSortedGroupIDs(std::vector<String>& ids)
{
    for (const auto& [id, group] : groups_)
        ids.push_back(id);
    std::stable_sort(ids.begin(), ids.end(), [this](const String& a, const String& b) {
        return CompareGroups(a, b) < 0;
    });
}

int MediaResManager::RemoveGroup(const String& id)
{
    const auto found = groups_.find(id);
    if (found == groups_.end() || found->second->IsUserGroup() == 0)
        return 0;
    names_.Remove(id);
    groups_.erase(found);
    DeleteGroupFile(folder_ + GroupFileName(id));
    return 1;
}

int MediaResManager::RenameGroup(const String& id, const String& name)
{
    const auto found = groups_.find(id);
    if (found == groups_.end() || found->second->IsUserGroup() == 0)
        return 0;
    return names_.SetName(id, name);
}

IMediaResGroup* MediaResManager::GetGroup(const String& id)
{
    const auto found = groups_.find(id);
    return found != groups_.end() ? found->second.get() : nullptr;
}

String MediaResManager::CreateGroup(const String& name)
{
    if (names_.IsNameValid(name) == 0)
        return {};
    String id = String(kUserGroup) + idGenerator_.Next();
    if (names_.SetName(id, name) == 0)
        return {};
    const String path = folder_ + GroupFileName(id);
    CreateFileIfAbsent(path);
    MakeGroup(id, path);
    return id;
}

String MediaResManager::GetNewGroupName()
{
    return names_.GetNewName();
}

int MediaResManager::CompareGroups(const String& a, const String& b)
{
    if (IsUserGroupID(a) && IsUserGroupID(b))
        return common::string_compare_no_case(common::CString2MBCS(names_.GetName(a), 0),
                                              common::CString2MBCS(names_.GetName(b), 0));
    return std::clamp(GroupDisplayOrder(a) - GroupDisplayOrder(b), -1, 1);
}

MediaResManager::~MediaResManager()
{
    MediaResManager::Uninit();
}

void MediaResManager::Release()
{
    delete this;
}

void MediaResManager::LoadGroups()
{
    groups_.clear();
    CreateFileIfAbsent(folder_ + GroupFileName(kMineGroup));
    CreateFileIfAbsent(folder_ + GroupFileName(kPlayingGroup));

    // The names of the files are the only memory of which SIDs were given out.
    String highest = SIDGenerator::FirstSID();
    CFileFind find;
    for (int more = find.FindFile(folder_ + u"*.*"); more != 0;) {
        more = find.FindNextFile();
        const String id = find.IsDirectory() || find.IsDots()
                              ? String()
                              : GroupIdFromFileName(find.GetFileName());
        if (id.empty())
            continue;
        MakeGroup(id, find.GetFilePath());
        const String suffix = UserGroupSuffix(id);
        if (SIDGenerator::CompareSID(suffix, highest) > 0)
            highest = suffix;
    }
    idGenerator_.SetCurrent(highest);
}

IMediaResGroup* MediaResManager::MakeGroup(const String& id, const String& path)
{
    Released<IMediaResGroup>& group = groups_[id];
    group.reset(new MediaResGroup(id, path, &names_));
    return group.get();
}

// A group holds paths and names alone, which no update of the library changes.
void MediaResManager::OnLibraryChanged(ITuneHive_AsyncCallbackParam* /*update*/) {}

} // namespace kivo::tunehive
