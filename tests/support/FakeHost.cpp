#include "tests/support/FakeHost.h"

#include "shell/base/HostLibrary.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kivo::test {

namespace {
FakeHost* current = nullptr;
}

struct FakeServices {
    static void Record(const char* name)
    {
        current->calls.emplace_back(name);
        if (current->onCall)
            current->onCall(name);
    }

    static int RegisterWindow(IPluginWindow* window)
    {
        Record("_KivoAPI_RegisterPluginWindow");
        if (current->acceptsWindow != 0)
            current->windows.push_back(window);
        return current->acceptsWindow;
    }

    static int UnregisterWindow(IPluginWindow* window)
    {
        Record("_KivoAPI_UnregisterPluginWindow");
        std::erase(current->windows, window);
        return 1;
    }

    static int
    SetStateSign(IPlugin* plugin, const String* kind, const String* title, const Property* sign)
    {
        Record("_KivoAPI_PluginSetStateSign");
        current->signs.push_back({plugin, *kind, *title, sign != nullptr ? *sign : Property()});
        return 1;
    }

    static int RemoveStateSign(IPlugin* /*plugin*/)
    {
        Record("_KivoAPI_PluginRemoveStateSign");
        current->signs.clear();
        return 1;
    }

    static int IsShowMediaState()
    {
        Record("_KivoAPI_IsShowMediaState");
        return current->showsMediaState;
    }

    static int GetMyUid(String* uid)
    {
        Record("_KivoAPI_GetMyUid");
        *uid = current->uid;
        return 1;
    }

    static int GetMyDir(String* directory)
    {
        Record("_KivoAPI_GetMyDir");
        if (current->directory.empty())
            return 0;
        *directory = current->directory;
        return 1;
    }

    static int PostEvent(ISDKEvent* event)
    {
        const std::scoped_lock lock(current->mutex_);
        current->posted_.push_back(event);
        return 1;
    }

    static int Watch(void* watcher,
                     const SettingDelegate* delegate,
                     const String* key,
                     const String* filter,
                     int always)
    {
        Record("_KivoAPI_Watch");
        current->watches.push_back({watcher, *delegate, *key, *filter, always});
        return 1;
    }

    static int Revoke(void* watcher)
    {
        Record("_KivoAPI_Revoke");
        std::erase_if(current->watches,
                      [watcher](const auto& watch) { return watch.watcher == watcher; });
        return 1;
    }

    static int RegisterInstance(void* instance)
    {
        Record("_RegisterMsgInstance");
        current->instances.push_back(instance);
        return 1;
    }

    static int UnregisterInstance(void* instance)
    {
        Record("_UnRegisterMsgInstance");
        std::erase(current->instances, instance);
        return 1;
    }

    static int GetText(const String* id, String* text)
    {
        Record("_GetStringViaID");
        const auto found = current->texts.find(*id);
        *text = found != current->texts.end() ? found->second : *id;
        return 1;
    }

    static int ShowBox(int code,
                       const String* title,
                       const String* message,
                       int style,
                       int* result,
                       int /*reserved*/)
    {
        Record("_ShowMsgBox");
        current->boxes.push_back({code, *title, *message, style});
        current->duringBox();
        int answer = 0;
        if (!current->boxAnswers.empty()) {
            answer = current->boxAnswers.front();
            current->boxAnswers.pop_front();
        }
        if (result != nullptr)
            *result = answer;
        return 1;
    }

    static int CountTag(const int* tag)
    {
        Record("_KivoAPI_STAT_TAG_INCREASE");
        current->tags.push_back(*tag);
        return 1;
    }
};

namespace {

template <class R, class... Args>
void* AsService(R (*function)(Args...))
{
    return reinterpret_cast<void*>(function);
}

void* FindService(const char* name)
{
    struct Entry {
        const char* name;
        void* service;
    };
    static const Entry entries[] = {
        {"_KivoAPI_RegisterPluginWindow",   AsService(FakeServices::RegisterWindow)    },
        {"_KivoAPI_UnregisterPluginWindow", AsService(FakeServices::UnregisterWindow)  },
        {"_KivoAPI_PluginSetStateSign",     AsService(FakeServices::SetStateSign)      },
        {"_KivoAPI_PluginRemoveStateSign",  AsService(FakeServices::RemoveStateSign)   },
        {"_KivoAPI_IsShowMediaState",       AsService(FakeServices::IsShowMediaState)  },
        {"_KivoAPI_GetMyUid",               AsService(FakeServices::GetMyUid)          },
        {"_KivoAPI_GetMyDir",               AsService(FakeServices::GetMyDir)          },
        {"_KivoAPI_PostSDKEvent",           AsService(FakeServices::PostEvent)         },
        {"_KivoAPI_Watch",                  AsService(FakeServices::Watch)             },
        {"_KivoAPI_Revoke",                 AsService(FakeServices::Revoke)            },
        {"_RegisterMsgInstance",            AsService(FakeServices::RegisterInstance)  },
        {"_UnRegisterMsgInstance",          AsService(FakeServices::UnregisterInstance)},
        {"_GetStringViaID",                 AsService(FakeServices::GetText)           },
        {"_ShowMsgBox",                     AsService(FakeServices::ShowBox)           },
        {"_KivoAPI_STAT_TAG_INCREASE",      AsService(FakeServices::CountTag)          },
    };
    if (current->missing.contains(name))
        return nullptr;
    for (const Entry& entry : entries)
        if (std::strcmp(entry.name, name) == 0)
            return entry.service;
    return nullptr;
}

} // namespace

FakeHost::FakeHost()
{
    current = this;
    tunehive::SetHostResolver(FindService);
}

FakeHost::~FakeHost()
{
    ReleasePosted();
    tunehive::SetHostResolver(nullptr);
    current = nullptr;
}

int FakeHost::RunPosted()
{
    int count = 0;
    for (;; ++count) {
        ISDKEvent* event = nullptr;
        {
            const std::scoped_lock lock(mutex_);
            if (posted_.empty())
                return count;
            event = posted_.front();
            posted_.pop_front();
        }
        event->Execute();
        event->Release();
    }
}

int FakeHost::ReleasePosted()
{
    std::deque<ISDKEvent*> events;
    {
        const std::scoped_lock lock(mutex_);
        events.swap(posted_);
    }
    for (ISDKEvent* event : events)
        event->Release();
    return static_cast<int>(events.size());
}

std::size_t FakeHost::CountPosted()
{
    const std::scoped_lock lock(mutex_);
    return posted_.size();
}

void FakeHost::ChangeSetting(const String& key) const
{
    const std::vector<Watch> all = watches;
    for (const Watch& watch : all)
        if (watch.key == key)
            watch.delegate(key, 0, 0, 0);
}

std::size_t FakeHost::CountCalls(const std::string& name) const
{
    return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), name));
}

} // namespace kivo::test
