#include "shell/contracts/base/IPlugin.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/ui/SkinManager.h"

namespace kivo {

int IPlugin::IsLoaded()
{
    return isLoaded_;
}

int IPlugin::OnLoad(CWnd* /*parent*/, IPluginWindowLayout* /*layout*/)
{
    isLoaded_ = 1;
    return 1;
}

int IPlugin::OnUnLoad()
{
    isLoaded_ = 0;
    loadWord_ = 0;
    return 1;
}

int IPlugin::OnRemove()
{
    return 1;
}

ui::IMenu* IPlugin::OnQueryFunMenu(const MenuDelegate& /*chosen*/)
{
    return nullptr;
}

void IPlugin::OnDoFunMenu(std::vector<String>& /*users*/, ui::IMenu* /*entry*/) {}

// NOLINTBEGIN(performance-unnecessary-value-param): host and plug-in pass these by value
void IPlugin::OnSignatureFun(String /*user*/, Property /*sign*/) {}

String IPlugin::GetStateSignIconPath(String /*kind*/)
{
    return {};
}

ui::CSkinTreeItem* IPlugin::OnQueryMainListSearchResult(unsigned /*id*/, const String& /*text*/)
{
    return nullptr;
}

void IPlugin::OnListItemExtFun(String /*item*/) {}

bool IPlugin::IsCanReceiveMsg(int /*kind*/)
{
    return false;
}

void IPlugin::OnEditorPluginLink(CExtraEditor* /*editor*/, unsigned /*id*/, Property /*link*/) {}

// NOLINTEND(performance-unnecessary-value-param)

bool IPlugin::BuildMsgLogTreeNode(ui::CSkinTreeItem* /*node*/)
{
    return false;
}

int IPlugin::GetPluginMenuType()
{
    return 0;
}

ui::IMenu* IPlugin::OnQueryWorkMenu(const MenuDelegate& /*chosen*/)
{
    return nullptr;
}

void IPlugin::OnDoWorkMenu(std::vector<String>& /*users*/, ui::IMenu* /*entry*/) {}

void IPlugin::OnLocalNotify(Property& /*notice*/) {}

int IPlugin::ResetSkinFile()
{
    ui::CSkinManager* const skins = ui::CSkinManager::GetInstance();
    if (skinFile_.empty() || !common::IsFileExist(skinFile_) ||
        skins->IncludeSkinFile(skinFile_) == 0)
        return 2;
    if (buildFile_.empty() || !common::IsFileExist(buildFile_))
        return 1;
    return skins->IncludeSkinBuildFile(buildFile_) != 0 ? 0 : 1;
}

int IPlugin::QueryUnInstallEnabled(String& /*reason*/)
{
    return 1;
}

void IPlugin::EnableUnInstall(int /*enabled*/) {}

void IPlugin::OnPacket(const Property& /*packet*/) {}

} // namespace kivo
