#include "host/sign/SignNetwork.h"

#include "tests/host/NotingSigns.h"
#include "tests/host/ScriptedSignNetwork.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

class SignNetworkTest : public testing::Test {
protected:
    SignNetworkTest() { network_.SetListener(&page_); }

    void SignIn() { network_.SignIn({u"ann@sign.example", u"", 0, {}}); }
    void Play(const String& title) { network_.SetSign(u"music", title, Property()); }

    test::NotingSigns page_;
    bool isInstalled_ = true;
    ScriptedSignNetwork* online_ = nullptr; // Once it is needed; the network's.
    SignNetwork network_{u"ann", [this](const String& localName) {
                             std::unique_ptr<ScriptedSignNetwork> made;
                             if (isInstalled_)
                                 made = std::make_unique<ScriptedSignNetwork>();
                             online_ = made.get();
                             if (made)
                                 made->ownId = localName;
                             return made;
                         }};
};

TEST_F(SignNetworkTest, IsLocalUntilTheFirstSignIn)
{
    Play(u"Song");
    network_.AddContact(u"bob@sign.example");
    network_.GivePassword("secret", /*keep=*/true);
    network_.TryNow();
    EXPECT_EQ(online_, nullptr);
    EXPECT_EQ(network_.GetOwnId(), u"ann");
    network_.RemoveSign();
    network_.RemoveSign();
    EXPECT_EQ(page_.Take(), "ann plays music Song. ann plays nothing. ");
}

TEST_F(SignNetworkTest, TheSignInHandsOverWhatWasWantedBefore)
{
    network_.SetPublishing(/*publish=*/true, /*withAddress=*/false);
    Play(u"Song");
    SignIn();
    ASSERT_NE(online_, nullptr);
    EXPECT_EQ(online_->TakeLog(), u"publish:title sign:Song in:ann@sign.example@:0 ");
    EXPECT_EQ(page_.states.back(), SignConnection::Connecting);

    network_.RemoveSign();
    network_.SignOut();
    SignIn();
    EXPECT_EQ(online_->TakeLog(), u"unsign out in:ann@sign.example@:0 ") << "the same network";
}

TEST_F(SignNetworkTest, WithoutTheModuleItSaysSoAndTriesAgainNextTime)
{
    isInstalled_ = false;
    SignIn();
    EXPECT_EQ(page_.states.back(), SignConnection::Unavailable);
    Play(u"Next");
    EXPECT_EQ(page_.Take(), "ann plays music Next. ") << "the own line goes on";
    network_.SignOut();
    EXPECT_EQ(page_.states.back(), SignConnection::LocalOnly);

    isInstalled_ = true;
    SignIn();
    ASSERT_NE(online_, nullptr);
    EXPECT_EQ(online_->TakeLog(), u"hide sign:Next in:ann@sign.example@:0 ");
}

} // namespace
} // namespace kivo::host
