#pragma once

#include <future>

namespace kivo::host {

// Reads the machine's fonts beside the start, of which they are the largest part. Whoever needs one
// earlier waits inside Qt.
class FontLoader {
public:
    // Thread: any, also before the application object is there.
    FontLoader();
    FontLoader(const FontLoader&) = delete;
    FontLoader& operator=(const FontLoader&) = delete;
    ~FontLoader(); // Waits for the rest. While the application object still stands.

    void OnApplicationReady(); // Once the application object stands. Thread: user interface.

private:
    std::promise<void> ready_;
    bool isReady_ = false;
    std::future<void> work_;
};

} // namespace kivo::host
