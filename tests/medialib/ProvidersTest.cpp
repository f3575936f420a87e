#include "medialib/MP3Provider.h"
#include "medialib/NewerFormats.h"
#include "medialib/NewerFormatsProvider.h"
#include "medialib/WMFProvider.h"
#include "shell/contracts/base/Released.h"
#include "tests/medialib/ScriptedAttributes.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::tunehive {
namespace {

std::vector<int> GetTypes(const ILocalMediaInfoProvider& provider)
{
    std::vector<int> types = {99};
    provider.GetSupportedTypes(types);
    return types;
}

TEST(Providers, NameTheirTypesInOrder)
{
    const Released<ILocalMediaInfoProvider> mp3(new MP3Provider);
    EXPECT_EQ(GetTypes(*mp3), std::vector<int>{0});
    const Released<ILocalMediaInfoProvider> wmf(new WMFProvider);
    EXPECT_EQ(GetTypes(*wmf), (std::vector<int>{1, 2, 4, 6, 0, 3, 5, 7, 9, 10, 11, 12}));
    const Released<ILocalMediaInfoProvider> newer(new NewerFormatsProvider);
    EXPECT_EQ(GetTypes(*newer).size(), GetNewerFormats().size());
}

TEST(Providers, ReadThroughTheHelper)
{
    test::ScriptedAttributes attributes;
    attributes.headers[u"/a.flac"].SetText(u"Title", u"T");
    const Released<ILocalMediaInfoProvider> wmf(new WMFProvider);
    const Released<ILocalMediaInfoProvider> newer(new NewerFormatsProvider);
    for (auto* provider : {wmf.get(), newer.get()}) {
        MediaInfo info;
        EXPECT_EQ(provider->GetMediaInfo(u"/a.flac", info), 1);
        EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    }
    const test::TempFolder folder;
    folder.Write("a.mp3", "no frames");
    const Released<ILocalMediaInfoProvider> mp3(new MP3Provider);
    MediaInfo info;
    EXPECT_EQ(mp3->GetMediaInfo(folder.GetPath("a.mp3"), info), 1);
    EXPECT_EQ(info.size(), 14U);
}

TEST(Providers, AnswerYesForAFileThatCannotBeOpened)
{
    test::ScriptedAttributes attributes;
    const Released<ILocalMediaInfoProvider> mp3(new MP3Provider);
    const Released<ILocalMediaInfoProvider> wmf(new WMFProvider);
    for (auto* provider : {mp3.get(), wmf.get()}) {
        MediaInfo info;
        EXPECT_EQ(provider->GetMediaInfo(u"/missing.mp3", info), 1);
        EXPECT_TRUE(info.empty());
    }
}

} // namespace
} // namespace kivo::tunehive
