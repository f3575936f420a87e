#include "shell/ArgumentList.h"

#include "medialib/KivoMediaHelper.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/TuneHiveWindow.h"

#include <cstdlib>

namespace kivo::tunehive {

ArgumentList::ArgumentList(TuneHiveWindow& window)
    : window_(window)
{
}

void ArgumentList::Add(const std::vector<String>& items, bool playFirst)
{
    const std::size_t first = urls_.size();
    for (const String& item : items) {
        if (!UrlIsW(item) && PathIsDirectoryW(item)) {
            CStringArray paths;
            GetMediaHelperInstance().ListMediaFiles(item, paths);
            urls_.insert(urls_.end(), paths.begin(), paths.end());
        } else {
            urls_.push_back(item);
        }
    }
    if (playFirst && first < urls_.size())
        Play(static_cast<int>(first));
}

void ArgumentList::Play(int index)
{
    mark_ = index;
    const String& url = urls_[static_cast<std::size_t>(index)];
    window_.StopPlayer();
    window_.GetPlayerPanel()->ClearPausedFlag();
    if (IMediaPlayer* player = CMediaPlayerManager::GetInstance().GetPlayer(url))
        player->SetURL(url, /*autoplay=*/1);
}

void ArgumentList::GetCurrentURL(String& url)
{
    url = mark_ >= 0 ? urls_[static_cast<std::size_t>(mark_)] : String();
}

void ArgumentList::Move(String& url, int wrap, int step)
{
    const int count = static_cast<int>(urls_.size());
    const int target = mark_ + step;
    if (mark_ < 0)
        mark_ = count > 0 ? 0 : -1;
    else if (target >= 0 && target < count)
        mark_ = target;
    else
        mark_ = wrap != 0 ? (target + count) % count : -1;
    GetCurrentURL(url);
}

void ArgumentList::GetNextURL(String& url, int wrap)
{
    Move(url, wrap, +1);
}

void ArgumentList::GetPrevURL(String& url, int wrap)
{
    Move(url, wrap, -1);
}

void ArgumentList::GetRandomURL(String& url)
{
    // Chance that nobody relies on: which track comes next.
    mark_ = urls_.empty() ? -1 : std::rand() % static_cast<int>(urls_.size()); // NOLINT
    GetCurrentURL(url);
}

int ArgumentList::GetPlayingCount()
{
    return static_cast<int>(urls_.size());
}

int ArgumentList::PlaySelected()
{
    return 0;
}

} // namespace kivo::tunehive
