#include "platform/base/Modules.h"
#include "shell/contracts/control/MediaAttributes.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/control/VideoSurface.h"

#include <mutex>
#include <utility>

// The makers of the controls: a test's or the program's own, else those of the modules.
namespace kivo {
namespace {

constexpr char16_t kEngineModule[] = u"libkivo_engine.so";
constexpr char16_t kAttributesModule[] = u"libkivo_attributes.so";
constexpr char16_t kStreamsModule[] = u"libkivo_avformat.so";

MediaEngineFactory& EngineFactory()
{
    static MediaEngineFactory factory;
    return factory;
}

MediaEngineSettings& EngineSettings()
{
    static MediaEngineSettings settings;
    return settings;
}

VideoSurfacePeerFactory& SurfaceFactory()
{
    static VideoSurfacePeerFactory factory;
    return factory;
}

// Readers and editors are made on any thread.
struct AttributeMakers {
    std::mutex mutex;
    MediaAttributeMakers makers;
};

AttributeMakers& Attributes()
{
    static auto* attributes = new AttributeMakers; // Never destroyed: an import may outlive `main`.
    return *attributes;
}

template <class T>
T* Make(T* (*MediaAttributeMakers::*own)(), const String& module, const char* function)
{
    T* (*maker)() = nullptr;
    {
        AttributeMakers& attributes = Attributes();
        const std::lock_guard lock(attributes.mutex);
        maker = attributes.makers.*own;
    }
    if (maker == nullptr)
        maker = reinterpret_cast<T* (*)()>(FindInModule(module, function));
    return maker != nullptr ? maker() : nullptr;
}

} // namespace

std::unique_ptr<MediaEngine> CreateMediaEngine()
{
    if (EngineFactory())
        return EngineFactory()();
    const auto maker =
        reinterpret_cast<MediaEngine* (*)()>(FindInModule(kEngineModule, "KivoCreateMediaEngine"));
    return std::unique_ptr<MediaEngine>(maker != nullptr ? maker() : nullptr);
}

void SetMediaEngineFactory(MediaEngineFactory factory)
{
    EngineFactory() = std::move(factory);
}

void SetMediaEngineSettings(MediaEngineSettings settings)
{
    EngineSettings() = std::move(settings);
}

const MediaEngineSettings& GetMediaEngineSettings()
{
    return EngineSettings();
}

std::unique_ptr<VideoSurfacePeer> CreateVideoSurfacePeer(IVideoSurface& surface, CWnd* parent)
{
    return SurfaceFactory() ? SurfaceFactory()(surface, parent) : nullptr;
}

void SetVideoSurfacePeerFactory(VideoSurfacePeerFactory factory)
{
    SurfaceFactory() = std::move(factory);
}

IWMMetadataEditor* WMCreateEditor()
{
    return Make(&MediaAttributeMakers::createEditor, kAttributesModule, "KivoCreateMetadataEditor");
}

IWMReader* WMCreateReader()
{
    return Make(&MediaAttributeMakers::createReader, kStreamsModule, "KivoCreateReader");
}

void SetMediaAttributeMakers(const MediaAttributeMakers& makers)
{
    AttributeMakers& attributes = Attributes();
    const std::lock_guard lock(attributes.mutex);
    attributes.makers = makers;
}

} // namespace kivo
