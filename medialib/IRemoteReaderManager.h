#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::tunehive {

// To whom a reader of a stream reports. Thread: any; the calls only post.
class IRemoteReaderManager {
public:
    virtual void OnReaderHasData(String url) = 0;
    virtual void OnReaderFailed(String url) = 0; // It failed, or the stream ended.

protected:
    ~IRemoteReaderManager() = default;
};

} // namespace kivo::tunehive
