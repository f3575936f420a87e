#pragma once

#include "host/HostForm.h"

namespace kivo::host {

// Asks for the address of a friend. Thread: user interface; modal.
class AddContactForm final : public HostForm {
public:
    explicit AddContactForm(String ownId); // Nobody is a friend of their own here.

    [[nodiscard]] const String& GetId() const { return id_; } // After Ask said yes.

protected:
    void Fill() override;
    bool Accept() override;

private:
    String ownId_;
    String id_;
};

} // namespace kivo::host
