#pragma once

#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/framework/WinApp.h"

namespace kivo::tunehive {

class TuneHiveRemote;
class TuneHiveWindow;

// The one application object of the library and the plug-in that the host sees. It brings the
// managers and the page up at OnLoad and down at OnUnLoad. Thread: user interface.
class CPlugin_TuneHiveApp : public CWinApp, public IPlugin {
public:
    CPlugin_TuneHiveApp();
    ~CPlugin_TuneHiveApp() override;

    // Loads the host's library and tells it of this one. 0: there is no host.
    int InitInstance() override;
    int ExitInstance() override;

    int OnLoad(CWnd* parent, IPluginWindowLayout* layout) override;
    int OnUnLoad() override;
    int OnRemove() override { return 1; }
    [[nodiscard]] int GetHostWord1() override { return 1; }
    [[nodiscard]] int GetHostWord2() override { return 0; }
    [[nodiscard]] int GetHostWord3() override { return 1; }
    [[nodiscard]] int GetHostWord4() override { return 0; }
    void OnSignatureFun(String user, Property sign) override;
    [[nodiscard]] String GetStateSignIconPath(String kind) override;

    // Null before OnLoad and after OnUnLoad.
    [[nodiscard]] TuneHiveWindow* GetWindow() const { return window_.get(); }
    [[nodiscard]] TuneHiveRemote* GetRemote() const; // Null while no page is open.

private:
    [[nodiscard]] bool StartManagers(const String& directory);
    [[nodiscard]] bool CreateWindow(CWnd* parent);
    void PlaySigned(const String& url, const String& title);
    void ShowPage();

    IPluginWindowLayout* layout_ = nullptr;
    Released<TuneHiveWindow> window_;
};

} // namespace kivo::tunehive
