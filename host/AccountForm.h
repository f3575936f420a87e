#pragma once

#include "host/HostForm.h"
#include "host/sign/ISignNetwork.h"

namespace kivo::host {

// Where to sign in, and what may leave. Thread: user interface; modal.
class AccountForm final : public HostForm {
public:
    struct Choice {
        SignAccount account;
        std::string password; // Empty: the one that is kept.
        bool keepsPassword = true;
        bool publishes = false;
        bool isTitleOnly = false;
    };

    // `hasKept`: a password of the preset account may be in the keyring.
    AccountForm(Choice preset, bool hasKept);

    [[nodiscard]] const Choice& GetChoice() const { return choice_; } // After Ask said yes.

protected:
    void Fill() override;
    bool Accept() override;
    void OnButton(CSkinObject& button) override;

private:
    [[nodiscard]] bool CheckAddress(const String& address);
    [[nodiscard]] bool CheckPassword(const String& address, const String& password);
    [[nodiscard]] bool CheckServer(const String& server, const String& port);
    void ShowMore();

    Choice choice_;
    bool hasKept_;
};

} // namespace kivo::host
