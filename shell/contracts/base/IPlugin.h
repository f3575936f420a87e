#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/base/String.h"

#include <array>
#include <cstddef>
#include <vector>

namespace kivo {

class CExtraEditor;
class CWnd;
class IPluginWindowLayout;

namespace ui {
class CSkinTreeItem;
class IMenu;
} // namespace ui

using MenuDelegate = FastDelegate1<ui::IMenu*>;

// A plug-in as the host sees it: what it is, and what the host tells it. The plug-in derives from
// it; host and plug-in share its layout. Thread: user interface.
class KIVO_API IPlugin {
public:
    static constexpr std::size_t kKeyLength = 128;

    IPlugin() = default; // Texts empty, numbers and key zero.
    IPlugin(const IPlugin&) = default;
    IPlugin& operator=(const IPlugin&) = default;

    virtual ~IPlugin() = default;
    [[nodiscard]] virtual int IsLoaded(); // The loaded flag.

    // Brings the plug-in up. `parent` and `layout` are borrowed until OnUnLoad. 0: it failed; call
    // OnUnLoad all the same. The base sets the flag.
    virtual int OnLoad(CWnd* parent, IPluginWindowLayout* layout);
    virtual int OnUnLoad(); // Clears flag and load word. 1.
    virtual int OnRemove(); // 1.

    // Four answers whose meaning is the host's own.
    [[nodiscard]] virtual int GetHostWord1() = 0;
    [[nodiscard]] virtual int GetHostWord2() = 0;
    [[nodiscard]] virtual int GetHostWord3() = 0;
    [[nodiscard]] virtual int GetHostWord4() = 0;

    [[nodiscard]] virtual ui::IMenu* OnQueryFunMenu(const MenuDelegate& chosen); // Null: none.
    virtual void OnDoFunMenu(std::vector<String>& users, ui::IMenu* entry);

    // The user activated the sign of that contact.
    virtual void OnSignatureFun(String user, Property sign);

    // The picture beside a sign of that kind ("music", "video"); empty: none.
    [[nodiscard]] virtual String GetStateSignIconPath(String kind);

    [[nodiscard]] virtual ui::CSkinTreeItem* OnQueryMainListSearchResult(unsigned id,
                                                                         const String& text);
    virtual void OnListItemExtFun(String item);
    [[nodiscard]] virtual bool IsCanReceiveMsg(int kind);
    virtual void OnEditorPluginLink(CExtraEditor* editor, unsigned id, Property link);
    [[nodiscard]] virtual bool BuildMsgLogTreeNode(ui::CSkinTreeItem* node);
    [[nodiscard]] virtual int GetPluginMenuType();
    [[nodiscard]] virtual ui::IMenu* OnQueryWorkMenu(const MenuDelegate& chosen); // Null: none.
    virtual void OnDoWorkMenu(std::vector<String>& users, ui::IMenu* entry);
    virtual void OnLocalNotify(Property& notice);

    // Hands skin and build file to the skin manager. 0: done. 1: the skin alone. 2: nothing.
    virtual int ResetSkinFile();
    [[nodiscard]] virtual int QueryUnInstallEnabled(String& reason); // 1: it may go.
    virtual void EnableUnInstall(int enabled);
    virtual void OnPacket(const Property& packet);

    [[nodiscard]] const String& GetDisplayName() const { return displayName_; }
    [[nodiscard]] const String& GetMaker() const { return maker_; }
    [[nodiscard]] const String& GetDescription() const { return description_; }
    [[nodiscard]] const String& GetVersion() const { return version_; }
    [[nodiscard]] unsigned GetPluginId() const { return pluginId_; }
    [[nodiscard]] const char* GetPluginKey() const { return pluginKey_.data(); }
    [[nodiscard]] const String& GetSkinFile() const { return skinFile_; }
    [[nodiscard]] const String& GetBuildFile() const { return buildFile_; }
    [[nodiscard]] const String& GetStringTableFile() const { return stringTableFile_; }
    [[nodiscard]] const String& GetIconFile() const { return iconFile_; }

protected:
    String displayName_;
    String maker_;
    String description_;
    String version_;
    int infoWord1_ = 0;
    int infoWord2_ = 0;
    unsigned pluginId_ = 0;
    std::array<char, kKeyLength + 1> pluginKey_{}; // Ends in a zero.
    String reservedText_;
    int reservedWord_ = 0;
    int isLoaded_ = 0;
    int loadWord_ = 0;
    String skinFile_; // Full paths, these four.
    String buildFile_;
    String stringTableFile_;
    String iconFile_;
};

// Exported by a plug-in's library as "GetKivoPluginInstance": its one object, which lives as long
// as the library. Null: the library could not start, and is of no use.
using GetKivoPluginInstanceFunction = IPlugin* (*)();

// Exported as "MyPreTranslateMessage": given a platform message; non-zero: it is dealt with.
using MyPreTranslateMessageFunction = int (*)(void* message);

} // namespace kivo
