#include "host/sign/SignMail.h"

#include "platform/base/PostQueue.h"
#include "tests/host/NotingSigns.h"

#include <gtest/gtest.h>
#include <poll.h>

namespace kivo::test {

namespace {

using host::SignMail;

// Hands what comes on to a page.
struct Receiver final : SignMail::IReceiver {
    void OnMail(const SignMail::Event& event, unsigned /*session*/) override
    {
        event(page);
        ++count;
    }

    NotingSigns page;
    int count = 0;
};

bool IsWoken(const SignMail& mail)
{
    pollfd entry{mail.GetWakeDescriptor(), POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

TEST(SignMail, AFloodIsDeliveredInPartsAndHeldBack)
{
    const auto mail =
        std::make_shared<SignMail>(nullptr, host::SignAddressRule::Any, host::SignPatience());
    Receiver receiver;
    mail->SetReceiver(&receiver);
    for (int i = 0; i < 2000; ++i) {
        EXPECT_FALSE(mail->IsFull());
        mail->Tell(
            [i](host::ISignNetworkListener& page) {
                page.OnContact({{}, String(1, static_cast<char16_t>(i)), {}});
            },
            /*session=*/1);
    }
    EXPECT_TRUE(mail->IsFull());
    EXPECT_FALSE(IsWoken(*mail));
    EXPECT_TRUE(PostQueue::Get().RunOne());
    EXPECT_LT(receiver.count, 2000) << "the window has its turn between the parts";
    EXPECT_FALSE(mail->IsFull());
    EXPECT_TRUE(IsWoken(*mail)) << "the network may go on";
    PostQueue::Get().RunPending();
    ASSERT_EQ(receiver.count, 2000);
    for (int i = 0; i < 2000; ++i)
        EXPECT_EQ(receiver.page.names.at(static_cast<std::size_t>(i)).front(), i);
    mail->SetReceiver(nullptr);
}

} // namespace

} // namespace kivo::test
