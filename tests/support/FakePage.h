#pragma once

#include "player/IPage.h"

#include <algorithm>
#include <vector>

namespace kivo::test {

// A page without windows: a list of addresses with a mark, and notes of what panels asked for.
class FakePage final : public tunehive::IPage, public tunehive::IPlayingList {
public:
    tunehive::IPlayingList* GetPlayingList() override { return this; }
    int GetCurrentTrackInfo(tunehive::MediaInfo& info) override
    {
        info = {
            {0, Current()  },
            {1, currentName}
        };
        return 1;
    }
    int SetPaneMode(int mode) override
    {
        paneModes.push_back(mode);
        paneVisible = mode != 0;
        return paneVisible ? 1 : 0;
    }
    int IsPaneVisible() override { return paneVisible ? 1 : 0; }
    void ShowVolForm(int action, int /*x*/, int /*y*/) override { volActions.push_back(action); }
    void ForgetVolForm() override { ++volFormsForgotten; }
    void OnVolFormShown(bool shown) override { volFormShown = shown; }
    int GetPlayState() override { return playState; }
    int PlaySelectedElsewhere() override
    {
        ++playedElsewhere;
        return selectedElsewhere;
    }
    void ShowAddMenu() override { ++addMenus; }
    void LayOut() override { ++layouts; }
    IPlugin* GetPlugin() override { return nullptr; }

    void GetCurrentURL(String& url) override { url = Current(); }
    void GetNextURL(String& url, int wrap) override { Move(url, wrap, +1); }
    void GetPrevURL(String& url, int wrap) override { Move(url, wrap, -1); }
    void GetRandomURL(String& url) override
    {
        mark = rows.empty() ? -1 : static_cast<int>(randomRow % rows.size());
        url = Current();
    }
    int GetPlayingCount() override { return static_cast<int>(rows.size()); }
    int PlaySelected() override
    {
        ++playedSelected;
        return selected;
    }

    [[nodiscard]] String Current() const
    {
        return mark >= 0 ? rows[static_cast<std::size_t>(mark)] : String();
    }

    std::vector<String> rows;
    int mark = -1;
    std::size_t randomRow = 0;
    String currentName;
    bool paneVisible = false;
    int playState = 0;
    int selected = 0;
    int selectedElsewhere = 0;
    std::vector<int> paneModes;
    std::vector<int> volActions;
    int volFormsForgotten = 0;
    bool volFormShown = false;
    int playedSelected = 0;
    int playedElsewhere = 0;
    int addMenus = 0;
    int layouts = 0;

private:
    void Move(String& url, int wrap, int step)
    {
        const int count = static_cast<int>(rows.size());
        if (count == 0)
            mark = -1;
        else if (mark < 0)
            mark = 0;
        else if (wrap != 0)
            mark = (mark + step + count) % count;
        else
            mark = mark + step < count ? std::max(mark + step, -1) : -1;
        url = Current();
    }
};

} // namespace kivo::test
