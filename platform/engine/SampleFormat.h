#pragma once

#include "platform/engine/MediaFacts.h"
#include "platform/engine/WaveFile.h"

namespace kivo {

// Before a medium's sound goes into the wave file: rate and channels of the first one hold for the
// whole run, and a picture, which would hold the sound back, is left out. The core waits in its
// hook.
void PrepareSamples(mpv_handle* core, const MediaFacts& facts, WaveFile& wave);

} // namespace kivo
