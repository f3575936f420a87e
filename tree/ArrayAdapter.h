#pragma once

#include <set>

namespace kivo::tunehive {

// A sequence of rows as the block move sees it. Nothing is owned, made or freed by a move. An index
// outside the sequence raises a CSimpleException. Thread: user interface.
class IArrayAdapter {
public:
    [[nodiscard]] virtual int GetCount() = 0;
    virtual void MoveItem(int from, int to) = 0; // The element of `from` also stands at `to`.
    virtual void SaveItems(const std::set<int>& indices) = 0; // In ascending order.
    virtual void RestoreItems(int start) = 0; // Writes the saved elements from there on.

protected:
    ~IArrayAdapter() = default;
};

// Brings the selected elements, in their present order, together directly in front of the target
// element; all others keep their order. One pass.
void MoveBlock(IArrayAdapter& adapter, const std::set<int>& selection, int target);

} // namespace kivo::tunehive
