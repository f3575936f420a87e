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

class SecretStore final : public ISecretStore {
public:
    std::optional<std::string> Read(const String& address) override
    {
        Error error;
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
        const std::string name = common::CString_to_utf8(address);
        secret_password_clear_sync(
            GetSchema(), nullptr, error.Get(), kAddress, name.c_str(), nullptr);
    }
};

} // namespace

std::unique_ptr<ISecretStore> MakeSecretStore()
{
    return std::make_unique<SecretStore>();
}

} // namespace kivo::host
