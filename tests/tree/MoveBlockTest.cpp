#include "shell/contracts/framework/Exception.h"
#include "tree/TreeAdapter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>

namespace kivo::tunehive {
namespace {

CPtrArray ToRows(const std::string& letters)
{
    CPtrArray rows;
    for (const char letter : letters)
        rows.push_back(reinterpret_cast<void*>(static_cast<std::uintptr_t>(letter))); // NOLINT
    return rows;
}

std::string ToLetters(const CPtrArray& rows)
{
    std::string letters;
    for (void* row : rows)
        letters += static_cast<char>(reinterpret_cast<std::uintptr_t>(row));
    return letters;
}

struct MoveCase {
    const char* name;
    const char* before;
    std::set<int> selection;
    int target;
    const char* after;
};

class MoveBlockTest : public testing::TestWithParam<MoveCase> {};

TEST_P(MoveBlockTest, Moves)
{
    const MoveCase& row = GetParam();
    CPtrArray rows = ToRows(row.before);
    CTreeAdapter adapter(&rows);
    MoveBlock(adapter, row.selection, row.target);
    EXPECT_EQ(ToLetters(rows), row.after);

    // The same in a window of a longer array, which stays as it is around it.
    CPtrArray longer = ToRows(std::string("<<") + row.before + ">");
    CListAdapter window(&longer, 2, static_cast<int>(std::string(row.before).size()));
    MoveBlock(window, row.selection, row.target);
    EXPECT_EQ(ToLetters(longer), std::string("<<") + row.after + ">");
}

INSTANTIATE_TEST_SUITE_P(Cases,
                         MoveBlockTest,
                         testing::Values(
                             MoveCase{
                                 "BothSidesToTheLast", "abcde", {1, 3},
                                   4, "acbde"
},
                             MoveCase{"TheLastUpwards", "abcd", {3}, 1, "adbc"},
                             MoveCase{"ATargetInsideTheSelection", "abcd", {1, 3}, 1, "abdc"},
                             MoveCase{"InPlaceAlready", "abcd", {0, 1}, 2, "abcd"},
                             MoveCase{"ToTheFront", "abcd", {2, 3}, 0, "cdab"},
                             MoveCase{"All", "abc", {0, 1, 2}, 1, "abc"},
                             MoveCase{"None", "abc", {}, 1, "abc"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(MoveBlockTest, AgreesWithASimpleMoveInThousandsOfCases)
{
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        const int count = 1 + static_cast<int>(random() % 20);
        std::string letters;
        for (int i = 0; i < count; ++i)
            letters += static_cast<char>('A' + i);
        std::set<int> selection;
        for (int i = 0; i < count; ++i) {
            if (random() % 3 == 0)
                selection.insert(i);
        }
        const int target = static_cast<int>(random() % static_cast<unsigned>(count));

        std::string expected;
        std::string block;
        for (const int i : selection)
            block += letters[static_cast<std::size_t>(i)];
        for (int i = 0; i < count; ++i) {
            if (i == target)
                expected += block;
            if (selection.count(i) == 0)
                expected += letters[static_cast<std::size_t>(i)];
        }
        CPtrArray rows = ToRows(letters);
        CTreeAdapter adapter(&rows);
        MoveBlock(adapter, selection, target);
        ASSERT_EQ(ToLetters(rows), expected) << letters << " target " << target;
    }
}

TEST(TreeAdapterTest, AnIndexOutsideRaisesThePlatformsException)
{
    CPtrArray rows = ToRows("ab");
    CTreeAdapter adapter(&rows);
    CListAdapter window(&rows, 1, 1);
    for (const auto& act : {std::function<void()>([&] { adapter.MoveItem(2, 0); }),
                            std::function<void()>([&] { adapter.SaveItems({-1}); }),
                            std::function<void()>([&] { window.MoveItem(0, 1); })}) {
        try {
            act();
            ADD_FAILURE() << "nothing was raised";
        } catch (CSimpleException* exception) {
            exception->Delete();
        }
    }
    EXPECT_EQ(ToLetters(rows), "ab");
}

} // namespace
} // namespace kivo::tunehive
