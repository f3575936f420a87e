#pragma once

#include "tests/page/Stage.h"

#include <functional>
#include <string>
#include <vector>

namespace kivo::test {

// One of the pictures: what a user meets on the first day.
struct Scene {
    const char* name = nullptr;
    std::vector<StageGroup> groups;
    // What happens on the page before; may wait in a loop of its own while the picture is taken.
    std::function<void(Stage& stage)> act;
    int width = 0; // 0: as the window starts.
    int height = 0;
};

// `media` is the folder of what the rows show and play, as scripts/pictures makes it.
[[nodiscard]] std::vector<Scene> MakeScenes(const std::string& media);

} // namespace kivo::test
