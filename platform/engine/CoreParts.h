#pragma once

#include "platform/engine/Core.h"
#include "platform/engine/RenderThread.h"
#include "platform/engine/WaveFile.h"
#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/framework/Windows.h"

#include <atomic>
#include <memory>

namespace kivo {

// What the core's threads post to the engine.
enum class CoreMessage : unsigned { Events = 0x8001, Deliver = 0x8002, Frame = 0x8003 };

// The engine's address for posts: whatever is still under way when it is destroyed is dropped.
class CoreMailbox final : public CWnd {
public:
    // `receiver` gets each message, and outlives the window.
    bool Open(const Delegate<unsigned>& receiver);
    void Post(CoreMessage message) const;
    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    Delegate<unsigned> receiver_;
};

// The core and what lives and dies with it, in the order in which that must happen.
class CoreParts {
public:
    CoreParts(HWND mailbox, std::unique_ptr<WaveFile> wave, const CoreSettings& settings);
    CoreParts(const CoreParts&) = delete;
    CoreParts& operator=(const CoreParts&) = delete;
    ~CoreParts(); // Waits for the core. Without a Close the wave file isn't kept.

    [[nodiscard]] bool IsWhole() const { return render_ != nullptr && render_->HasContext(); }
    [[nodiscard]] mpv_handle* GetCore() const { return core_.get(); }
    [[nodiscard]] RenderThread& GetRender() const { return *render_; }
    [[nodiscard]] WaveFile* GetWave() const { return wave_.get(); }

    // Events wait: from here on the core tells of the next ones. Before they are taken.
    void ExpectEvents() { isTold_.store(false); }

    // Ends everything on a thread of its own, since the core may be held up by a sound device, and
    // waits for that at most 2 s. False: the wave file couldn't be written.
    [[nodiscard]] static bool Close(std::unique_ptr<CoreParts> parts);

private:
    static void OnWakeUp(void* self);
    void End();

    const HWND mailbox_;
    std::atomic<bool> isTold_ = false;
    std::unique_ptr<WaveFile> wave_;
    CoreHandle core_;
    std::unique_ptr<RenderThread> render_;
};

} // namespace kivo
