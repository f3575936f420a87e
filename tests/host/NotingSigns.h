#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/common/Text.h"

#include <string>
#include <utility>
#include <vector>

namespace kivo::test {

// Hears a network of signs, and writes it down as a user would tell it: "bob plays music Song. ".
class NotingSigns final : public host::ISignNetworkListener {
public:
    void OnState(const host::SignState& state) override { states.push_back(state.connection); }
    void OnContact(const host::SignContact& contact) override
    {
        constexpr const char* kWords[] = {"offline", "online", "away", "busy"};
        Add(contact.id, kWords[static_cast<int>(contact.presence)]);
        names.push_back(contact.name);
    }
    void OnContactGone(const String& id) override { Add(id, "gone"); }
    void OnContactAsks(const String& id) override { Add(id, "asks"); }
    void OnRequestGone(const String& id) override { Add(id, "asks no more"); }
    void OnSign(const String& id,
                const String& kind,
                const String& title,
                const Property& /*sign*/) override
    {
        Add(id, "plays " + common::CString_to_utf8(kind + u" " + title));
    }
    void OnSignGone(const String& id) override { Add(id, "plays nothing"); }

    std::string Take() { return std::exchange(heard_, {}); }

    std::vector<host::SignConnection> states;
    std::vector<String> names; // Of contacts, as often as they were told.

private:
    void Add(const String& id, const std::string& what)
    {
        const std::string name = common::CString_to_utf8(id);
        heard_ += name.substr(0, name.find('@')) + " " + what + ". ";
    }

    std::string heard_;
};

} // namespace kivo::test
