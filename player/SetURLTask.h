#pragma once

#include "shell/contracts/base/SDKEvent.h"
#include "shell/contracts/base/String.h"

#include <cstdint>

namespace kivo::tunehive {

// Sets a URL once the control's callback has returned, from inside which it must not change. Does
// nothing when meanwhile another was set or playing was stopped, or when the players are gone.
// Thread: user interface.
class CSetURLTask final : public ISDKEvent {
public:
    // `autoplay` as for IMediaPlayer::SetURL.
    CSetURLTask(String url, int autoplay);
    CSetURLTask(const CSetURLTask&) = delete;
    CSetURLTask& operator=(const CSetURLTask&) = delete;

    void Execute() override;
    void Release() override;

private:
    ~CSetURLTask() = default;

    String url_;
    int autoplay_;
    std::uint64_t turn_; // The one in which the URL was chosen.
};

} // namespace kivo::tunehive
