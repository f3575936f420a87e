#include "shell/contracts/ui/SkinObject.h"

#include "platform/ui/BuildReader.h"
#include "platform/ui/Layout.h"
#include "platform/ui/Peers.h"
#include "shell/contracts/framework/Threads.h"
#include "shell/contracts/ui/SkinForm.h"

#include <algorithm>
#include <cassert>
#include <vector>

namespace kivo::ui {

struct CSkinObject::Extra {
    std::vector<CSkinObject*> controls;
    DelegateList<CSkinObject*, void*> listeners;
    String skinName;
    String buildName;
    String text;
    String tooltip;
    String name;
    String picture;
    LOGFONT font;
    Rect ownPlace;
    Rect padding;
    Rect margin;
    Size minimum;
    int gap = 0;
    std::unique_ptr<IPeer> peer;
    LifeToken life;
};

namespace {

const String kNoText;

Size SizeOf(const Rect& rect)
{
    return {WidthOf(rect), HeightOf(rect)};
}

// Controls belong to the thread that made the first one.
[[maybe_unused]] bool IsUserInterfaceThread()
{
    static const ThreadId thread = GetCurrentThreadId();
    return thread == GetCurrentThreadId();
}

} // namespace

CSkinObject::CSkinObject()
{
    assert(IsUserInterfaceThread());
}

CSkinObject::~CSkinObject()
{
    assert(IsUserInterfaceThread());
    EndLife();
    ReleaseControls();
    DestroyPeer();
    if (parent_ != nullptr)
        parent_->UnregisterControl(this);
}

void CSkinObject::Release()
{
    delete this;
}

CSkinObject::Extra& CSkinObject::GetExtra() const
{
    if (!extra_)
        extra_ = std::make_unique<Extra>();
    return *extra_;
}

void CSkinObject::SetObjectID(const String& id)
{
    id_ = id;
}

void CSkinObject::SetSkinName(const String& skinClass)
{
    GetExtra().skinName = skinClass;
    Tell(Change::Look);
}

const String& CSkinObject::GetSkinName() const
{
    return extra_ ? extra_->skinName : kNoText;
}

void CSkinObject::SetBuildName(const String& name)
{
    GetExtra().buildName = name;
}

const String& CSkinObject::GetBuildName() const
{
    return extra_ ? extra_->buildName : kNoText;
}

void CSkinObject::RegisterControl(CSkinObject* child)
{
    for (const CSkinObject* above = this; above != nullptr; above = above->parent_)
        if (above == child)
            return;
    if (child == nullptr || child->parent_ == this)
        return;
    if (child->parent_ != nullptr)
        child->parent_->UnregisterControl(child);
    GetExtra().controls.push_back(child);
    child->parent_ = this;
    child->Tell(Change::Parent);
}

void CSkinObject::UnregisterControl(CSkinObject* child)
{
    if (child == nullptr || child->parent_ != this)
        return;
    if (CSkinForm* form = GetOwnerForm())
        child->LeaveForm(*form);
    std::erase(GetExtra().controls, child);
    child->parent_ = nullptr;
    child->Tell(Change::Parent);
}

// The form can't hear of the end of what isn't below it any more.
void CSkinObject::LeaveForm(CSkinForm& form) const
{
    form.ForgetObject(this);
    for (CSkinObject* control : GetControls())
        control->LeaveForm(form);
}

const std::vector<CSkinObject*>& CSkinObject::GetControls() const
{
    static const std::vector<CSkinObject*> none;
    return extra_ ? extra_->controls : none;
}

CSkinObject* CSkinObject::FindControlRecusive(const String& id) const
{
    for (CSkinObject* control : GetControls()) {
        if (control->id_ == id)
            return control;
        if (CSkinObject* found = control->FindControlRecusive(id))
            return found;
    }
    return nullptr;
}

CSkinForm* CSkinObject::GetOwnerForm()
{
    return parent_ != nullptr ? parent_->GetOwnerForm() : nullptr;
}

void CSkinObject::SetAnchorStyle(int style)
{
    anchorStyle_ = style;
}

void CSkinObject::SetBounds(int left, int top, int width, int height)
{
    const Rect place{left, top, left + width, top + height};
    GetExtra().ownPlace = place;
    SetBoundsRect(place);
}

void CSkinObject::SetBoundsRect(const Rect& bounds)
{
    if (bounds == bounds_)
        return;
    bounds_ = bounds;
    Tell(Change::Bounds);
}

Rect CSkinObject::GetOwnPlace() const
{
    return extra_ ? extra_->ownPlace : Rect{};
}

Size CSkinObject::GetSetSize() const
{
    return SizeOf(GetOwnPlace());
}

Rect CSkinObject::GetRectInForm() const
{
    Rect rect = bounds_;
    for (const CSkinObject* above = parent_; above != nullptr && above->parent_ != nullptr;
         above = above->parent_) {
        rect.left += above->bounds_.left;
        rect.right += above->bounds_.left;
        rect.top += above->bounds_.top;
        rect.bottom += above->bounds_.top;
    }
    return rect;
}

Point CSkinObject::MapToScreen(Point point) const
{
    const IPeer* peer = GetPeer();
    return peer != nullptr ? peer->MapToScreen(point) : point;
}

void CSkinObject::SetPadding(const Rect& padding)
{
    GetExtra().padding = padding;
}

Rect CSkinObject::GetPadding() const
{
    return extra_ ? extra_->padding : Rect{};
}

void CSkinObject::SetGap(int gap)
{
    GetExtra().gap = gap;
}

int CSkinObject::GetGap() const
{
    return extra_ ? extra_->gap : 0;
}

void CSkinObject::SetMargin(const Rect& margin)
{
    GetExtra().margin = margin;
}

Rect CSkinObject::GetMargin() const
{
    return extra_ ? extra_->margin : Rect{};
}

void CSkinObject::SetMinimumSize(Size size)
{
    GetExtra().minimum = size;
}

Size CSkinObject::GetMinimumSize() const
{
    return extra_ ? extra_->minimum : Size{};
}

Size CSkinObject::GetWantedSize() const
{
    Size size = GetSetSize();
    const IPeer* peer = GetPeer();
    if ((size.width <= 0 || size.height <= 0) && peer != nullptr) {
        const Size preferred = peer->GetPreferredSize();
        size.width = size.width > 0 ? size.width : preferred.width;
        size.height = size.height > 0 ? size.height : preferred.height;
    }
    const Size minimum = GetMinimumSize();
    return {std::max({size.width, minimum.width, 0}), std::max({size.height, minimum.height, 0})};
}

void CSkinObject::CalculateBounds(const Rect& place)
{
    SetBoundsRect(place);
    RePositionSubControls();
}

void CSkinObject::RePositionSubControls()
{
    if (!GetControls().empty())
        LayOutControls(*this);
}

void CSkinObject::SetVisible(int visible)
{
    if (shown_ == (visible != 0))
        return;
    shown_ = visible != 0;
    Tell(Change::Visible);
}

bool CSkinObject::IsVisible() const
{
    for (const CSkinObject* object = this; object != nullptr; object = object->parent_)
        if (!object->shown_)
            return false;
    return true;
}

void CSkinObject::SetEnabled(int enabled)
{
    if (enabled_ == (enabled != 0))
        return;
    enabled_ = enabled != 0;
    Tell(Change::Enabled);
}

void CSkinObject::SetText(const String& text)
{
    if (text == GetText())
        return;
    GetExtra().text = text;
    Tell(Change::Text);
}

String CSkinObject::GetText() const
{
    return extra_ ? extra_->text : String();
}

void CSkinObject::SetTooltip(const String& text)
{
    GetExtra().tooltip = text;
    Tell(Change::Tooltip);
}

String CSkinObject::GetTooltip() const
{
    return extra_ ? extra_->tooltip : String();
}

void CSkinObject::SetAccessibleName(const String& name)
{
    GetExtra().name = name;
    Tell(Change::Name);
}

String CSkinObject::GetAccessibleName() const
{
    if (extra_ && !extra_->name.empty())
        return extra_->name;
    const String tooltip = GetTooltip();
    return !tooltip.empty() ? tooltip : GetText();
}

void CSkinObject::SetFont(const LOGFONT& font)
{
    GetExtra().font = font;
    Tell(Change::Font);
}

LOGFONT CSkinObject::GetFont() const
{
    return extra_ ? extra_->font : LOGFONT{};
}

void CSkinObject::SetPicture(const String& file)
{
    GetExtra().picture = file;
    Tell(Change::Picture);
}

const String& CSkinObject::GetPicture() const
{
    return extra_ ? extra_->picture : kNoText;
}

void CSkinObject::SetFocus()
{
    if (CSkinForm* form = GetOwnerForm())
        form->FocusObject(this);
    else if (IPeer* peer = GetPeer())
        peer->SetFocus();
}

int CSkinObject::IsSelfRender() const
{
    return 1;
}

void CSkinObject::RenderSelf(ICanvas& /*canvas*/) {}

void CSkinObject::Refresh(int /*immediately*/)
{
    Tell(Change::Repaint);
}

void CSkinObject::AddAllSubTooltip() {}

void CSkinObject::ResetSkinData()
{
    Tell(Change::Skin);
    for (CSkinObject* control : GetControls())
        control->ResetSkinData();
}

void CSkinObject::DispathSkinChangeMsg()
{
    RePositionSubControls();
    Refresh();
}

void CSkinObject::ListenEvent(int event, const EventDelegate& listener)
{
    if (event == kControlEvent)
        GetExtra().listeners.Add(listener);
}

void CSkinObject::RemoveListener(int event, const EventDelegate& listener)
{
    if (event == kControlEvent)
        GetExtra().listeners.Remove(listener);
}

void CSkinObject::FireEvent(int event, void* data)
{
    if (event != kControlEvent)
        return;
    const LifeWatch sender = Watch();
    for (const CSkinObject* object = this; object != nullptr; object = object->parent_) {
        const LifeWatch life = object->Watch();
        const auto& listeners = object->GetExtra().listeners.GetAll();
        // One by one: the next must not be told of a sender that is gone.
        for (const EventDelegate& listener : std::vector(listeners)) {
            if (std::find(listeners.begin(), listeners.end(), listener) != listeners.end())
                listener(this, data);
            if (!sender.IsAlive() || !life.IsAlive())
                return;
        }
    }
}

int CSkinObject::BuildFromXML(const TiXmlNode* node)
{
    if (node == nullptr)
        return 0;
    BuildReader::Build(*this, *node);
    return OnBuildControlAfter();
}

int CSkinObject::OnBuildControlAfter()
{
    return 1;
}

LifeWatch CSkinObject::Watch() const
{
    return GetExtra().life.Watch();
}

void CSkinObject::EndLife()
{
    if (extra_)
        extra_->life.End();
}

bool CSkinObject::CreatePeer()
{
    if (GetPeer() != nullptr)
        return true;
    if (parent_ != nullptr)
        parent_->CreatePeer();
    // The peer of a child may be asked for while that of its parent is being made.
    if (std::unique_ptr<IPeer> peer = MakePeer())
        GetExtra().peer = std::move(peer);
    return GetPeer() != nullptr;
}

IPeer* CSkinObject::GetPeer() const
{
    return extra_ ? extra_->peer.get() : nullptr;
}

std::unique_ptr<IPeer> CSkinObject::MakePeer()
{
    return nullptr;
}

void CSkinObject::DestroyPeer()
{
    if (!extra_)
        return;
    // The object has no peer any more when the peer is destroyed.
    const std::unique_ptr<IPeer> peer = std::move(extra_->peer);
}

void CSkinObject::Tell(Change change) const
{
    assert(IsUserInterfaceThread());
    if (IPeer* peer = GetPeer())
        peer->Apply(change);
}

void CSkinObject::OnPeerPressed()
{
    if (IsEnabled())
        FireEvent(kControlEvent, this);
}

void CSkinObject::ReleaseControls()
{
    while (extra_ && !extra_->controls.empty()) {
        CSkinObject* child = extra_->controls.back();
        child->Release();
        // One that didn't go by its Release is somebody else's.
        if (extra_->controls.empty() || extra_->controls.back() != child)
            continue;
        extra_->controls.pop_back();
        child->parent_ = nullptr;
    }
}

LOGFONT GetDefaultLOGFONT()
{
    return {};
}

} // namespace kivo::ui
