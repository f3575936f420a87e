#pragma once

#include "medialib/MediaInfo.h"
#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo::tunehive {

// Turns a path or URL into a metadata record. Thread: any, also at once, but for Release.
class IMediaInfoProvider {
public:
    virtual void Release() = 0; // Destroys the object.

    // 1: `info` holds what could be read, which may be nothing. 0: this provider has no answer.
    virtual int GetMediaInfo(String path, MediaInfo& info) = 0;

protected:
    virtual ~IMediaInfoProvider() = default;
};

// A provider of local files, chosen by their MediaFileType.
class ILocalMediaInfoProvider : public IMediaInfoProvider {
public:
    // Replaces `types` by the types that the provider reads, in its order.
    virtual void GetSupportedTypes(std::vector<int>& types) const = 0;
};

// A provider of streams, which need not answer at once.
class IRemoteMediaInfoProvider : public IMediaInfoProvider {};

} // namespace kivo::tunehive
