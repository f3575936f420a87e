#pragma once

#include "shell/contracts/base/IPluginWindowLayout.h"

#include <vector>

namespace kivo {
class IPluginWindow;
}

namespace kivo::host {

// Shows the pages that stand in the list; told of each change. Thread: user interface.
class IPageView {
public:
    virtual void OnPageAdded(IPluginWindow* page) = 0;   // Its content doesn't exist yet.
    virtual void OnPageRemoved(IPluginWindow* page) = 0; // Before it goes.
    virtual void OnPageShown(IPluginWindow* page) = 0;
    virtual void OnPageChanged(IPluginWindow* page) = 0; // Its tip.

protected:
    ~IPageView() = default;
};

// The pages of the plug-ins, in the order of their registration, and which of them is in front.
// Thread: user interface.
class Pages final : public IPluginWindowLayout {
public:
    void SetView(IPageView* view); // Borrowed; hears of the pages that are there. Null: none.

    void AddPluginPage(IPluginWindow* window) override; // A second time changes nothing.
    void RemovePluginPage(IPluginWindow* window) override;
    [[nodiscard]] int IsPluginPageShown(IPluginWindow* window) override;
    void ShowPluginPage(IPluginWindow* window) override; // Null: a page of the host's own.
    void UpdatePluginPage(IPluginWindow* window) override;

    void CreateAll(); // Makes the content of each page that has none yet.
    void CloseAll();  // Closes each page that has content; the pages stay in the list.

    [[nodiscard]] IPluginWindow* GetFirst() const; // Null: there is none.
    [[nodiscard]] std::vector<IPluginWindow*> GetAll() const;

private:
    struct Page {
        IPluginWindow* window;
        bool isCreated;
    };
    [[nodiscard]] Page* Find(const IPluginWindow* window);
    static void Close(Page& page);

    std::vector<Page> pages_;
    IPluginWindow* shown_ = nullptr;
    IPageView* view_ = nullptr;
};

} // namespace kivo::host
