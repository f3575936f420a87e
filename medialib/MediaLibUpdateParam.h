#pragma once

#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/String.h"

#include <utility>

namespace kivo::tunehive {

// What a listener of the library hears: the path or URL whose metadata changed.
class MediaLibUpdateParam final : public ITuneHive_AsyncCallbackParam {
public:
    explicit MediaLibUpdateParam(String path)
        : path_(std::move(path))
    {
    }
    ~MediaLibUpdateParam() override = default;

    [[nodiscard]] const String& GetPath() const { return path_; }

private:
    String path_;
};

} // namespace kivo::tunehive
