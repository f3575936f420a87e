#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::ui {

// A page among the tabs of a form: a panel with a key and a tip. It belongs to its creator: who
// puts it into a form by RegisterControl takes it out again before it is released.
// Thread: user interface.
class KIVO_API ITabLayoutPage : public CSkinObject {
public:
    ITabLayoutPage();
    ~ITabLayoutPage() override;

    virtual void ShowPage(int visible) = 0; // The user goes to the page or leaves it.
    virtual int CreatePage() = 0;           // Makes its content, once.
    virtual int ClosePage() = 0;            // The last call before it is released.

    void SetPageKey(const String& key) { pageKey_ = key; }
    [[nodiscard]] const String& GetPageKey() const { return pageKey_; }
    void SetPageTip(const String& tip) { pageTip_ = tip; }
    [[nodiscard]] const String& GetPageTip() const { return pageTip_; }

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    String pageKey_;
    String pageTip_;
};

} // namespace kivo::ui
