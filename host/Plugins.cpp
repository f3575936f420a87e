#include "host/Plugins.h"

#include "host/Texts.h"
#include "platform/base/PostQueue.h"
#include "platform/base/TimerService.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/common/Text.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kivo::host {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> ListLibraries(const std::string& appFolder)
{
    std::vector<fs::path> libraries;
    std::error_code error;
    for (fs::directory_iterator folder(fs::path(appFolder) / "plugin", error), end;
         !error && folder != end;
         folder.increment(error)) {
        std::error_code unreadable;
        for (fs::directory_iterator file(folder->path(), unreadable); !unreadable && file != end;
             file.increment(unreadable)) {
            if (file->path().extension() == ".so")
                libraries.push_back(file->path());
        }
    }
    std::sort(libraries.begin(), libraries.end());
    return libraries;
}

// The loader's own words on what went wrong last.
String GetLoaderError()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the loader keeps the text per thread
    const char* const error = dlerror();
    return common::utf8_to_CString(error != nullptr ? error : "");
}

} // namespace

Plugins::~Plugins()
{
    Unload();
}

std::vector<Plugins::Failure>
Plugins::Load(const std::string& appFolder, CWnd* parent, IPluginWindowLayout* layout)
{
    std::vector<Failure> failures;
    for (const fs::path& path : ListLibraries(appFolder)) {
        const auto fail = [&](const String& reason) {
            failures.push_back({common::PathToText(path.stem().native()), reason});
        };
        void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            fail(GetLoaderError());
            continue;
        }
        const auto getInstance = reinterpret_cast<GetKivoPluginInstanceFunction>(
            dlsym(library, "GetKivoPluginInstance"));
        IPlugin* const plugin = getInstance != nullptr ? getInstance() : nullptr;
        if (plugin == nullptr) {
            fail(GetText(getInstance != nullptr ? u"STRID_KIVO_PLUGIN_NO_START"
                                                : u"STRID_KIVO_PLUGIN_NO_ENTRY"));
            dlclose(library);
            continue;
        }
        LoadPluginTexts(path.parent_path().native(), plugin->GetStringTableFile());
        plugin->ResetSkinFile();
        const Loaded loaded{
            library,
            plugin,
            reinterpret_cast<GetTuneHiveRemoteFunction>(dlsym(library, "GetTuneHiveRemote"))};
        if (plugin->OnLoad(parent, layout) == 0) {
            fail(GetText(u"STRID_KIVO_PLUGIN_NO_LOAD"));
            TakeDown(loaded);
            dlclose(library);
            continue;
        }
        plugins_.push_back(loaded);
    }
    return failures;
}

void Plugins::Unload()
{
    while (!plugins_.empty()) {
        const Loaded last = plugins_.back();
        plugins_.pop_back();
        TakeDown(last);
        dlclose(last.library);
    }
}

void Plugins::UnloadInPlace()
{
    while (!plugins_.empty()) {
        TakeDown(plugins_.back());
        plugins_.pop_back();
    }
}

void Plugins::TakeDown(const Loaded& loaded)
{
    loaded.plugin->OnUnLoad();
    // What is left has its code in the library, to run it as well as to free it.
    PostQueue::Get().ReleaseOfLibrary(loaded.plugin);
    TimerService::Get().KillOfLibrary(loaded.plugin);
}

ITuneHiveRemote* Plugins::GetRemote() const
{
    for (const Loaded& loaded : plugins_) {
        ITuneHiveRemote* const remote = loaded.getRemote != nullptr ? loaded.getRemote() : nullptr;
        if (remote != nullptr)
            return remote;
    }
    return nullptr;
}

IPlugin* Plugins::Find(unsigned pluginId) const
{
    const auto found =
        std::find_if(plugins_.begin(), plugins_.end(), [pluginId](const Loaded& one) {
            return one.plugin->GetPluginId() == pluginId;
        });
    return found != plugins_.end() ? found->plugin : nullptr;
}

IPlugin* Plugins::FindForSign(const String& kind) const
{
    const auto found = std::find_if(plugins_.begin(), plugins_.end(), [&kind](const Loaded& one) {
        return !one.plugin->GetStateSignIconPath(kind).empty();
    });
    return found != plugins_.end() ? found->plugin : nullptr;
}

} // namespace kivo::host
