#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/control/MediaAttributes.h"
#include "shell/contracts/framework/Threads.h"

#include <atomic>

namespace kivo::tunehive {

class IRemoteReaderManager;

// Hears the platform's reader of one stream and passes on what matters. It is counted, because the
// platform may hold it longer than its owner lives. Thread: any.
class CRemoteReaderCallback final : public IWMReaderCallback {
public:
    // With one reference, the maker's. `manager` is borrowed until Detach and may be null.
    CRemoteReaderCallback(String url, IRemoteReaderManager* manager);
    CRemoteReaderCallback(const CRemoteReaderCallback&) = delete;
    CRemoteReaderCallback& operator=(const CRemoteReaderCallback&) = delete;

    void AddRef() override;
    void Release() override;

    // Opened, started and new metadata are data; an error and the end are failures; anything else
    // is nothing. Always S_OK.
    HRESULT OnStatus(WMT_STATUS status, HRESULT result) override;

    // From here on nobody is told; a report under way is waited for.
    void Detach();

private:
    ~CRemoteReaderCallback() = default;

    std::atomic<long> references_ = 1;
    const String url_;
    // Held while the manager is told, which only posts: else it could be gone in the middle.
    CriticalSection lock_;
    IRemoteReaderManager* manager_;
};

} // namespace kivo::tunehive
