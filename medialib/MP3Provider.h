#pragma once

#include "medialib/IMediaInfoProvider.h"

namespace kivo::tunehive {

// Reads MP3 files by their frames and their ID3v1 tag. It answers 1 whatever the file is like, so
// that each file gets its cache entry. The manager doesn't start with it. Thread: any.
class MP3Provider final : public ILocalMediaInfoProvider {
public:
    MP3Provider();

    void Release() override;
    int GetMediaInfo(String path, MediaInfo& info) override;
    void GetSupportedTypes(std::vector<int>& types) const override;

private:
    std::vector<int> types_;
};

} // namespace kivo::tunehive
