#include "forms/LyricWnd.h"

#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"

namespace kivo::tunehive {

namespace {

constexpr int kControlId = 3344;

} // namespace

CLyricWnd::CLyricWnd()
{
    SetObjectID(u"LyricWnd");
}

int CLyricWnd::Create(CWnd* parent)
{
    const unsigned style = ui::wndstyle::kChild | ui::wndstyle::kVisible;
    if (CSkinWnd::Create(style, u"KivoMediaLyricWnd", String(), Rect(), parent, kControlId) == 0)
        return 0;
    if (auto* manager = CMediaPlayerManager::FindInstance())
        manager->SetParentWnd(this);
    return 1;
}

void CLyricWnd::SetVisible(int visible)
{
    CSkinWnd::SetVisible(visible);
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer())
        player->Show(visible);
}

int CLyricWnd::IsSelfRender() const
{
    return 0;
}

void CLyricWnd::CalculateBounds(const Rect& place)
{
    CSkinWnd::CalculateBounds(place);
    const Rect bounds = GetBoundsRect();
    // By the manager, which keeps them: the next track's player then has its size from the start.
    if (auto* manager = CMediaPlayerManager::FindInstance())
        manager->SetBounds(bounds.left, bounds.top, bounds.right, bounds.bottom);
}

} // namespace kivo::tunehive
