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

// Moved in an array, and in a window of a longer one, which stays as it is around it.
std::string Move(const std::string& letters, const std::set<int>& selection, int target)
{
    CPtrArray rows = ToRows(letters);
    CTreeAdapter adapter(&rows);
    MoveBlock(adapter, selection, target);
    CPtrArray longer = ToRows("<<" + letters + ">");
    CListAdapter window(&longer, 2, static_cast<int>(letters.size()));
    MoveBlock(window, selection, target);
    EXPECT_EQ(ToLetters(longer), "<<" + ToLetters(rows) + ">");
    return ToLetters(rows);
}

TEST(MoveBlockTest, BringsTheSelectedInFrontOfTheTarget)
{
    EXPECT_EQ(Move("abcde", {1, 3}, 4), "acbde");
    EXPECT_EQ(Move("abcd", {3}, 1), "adbc");
    EXPECT_EQ(Move("abcd", {1, 3}, 1), "abdc") << "a target inside the selection";
    EXPECT_EQ(Move("abcd", {0, 1}, 2), "abcd") << "in place already";
    EXPECT_EQ(Move("abc", {0, 1, 2}, 1), "abc");
    EXPECT_EQ(Move("abc", {}, 1), "abc");
}

TEST(MoveBlockTest, AgreesWithASimpleMoveInThousandsOfCases)
{
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        const std::string letters = std::string("ABCDEFGHIJKLMNOPQRST").substr(random() % 20);
        const auto count = static_cast<int>(letters.size());
        const int target = static_cast<int>(random() % letters.size());
        std::set<int> selection;
        std::string parts[3]; // In front of the target, selected, and from the target on.
        for (int i = 0; i < count; ++i) {
            const bool isSelected = random() % 3 == 0;
            if (isSelected)
                selection.insert(i);
            parts[isSelected ? 1 : (i < target ? 0 : 2)] += letters[static_cast<std::size_t>(i)];
        }
        ASSERT_EQ(Move(letters, selection, target), parts[0] + parts[1] + parts[2])
            << letters << " target " << target;
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
