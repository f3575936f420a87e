#include "platform/engine/RenderThread.h"

#include "platform/engine/Core.h"

#include <mpv/render.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <future>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace kivo {

namespace {

constexpr std::size_t kAlignment = 64; // Of lines, for the core's quick paths.
constexpr int kLargestSide = 16'384;
constexpr std::size_t kBytesPerPixel = 4;

struct AlignedDeleter {
    void operator()(std::uint8_t* bytes) const
    {
        ::operator delete[](bytes, std::align_val_t(kAlignment));
    }
};

// Memory for one picture.
class Image {
public:
    void Resize(int width, int height)
    {
        if (width == width_ && height == height_)
            return;
        width_ = width;
        height_ = height;
        const std::size_t line = static_cast<std::size_t>(width) * kBytesPerPixel;
        stride_ = (line + kAlignment - 1) / kAlignment * kAlignment;
        const std::size_t size = stride_ * static_cast<std::size_t>(height);
        bytes_.reset();
        if (size != 0)
            bytes_.reset(new (std::align_val_t(kAlignment)) std::uint8_t[size]);
    }

    [[nodiscard]] VideoFrame Get() const
    {
        return {bytes_.get(), width_, height_, static_cast<int>(stride_)};
    }
    [[nodiscard]] std::uint8_t* GetBytes() { return bytes_.get(); }
    [[nodiscard]] std::size_t GetStride() const { return stride_; }

private:
    std::unique_ptr<std::uint8_t[], AlignedDeleter> bytes_;
    int width_ = 0;
    int height_ = 0;
    std::size_t stride_ = 0;
};

struct Surface {
    int width = 0;
    int height = 0;
    bool visible = false;
    bool open = false;

    [[nodiscard]] bool IsDrawn() const { return open && visible && width > 0 && height > 0; }
};

} // namespace

struct RenderThread::Impl {
    Impl(mpv_handle* coreOfThread, std::function<void()> frameListener)
        : core(coreOfThread)
        , onFrame(std::move(frameListener))
    {
    }

    static void OnUpdate(void* self)
    {
        auto* const impl = static_cast<Impl*>(self);
        const std::lock_guard<std::mutex> lock(impl->mutex);
        impl->isUpdated = true;
        impl->wake.notify_one();
    }

    void Run(std::promise<bool> started);
    void Turn(mpv_render_context* context, std::unique_lock<std::mutex>& lock);

    mpv_handle* const core;
    const std::function<void()> onFrame;
    std::thread thread;
    bool hasContext = false;
    Image back; // The render thread's alone.

    std::mutex mutex; // Guards all below.
    std::condition_variable wake;
    bool isUpdated = false; // The core has something to tell.
    bool isRedrawn = false; // The surface needs the picture that it has once more.
    bool isStopped = false;
    Surface surface;
    unsigned opening = 0; // Counts SetOpen: what is drawn for an older one isn't shown.
    bool hasFront = false;
    bool isAnnounced = false;
    Image front;
};

namespace {

void Render(mpv_render_context* context, Image& image)
{
    const VideoFrame frame = image.Get();
    std::array<int, 2> size = {frame.width, frame.height};
    std::size_t stride = image.GetStride();
    std::array<char, 5> format = {"bgr0"};
    std::array<mpv_render_param, 5> parameters = {
        {
         {MPV_RENDER_PARAM_SW_SIZE, size.data()},
         {MPV_RENDER_PARAM_SW_FORMAT, format.data()},
         {MPV_RENDER_PARAM_SW_STRIDE, &stride},
         {MPV_RENDER_PARAM_SW_POINTER, image.GetBytes()},
         {MPV_RENDER_PARAM_INVALID, nullptr},
         }
    };
    mpv_render_context_render(context, parameters.data());
}

// Takes the picture without drawing it. Left alone, the core waits 0.2 s for each.
void Skip(mpv_render_context* context)
{
    int skip = 1;
    std::array<mpv_render_param, 2> parameters = {
        {
         {MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
         {MPV_RENDER_PARAM_INVALID, nullptr},
         }
    };
    mpv_render_context_render(context, parameters.data());
}

} // namespace

void RenderThread::Impl::Run(std::promise<bool> started)
{
    std::array<char, 3> api = {MPV_RENDER_API_TYPE_SW};
    std::array<mpv_render_param, 2> parameters = {
        {
         {MPV_RENDER_PARAM_API_TYPE, api.data()},
         {MPV_RENDER_PARAM_INVALID, nullptr},
         }
    };
    mpv_render_context* context = nullptr;
    const bool isMade = mpv_render_context_create(&context, core, parameters.data()) >= 0;
    if (isMade)
        mpv_render_context_set_update_callback(context, &Impl::OnUpdate, this);
    started.set_value(isMade);
    if (!isMade)
        return;

    {
        std::unique_lock<std::mutex> lock(mutex);
        while (!isStopped) {
            if (isUpdated || isRedrawn)
                Turn(context, lock);
            else
                wake.wait(lock);
        }
    }
    mpv_render_context_set_update_callback(context, nullptr, nullptr);
    mpv_render_context_free(context);
}

void RenderThread::Impl::Turn(mpv_render_context* context, std::unique_lock<std::mutex>& lock)
{
    const bool isAsked = std::exchange(isUpdated, false);
    const bool isRedraw = std::exchange(isRedrawn, false);
    lock.unlock();
    const bool isNew =
        isAsked && (mpv_render_context_update(context) & MPV_RENDER_UPDATE_FRAME) != 0;
    lock.lock();
    const Surface current = surface;
    const unsigned currentOpening = opening;
    const bool isDrawn = current.IsDrawn() && (isNew || isRedraw);
    lock.unlock();

    if (isDrawn) {
        back.Resize(current.width, current.height);
        Render(context, back);
    } else if (isNew) {
        Skip(context);
    }
    lock.lock();
    if (!isDrawn || opening != currentOpening)
        return;
    std::swap(front, back);
    hasFront = true;
    if (std::exchange(isAnnounced, true))
        return;
    lock.unlock();
    onFrame();
    lock.lock();
}

RenderThread::RenderThread(mpv_handle* core, std::function<void()> onFrame)
    : impl_(std::make_unique<Impl>(core, std::move(onFrame)))
{
    std::promise<bool> started;
    std::future<bool> hasContext = started.get_future();
    impl_->thread = std::thread(&Impl::Run, impl_.get(), std::move(started));
    impl_->hasContext = hasContext.get();
}

RenderThread::~RenderThread()
{
    {
        const std::lock_guard<std::mutex> lock(impl_->mutex);
        impl_->isStopped = true;
        impl_->wake.notify_one();
    }
    impl_->thread.join();
}

bool RenderThread::HasContext() const
{
    return impl_->hasContext;
}

void RenderThread::SetSurface(int width, int height, bool visible)
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->surface.width = std::clamp(width, 0, kLargestSide);
    impl_->surface.height = std::clamp(height, 0, kLargestSide);
    impl_->surface.visible = visible;
    if (!impl_->surface.IsDrawn())
        return;
    // While paused the core has no new picture to tell of, and the old one has the old size.
    impl_->isRedrawn = true;
    impl_->wake.notify_one();
}

void RenderThread::SetOpen(bool open)
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->surface.open = open;
    ++impl_->opening;
    impl_->hasFront = false;
    impl_->isAnnounced = false;
    if (!open) {
        impl_->front.Resize(0, 0);
        return;
    }
    // The first picture was there before, and was dropped.
    impl_->isRedrawn = true;
    impl_->wake.notify_one();
}

bool RenderThread::PaintFrame(const std::function<void(const VideoFrame&)>& paint)
{
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->isAnnounced = false;
    if (!impl_->hasFront)
        return false;
    paint(impl_->front.Get());
    return true;
}

} // namespace kivo
