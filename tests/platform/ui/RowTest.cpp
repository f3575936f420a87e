#include "shell/contracts/ui/Canvas.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/platform/ui/Rows.h"

#include <gtest/gtest.h>

namespace kivo::ui {
namespace {

// A row of three cells, laid out as a track's.
class TrackRow : public TestRow {
public:
    using TestRow::TestRow;

    void BuildRow() override
    {
        Clear();
        AddPhoto(0, u"icon", u"Icon", u"playing.png", u"", {}, 0);
        AddLabel(1, u"length", u"Length", u"3:25", u"3:25", {}, 1, 1, 0);
        AddLabel(2, u"text", u"Text", u"Title", u"/music/a.mp3", {}, 1, 1, 0);
    }

    void ReposControls() override
    {
        TestRow::ReposControls();
        SetContentInset(2);
        SetMargins(2, 0, 15, 0);
        CSkinCell* length = GetObjectW(u"length");
        length->SetAnchorStyle(103);
        length->SetBounds(0, 0, 42, 10);
        length->SetAlignmentHor(4);
        GetObjectW(u"icon")->SetAnchorStyle(102);
        GetObjectW(u"icon")->SetBounds(0, 0, 12, 10);
        GetObjectW(u"text")->SetAnchorStyle(106);
        EXPECT_EQ(GetObjectW(u"none"), nullptr);
    }
};

// A row whose cells need a file, and that says which kind of look it had.
class LazyRow : public TestRow {
public:
    using TestRow::TestRow;

    void BuildRow() override { MarkDue(); }

    void Fill(const String& text)
    {
        Clear();
        AddLabel(0, u"text", u"Text", text, u"", {}, 1, 1, 0);
    }

    int direct = 0;
    int view = 0;

protected:
    void MakeCells() override
    {
        ++direct;
        Fill(u"from the file");
    }
    void MakeViewCells() override
    {
        ++view;
        Fill(u"from memory");
    }
    String MakeTooltip(const String& /*cellId*/) override { return u"made when shown"; }
};

struct FillCanvas final : ICanvas {
    void FillRect(const Rect& rect, COLORREF colour) override { fills.emplace_back(rect, colour); }
    void DrawChannel(const Rect& /*channel*/, int /*played*/) override {}
    [[nodiscard]] bool HasThumb(int /*hover*/) const override { return true; }
    void DrawThumb(const Rect& /*thumb*/, int /*hover*/, bool /*ghost*/) override {}
    std::vector<std::pair<Rect, COLORREF>> fills;
};

class Rows : public testing::Test {
protected:
    ~Rows() override { CSkinManager::GetInstance()->SetRightToLeft(/*on=*/false); }

    template <class Row>
    Row* Add()
    {
        auto* row = new Row(&tree_, u"row");
        group_->AddTreeNode(row);
        row->BuildRow();
        return row;
    }

    TestTree tree_;
    TestRow* group_ = tree_.AddGroup(u"G", {});
};

TEST_F(Rows, CellsStandWhereTheAnchorsPutThem)
{
    auto* row = Add<TrackRow>();
    struct Case {
        bool mirrored = false;
        Rect icon, length, text;
    };
    // A track's indent of 18, its inset of 2, the margin of 15 at the end.
    constexpr Case kCases[] = {
        {false, {20, 0, 32, 28},   {243, 0, 285, 28}, {32, 0, 243, 28}},
        {true,  {268, 0, 280, 28}, {15, 0, 57, 28},   {57, 0, 268, 28}},
    };
    for (const Case& expected : kCases) {
        CSkinManager::GetInstance()->SetRightToLeft(expected.mirrored);
        const std::vector<CSkinCell>& cells = row->LayOutForView({300, 28});
        ASSERT_EQ(cells.size(), 3U);
        EXPECT_EQ(cells[0].GetBoundsRect(), expected.icon);
        EXPECT_EQ(cells[1].GetBoundsRect(), expected.length);
        EXPECT_EQ(cells[2].GetBoundsRect(), expected.text);
        EXPECT_EQ(cells[1].GetAlignmentHor(), align::kTrailing);
        EXPECT_EQ(cells[2].GetText(), u"Title");
        EXPECT_EQ(cells[2].GetConfig().labelFlag, 1);
    }
    EXPECT_EQ(row->GetObjectW(u"text"), nullptr); // The pad is another row's by now.
    EXPECT_EQ(row->GetMargins(), (Rect{2, 0, 15, 0}));
}

TEST_F(Rows, CellsAreReadAndChangedById)
{
    auto* row = Add<TrackRow>();
    EXPECT_EQ(row->GetCellCount(), 3);
    EXPECT_EQ(row->GetCellText(u"length"), u"3:25");
    EXPECT_EQ(row->GetCellTooltip(u"text"), u"/music/a.mp3");
    EXPECT_EQ(row->GetCellLookAt(3), nullptr);
    EXPECT_EQ(row->GetCellText(u"none"), u"");
    row->ModifyPhoto(u"icon", u"Icon", u"other.png", u"", {16, 0, 16, 16});
    row->ModifyPhoto(u"text", u"Text", u"no photo", u"", {});
    EXPECT_EQ(row->GetCellLook(u"icon")->picture, u"other.png");
    EXPECT_EQ(row->GetCellLook(u"icon")->source, (PictureRect{16, 0, 16, 16}));
    // Equal looks are one, whatever the row.
    EXPECT_EQ(row->GetCellLook(u"length"), Add<TrackRow>()->GetCellLook(u"length"));
}

TEST_F(Rows, TextsOfAnyKindComeBackAsTheyWent)
{
    auto* row = Add<TestRow>();
    for (const String& text : {String(),
                               String(u"\xD800 lone"),
                               String(u"a\0b", 3),
                               String(1U << 20, u'x'),
                               String(u"\U0001F3B5")}) {
        row->Clear();
        row->AddLabel(0, u"text", u"Text", text, text + u"!", {}, 0, 0, 0);
        EXPECT_TRUE(row->GetCellText(u"text") == text);
    }
    row->AddLabel(99, u"more", u"Text", u"x", u"", {}, 0, 0, 0);
    row->AddLabel(-1, u"last", u"Text", u"x", u"", {}, 0, 0, 0);
    EXPECT_EQ(row->GetCellLookAt(2)->id, u"last");
}

TEST_F(Rows, TheViewNeverMakesARowTouchItsFileAndADirectLookDoesAtOnce)
{
    auto* row = Add<LazyRow>();
    EXPECT_EQ(row->LayOutForView({300, 28})[0].GetText(), u"from memory");
    EXPECT_EQ(row->GetViewText(u"text"), u"from memory");
    EXPECT_TRUE(row->HasViewCell(u"text"));
    EXPECT_EQ(row->GetViewTooltip(u"text"), u"made when shown");
    EXPECT_EQ(row->GetCellState(), RowCells::Provisional);
    EXPECT_TRUE(row->IsDue());
    EXPECT_EQ(row->view, 1);
    EXPECT_EQ(row->direct, 0);
    EXPECT_TRUE(row->HasCell(u"text")); // Direct, though the view has looked before.
    EXPECT_FALSE(row->IsDue());
    EXPECT_EQ(row->GetViewText(u"text"), u"from the file");
    EXPECT_EQ(row->direct, 1);
    row->BuildRow();
    EXPECT_TRUE(row->IsDue());
    EXPECT_EQ(row->GetCellText(u"text"), u"from the file");
    EXPECT_EQ(row->GetCellTooltip(u"text"), u"made when shown");
    EXPECT_EQ(row->direct, 2);
    row->BuildNow(); // Once more, whatever there is.
    EXPECT_EQ(row->direct, 3);
}

TEST_F(Rows, OnlyASelectedRowIsFilled)
{
    auto* row = Add<TestRow>();
    EXPECT_EQ(row->LayOutForView({300, 28}).size(), 1U);
    FillCanvas canvas;
    row->RenderSelf(canvas);
    EXPECT_TRUE(canvas.fills.empty());
    row->SetSelected(1);
    row->RenderSelf(canvas);
    ASSERT_EQ(canvas.fills.size(), 1U);
    EXPECT_EQ(canvas.fills[0], (std::pair<Rect, COLORREF>({0, 0, 300, 28}, 0xFEEEDF)));
}

} // namespace
} // namespace kivo::ui
