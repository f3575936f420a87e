#include "tests/player/PanelView.h"

#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinManager.h"

#include <gtest/gtest.h>

namespace kivo::test {

PanelView::PanelView()
{
    auto* const language = common::CMutiLanSupport::GetInstance();
    language->AddText(u"STRID_TUNEHIVE_STATE_BUFFER", u"%d percent");
    language->AddText(u"STRID_TUNEHIVE_STATE_TRANSITIONING", u"opening");
    tunehive::SetPlayMode(2);
}

PanelView::~PanelView()
{
    ui::CSkinManager::GetInstance()->Clear();
    common::CMutiLanSupport::GetInstance()->Clear();
    SetBeyond(false);
}

void PanelView::Build()
{
    panel.reset(new tunehive::CPlayerPanel(&page));
    panel->Build(nullptr);
    panel->AttachPlayer();
}

void PanelView::Press(const char16_t* button) const
{
    ui::CSkinObject* const control = panel->FindControlRecusive(button);
    ASSERT_NE(control, nullptr);
    control->FireEvent(ui::kControlEvent, nullptr);
}

bool PanelView::IsShown(const char16_t* id) const
{
    return panel->FindControlRecusive(id)->IsSetVisible();
}

tunehive::CMediaSliderBar& PanelView::Bar() const
{
    return dynamic_cast<tunehive::CMediaSliderBar&>(*panel->FindControlRecusive(u"ProcessBar"));
}

String PanelView::GetStateLine() const
{
    return IsShown(u"StatePanel") ? panel->FindControlRecusive(u"StateLab")->GetText() : String();
}

} // namespace kivo::test
