#include "host/Pages.h"

#include "shell/contracts/base/IPluginWindow.h"

#include <algorithm>

namespace kivo::host {

void Pages::SetView(IPageView* view)
{
    view_ = view;
    if (view_ == nullptr)
        return;
    for (const Page& page : pages_)
        view_->OnPageAdded(page.window);
}

void Pages::AddPluginPage(IPluginWindow* window)
{
    if (window == nullptr || Find(window) != nullptr)
        return;
    pages_.push_back({window, false});
    if (view_ != nullptr)
        view_->OnPageAdded(window);
}

void Pages::RemovePluginPage(IPluginWindow* window)
{
    Page* const page = Find(window);
    if (page == nullptr)
        return;
    Close(*page);
    if (view_ != nullptr)
        view_->OnPageRemoved(window);
    if (shown_ == window)
        shown_ = nullptr;
    std::erase_if(pages_, [window](const Page& one) { return one.window == window; });
}

int Pages::IsPluginPageShown(IPluginWindow* window)
{
    return window != nullptr && window == shown_ ? 1 : 0;
}

void Pages::ShowPluginPage(IPluginWindow* window)
{
    if (window != nullptr && Find(window) == nullptr)
        return;
    IPluginWindow* const before = shown_;
    shown_ = window;
    if (before != window && before != nullptr)
        before->ShowPage(/*visible=*/0);
    if (before != window && window != nullptr)
        window->ShowPage(/*visible=*/1);
    if (view_ != nullptr)
        view_->OnPageShown(window); // Lays out what is visible now.
}

void Pages::UpdatePluginPage(IPluginWindow* window)
{
    if (view_ != nullptr && Find(window) != nullptr)
        view_->OnPageChanged(window);
}

void Pages::CreateAll()
{
    for (Page& page : pages_) {
        if (!page.isCreated)
            page.window->CreatePage();
        page.isCreated = true;
    }
}

void Pages::CloseAll()
{
    for (Page& page : pages_)
        Close(page);
}

IPluginWindow* Pages::GetFirst() const
{
    return pages_.empty() ? nullptr : pages_.front().window;
}

std::vector<IPluginWindow*> Pages::GetAll() const
{
    std::vector<IPluginWindow*> windows;
    for (const Page& page : pages_)
        windows.push_back(page.window);
    return windows;
}

Pages::Page* Pages::Find(const IPluginWindow* window)
{
    const auto found = std::find_if(
        pages_.begin(), pages_.end(), [window](const Page& page) { return page.window == window; });
    return found != pages_.end() ? &*found : nullptr;
}

void Pages::Close(Page& page)
{
    if (!page.isCreated)
        return;
    page.isCreated = false;
    page.window->ClosePage();
}

} // namespace kivo::host
