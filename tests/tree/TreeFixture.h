#pragma once

#include "medialib/IMediaLibManager.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "player/MediaPlayerManager.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedPlayer.h"
#include "tests/support/TempFolder.h"
#include "tree/ITrackPickers.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreeItem.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kivo::tunehive {

// Dialogs that answer what a test has set, or were cancelled.
class ScriptedPickers final : public ITrackPickers {
public:
    int ShowAddFileForm(CWnd* /*parent*/, String& target) override
    {
        target = group;
        return group.empty() ? 0 : 1;
    }
    int ShowAddURLForm(CWnd* /*parent*/, String& target, String& address, String& title) override
    {
        if (url.empty())
            return 0;
        if (!group.empty())
            target = group;
        address = url;
        title = name;
        return 1;
    }
    int PickMediaFiles(CWnd* /*parent*/, CStringArray& paths) override
    {
        paths = files;
        return files.empty() ? 0 : 1;
    }
    int PickFolder(CWnd* /*parent*/, String& path) override
    {
        path = folder;
        return folder.empty() ? 0 : 1;
    }

    String group;
    String url;
    String name;
    CStringArray files;
    String folder;
};

// A tree over real groups and a real library in a folder of its own, without a window.
class TreeTest : public testing::Test {
public:
    TreeTest()
    {
        auto* language = common::CMutiLanSupport::GetInstance();
        language->Clear();
        language->AddText(u"STRID_TUNEHIVE_NOWPLAYING", u"Playing");
        language->AddText(u"STRID_TUNEHIVE_MYMEDIA", u"My media");
        language->AddText(u"STRID_TUNEHIVE_HOT", u"Hot");
        language->AddText(u"STRID_TUNEHIVE_NEW", u"New");
        Start();
        CMediaPlayerManager::GetInstance().AddPlayer(&player_);
    }
    ~TreeTest() override
    {
        Stop();
        CMediaPlayerManager::GetInstance().Destroy();
        SetBeyond(false);
    }

    void Start()
    {
        ASSERT_EQ(GetMediaResManager()->Init(folder_.GetPath() + u"tunehive/"), 1);
        ASSERT_EQ(GetMediaLibManager()->Initialize(folder_.GetPath() + u"tunehive/lib/"), 1);
        tree_.reset(new CMediaTree(&pickers_));
        tree_->Create(nullptr);
        tree_->LoadTree();
        tree_->SetCanDrag(1);
        tree_->SetCanDrop(1);
    }
    // As the program stops: the page saves the groups, then all comes down.
    void Stop()
    {
        tree_->SaveAllGroups();
        tree_.reset();
        host_.ReleasePosted();
        DestroyMediaResManager();
        DestroyMediaLibManager();
    }
    void Restart()
    {
        Stop();
        Start();
    }

    [[nodiscard]] CMediaTreeCategory& Group(const String& id) const
    {
        CMediaTreeCategory* category = tree_->FindCategory(id);
        if (category == nullptr)
            throw std::runtime_error("no such group row");
        return *category;
    }
    [[nodiscard]] std::vector<String> GroupIds() const
    {
        std::vector<String> ids;
        ids.reserve(static_cast<std::size_t>(tree_->GetRoot()->GetChildCount()));
        for (int i = 0; i < tree_->GetRoot()->GetChildCount(); ++i)
            ids.push_back(tree_->GetRoot()->GetChild(i)->GetID());
        return ids;
    }
    [[nodiscard]] std::vector<String> Paths(const String& id) const
    {
        std::vector<String> paths;
        const CMediaTreeCategory& group = Group(id);
        paths.reserve(static_cast<std::size_t>(group.GetChildCount()));
        for (int i = 0; i < group.GetChildCount(); ++i)
            paths.push_back(group.GetPath(group.GetChild(i)->GetID()));
        return paths;
    }
    // Adds tracks that need no file and gives their rows' SIDs.
    std::vector<String> Add(const String& id, const std::vector<String>& paths)
    {
        std::vector<String> sids;
        for (const String& path : paths)
            tree_->AddTrack(id, path, String(), /*allowDuplicate=*/1, sids.emplace_back());
        return sids;
    }
    [[nodiscard]] CMediaTreeItem& Row(const String& id, int index) const
    {
        return *static_cast<CMediaTreeItem*>(Group(id).GetChild(index));
    }
    void Select(const std::vector<ui::CSkinListItem*>& rows)
    {
        tree_->ClearAllSelected();
        for (ui::CSkinListItem* row : rows)
            row->SetSelected(1);
    }
    // Its name is being edited then.
    String NewGroup()
    {
        tree_->NewGroup();
        return tree_->GetEditedRow()->GetID();
    }

protected:
    test::FakeHost host_;
    test::TempFolder folder_;
    test::ScriptedPlayer player_;
    ScriptedPickers pickers_;
    Released<CMediaTree> tree_;
};

} // namespace kivo::tunehive
