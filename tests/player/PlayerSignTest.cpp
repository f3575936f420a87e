#include "medialib/IMediaLibManager.h"
#include "tests/player/BuiltPanel.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

using tunehive::GetMediaLibManager;
using tunehive::MediaInfo;

constexpr char16_t kStream[] = u"http://radio.example/live";

// A page on which one track is current, and a library.
class PlayerSignTest : public testing::Test, public BuiltPanel {
public:
    PlayerSignTest()
    {
        page.rows = {kStream};
        page.mark = 0;
        GetMediaLibManager()->Initialize(folder.GetPath());
    }
    ~PlayerSignTest() override { tunehive::DestroyMediaLibManager(); }

    TempFolder folder;
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
        page.currentName = row.storedName;
        player.width = row.width;
        player.height = row.height;
        const MediaInfo info{
            {tunehive::kInfoTitle,  row.title },
            {tunehive::kInfoArtist, row.artist},
        };
        GetMediaLibManager()->UpdateMediaInfo(
            kStream, info, static_cast<int>(tunehive::NotifyMode::None));
        panel->PublishSign();
        ASSERT_EQ(host.signs.size(), 1U);
        const FakeHost::Sign& sign = host.signs[0];
        EXPECT_EQ(sign.kind, row.kind);
        EXPECT_EQ(sign.title, row.shown);
        EXPECT_EQ(sign.record.GetText(0), kStream);
        EXPECT_EQ(sign.record.GetText(1), row.shown);
        panel->RemoveSign();
        EXPECT_TRUE(host.signs.empty());
    }
}

TEST_F(PlayerSignTest, GoesOutOnceAndComesDownOnce)
{
    panel->RemoveSign();
    panel->PublishSign();
    panel->PublishSign();
    panel->RemoveSign();
    panel->RemoveSign();
    EXPECT_EQ(host.CountCalls("_KivoAPI_PluginSetStateSign"), 1U);
    EXPECT_EQ(host.CountCalls("_KivoAPI_PluginRemoveStateSign"), 1U);
}

TEST_F(PlayerSignTest, FollowsTheSettingWhileItPlays)
{
    const auto set = [this](int shows, int playState, const String& key = u"usign_setting") {
        host.showsMediaState = shows;
        page.playState = playState;
        host.ChangeSetting(key);
        return host.signs.size();
    };
    host.showsMediaState = 0;
    panel->PublishSign();
    EXPECT_TRUE(host.signs.empty());
    EXPECT_EQ(set(1, 3, u"another"), 0U);
    EXPECT_EQ(set(1, 3), 1U);
    EXPECT_EQ(set(0, 3), 0U);
    EXPECT_EQ(set(1, 2), 0U); // Paused: it comes back with the next start.
    EXPECT_EQ(set(1, 3), 1U);
    EXPECT_EQ(set(0, 2), 0U);
}

} // namespace

} // namespace kivo::test
