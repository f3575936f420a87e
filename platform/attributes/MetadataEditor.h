#pragma once

#include "shell/contracts/control/MediaAttributes.h"

namespace kivo::attributes {

[[nodiscard]] IWMMetadataEditor* MakeMetadataEditor(); // Freed by its Release.

} // namespace kivo::attributes
