#include "shell/contracts/common/Text.h"
#include "tests/tree/TreeFixture.h"
#include "tree/DragText.h"
#include "tree/TreeMenus.h"

namespace kivo::tunehive {
namespace {

using Strings = std::vector<String>;

struct PickCase {
    const char* name;
    int from; // -1: a SID that is gone.
    RowMode mode;
    int picked; // -1: none.
};

class PickRowTest : public TreeTest, public testing::WithParamInterface<PickCase> {};

TEST_P(PickRowTest, Picks)
{
    const auto& [name, from, mode, picked] = GetParam();
    const Strings sids = Add(u"playing", {u"a", u"b", u"c"});
    tree_->SetChance([] { return 4U; });
    const String sid = from < 0 ? String(u"zz") : sids[static_cast<std::size_t>(from)];
    const CMediaTreeItem* row = Group(u"playing").PickRow(sid, static_cast<int>(mode));
    if (picked < 0)
        EXPECT_EQ(row, nullptr);
    else
        EXPECT_EQ(row, &Row(u"playing", picked));
}

constexpr PickCase kPickCases[] = {
    {"Same",                   1,  RowMode::Same,         1 },
    {"SameOfAGoneOne",         -1, RowMode::Same,         0 },
    {"Next",                   0,  RowMode::Next,         1 },
    {"NextStopsAtTheEnd",      2,  RowMode::Next,         -1},
    {"NextOfAGoneOne",         -1, RowMode::Next,         0 },
    {"Previous",               2,  RowMode::Previous,     1 },
    {"PreviousStopsAtTheTop",  0,  RowMode::Previous,     -1},
    {"NextWraps",              2,  RowMode::NextWrap,     0 },
    {"PreviousWraps",          0,  RowMode::PreviousWrap, 2 },
    {"PreviousWrapOfAGoneOne", -1, RowMode::PreviousWrap, 0 },
    {"RandomFromARow",         1,  RowMode::Random,       2 },
    {"RandomWithoutARow",      -1, RowMode::Random,       1 },
};
INSTANTIATE_TEST_SUITE_P(Cases, PickRowTest, testing::ValuesIn(kPickCases), [](const auto& row) {
    return std::string(row.param.name);
});

TEST_F(TreeTest, StandsInDisplayOrderAndUnfoldsOnlyAFilledPlaying)
{
    EXPECT_EQ(GroupIds(), (Strings{u"playing", u"mine"}));
    EXPECT_FALSE(Group(u"playing").IsExpanded());
    Add(u"playing", {u"/a"});
    Add(u"mine", {u"/b"});
    Restart();
    EXPECT_TRUE(Group(u"playing").IsExpanded());
    EXPECT_FALSE(Group(u"mine").IsExpanded());
    EXPECT_EQ(Paths(u"mine"), Strings{u"/b"});
}

TEST_F(TreeTest, ADoubleClickElsewherePlaysThroughPlaying)
{
    const Strings sids = Add(u"mine", {u"http://x/1"});
    for (int i = 0; i < 3; ++i)
        Row(u"mine", 0).OnListEvent(tree_.get(), 0, 515, String());
    EXPECT_EQ(Paths(u"playing"), (Strings{u"http://x/1", u"http://x/1", u"http://x/1"}));
    EXPECT_TRUE(Row(u"playing", 2).IsPlaying());
    EXPECT_FALSE(Row(u"playing", 0).IsPlaying());
    EXPECT_EQ(player_.calls.back(), u"set http://x/1");
    EXPECT_EQ(Paths(u"mine").size(), 1U);
}

TEST_F(TreeTest, TheMarkStepsThroughPlaying)
{
    Add(u"playing", {u"a", u"b"});
    String url;
    tree_->GetNextURL(url, 0);
    EXPECT_EQ(url, u"a"); // Nothing was marked.
    tree_->GetNextURL(url, 0);
    EXPECT_EQ(url, u"b");
    tree_->GetNextURL(url, 0);
    EXPECT_EQ(url, u"");
    EXPECT_FALSE(Row(u"playing", 1).IsPlaying());
    tree_->GetNextURL(url, 1);
    tree_->GetPrevURL(url, 1);
    EXPECT_EQ(url, u"b");
    EXPECT_TRUE(Row(u"playing", 1).IsPlaying());
    MediaInfo record;
    EXPECT_EQ(tree_->GetCurrentTrackInfo(record), 1);
    EXPECT_EQ(GetInfoText(record, 0), u"b");
}

TEST_F(TreeTest, ARunOfMovesDrawsOnlyItsEnd)
{
    const Strings sids = Add(u"playing", {u"a", u"b", u"c"});
    // A mark whose track has gone stands on the first row too.
    for (const auto& [start, end] : {std::pair(sids[0], 2), std::pair(String(u"gone"), 1)}) {
        tree_->PlayTrack(u"playing", start);
        String url;
        tree_->BeginMoves();
        tree_->GetNextURL(url, 0);
        EXPECT_TRUE(Row(u"playing", 0).IsPlaying());
        EXPECT_FALSE(Row(u"playing", 1).IsPlaying());
        tree_->GetNextURL(url, 0);
        tree_->EndMoves();
        for (int row = 0; row < 3; ++row)
            EXPECT_EQ(Row(u"playing", row).IsPlaying(), row == end);
    }
}

TEST_F(TreeTest, TheMarkGoesWithItsTrack)
{
    const Strings sids = Add(u"playing", {u"a", u"b"});
    tree_->PlayTrack(u"playing", sids[1]);
    tree_->DeleteTrack(u"playing", sids[0]);
    String url;
    tree_->GetCurrentURL(url);
    EXPECT_EQ(url, u"b");
    tree_->DeleteTrack(u"playing", sids[1]);
    tree_->GetCurrentURL(url);
    EXPECT_EQ(url, u"");

    tree_->PlayTrack(u"playing", Add(u"playing", {u"c"})[0]);
    tree_->ClearCategory(u"playing");
    EXPECT_EQ(tree_->GetPlayingCount(), 0);
    tree_->GetCurrentURL(url);
    EXPECT_EQ(url, u"");
    Add(u"playing", {u"z"});
    tree_->GetNextURL(url, 0);
    EXPECT_EQ(url, u"z");
}

TEST_F(TreeTest, DuplicatesAreRefusedOnlyWhereAsked)
{
    const Strings sids = Add(u"mine", {u"a", u"a", u"b"});
    String sid;
    tree_->AddTrack(u"mine", u"a", u"", /*allowDuplicate=*/0, sid);
    EXPECT_EQ(sid, sids[0]);
    EXPECT_EQ(Paths(u"mine").size(), 3U);
    tree_->RemoveDuplicates(u"mine", sids[1]);
    EXPECT_EQ(Paths(u"mine"), (Strings{u"a", u"b"}));
    EXPECT_EQ(Row(u"mine", 0).GetSID(), sids[1]);
    tree_->AddTrack(u"nowhere", u"a", u"", 1, sid);
    EXPECT_EQ(sid, u"");
}

TEST_F(TreeTest, NewGroupsAreRenamedInPlaceAndSorted)
{
    const String first = NewGroup();
    EXPECT_EQ(tree_->GetEditLimitText(), 20);
    tree_->OnEditFinished(u"Zebra", /*committed=*/true);
    const String second = NewGroup();
    tree_->OnEditFinished(u"apple", /*committed=*/true);
    EXPECT_EQ(GroupIds(), (Strings{u"playing", u"mine", second, first}));
    EXPECT_EQ(Group(second).GetCellText(u"text"), u"apple");
    tree_->RenameCategory(second, u"Zebra"); // Taken.
    tree_->RenameCategory(second, u"My media");
    EXPECT_EQ(Group(second).GetCellText(u"text"), u"apple");
    Group(second).OnEditEnd(u"apple", u"");
    EXPECT_EQ(Group(second).GetCellText(u"text"), u"apple");
    Restart();
    EXPECT_EQ(GroupIds(), (Strings{u"playing", u"mine", second, first}));
}

TEST_F(TreeTest, AGroupIsDeletedAfterAQuestionAndAFixedOneNever)
{
    const String id = NewGroup();
    tree_->DeleteCategory(u"mine");
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].code, 43);
    tree_->DeleteCategory(id); // The answer is no.
    EXPECT_EQ(host_.boxes.back().code, 42);
    EXPECT_EQ(GroupIds().size(), 3U);
    host_.boxAnswers = {1};
    tree_->DeleteCategory(id);
    EXPECT_EQ(GroupIds(), (Strings{u"playing", u"mine"}));
}

TEST_F(TreeTest, PlayingAloneIsSavedAsAGroup)
{
    Add(u"playing", {u"a", u"b"});
    tree_->SaveAsGroup(u"mine");
    EXPECT_EQ(GroupIds().size(), 2U);
    tree_->SaveAsGroup(u"playing");
    ASSERT_EQ(GroupIds().size(), 3U);
    EXPECT_EQ(Paths(GroupIds()[2]), (Strings{u"a", u"b"}));
}

TEST_F(TreeTest, TheSelectionIsPlayedCopiedMovedAndDeleted)
{
    Add(u"playing", {u"p1", u"p2"});
    Add(u"mine", {u"m1", u"m2", u"m3"});
    const String user = NewGroup();
    Select({&Row(u"mine", 0), &Row(u"mine", 2), &Row(u"playing", 1)});
    tree_->CopySelectionTo(user);
    EXPECT_EQ(Paths(user), (Strings{u"p2", u"m1", u"m3"}));
    tree_->PlaySelection();
    EXPECT_EQ(Paths(u"playing"), (Strings{u"p1", u"p2", u"m1", u"m3"}));
    EXPECT_TRUE(Row(u"playing", 2).IsPlaying());
    Select({&Row(u"playing", 3), &Row(u"playing", 1)}); // They are there already.
    tree_->PlaySelection();
    EXPECT_EQ(Paths(u"playing").size(), 4U);
    EXPECT_TRUE(Row(u"playing", 1).IsPlaying());

    Select({&Row(u"mine", 0), &Row(u"mine", 2), &Row(user, 0)});
    tree_->MoveSelectionTo(user); // Its own row stays where it is.
    EXPECT_EQ(Paths(u"mine"), Strings{u"m2"});
    EXPECT_EQ(Paths(user), (Strings{u"p2", u"m1", u"m3", u"m1", u"m3"}));

    Select({&Group(user), &Row(user, 0), &Row(user, 1)});
    tree_->DeleteSelectedTracks();
    EXPECT_EQ(Paths(user), (Strings{u"m3", u"m1", u"m3"}));
    Select({&Row(user, 0)});
    tree_->RemoveSelectedDuplicates();
    EXPECT_EQ(Paths(user), (Strings{u"m3", u"m1"}));
}

TEST_F(TreeTest, WhatHasGoneNeitherMovesNorPlaysNorLosesTracks)
{
    Add(u"playing", {u"a"});
    Add(u"mine", {u"m1", u"m2"});
    tree_->PlayTrack(u"mine", u"zz");
    EXPECT_EQ(Paths(u"playing").size(), 1U);
    EXPECT_TRUE(player_.calls.empty());
    Select({&Row(u"mine", 0), &Row(u"mine", 1)});
    tree_->MoveSelectionTo(u"userzz");
    EXPECT_EQ(Paths(u"mine").size(), 2U);

    const String user = NewGroup();
    const Released<ui::IMenu> menu(Row(u"mine", 0).GetRowMenu(ui::MenuDelegate()));
    ui::IMenu* const toUser = menu->GetEntries()[1]->GetEntries().back().get();
    host_.boxAnswers = {1};
    tree_->DeleteCategory(user);
    Row(u"mine", 0).OnRowCommand(toUser);
    EXPECT_EQ(Paths(u"mine").size(), 2U);
}

TEST_F(TreeTest, RowsShowNameElseTitleAndArtistAndWhetherTheFileIsThere)
{
    folder_.Write("song.mp3", "x");
    const String path = folder_.GetPath("song.mp3");
    GetMediaLibManager()->UpdateMediaInfo(
        path,
        MediaInfo{
            {kInfoTitle,  u"Title" },
            {kInfoArtist, u"Artist"},
            {kInfoLength, u"3725"  }
    },
        0);
    const Strings sids = Add(u"mine", {path, u"/nowhere/gone.mp3", u"http://x/y"});
    CMediaTreeItem& row = Row(u"mine", 0);
    EXPECT_EQ(row.GetCellText(u"text"), u"Title - Artist");
    EXPECT_EQ(row.GetCellText(u"length"), u"62:05");
    EXPECT_EQ(row.GetCellTooltip(u"text"), path);
    row.OnEditEnd(u"Title - Artist", u"mine");
    EXPECT_EQ(row.GetCellText(u"text"), u"mine");
    row.OnEditEnd(u"mine", u"");
    EXPECT_EQ(row.GetCellText(u"text"), u"Title - Artist");

    EXPECT_FALSE(Row(u"mine", 1).HasCell(u"length"));
    EXPECT_EQ(Row(u"mine", 1).GetCellText(u"text"), u"gone.mp3");
    EXPECT_EQ(Row(u"mine", 1).GetCellTooltip(u"text"),
              u"/nowhere/gone.mp3\r\nSTRID_TUNEHIVE_TIP_INVALID_FILE");
    EXPECT_EQ(Row(u"mine", 2).GetCellText(u"text"), u"http://x/y");
    EXPECT_EQ(Row(u"mine", 2).GetCellText(u"length"), u"0:00");

    GetMediaLibManager()->UpdateMediaInfo(path,
                                          MediaInfo{
                                              {kInfoLength, u"5"}
    },
                                          1);
    host_.RunPosted();
    EXPECT_EQ(row.GetCellText(u"length"), u"0:05");
}

TEST_F(TreeTest, BeyondARowWaitsForItsFileWithoutTouchingIt)
{
    SetBeyond(true);
    folder_.Write("song.txt", "x");
    Add(u"mine", {folder_.GetPath("song.txt"), u"/nowhere/gone.txt"});
    GetMediaLibManager()->StopWork(5000); // Nothing is looked up from here on.
    CMediaTreeItem& gone = Row(u"mine", 1);
    EXPECT_EQ(gone.GetCellState(), ui::RowCells::Due);
    EXPECT_EQ(gone.GetViewText(u"text"), u"gone.txt");
    EXPECT_EQ(gone.GetCellState(), ui::RowCells::Provisional);
    gone.OnLookedUp(/*exists=*/false);
    EXPECT_EQ(gone.GetCellState(), ui::RowCells::Made);
    EXPECT_FALSE(gone.HasCell(u"length"));
    EXPECT_EQ(Row(u"mine", 0).GetCellText(u"text"), u"song.txt"); // A direct look builds at once.
    EXPECT_EQ(Row(u"mine", 0).GetCellState(), ui::RowCells::Made);
}

TEST_F(TreeTest, FilesComeByCommandByDropAndByImport)
{
    pickers_.files = {u"/x/1", u"/x/2"};
    tree_->AddByCommand(u"mine", kCommandAddFiles);
    pickers_.url = u"http://x/3";
    pickers_.name = u"three";
    tree_->AddByCommand(u"mine", kCommandAddURL);
    EXPECT_EQ(Paths(u"mine"), (Strings{u"/x/1", u"/x/2", u"http://x/3"}));
    EXPECT_EQ(Row(u"mine", 2).GetCellText(u"text"), u"three");
    tree_->AddByCommand(Row(u"mine", 0).GetSID(), kCommandAddFiles); // No group: nothing.
    EXPECT_EQ(Paths(u"mine").size(), 3U);

    tree_->OnFilesDropped(&Row(u"mine", 0), {u"/x/4"});
    EXPECT_EQ(Paths(u"mine").back(), u"/x/4");
    tree_->OnFilesDropped(&Group(u"playing"), {u"/x/5"});
    EXPECT_EQ(Paths(u"playing"), Strings{u"/x/5"});
    EXPECT_EQ(player_.calls.size(), 0U); // A drop plays nothing.
}

TEST_F(TreeTest, OnlyTracksOfPlayingAreDraggedAndReordered)
{
    EXPECT_EQ(MakeDragText({}), u"KIVO2006TREEDRAG");
    EXPECT_TRUE(ReadDragText(u":::#:playing#:mine#a").empty());
    const Strings sids = Add(u"playing", {u"a", u"b", u"c", u"d"});
    Add(u"mine", {u"m"});
    tree_->ExpandGroup(u"playing");
    String text;
    Select({&Row(u"playing", 1), &Row(u"mine", 0)});
    EXPECT_EQ(tree_->OnDragStart(text), 0);
    Select({&Row(u"playing", 1), &Row(u"playing", 3)});
    ASSERT_EQ(tree_->OnDragStart(text), 1);
    EXPECT_EQ(text, u"KIVO2006TREEDRAG:playing#" + sids[1] + u":playing#" + sids[3]);

    EXPECT_FALSE(tree_->OnDragOver(&Group(u"playing")));
    EXPECT_FALSE(tree_->OnDragOver(&Row(u"mine", 0)));
    EXPECT_TRUE(tree_->OnDragOver(&Row(u"playing", 0)));
    tree_->OnTextDropped(&Row(u"playing", 0), text);
    EXPECT_EQ(Paths(u"playing"), (Strings{u"b", u"d", u"a", u"c"}));
    EXPECT_EQ(tree_->GetSelectedCount(), 2);
    EXPECT_FALSE(tree_->IsOwnDrag());

    // A track that has gone meanwhile cancels the move; foreign pieces only drop out.
    tree_->OnDragOver(&Row(u"playing", 0));
    tree_->OnTextDropped(&Row(u"playing", 0),
                         u"KIVO2006TREEDRAG:playing#" + sids[2] + u":playing#zz");
    EXPECT_EQ(Paths(u"playing"), (Strings{u"b", u"d", u"a", u"c"}));
    tree_->OnDragOver(&Row(u"playing", 0));
    tree_->OnTextDropped(&Row(u"playing", 0), u"x:mine#a:#:playing#" + sids[2]);
    EXPECT_EQ(Paths(u"playing"), (Strings{u"c", u"b", u"d", u"a"}));
}

TEST_F(TreeTest, HostileTextsAreShownAndComeBack)
{
    const Strings texts = {u"<b>bold</b>",
                           u"a\nb\tc\x01",
                           String(u"half") + char16_t(0xD83D),
                           u"\u202Egnp.exe",
                           String(1U << 20U, u'x'),
                           u"\u2067\u061C\uFEFF\uFFFF",
                           u"\"'&amp;&#x41;"};
    for (const String& text : texts) {
        String sid;
        tree_->AddTrack(u"mine", u"/p/" + text, text, 1, sid);
    }
    Restart();
    ASSERT_EQ(Group(u"mine").GetChildCount(), static_cast<int>(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_TRUE(Paths(u"mine")[i] == u"/p/" + texts[i]) << i;
        EXPECT_TRUE(Row(u"mine", static_cast<int>(i)).GetCellText(u"text") == texts[i]) << i;
    }
}

} // namespace
} // namespace kivo::tunehive
