#include "host/ContactsPage.h"

#include "shell/contracts/ui/SkinManager.h"

namespace kivo::host {

namespace {

constexpr int kLeastForPicture = 360; // Pixels of height; below it the texts need the room.

} // namespace

ContactsPage::ContactsPage()
{
    SetObjectID(u"ContactsPage");
    SetSkinName(u"contacts");
    SetAnchorStyle(ui::anchor::kFill);
}

void ContactsPage::Build()
{
    BuildFromXML(ui::CSkinManager::GetInstance()->GetBuildNode(u"KIVO ContactsPage"));
}

void ContactsPage::CalculateBounds(const Rect& place)
{
    if (CSkinObject* const picture = FindControlRecusive(u"ContactsPicture"))
        picture->SetVisible(ui::HeightOf(place) >= kLeastForPicture ? 1 : 0);
    CSkinPanel::CalculateBounds(place);
}

} // namespace kivo::host
