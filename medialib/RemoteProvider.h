#pragma once

#include "medialib/IMediaInfoProvider.h"
#include "medialib/IRemoteReaderManager.h"
#include "medialib/RemoteProviderProcessParam.h"
#include "medialib/RemoteReader.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/Released.h"

#include <map>

namespace kivo::tunehive {

// Reads the metadata of network streams. A request only starts the work and answers 0; the record
// reaches the library, and its listeners, when the stream has told it. One stream is read once at a
// time. The manager doesn't start with it.
//
// Thread: GetMediaInfo and what a reader reports any; the rest the user interface, which alone
// touches the readers.
class RemoteProvider final : public IRemoteMediaInfoProvider, public IRemoteReaderManager {
public:
    RemoteProvider() = default;
    RemoteProvider(const RemoteProvider&) = delete;
    RemoteProvider& operator=(const RemoteProvider&) = delete;

    void Release() override; // Closes all readers; steps still on their way do nothing.
    int GetMediaInfo(String url, MediaInfo& info) override; // 0, and `info` is left alone.
    void OnReaderHasData(String url) override;
    void OnReaderFailed(String url) override;

    // Takes one step; `param` is a RemoteProviderProcessParam and borrowed. An empty URL or an
    // unknown operation is nothing. A reader without data yet stays open.
    void Process(ITuneHive_AsyncCallbackParam* param);

private:
    using Readers = std::map<String, Released<CRemoteReader>>;

    ~RemoteProvider() override;

    void PostStep(const String& url, RemoteOperation operation);
    void OpenReader(const String& url);
    void HarvestReader(Readers::iterator reader);
    void DropReader(Readers::iterator reader);

    Readers readers_;
    LifeToken life_;
};

} // namespace kivo::tunehive
