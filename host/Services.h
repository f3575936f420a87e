#pragma once

#include "host/HostServices.h"
#include "host/SettingWatches.h"
#include "shell/contracts/base/Property.h"

namespace kivo {
class IPluginWindowLayout;
}

namespace kivo::host {

class Account;
class HostSettings;
class IMessages;
class ISignNetwork;

// The setting by which the user lets contacts see what plays, under the name by which it is
// watched.
inline constexpr char16_t kSignSetting[] = u"usign_setting";

// What stands behind the exported functions: settings, watches, signs, pages, texts and boxes.
// Registered from its constructor to its end. Thread: user interface.
class Services final : public IHostServices {
public:
    struct Parts { // All borrowed.
        HostSettings& settings;
        Account& account;
        ISignNetwork& signs;
        IMessages& messages;
        IPluginWindowLayout& pages;
    };

    // `directory` is the user's, ending in a separator.
    Services(const Parts& parts, const String& directory);
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
    ~Services();

    // The user's switch. Off takes away what is shown before anybody who watches hears of it. It is
    // the account's will to publish while that is on, and a setting of its own while it isn't.
    void ShowMediaState(bool show);

    // The account is on or off now, or allows other things.
    void OnAccountChanged();

    bool RegisterPluginWindow(IPluginWindow* window) override;
    void UnregisterPluginWindow(IPluginWindow* window) override;
    void SetStateSign(IPlugin* plugin,
                      const String& kind,
                      const String& title,
                      const Property& sign) override;
    void RemoveStateSign(IPlugin* plugin) override;
    [[nodiscard]] bool IsMediaStateShown() const override;
    [[nodiscard]] String GetMyUid() const override;
    [[nodiscard]] String GetMyDir() const override;
    void Watch(void* watcher, const SettingDelegate& delegate, const String& key) override;
    void Revoke(void* watcher) override;
    [[nodiscard]] String GetText(const String& id) const override;
    bool ShowMessage(int code, const String& title, const String& message, int style) override;
    void CountUse(int tag) override;

    // Whose sign is out; null: nobody's.
    [[nodiscard]] IPlugin* GetSigningPlugin() const { return signingPlugin_; }

    // The user goes to what the own sign shows; nothing happens while none is out.
    void ActivateOwnSign();

private:
    void TellNetwork() const;

    Parts parts_;
    String directory_;
    bool wasShown_ = false; // As those who watch have last heard.
    SettingWatches watches_;
    IPlugin* signingPlugin_ = nullptr;
    Property ownSign_;
};

} // namespace kivo::host
