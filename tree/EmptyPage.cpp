#include "tree/EmptyPage.h"

#include "medialib/AddFolderThread.h"
#include "mediares/GroupIds.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tree/MediaTree.h"
#include "tree/TreeMenus.h"

#include <algorithm>
#include <utility>

namespace kivo::tunehive {

namespace {

// With less room the picture goes first, then the sentence.
struct Yielding {
    const char16_t* id;
    int room; // The least height at which it shows.
};
constexpr Yielding kYielding[] = {
    {u"EmptyPicture", 380},
    {u"EmptyText",    190},
};

struct Road {
    const char16_t* button;
    int command;
};
constexpr Road kRoads[] = {
    {u"EmptyFolderBtn", kCommandAddFolder},
    {u"EmptyFilesBtn",  kCommandAddFiles },
    {u"EmptyURLBtn",    kCommandAddURL   },
};

bool HoldsMusic(const void* row)
{
    const auto* group = static_cast<const ui::CSkinTreeItem*>(row);
    return group->GetID() != kHotGroup && group->GetChildCount() > 0;
}

} // namespace

CEmptyPage::CEmptyPage(CMediaTree& tree)
    : tree_(tree)
{
    SetObjectID(u"EmptyPage");
    ListenEvent(ui::kControlEvent, {this, &CEmptyPage::OnPress});
}

void CEmptyPage::Build()
{
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow %s", {u"KIVO", u"Plugins", GetObjectID()});
    if (const TiXmlNode* node = ui::CSkinManager::GetInstance()->GetBuildNode(key))
        BuildFromXML(node);
    SetVisible(0);
}

bool CEmptyPage::HasMusic() const
{
    const CPtrArray& groups = tree_.GetRoot()->GetChildren();
    return std::any_of(groups.begin(), groups.end(), HoldsMusic);
}

void CEmptyPage::Follow()
{
    if (!IsBeyond() || GetControls().empty() || tree_.GetRoot() == nullptr)
        return;
    const bool hasMusic = HasMusic();
    const bool isFirst = !std::exchange(hadMusic_, hasMusic) && hasMusic;
    const bool wanted = !hasMusic && CAddFolderThread::GetRunningCount() == 0;
    const int rows = wanted ? tree_.GetRowCount() * tree_.GetWantedSize().height : 0;
    const Rect margin{0, rows, 0, 0};
    if (wanted != IsSetVisible() || (wanted && margin != GetMargin())) {
        SetMargin(margin);
        SetVisible(wanted ? 1 : 0);
        tree_.RePositionSubControls();
    }
    if (isFirst)
        UnfoldMusic();
}

void CEmptyPage::UnfoldMusic()
{
    const CPtrArray groups = tree_.GetRoot()->GetChildren();
    for (void* group : groups)
        if (HoldsMusic(group))
            tree_.ExpandGroup(static_cast<ui::CSkinTreeItem*>(group)->GetID());
}

void CEmptyPage::CalculateBounds(const Rect& place)
{
    const int height = ui::HeightOf(place);
    for (const Yielding& part : kYielding) {
        if (ui::CSkinObject* control = FindControlRecusive(part.id))
            control->SetVisible(height >= part.room ? 1 : 0);
    }
    const Rect padding = GetPadding();
    const int width = ui::WidthOf(place) - padding.left - padding.right;
    ShowWords(width);
    Centre(u"EmptyFolderBtn", width);
    Centre(u"EmptyLinks", width);
    CSkinPanel::CalculateBounds(place);
    // With a large font or a long language they need more than that.
    for (const Yielding& part : kYielding) {
        ui::CSkinObject* control = FindControlRecusive(part.id);
        if (control == nullptr || !control->IsSetVisible() || GetWantedSize().height <= height)
            continue;
        control->SetVisible(0);
        RePositionSubControls();
    }
}

// Where the links need the whole line, the small words around them go.
void CEmptyPage::ShowWords(int width)
{
    const ui::CSkinObject* links = FindControlRecusive(u"EmptyLinks");
    for (const char16_t* id : {u"EmptyDot", u"EmptyOr"}) {
        if (ui::CSkinObject* word = FindControlRecusive(id))
            word->SetVisible(1);
    }
    for (const char16_t* id : {u"EmptyOr", u"EmptyDot"}) {
        ui::CSkinObject* word = FindControlRecusive(id);
        if (word != nullptr && links != nullptr && links->GetWantedSize().width > width)
            word->SetVisible(0);
    }
}

// A docked control fills its strip; its margins put it into the middle of it.
void CEmptyPage::Centre(const String& id, int width)
{
    ui::CSkinObject* control = FindControlRecusive(id);
    if (control == nullptr)
        return;
    const int side = std::max(0, (width - control->GetWantedSize().width) / 2);
    const Rect margin = control->GetMargin();
    control->SetMargin({side, margin.top, side, margin.bottom});
}

void CEmptyPage::OnPress(ui::CSkinObject* sender, void* /*data*/)
{
    for (const Road& road : kRoads) {
        if (sender == nullptr || sender->GetObjectID() != road.button)
            continue;
        tree_.AddByCommand(String(kMineGroup), road.command);
        return; // The dialog may have taken the page along.
    }
}

} // namespace kivo::tunehive
