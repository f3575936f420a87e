#include "host/HostServices.h"
#include "platform/base/PostQueue.h"
#include "platform/base/TimerService.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace kivo {
namespace {

constexpr int kRounds = 50;
constexpr int kPlaying = 3;
constexpr int kStartMs = 20000;

// The least that a program must be for the plug-in.
class Program final : public IHostServices {
public:
    explicit Program(const String& directory)
        : directory_(directory)
    {
        SetHostServices(this);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { SetHostServices(nullptr); }

    bool RegisterPluginWindow(IPluginWindow* window) override
    {
        page = window;
        return true;
    }
    void UnregisterPluginWindow(IPluginWindow* /*window*/) override { page = nullptr; }
    void SetStateSign(IPlugin* /*plugin*/,
                      const String& /*kind*/,
                      const String& /*title*/,
                      const Property& /*sign*/) override
    {
        ++signs;
    }
    void RemoveStateSign(IPlugin* /*plugin*/) override { --signs; }
    [[nodiscard]] bool IsMediaStateShown() const override { return true; }
    [[nodiscard]] String GetMyUid() const override { return u"tester"; }
    [[nodiscard]] String GetMyDir() const override { return directory_; }
    void Watch(void* watcher, const SettingDelegate& /*delegate*/, const String& /*key*/) override
    {
        watcher_ = watcher;
    }
    void Revoke(void* watcher) override { watcher_ = watcher == watcher_ ? nullptr : watcher_; }
    [[nodiscard]] String GetText(const String& id) const override { return id; }
    bool ShowMessage(int /*code*/,
                     const String& /*title*/,
                     const String& /*message*/,
                     int /*style*/) override
    {
        return false;
    }
    void CountUse(int /*tag*/) override {}
    [[nodiscard]] bool IsWatched() const { return watcher_ != nullptr; }

    IPluginWindow* page = nullptr;
    int signs = 0;

private:
    String directory_;
    void* watcher_ = nullptr;
};

template <class Function>
Function Find(void* library, const char* name)
{
    return reinterpret_cast<Function>(dlsym(library, name));
}

// One life of the library, from dlopen to dlclose, with a track that plays in it.
void Live(Program& program, bool closesPage)
{
    void* const library = dlopen(KIVO_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    IPlugin* const plugin = Find<GetKivoPluginInstanceFunction>(library, "GetKivoPluginInstance")();
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(Find<MyPreTranslateMessageFunction>(library, "MyPreTranslateMessage")(nullptr), 0);
    const auto getRemote = Find<GetTuneHiveRemoteFunction>(library, "GetTuneHiveRemote");
    EXPECT_EQ(plugin->ResetSkinFile(), 0);
    ASSERT_EQ(plugin->OnLoad(nullptr, nullptr), 1);
    ASSERT_NE(program.page, nullptr);
    EXPECT_EQ(getRemote(), nullptr);
    program.page->CreatePage();
    ITuneHiveRemote* const remote = getRemote();
    ASSERT_NE(remote, nullptr);
    EXPECT_TRUE(program.IsWatched());

    remote->Open({u"" KIVO_TEST_MEDIA "long.mp3"}, u"playing", /*playFirst=*/true);
    EXPECT_TRUE(test::RunUntil([remote] { return remote->GetState() == kPlaying; }, kStartMs));
    EXPECT_EQ(program.signs, 1);
    EXPECT_TRUE(remote->StopWork(kStartMs));
    if (closesPage) {
        program.page->ClosePage();
        EXPECT_EQ(getRemote(), nullptr);
    }
    EXPECT_EQ(plugin->OnUnLoad(), 1);
    EXPECT_EQ(program.signs, 0);
    EXPECT_FALSE(program.IsWatched());
    PostQueue::Get().ReleaseOfLibrary(plugin);
    TimerService::Get().KillOfLibrary(plugin);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(KIVO_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still mapped";
}

TEST(Unload, FiftyLivesOfTheLibraryInOneProcess)
{
    const test::TempFolder folder;
    Program program(folder.GetPath());
    const auto app = std::filesystem::path(KIVO_PLUGIN).parent_path().parent_path().parent_path();
    common::SetAppPath(app.u16string() + u"/");
    for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(round);
        Live(program, /*closesPage=*/round % 5 != 4);
        test::RunFor(1); // What the engine still had to say comes to nobody.
    }
}

TEST(Unload, WithoutAProgramTheLoadFailsAndIsTakenBack)
{
    void* const library = dlopen(KIVO_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    IPlugin* const plugin = Find<GetKivoPluginInstanceFunction>(library, "GetKivoPluginInstance")();
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->OnLoad(nullptr, nullptr), 0);
    EXPECT_EQ(plugin->OnUnLoad(), 1);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(KIVO_PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

} // namespace
} // namespace kivo
