#include "shell/contracts/ui/SkinSplitter.h"

#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinManager.h"

#include <algorithm>

namespace kivo::ui {

CSkinSplitter::CSkinSplitter(int /*style*/, int /*reserved*/) {}

CSkinSplitter::~CSkinSplitter() = default;

int CSkinSplitter::Create(CWnd* /*parent*/, const String& buildKey)
{
    const int created = CreatePeer() ? 1 : 0;
    if (const TiXmlNode* node = CSkinManager::GetInstance()->GetBuildNode(buildKey))
        BuildFromXML(node);
    for (const char16_t* id : {u"Pane0", u"Pane1"}) {
        if (GetPane(1) != nullptr)
            break;
        auto* pane = new CSkinPanel;
        pane->SetObjectID(id);
        RegisterControl(pane);
        pane->CreatePeer();
    }
    fixedSize_ = std::max(GetPane(fixedPane_)->GetWantedSize().height, GetMinimum(fixedPane_));
    RePositionSubControls();
    return created;
}

std::unique_ptr<IPeer> CSkinSplitter::MakePeer()
{
    return GetPeerFactory().MakeSplitter(*this);
}

CSkinPanel* CSkinSplitter::GetPane(int pane) const
{
    int index = 0;
    for (CSkinObject* control : GetControls())
        if (auto* panel = dynamic_cast<CSkinPanel*>(control))
            if (index++ == pane && pane < 2)
                return panel;
    return nullptr;
}

int CSkinSplitter::GetMinimum(int pane) const
{
    const CSkinPanel* panel = GetPane(pane);
    return panel != nullptr ? panel->GetMinimumSize().height : 0;
}

int CSkinSplitter::GetPaneHeight(int pane) const
{
    const CSkinPanel* panel = GetPane(pane);
    return panel != nullptr ? panel->GetHeight() : 0;
}

void CSkinSplitter::SetFixedPane(int pane)
{
    if (pane == fixedPane_ || pane < 0 || pane > 1)
        return;
    fixedPane_ = pane;
    fixedSize_ = std::max(GetPaneHeight(pane), GetMinimum(pane));
}

void CSkinSplitter::SetFixedPaneSize(int size)
{
    fixedSize_ = std::max(size, GetMinimum(fixedPane_));
    RePositionSubControls();
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the splitter shows.
void CSkinSplitter::SetPaneVisible(int pane, int visible)
{
    if (CSkinPanel* panel = GetPane(pane))
        panel->SetVisible(visible);
}

bool CSkinSplitter::IsPaneVisible(int pane) const
{
    const CSkinPanel* panel = GetPane(pane);
    return panel != nullptr && panel->IsSetVisible();
}

void CSkinSplitter::SetBarVisible(int visible)
{
    barVisible_ = visible != 0;
}

void CSkinSplitter::RePositionSubControls()
{
    const int width = GetWidth();
    const int height = GetHeight();
    Rect bar;
    if (IsPaneVisible(0) && IsPaneVisible(1)) {
        const int barSize = barVisible_ ? std::min(kBarSize, height) : 0;
        const int room = height - barSize;
        const int most = std::max(0, room - GetMinimum(1 - fixedPane_));
        const int fixed = std::clamp(fixedSize_, 0, most);
        const int upper = fixedPane_ == 0 ? fixed : room - fixed;
        bar = {0, upper, width, upper + barSize};
        GetPane(0)->CalculateBounds({0, 0, width, upper});
        GetPane(1)->CalculateBounds({0, bar.bottom, width, height});
    } else if (IsPaneVisible(0) || IsPaneVisible(1)) {
        GetPane(IsPaneVisible(0) ? 0 : 1)->CalculateBounds({0, 0, width, height});
    }
    bar_ = HeightOf(bar) > 0 ? bar : Rect{};
    Tell(Change::Bar);
}

void CSkinSplitter::OnBarDragBegin()
{
    dragStart_ = GetPaneHeight(fixedPane_);
}

void CSkinSplitter::OnBarDragged(int delta)
{
    MoveBar(fixedPane_ == 0 ? dragStart_ + delta : dragStart_ - delta);
}

void CSkinSplitter::OnBarKey(int delta)
{
    OnBarDragBegin();
    OnBarDragged(delta);
}

void CSkinSplitter::MoveBar(int fixedSize)
{
    if (HeightOf(bar_) == 0)
        return;
    const int most = GetHeight() - HeightOf(bar_) - GetMinimum(1 - fixedPane_);
    SetFixedPaneSize(std::min(fixedSize, std::max(0, most)));
}

} // namespace kivo::ui
