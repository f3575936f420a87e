#pragma once

#include "medialib/IMediaInfoProvider.h"

namespace kivo::tunehive {

// Reads local files of every type but the playlists through the platform's Windows Media
// attributes. It answers 1 whatever the file is like, so that each file gets its cache entry.
// Thread: any.
class WMFProvider final : public ILocalMediaInfoProvider {
public:
    WMFProvider();

    void Release() override;
    int GetMediaInfo(String path, MediaInfo& info) override;
    void GetSupportedTypes(std::vector<int>& types) const override;

private:
    std::vector<int> types_;
};

} // namespace kivo::tunehive
