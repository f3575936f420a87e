#pragma once

#include "shell/contracts/framework/Arrays.h"
#include "tree/ArrayAdapter.h"

#include <vector>

namespace kivo::tunehive {

// The child array of a category. Thread: user interface.
class CTreeAdapter final : public IArrayAdapter {
public:
    explicit CTreeAdapter(CPtrArray* rows); // Borrowed.

    [[nodiscard]] int GetCount() override;
    void MoveItem(int from, int to) override;
    void SaveItems(const std::set<int>& indices) override;
    void RestoreItems(int start) override;

private:
    [[nodiscard]] void*& At(int index);

    CPtrArray* rows_;
    std::vector<void*> saved_;
};

// A window of a longer array: `count` rows from `base` on; indices count from the window's start.
// Thread: user interface.
class CListAdapter final : public IArrayAdapter {
public:
    CListAdapter(CPtrArray* rows, int base, int count); // Borrowed.

    [[nodiscard]] int GetCount() override;
    void MoveItem(int from, int to) override;
    void SaveItems(const std::set<int>& indices) override;
    void RestoreItems(int start) override;

private:
    [[nodiscard]] void*& At(int index);

    CPtrArray* rows_;
    int base_;
    int count_;
    std::vector<void*> saved_;
};

} // namespace kivo::tunehive
