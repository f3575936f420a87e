#include "tree/ArrayAdapter.h"

namespace kivo::tunehive {

void MoveBlock(IArrayAdapter& adapter, const std::set<int>& selection, int target)
{
    adapter.SaveItems(selection);
    int first = -1; // Where the hole in front of the target begins.
    for (int i = 0; i < target; ++i) {
        if (selection.count(i) != 0) {
            if (first < 0)
                first = i;
        } else if (first >= 0) {
            adapter.MoveItem(i, first);
            ++first;
        }
    }
    int last = -1; // Where the hole behind it ends.
    int behind = 0;
    for (int j = adapter.GetCount() - 1; j >= target; --j) {
        if (selection.count(j) != 0) {
            if (behind == 0)
                last = j;
            ++behind;
        } else if (behind != 0) {
            adapter.MoveItem(j, last);
            --last;
        }
    }
    if (first < 0)
        first = last - behind + 1;
    adapter.RestoreItems(first);
}

} // namespace kivo::tunehive
