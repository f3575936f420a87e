#pragma once

#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/String.h"

#include <utility>

namespace kivo::tunehive {

// What is to be done with the reader of a URL.
enum class RemoteOperation : int { Open = 0, Drop = 1, Harvest = 2 };

// One step of the remote provider, on its way to the user-interface thread.
class RemoteProviderProcessParam final : public ITuneHive_AsyncCallbackParam {
public:
    RemoteProviderProcessParam(String url, int operation)
        : url_(std::move(url))
        , operation_(operation)
    {
    }
    ~RemoteProviderProcessParam() override = default;

    [[nodiscard]] const String& GetUrl() const { return url_; }
    [[nodiscard]] int GetOperation() const { return operation_; } // A RemoteOperation.

private:
    String url_;
    int operation_;
};

} // namespace kivo::tunehive
