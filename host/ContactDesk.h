#pragma once

#include "shell/contracts/base/String.h"

namespace kivo {
class CWnd;
}

namespace kivo::host {

class Account;
class Contacts;
class ISignNetwork;
class Services;

// What the user decides about the account and its contacts: it asks what has to be asked, and hands
// the answer to settings and network. Thread: user interface.
class ContactDesk {
public:
    struct Parts { // All borrowed.
        ISignNetwork& signs;
        Account& account;
        Contacts& contacts;
        Services& services;
    };

    explicit ContactDesk(const Parts& parts);

    // The window over which the questions open; borrowed. Null: none.
    void SetWindow(CWnd* window) { window_ = window; }

    // Who serves the account: what the user has said, else what the address says.
    [[nodiscard]] String GetServer() const;

    void SignIn(); // If the account is on.
    void TryNow();

    void SetUpAccount();
    void SignOut(); // The account keeps its fields for the next time.
    void GivePassword();
    void JudgeCertificate();
    void SetTitleOnly(bool titleOnly);

    void AddContact();
    void Answer(const String& id);
    void Remove(const String& id);
    void Rename(const String& id, const String& name);

private:
    Parts parts_;
    CWnd* window_ = nullptr;
};

} // namespace kivo::host
