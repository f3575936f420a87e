#include "host/sign/SecretStore.h"

#include "tests/host/sign/Keyring.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

namespace kivo::test {

namespace {

constexpr char kSecret[] = "a secret of \xC3\xA4ll kinds";

// What a program notices that is ended when its bus goes.
volatile std::sig_atomic_t ended = 0;

TEST(SecretStore, KeepsPasswordsByAddressAndLivesWithoutAKeyring)
{
    Keyring keyring;
    ASSERT_TRUE(keyring.IsUp());
    const auto store = host::MakeSecretStore();
    EXPECT_EQ(store->Read(u"bob@sign.example"), std::nullopt);
    ASSERT_TRUE(store->Write(u"bob@sign.example", kSecret));
    ASSERT_TRUE(store->Write(u"eve@sign.example", "another"));
    EXPECT_EQ(store->Read(u"bob@sign.example"), kSecret);
    EXPECT_EQ(host::MakeSecretStore()->Read(u"eve@sign.example"), "another");
    EXPECT_FALSE(keyring.HoldsOnDisk("a secret"));
    ASSERT_TRUE(store->Write(u"bob@sign.example", "changed"));
    EXPECT_EQ(store->Read(u"bob@sign.example"), "changed");
    store->Erase(u"bob@sign.example");
    EXPECT_EQ(store->Read(u"bob@sign.example"), std::nullopt);
    EXPECT_EQ(store->Read(u"eve@sign.example"), "another");

    std::signal(SIGTERM, [](int) { ended = 1; });
    keyring.KillKeyring();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(store->Read(u"eve@sign.example"), std::nullopt);
    EXPECT_FALSE(store->Write(u"eve@sign.example", "more"));
    keyring.KillBus();
    EXPECT_EQ(store->Read(u"eve@sign.example"), std::nullopt);
    EXPECT_EQ(host::MakeSecretStore()->Read(u"eve@sign.example"), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    // The bus' end is noticed by a thread of its library, some time after.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(ended, 0);
    std::signal(SIGTERM, SIG_DFL);
}

} // namespace

} // namespace kivo::test
