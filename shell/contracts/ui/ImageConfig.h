#pragma once

#include "shell/contracts/ui/Types.h"

namespace kivo::ui {

// Names a picture of the skin and the part of it that is meant.
struct _ImageConfig {
    String file;
    PictureRect source;
};

} // namespace kivo::ui
