#include "tests/tree/TreeFixture.h"

#include <map>
#include <random>

namespace kivo::tunehive {
namespace {

// A long evening of random work, held against lists of plain values.
class TreeHistoryTest : public TreeTest {
public:
    struct Track {
        String path;
        String name;
        friend bool operator==(const Track&, const Track&) = default;
    };
    using Model = std::map<String, std::vector<Track>>;

    [[nodiscard]] Model Observe() const
    {
        Model model;
        for (const String& id : GroupIds()) {
            std::vector<MediaInfo> records;
            Group(id).GetRecords(records);
            auto& tracks = model[id];
            for (const MediaInfo& record : records)
                tracks.push_back({GetInfoText(record, 0), GetInfoText(record, 1)});
        }
        return model;
    }

    int Below(std::size_t count) { return static_cast<int>(random_() % count); }
    String AnyGroup()
    {
        const auto ids = GroupIds();
        return ids[static_cast<std::size_t>(Below(ids.size()))];
    }
    String SidAt(const String& id, int index) const { return Group(id).GetChild(index)->GetID(); }

    void DoOne()
    {
        const String id = AnyGroup();
        auto& tracks = model_[id];
        if (tracks.empty()) {
            AddSome(id);
            return;
        }
        const int at = Below(tracks.size());
        Track& track = tracks[static_cast<std::size_t>(at)];
        switch (Below(12)) {
        case 0:
        case 1:
        case 2: AddSome(id); break;
        case 3:
            tree_->DeleteTrack(id, SidAt(id, at));
            tracks.erase(tracks.begin() + at);
            break;
        case 4:
            track.name = u"n" + String(1, static_cast<char16_t>(u'a' + Below(26)));
            tree_->RenameTrack(id, SidAt(id, at), track.name);
            break;
        case 5: Copy(id, at); break;
        case 6: Reorder(id); break;
        case 7: DeleteSelection(); break;
        case 8: MoveSelection(); break;
        case 9:
            if (model_.size() < 8)
                model_[NewGroup()];
            break;
        case 10:
            if (Below(20) == 0)
                ClearGroup(id);
            break;
        default:
            if (id.starts_with(u"user") && Below(10) == 0) {
                host_.boxAnswers = {1};
                tree_->DeleteCategory(id);
                model_.erase(id);
            } else if (Below(40) == 0) {
                Restart();
            }
            break;
        }
    }

    void ClearGroup(const String& id)
    {
        tree_->ClearCategory(id);
        model_[id].clear();
    }

    void Copy(const String& id, int at)
    {
        const String target = AnyGroup();
        tree_->CopyTrack(id, SidAt(id, at), target);
        const Track copied = model_[id][static_cast<std::size_t>(at)];
        if (target != id)
            model_[target].push_back(copied);
    }

    void AddSome(const String& id)
    {
        CStringArray paths;
        for (int i = 0; i <= Below(4); ++i) {
            paths.push_back(u"/music/" + String(1, static_cast<char16_t>(u'a' + Below(20))));
            model_[id].push_back({paths.back(), String()});
        }
        tree_->AddPaths(id, paths);
    }

    void Reorder(const String& id)
    {
        auto& tracks = model_[id];
        const int target = Below(tracks.size());
        std::vector<String> sids;
        std::vector<Track> parts[3]; // In front of the target, moved, and from the target on.
        for (int i = 0; i < static_cast<int>(tracks.size()); ++i) {
            const bool isMoved = Below(3) == 0;
            if (isMoved)
                sids.push_back(SidAt(id, i));
            parts[isMoved ? 1 : (i < target ? 0 : 2)].push_back(
                tracks[static_cast<std::size_t>(i)]);
        }
        Group(id).ReorderRows(sids, SidAt(id, target));
        tracks.clear();
        for (const auto& part : parts)
            tracks.insert(tracks.end(), part.begin(), part.end());
    }

    // Selects rows of all groups at random and gives their places.
    std::map<String, std::vector<bool>> SelectSome()
    {
        std::map<String, std::vector<bool>> selected;
        tree_->ClearAllSelected();
        for (const String& id : GroupIds()) {
            auto& flags = selected[id];
            for (int i = 0; i < Group(id).GetChildCount(); ++i) {
                flags.push_back(Below(6) == 0);
                Row(id, i).SetSelected(flags.back() ? 1 : 0);
            }
        }
        return selected;
    }

    void DeleteSelection()
    {
        const auto selected = SelectSome();
        tree_->DeleteSelectedTracks();
        for (const auto& [id, flags] : selected)
            EraseFlagged(model_[id], flags);
    }

    void MoveSelection()
    {
        const auto selected = SelectSome();
        const String target = AnyGroup();
        std::vector<Track> moved;
        for (const String& id : GroupIds()) {
            if (id == target)
                continue;
            for (std::size_t i = 0; i < selected.at(id).size(); ++i) {
                if (selected.at(id)[i])
                    moved.push_back(model_[id][i]);
            }
            EraseFlagged(model_[id], selected.at(id));
        }
        tree_->MoveSelectionTo(target);
        model_[target].insert(model_[target].end(), moved.begin(), moved.end());
    }

    static void EraseFlagged(std::vector<Track>& tracks, const std::vector<bool>& flags)
    {
        std::vector<Track> kept;
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            if (!flags[i])
                kept.push_back(tracks[i]);
        }
        tracks = kept;
    }

protected:
    std::mt19937 random_{11};
    Model model_{
        {u"playing", {}},
        {u"mine",    {}}
    };
};

TEST_F(TreeHistoryTest, RowsGroupsAndFilesAgreeWithPlainLists)
{
    for (int step = 0; step < 20'000; ++step) {
        DoOne();
        if (step % 50 == 0) {
            ASSERT_EQ(Observe(), model_) << "after step " << step;
        }
        for (const auto& [id, tracks] : model_) { // Keeps the lists short enough to be quick.
            if (tracks.size() > 60)
                ClearGroup(id);
        }
    }
    Restart();
    EXPECT_EQ(Observe(), model_);
}

} // namespace
} // namespace kivo::tunehive
