#include "tree/TreeAdapter.h"

#include "shell/contracts/framework/Exception.h"

namespace kivo::tunehive {

namespace {

void*& ElementAt(CPtrArray& rows, int index)
{
    if (index < 0 || index >= static_cast<int>(rows.size()))
        throw new CSimpleException; // As the platform's arrays do; whoever catches it deletes it.
    return rows[static_cast<std::size_t>(index)];
}

} // namespace

CTreeAdapter::CTreeAdapter(CPtrArray* rows)
    : rows_(rows)
{
}

void*& CTreeAdapter::At(int index)
{
    return ElementAt(*rows_, index);
}

int CTreeAdapter::GetCount()
{
    return static_cast<int>(rows_->size());
}

void CTreeAdapter::MoveItem(int from, int to)
{
    At(to) = At(from);
}

void CTreeAdapter::SaveItems(const std::set<int>& indices)
{
    saved_.clear();
    for (const int index : indices)
        saved_.push_back(At(index));
}

void CTreeAdapter::RestoreItems(int start)
{
    for (void* row : saved_)
        At(start++) = row;
    saved_.clear();
}

CListAdapter::CListAdapter(CPtrArray* rows, int base, int count)
    : rows_(rows)
    , base_(base)
    , count_(count)
{
}

void*& CListAdapter::At(int index)
{
    return ElementAt(*rows_, base_ + index);
}

int CListAdapter::GetCount()
{
    return count_;
}

void CListAdapter::MoveItem(int from, int to)
{
    At(to) = At(from);
}

void CListAdapter::SaveItems(const std::set<int>& indices)
{
    saved_.clear();
    for (const int index : indices)
        saved_.push_back(At(index));
}

void CListAdapter::RestoreItems(int start)
{
    for (void* row : saved_)
        At(start++) = row;
    saved_.clear();
}

} // namespace kivo::tunehive
