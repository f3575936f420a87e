#include "forms/TrackPickers.h"

#include "forms/AddFileForm.h"
#include "forms/AddURLForm.h"
#include "medialib/NewerFormats.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/FileDialog.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinWndManager.h"

namespace kivo::tunehive {

namespace {

constexpr StringView kFilter =
    u"%s|*.mp3;*.mp2;*.mp1;*.acc;*.wma;*.wmv;*.asf;*.mid;*.midi;*.cda;*.ape;*.mpg;*.mpeg;*.m2v;"
    u"*.avi;*.mp4%s|%s|*.m3u;*.pls|%s|*.*||";

String MakeFilter()
{
    const auto* language = common::CMutiLanSupport::GetInstance();
    if (language == nullptr)
        return {};
    String newer;
    if (IsBeyond()) {
        for (const NewerFormat& format : GetNewerFormats())
            newer += u";*." + String(format.extension);
    }
    return common::FormatText(kFilter,
                              {language->GetStringViaID(u"STRID_TUNEHIVE_MEDIAFILE"),
                               newer,
                               language->GetStringViaID(u"STRID_TUNEHIVE_LISTFILE"),
                               language->GetStringViaID(u"STRID_TUNEHIVE_ALLFILE")});
}

} // namespace

int TrackPickers::ShowAddFileForm(CWnd* parent, String& group)
{
    const Released<CAddFileForm> form(new CAddFileForm);
    if (form->Create(parent) == 0 || form->DoWndModal() != 1 || form->GetGroup().empty())
        return 0;
    group = form->GetGroup();
    return 1;
}

int TrackPickers::ShowAddURLForm(CWnd* parent, String& group, String& url, String& name)
{
    const Released<CAddURLForm> form(new CAddURLForm(group, url, name));
    if (form->Create(parent) == 0 || form->DoWndModal() != 1)
        return 0;
    group = form->GetGroup();
    url = form->GetURL();
    name = form->GetName();
    return 1;
}

int TrackPickers::PickMediaFiles(CWnd* parent, CStringArray& paths)
{
    CFileDialog dialog(parent, MakeFilter());
    if (!GetOpenPath().empty())
        dialog.SetInitialDirectory(GetOpenPath());
    if (!dialog.DoModal())
        return 0;
    for (const String& path : dialog.GetPaths()) {
        paths.push_back(path);
        SetOpenPath(common::GetFileDirFromPath(path));
    }
    return 1;
}

int TrackPickers::PickFolder(CWnd* /*parent*/, String& folder)
{
    const String title =
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_SELECTDIR");
    // The whole program waits for a folder, wherever it was asked for.
    const String chosen =
        SHBrowseForFolderW(ui::CSkinWndManager::GetInstance()->GetMainForm(), title);
    if (chosen.empty())
        return 0;
    folder = chosen;
    return 1;
}

} // namespace kivo::tunehive
