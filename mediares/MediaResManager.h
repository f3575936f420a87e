#pragma once

#include "mediares/GroupInfo.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "mediares/SIDGenerator.h"
#include "shell/contracts/base/Released.h"

#include <map>

namespace kivo::tunehive {

class ITuneHive_AsyncCallbackParam;

// Thread: user interface.
class MediaResManager : public IMediaResManager {
public:
    MediaResManager() = default;
    MediaResManager(const MediaResManager&) = delete;
    MediaResManager& operator=(const MediaResManager&) = delete;

    int Init(const String& folder) override;
    int Uninit() override;
    void GetGroupIDs(std::set<String>& ids) override;
    void GetSortedGroupIDs(std::vector<String>& ids) override;
    int RemoveGroup(const String& id) override;
    int RenameGroup(const String& id, const String& name) override;
    IMediaResGroup* GetGroup(const String& id) override;
    String CreateGroup(const String& name) override;
    String GetNewGroupName() override;
    int CompareGroups(const String& a, const String& b) override;
    ~MediaResManager() override; // As Uninit.
    void Release() override;

private:
    void LoadGroups();
    IMediaResGroup* MakeGroup(const String& id, const String& path);
    void OnLibraryChanged(ITuneHive_AsyncCallbackParam* update);

    String folder_;
    int isInitialised_ = 0;
    CGroupInfo names_; // Outlives the groups, which point at it.
    std::map<String, Released<IMediaResGroup>> groups_;
    SIDGenerator idGenerator_; // Of the SIDs behind "user".
};

} // namespace kivo::tunehive
