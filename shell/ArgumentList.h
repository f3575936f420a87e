#pragma once

#include "player/IPlayingList.h"
#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo::tunehive {

class TuneHiveWindow;

// Steps through the files and addresses that the program was started with.
// Thread: user interface.
class ArgumentList final : public IPlayingList {
public:
    explicit ArgumentList(TuneHiveWindow& window); // Borrowed.

    // Adds paths to the end; of a folder the media files below it. Plays the first one added.
    void Add(const std::vector<String>& items, bool playFirst);

    void GetCurrentURL(String& url) override;
    void GetNextURL(String& url, int wrap) override;
    void GetPrevURL(String& url, int wrap) override;
    void GetRandomURL(String& url) override;
    [[nodiscard]] int GetPlayingCount() override;
    int PlaySelected() override;

private:
    void Move(String& url, int wrap, int step);
    void Play(int index);

    TuneHiveWindow& window_;
    std::vector<String> urls_;
    int mark_ = -1; // -1: none.
};

} // namespace kivo::tunehive
