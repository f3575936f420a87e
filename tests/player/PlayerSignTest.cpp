#include "medialib/IMediaLibManager.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "shell/contracts/base/Released.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakePage.h"
#include "tests/support/ScriptedPlayer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {

namespace {

constexpr char16_t kStream[] = u"http://radio.example/live";

// A panel that has not been built, with a page on which one track is current.
class PlayerSignTest : public testing::Test {
public:
    PlayerSignTest()
    {
        page_.rows = {kStream};
        page_.mark = 0;
        manager_.AddPlayer(&player_);
        static_cast<void>(manager_.GetPlayer(kStream)); // From here on it is the current one.
        GetMediaLibManager()->Initialize(folder_.GetPath());
        panel_.reset(new CPlayerPanel(&page_));
    }
    ~PlayerSignTest() override
    {
        panel_.reset();
        manager_.Destroy();
        DestroyMediaLibManager();
        host_.ReleasePosted();
    }

protected:
    test::FakeHost host_;
    test::TempFolder folder_;
    test::FakePage page_;
    test::ScriptedPlayer player_;
    CMediaPlayerManager& manager_ = CMediaPlayerManager::GetInstance();
    Released<CPlayerPanel> panel_;
};

struct SignCase {
    const char* name;
    const char16_t* storedName;
    const char16_t* title; // In the library, as the artist.
    const char16_t* artist;
    int width; // Of the picture.
    int height;
    const char16_t* shown;
    const char16_t* kind;
};

constexpr SignCase kSigns[] = {
    {"the stored name",    u"my name", u"Song", u"Band", 0,   0,  u"my name",     u"music"},
    {"title and artist",   u"",        u"Song", u"Band", 0,   0,  u"Song - Band", u"music"},
    {"title alone",        u"",        u"Song", u"",     0,   0,  u"Song",        u"music"},
    {"nothing known",      u"",        u"",     u"",     0,   0,  kStream,        u"music"},
    {"a picture",          u"Film",    u"",     u"",     640, 48, u"Film",        u"video"},
    {"no height, no film", u"Film",    u"",     u"",     640, 0,  u"Film",        u"music"},
    {"no width, no film",  u"Film",    u"",     u"",     0,   48, u"Film",        u"music"},
};

TEST_F(PlayerSignTest, IsTheRecordOfTheTrackThatPlays)
{
    for (const SignCase& row : kSigns) {
        SCOPED_TRACE(row.name);
        page_.currentName = row.storedName;
        player_.width = row.width;
        player_.height = row.height;
        const MediaInfo info{
            {kInfoTitle,  row.title },
            {kInfoArtist, row.artist},
        };
        GetMediaLibManager()->UpdateMediaInfo(kStream, info, static_cast<int>(NotifyMode::None));
        panel_->PublishSign();
        ASSERT_EQ(host_.signs.size(), 1U);
        const test::FakeHost::Sign& sign = host_.signs[0];
        EXPECT_EQ(sign.kind, row.kind);
        EXPECT_EQ(sign.title, row.shown);
        EXPECT_EQ(sign.record.GetText(0), kStream);
        EXPECT_EQ(sign.record.GetText(1), row.shown);
        panel_->RemoveSign();
        EXPECT_TRUE(host_.signs.empty());
    }
}

TEST_F(PlayerSignTest, GoesOutOnceAndComesDownOnce)
{
    panel_->RemoveSign();
    panel_->PublishSign();
    panel_->PublishSign();
    panel_->RemoveSign();
    panel_->RemoveSign();
    EXPECT_EQ(host_.CountCalls("_KivoAPI_PluginSetStateSign"), 1U);
    EXPECT_EQ(host_.CountCalls("_KivoAPI_PluginRemoveStateSign"), 1U);
}

TEST_F(PlayerSignTest, FollowsTheSettingWhileItPlays)
{
    const auto set = [this](int shows, int playState, const String& key = u"usign_setting") {
        host_.showsMediaState = shows;
        page_.playState = playState;
        host_.ChangeSetting(key);
        return host_.signs.size();
    };
    host_.showsMediaState = 0;
    panel_->PublishSign();
    EXPECT_TRUE(host_.signs.empty());
    EXPECT_EQ(set(1, 3, u"another"), 0U);
    EXPECT_EQ(set(1, 3), 1U);
    EXPECT_EQ(set(0, 3), 0U);
    EXPECT_EQ(set(1, 2), 0U); // Paused: it comes back with the next start.
    EXPECT_EQ(set(1, 3), 1U);
    EXPECT_EQ(set(0, 2), 0U);
}

} // namespace

} // namespace kivo::tunehive
