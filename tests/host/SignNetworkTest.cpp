#include "host/sign/SignNetwork.h"

#include "tests/host/ScriptedSignNetwork.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::host {
namespace {

// Writes down what a page would show.
class Page final : public ISignNetworkListener {
public:
    void OnState(const SignState& state) override { states.push_back(state.connection); }
    void OnContact(const SignContact& /*contact*/) override {}
    void OnContactGone(const String& /*id*/) override {}
    void OnContactAsks(const String& /*id*/) override {}
    void OnSign(const String& id,
                const String& /*kind*/,
                const String& title,
                const Property& /*sign*/) override
    {
        signs.push_back(id + u":" + title);
    }
    void OnSignGone(const String& id) override { signs.push_back(id + u" gone"); }

    std::vector<SignConnection> states;
    std::vector<String> signs;
};

class SignNetworkTest : public testing::Test {
protected:
    SignNetworkTest() { network_.SetListener(&page_); }

    Page page_;
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
    network_.SetSign(u"music", u"Song", Property());
    network_.AddContact(u"bob@sign.example");
    network_.GivePassword("secret", /*keep=*/true);
    network_.TryNow();
    EXPECT_EQ(online_, nullptr);
    EXPECT_EQ(network_.GetOwnId(), u"ann");
    EXPECT_EQ(page_.signs, std::vector<String>{u"ann:Song"});
    network_.RemoveSign();
    network_.RemoveSign();
    EXPECT_EQ(page_.signs, (std::vector<String>{u"ann:Song", u"ann gone"}));
}

TEST_F(SignNetworkTest, TheSignInHandsOverWhatWasWantedBefore)
{
    network_.SetPublishing(/*publish=*/true, /*withAddress=*/false);
    network_.SetSign(u"music", u"Song", Property());
    page_.states.clear();
    network_.SignIn({u"ann@sign.example", u"", 0, {}});
    ASSERT_NE(online_, nullptr);
    EXPECT_EQ(online_->TakeLog(), u"publish:title sign:Song in:ann@sign.example@:0 ");
    EXPECT_EQ(page_.states.back(), SignConnection::Connecting);

    network_.RemoveSign();
    network_.SignOut();
    network_.SignIn({u"ann@sign.example", u"", 0, {}});
    EXPECT_EQ(online_->TakeLog(), u"unsign out in:ann@sign.example@:0 ") << "the same network";
}

TEST_F(SignNetworkTest, WithoutTheModuleItSaysSoAndTriesAgainNextTime)
{
    isInstalled_ = false;
    network_.SetSign(u"music", u"Song", Property());
    network_.SignIn({u"ann@sign.example", u"", 0, {}});
    EXPECT_EQ(page_.states.back(), SignConnection::Unavailable);
    network_.SetSign(u"music", u"Next", Property());
    EXPECT_EQ(page_.signs.back(), u"ann:Next") << "the own line goes on";
    network_.SignOut();
    EXPECT_EQ(page_.states.back(), SignConnection::LocalOnly);

    isInstalled_ = true;
    network_.SignIn({u"ann@sign.example", u"", 0, {}});
    ASSERT_NE(online_, nullptr);
    EXPECT_EQ(online_->TakeLog(), u"hide sign:Next in:ann@sign.example@:0 ");
}

} // namespace
} // namespace kivo::host
