#include "shell/contracts/ui/SkinForm.h"

#include "platform/ui/Layout.h"
#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <algorithm>

namespace kivo::ui {

namespace {

IFormPeer* FormPeerOf(const CSkinForm& form)
{
    return static_cast<IFormPeer*>(form.GetPeer());
}

} // namespace

CSkinForm::CSkinForm() = default;

CSkinForm::~CSkinForm()
{
    if (modal_)
        DoCancelWndModal(0);
    CSkinWndManager& manager = *CSkinWndManager::GetInstance();
    std::erase(manager.modalForms_, this);
    if (manager.mainForm_ == this)
        manager.mainForm_ = nullptr;
    EndLife();
    ReleaseControls();
}

bool CSkinForm::CreateHandle()
{
    if (!CSkinWnd::CreateHandle())
        return false;
    buildFailed_ = BuildForm() == 0;
    FitContent();
    return true;
}

int CSkinForm::BuildForm()
{
    const TiXmlNode* node = CSkinManager::GetInstance()->GetFormNode(GetObjectID());
    return node != nullptr ? BuildFromXML(node) : 1;
}

Size CSkinForm::GetWantedSize() const
{
    const Size need = MeasureControls(*this);
    const Size set = GetSetSize();
    const Size minimum = GetMinimumSize();
    return {std::max({set.width, minimum.width, need.width}),
            std::max({set.height, minimum.height, need.height})};
}

void CSkinForm::FitContent()
{
    // Twice: how high a text of many lines is shows once the first layout has given it its width.
    for (int pass = 0; pass < 2; ++pass) {
        const Rect bounds = GetBoundsRect();
        const Size wanted = GetWantedSize();
        SetBoundsRect({bounds.left,
                       bounds.top,
                       bounds.left + std::max(WidthOf(bounds), wanted.width),
                       bounds.top + std::max(HeightOf(bounds), wanted.height)});
        RePositionSubControls();
    }
}

void CSkinForm::SetVisible(int visible)
{
    if (visible != 0 && !IsSetVisible())
        FitContent();
    CSkinWnd::SetVisible(visible);
}

int CSkinForm::DoWndModal()
{
    IFormPeer* peer = FormPeerOf(*this);
    if (modal_ || !IsWindow() || buildFailed_ || peer == nullptr)
        return 0;
    int result = 0;
    if (!ended_) {
        const LifeWatch life = Watch();
        std::vector<CSkinForm*>& open = CSkinWndManager::GetInstance()->modalForms_;
        open.push_back(this);
        modal_ = true;
        SetVisible(1);
        result = peer->RunModal();
        if (!life.IsAlive())
            return 0;
        std::erase(open, this);
        modal_ = false;
        SetVisible(0);
    }
    if (ended_)
        result = endResult_;
    ended_ = false;
    return result;
}

void CSkinForm::DoCancelWndModal(int result)
{
    if (ended_)
        return;
    ended_ = true;
    endResult_ = result;
    IFormPeer* peer = FormPeerOf(*this);
    if (modal_ && peer != nullptr)
        peer->EndModal(result);
}

void CSkinForm::InterruptByForce()
{
    const std::vector<CSkinForm*> open = CSkinWndManager::GetInstance()->GetModalForms();
    const auto self = std::find(open.begin(), open.end(), this);
    for (auto form = open.end(); form != self && self != open.end();) {
        --form;
        (*form)->DoCancelWndModal(0);
    }
}

CSkinForm* CSkinForm::GetModalChildForm() const
{
    const std::vector<CSkinForm*>& open = CSkinWndManager::GetInstance()->GetModalForms();
    const auto self = std::find(open.begin(), open.end(), this);
    const auto next = self == open.end() ? open.begin() : self + 1;
    return next != open.end() && (*next)->IsWindow() ? *next : nullptr;
}

void CSkinForm::SetDefaultOKButton(CSkinObject* button)
{
    okButton_ = button;
    Tell(Change::DefaultButton);
    if (button != nullptr && button->GetPeer() != nullptr)
        button->GetPeer()->Apply(Change::DefaultButton);
}

void CSkinForm::SetDefaultFocusObj(CSkinObject* object)
{
    focusObject_ = object;
    const IFormPeer* peer = FormPeerOf(*this);
    if (active_ && peer != nullptr && !peer->HasFocus())
        OnActivate(/*active=*/true);
}

void CSkinForm::FocusObject(CSkinObject* object)
{
    wantedFocus_ = object;
    IPeer* peer = object != nullptr ? object->GetPeer() : nullptr;
    if (peer != nullptr)
        peer->SetFocus();
}

void CSkinForm::BringToTop()
{
    SetVisible(1);
    if (IFormPeer* peer = FormPeerOf(*this))
        peer->BringToTop();
}

int CSkinForm::OnSysButton(const String& /*button*/)
{
    return 0;
}

int CSkinForm::OnQueryCloseForm()
{
    return 1;
}

LPARAM CSkinForm::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case wndmessage::kActivate: OnActivate(wParam != 0); return 0;
    case wndmessage::kClose: OnClose(); return 0;
    default: return CSkinWnd::WindowProc(message, wParam, lParam);
    }
}

void CSkinForm::OnActivate(bool active)
{
    active_ = active;
    if (!active)
        return;
    const IFormPeer* peer = FormPeerOf(*this);
    CSkinObject* object = wantedFocus_;
    if (object == nullptr && peer != nullptr && !peer->HasFocus())
        object = focusObject_;
    wantedFocus_ = nullptr;
    if (object != nullptr && object->GetPeer() != nullptr)
        object->GetPeer()->SetFocus();
}

void CSkinForm::OnClose()
{
    const LifeWatch life = Watch();
    if (OnSysButton(kSysButtonClose) != 0 || !life.IsAlive())
        return;
    if (modal_) {
        DoCancelWndModal(0);
        return;
    }
    if (OnQueryCloseForm() != 0 && life.IsAlive())
        SetVisible(0);
}

void CSkinForm::ForgetObject(const CSkinObject* object)
{
    for (CSkinObject** held : {&okButton_, &focusObject_, &wantedFocus_})
        if (*held == object)
            *held = nullptr;
}

std::unique_ptr<IPeer> CSkinForm::MakePeer()
{
    return GetPeerFactory().MakeForm(*this);
}

CSkinWndManager* CSkinWndManager::GetInstance()
{
    static CSkinWndManager manager;
    return &manager;
}

void CSkinWndManager::InterruptAllModalForms()
{
    const std::vector<CSkinForm*> open = modalForms_;
    for (auto form = open.rbegin(); form != open.rend(); ++form)
        (*form)->DoCancelWndModal(0);
}

} // namespace kivo::ui
