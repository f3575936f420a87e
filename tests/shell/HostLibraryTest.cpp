#include "shell/base/HostLibrary.h"

#include "shell/contracts/host/KivoApi.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivo {
namespace {

class CountedEvent final : public ISDKEvent {
public:
    CountedEvent(int& runs, int& frees)
        : runs_(runs)
        , frees_(frees)
    {
    }
    void Execute() override { ++runs_; }
    void Release() override
    {
        ++frees_;
        delete this;
    }

private:
    ~CountedEvent() = default;
    int& runs_;
    int& frees_;
};

struct Service {
    const char* name;
    int (*call)();
};

// Each wrapper once, with arguments that the host in memory can take.
const Service kServices[] = {
    {"_KivoAPI_RegisterPluginWindow",   [] { return _KivoAPI_RegisterPluginWindow(nullptr); }  },
    {"_KivoAPI_UnregisterPluginWindow", [] { return _KivoAPI_UnregisterPluginWindow(nullptr); }},
    {"_KivoAPI_PluginSetStateSign",
     [] {
         const String kind = u"music";
         const String title = u"title";
         return _KivoAPI_PluginSetStateSign(nullptr, &kind, &title, nullptr);
     }                                                                                         },
    {"_KivoAPI_PluginRemoveStateSign",  [] { return _KivoAPI_PluginRemoveStateSign(nullptr); } },
    {"_KivoAPI_IsShowMediaState",       [] { return _KivoAPI_IsShowMediaState(); }             },
    {"_KivoAPI_GetMyUid",
     [] {
         String uid;
         return _KivoAPI_GetMyUid(&uid);
     }                                                                                         },
    {"_KivoAPI_GetMyDir",
     [] {
         String directory;
         return _KivoAPI_GetMyDir(&directory);
     }                                                                                         },
    {"_KivoAPI_Watch",
     [] {
         const SettingDelegate none;
         const String key = u"usign_setting";
         const String filter = u"*";
         return _KivoAPI_Watch(nullptr, &none, &key, &filter, -1);
     }                                                                                         },
    {"_KivoAPI_Revoke",                 [] { return _KivoAPI_Revoke(nullptr); }                },
    {"_RegisterMsgInstance",            [] { return _RegisterMsgInstance(nullptr); }           },
    {"_UnRegisterMsgInstance",          [] { return _UnRegisterMsgInstance(nullptr); }         },
    {"_GetStringViaID",
     [] {
         const String id = u"id";
         String text;
         return _GetStringViaID(&id, &text);
     }                                                                                         },
    {"_ShowMsgBox",
     [] {
         const String text = u"text";
         return _ShowMsgBox(41, &text, &text, 1, nullptr, 0);
     }                                                                                         },
    {"_KivoAPI_STAT_TAG_INCREASE",
     [] {
         const int tag = 2103;
         return _KivoAPI_STAT_TAG_INCREASE(&tag);
     }                                                                                         },
};

TEST(HostLibrary, EachServiceIsReachedUnderItsOwnNameOrGivesZero)
{
    for (const auto& [name, call] : kServices) {
        SCOPED_TRACE(name);
        EXPECT_EQ(call(), 0); // There is no library.
        test::FakeHost host;
        host.directory = u"/home/tester/";
        EXPECT_NE(call(), 0);
        EXPECT_EQ(host.calls, std::vector<std::string>{name});
        host.missing.insert(name); // A name is looked up anew at each call.
        EXPECT_EQ(call(), 0);
        host.missing.clear();
        EXPECT_NE(call(), 0);
        EXPECT_EQ(host.calls.size(), 2U);
    }
    EXPECT_EQ(tunehive::FreeHostLibrary(), 1); // There was none to free.
}

TEST(HostLibrary, APostedEventRunsOnceAndIsFreedAlsoWhereNobodyTakesIt)
{
    int runs = 0;
    int frees = 0;
    EXPECT_EQ(_KivoAPI_PostSDKEvent(new CountedEvent(runs, frees)), 0);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(frees, 1);
    test::FakeHost host;
    EXPECT_EQ(_KivoAPI_PostSDKEvent(new CountedEvent(runs, frees)), 1);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(host.RunPosted(), 1);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(frees, 2);
}

} // namespace
} // namespace kivo
