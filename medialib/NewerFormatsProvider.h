#pragma once

#include "medialib/IMediaInfoProvider.h"

namespace kivo::tunehive {

// Reads the newer formats, through the same helper as the WMFProvider and with its promise. The
// manager starts with it while kivo::IsBeyond(). Thread: any.
class NewerFormatsProvider final : public ILocalMediaInfoProvider {
public:
    NewerFormatsProvider();

    void Release() override;
    int GetMediaInfo(String path, MediaInfo& info) override;
    void GetSupportedTypes(std::vector<int>& types) const override;

private:
    std::vector<int> types_;
};

} // namespace kivo::tunehive
