#pragma once

#include "host/HostForm.h"

#include <string>

namespace kivo::host {

// Asks for the password of an account. Thread: user interface; modal.
class PasswordForm final : public HostForm {
public:
    explicit PasswordForm(const String& address);

    // After Ask said yes.
    [[nodiscard]] const std::string& GetPassword() const { return password_; } // Never empty.
    [[nodiscard]] bool IsToBeKept() const { return isToBeKept_; }

protected:
    void Fill() override;
    bool Accept() override;

private:
    String address_;
    std::string password_;
    bool isToBeKept_ = true;
};

} // namespace kivo::host
