// The state sign of CPlayerPanel: what contacts see of the track that plays.

#include "medialib/IMediaLibManager.h"
#include "player/IMediaPlayer.h"
#include "player/IPage.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "player/PlayerState.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/host/KivoApi.h"

namespace kivo::tunehive {

namespace {

// Keys of the sign's record.
constexpr std::uint32_t kSignURL = 0;
constexpr std::uint32_t kSignTitle = 1;

constexpr std::int32_t kStoredName = 1; // Key of a group's stored track record.

} // namespace

void CPlayerPanel::PublishSign()
{
    if (_KivoAPI_IsShowMediaState() == 0 || published_ || page_ == nullptr)
        return;
    published_ = true;
    MediaInfo stored;
    page_->GetCurrentTrackInfo(stored);
    String url;
    if (IPlayingList* list = GetList())
        list->GetCurrentURL(url);
    const String name = GetInfoText(stored, kStoredName);
    const String title = name.empty() ? MakeSignTitle(url) : name;
    Property sign;
    sign.SetText(kSignURL, url);
    sign.SetText(kSignTitle, title);

    IMediaPlayer* player = CMediaPlayerManager::FindPlayer();
    const bool hasPicture =
        player != nullptr && player->GetImageWidth() > 0 && player->GetImageHeight() > 0;
    const String kind = hasPicture ? u"video" : u"music";
    _KivoAPI_PluginSetStateSign(page_->GetPlugin(), &kind, &title, &sign);
}

String CPlayerPanel::MakeSignTitle(const String& url) const
{
    MediaInfo info;
    if (IMediaLibManager* library = FindMediaLibManager())
        library->GetMediaInfo(url, info);
    const String artist = GetInfoText(info, kInfoArtist);
    const String title = GetInfoText(info, kInfoTitle);
    return artist.empty() ? title : title + u" - " + artist;
}

void CPlayerPanel::RemoveSign()
{
    if (!published_)
        return;
    published_ = false;
    _KivoAPI_PluginRemoveStateSign(page_ != nullptr ? page_->GetPlugin() : nullptr);
}

void CPlayerPanel::OnSettingChanged(const String& key,
                                    int /*reserved1*/,
                                    int /*reserved2*/,
                                    int /*reserved3*/)
{
    if (key != u"usign_setting" || page_ == nullptr)
        return;
    if (_KivoAPI_IsShowMediaState() == 0)
        RemoveSign();
    else if (page_->GetPlayState() == static_cast<int>(PlayerState::Playing))
        PublishSign();
}

} // namespace kivo::tunehive
