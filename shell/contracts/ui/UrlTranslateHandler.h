#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::ui {

// Hears which address a browser is about to follow. Thread: user interface.
class UrlTranslateHandler {
public:
    // `url` is the address, percent-encoded as the page gave it; the other arguments are 0 and the
    // empty text. The result has no effect.
    virtual int TranslateUrl(int reserved, const String& url, String& replacement) = 0;

protected:
    ~UrlTranslateHandler() = default;
};

} // namespace kivo::ui
