#pragma once

#include <atomic>
#include <memory>

namespace kivo {

// Tells whether the object that owns a LifeToken still exists. An empty watch says yes: nothing is
// watched. Thread: any; an answer of yes is only reliable on the thread that destroys the object.
class LifeWatch {
public:
    LifeWatch() = default;
    [[nodiscard]] bool IsAlive() const
    {
        return !alive_ || alive_->load(std::memory_order_acquire);
    }

private:
    friend class LifeToken;
    explicit LifeWatch(std::shared_ptr<std::atomic<bool>> alive)
        : alive_(std::move(alive))
    {
    }

    // Shared by the token and its watches: whichever goes last frees it.
    std::shared_ptr<std::atomic<bool>> alive_;
};

// A member of an object that is called back later: its watches say no once the object is gone.
// Make it the last member, so that it is cleared first.
class LifeToken {
public:
    LifeToken() = default;
    LifeToken(const LifeToken&) = delete;
    LifeToken& operator=(const LifeToken&) = delete;
    ~LifeToken() { End(); }

    [[nodiscard]] LifeWatch Watch() const { return LifeWatch(alive_); }

    // From here on every watch says no, though the object still stands.
    void End() { alive_->store(false, std::memory_order_release); }

private:
    std::shared_ptr<std::atomic<bool>> alive_ = std::make_shared<std::atomic<bool>>(true);
};

} // namespace kivo
