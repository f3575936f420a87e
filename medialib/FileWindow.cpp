#include "medialib/FileWindow.h"

namespace kivo::tunehive {

CFileWindow::CFileWindow(const CBinaryFile& file)
    : file_(file)
    , buffer_(std::make_unique_for_overwrite<char[]>(kSize))
{
}

void CFileWindow::Fill()
{
    start_ = position_;
    size_ = file_.ReadAt(start_, buffer_.get(), kSize);
}

} // namespace kivo::tunehive
