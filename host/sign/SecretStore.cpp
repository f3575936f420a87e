#include "host/sign/SecretStore.h"

#include "shell/contracts/common/Text.h"

#include <libsecret/secret.h>

#include <string>

namespace kivo::host {

namespace {

constexpr char kAddress[] = "address";

// What a password is found by. The name keeps it apart from those of other programs.
const SecretSchema* GetSchema()
{
    static const SecretSchema schema = [] {
        SecretSchema made{};
        made.name = "x.kivo.SignAccount";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {kAddress, SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return &schema;
}

// The error of one call, freed with it.
class Error {
public:
    Error() = default;
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;
    ~Error() { g_clear_error(&error_); }

    [[nodiscard]] GError** Get() { return &error_; }

private:
    GError* error_ = nullptr;
};

// By default the end of the session's bus is the program's, too. Nothing: there is no bus.
GDBusConnection* ConnectLoosely()
{
    Error error;
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.Get());
    if (bus != nullptr)
        g_dbus_connection_set_exit_on_close(bus, FALSE);
    return bus;
}

class SecretStore final : public ISecretStore {
public:
    SecretStore() = default;
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    ~SecretStore() override { g_clear_object(&bus_); }

    std::optional<std::string> Read(const String& address) override
    {
        Error error;
        Connect();
        const std::string name = common::CString_to_utf8(address);
        gchar* const found = secret_password_lookup_sync(
            GetSchema(), nullptr, error.Get(), kAddress, name.c_str(), nullptr);
        if (found == nullptr)
            return std::nullopt;
        std::string password(found);
        secret_password_free(found);
        return password;
    }

    bool Write(const String& address, const std::string& password) override
    {
        Error error;
        Connect();
        const std::string name = common::CString_to_utf8(address);
        const std::string label = "kivo: " + name;
        return secret_password_store_sync(GetSchema(),
                                          SECRET_COLLECTION_DEFAULT,
                                          label.c_str(),
                                          password.c_str(),
                                          nullptr,
                                          error.Get(),
                                          kAddress,
                                          name.c_str(),
                                          nullptr) != 0;
    }

    void Erase(const String& address) override
    {
        Error error;
        Connect();
        const std::string name = common::CString_to_utf8(address);
        secret_password_clear_sync(
            GetSchema(), nullptr, error.Get(), kAddress, name.c_str(), nullptr);
    }

private:
    void Connect()
    {
        if (bus_ == nullptr)
            bus_ = ConnectLoosely();
    }

    GDBusConnection* bus_ = nullptr; // The one that the keyring's library uses.
};

} // namespace

std::unique_ptr<ISecretStore> MakeSecretStore()
{
    return std::make_unique<SecretStore>();
}

} // namespace kivo::host
