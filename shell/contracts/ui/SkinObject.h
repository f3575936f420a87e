#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/ui/Types.h"

#include <memory>
#include <vector>

class TiXmlNode;

namespace kivo::ui {

class CSkinForm;
class CSkinObject;
class ICanvas;
class IPeer;
enum class Change;

// The one event of controls: a button was pressed, a slider moved, a choice made.
inline constexpr int kControlEvent = 1;

// Sender and data. The sender is the control that fired, also for a listener of a panel above it.
using EventDelegate = Delegate<CSkinObject*, void*>;

// The base of all controls and rows: a plain object that holds all of its state from its
// constructor on. A peer (platform/ui/Peers.h) draws it and reports the user's input; without one
// everything works but the picture. Thread: user interface.
class KIVO_API CSkinObject {
public:
    CSkinObject();
    CSkinObject(const CSkinObject&) = delete;
    CSkinObject& operator=(const CSkinObject&) = delete;
    // Leaves its parent, releases the children that it still has, then its peer.
    virtual ~CSkinObject();
    virtual void Release(); // Frees the object. Children are freed through it too.

    void SetObjectID(const String& id);
    [[nodiscard]] const String& GetObjectID() const { return id_; }
    void SetSkinName(const String& skinClass); // The class of skin.xml that gives its looks.
    [[nodiscard]] const String& GetSkinName() const;
    void SetBuildName(const String& name);
    [[nodiscard]] const String& GetBuildName() const;

    // Takes the child as the last one; from here on the parent releases it. A child of somebody
    // else changes parents. Null and the object itself do nothing.
    void RegisterControl(CSkinObject* child);
    void UnregisterControl(CSkinObject* child); // The caller owns it again.
    [[nodiscard]] CSkinObject* GetParent() const { return parent_; }
    [[nodiscard]] const std::vector<CSkinObject*>& GetControls() const; // In order of registration.
    // The first control of that id below this one, depth first; null: none.
    [[nodiscard]] CSkinObject* FindControlRecusive(const String& id) const;
    [[nodiscard]] virtual CSkinForm* GetOwnerForm(); // The next form above, or itself; null: none.

    void SetAnchorStyle(int style); // See Types.h.
    [[nodiscard]] int GetAnchorStyle() const { return anchorStyle_; }
    virtual void SetBounds(int left, int top, int width, int height); // In the parent.
    [[nodiscard]] Rect GetBoundsRect() const { return bounds_; }      // In the parent.
    [[nodiscard]] Rect GetOwnPlace() const; // As SetBounds or the build said, before any layout.
    [[nodiscard]] int GetWidth() const { return WidthOf(bounds_); }
    [[nodiscard]] int GetHeight() const { return HeightOf(bounds_); }
    [[nodiscard]] Rect GetRectInForm() const; // In the outermost object above it.
    [[nodiscard]] Point
    MapToScreen(Point point) const; // Of its own area; unchanged without a peer.

    // The space inside its edges, between children, and outside its edges.
    void SetPadding(const Rect& padding);
    [[nodiscard]] Rect GetPadding() const;
    void SetGap(int gap);
    [[nodiscard]] int GetGap() const;
    void SetMargin(const Rect& margin);
    [[nodiscard]] Rect GetMargin() const;
    void SetMinimumSize(Size size);
    [[nodiscard]] Size GetMinimumSize() const;
    // What it takes in a strip: the larger of its bounds' size and the minimum. A size that nobody
    // has set is the peer's preferred one.
    [[nodiscard]] virtual Size GetWantedSize() const;

    // Called by the layout for each visible child: takes the place (in the parent) and lays its own
    // children out. Whoever must follow the bounds overrides it and calls the base first.
    virtual void CalculateBounds(const Rect& place);
    virtual void RePositionSubControls(); // Lays the children out in the present bounds, at once.

    // A hidden control keeps its bounds; its strip goes to the others at the next layout.
    virtual void SetVisible(int visible);
    [[nodiscard]] bool IsVisible() const;                      // Its own flag and all above it.
    [[nodiscard]] bool IsSetVisible() const { return shown_; } // Its own flag alone.
    virtual void SetEnabled(int enabled);
    [[nodiscard]] bool IsEnabled() const { return enabled_; }

    virtual void SetText(const String& text); // Always plain text.
    [[nodiscard]] virtual String GetText() const;
    void SetTooltip(const String& text);
    [[nodiscard]] virtual String GetTooltip() const; // Read when it is shown.
    void SetAccessibleName(const String& name);
    [[nodiscard]] String GetAccessibleName() const; // As set, else the tooltip, else the text.
    void SetFont(const LOGFONT& font);
    [[nodiscard]] LOGFONT GetFont() const;
    void SetPicture(const String& file); // A name below "skin", or a path.
    [[nodiscard]] const String& GetPicture() const;
    void SetFocus(); // The keyboard goes to it, now or when its form is shown.

    [[nodiscard]] virtual int IsSelfRender() const; // 0: a bare surface that is never painted here.
    virtual void RenderSelf(ICanvas& canvas);       // The base draws nothing.
    virtual void Refresh(int immediately = 0); // Painted anew soon; the argument has no effect.
    void AddAllSubTooltip();                   // Nothing: tooltips are read when shown.
    virtual void ResetSkinData(); // Colours, pictures and sizes are fetched anew, children too.
    virtual void DispathSkinChangeMsg(); // Tells all below that the skin is another, and lays out.

    // Adds a listener; `event` other than kControlEvent is refused. A double is added once.
    void ListenEvent(int event, const EventDelegate& listener);
    void RemoveListener(int event, const EventDelegate& listener);
    // Runs the listeners of this object, then those of each object above it. A listener may destroy
    // anything: the caller touches nothing of its own afterwards unless a watch says that it lives.
    void FireEvent(int event, void* data);

    // Applies the node's attributes to this object, makes its children and calls
    // OnBuildControlAfter, whose result it gives. 0 for a null node.
    int BuildFromXML(const TiXmlNode* node);
    virtual int OnBuildControlAfter(); // 0: a control that it needs is missing. The base gives 1.

    [[nodiscard]] LifeWatch Watch() const; // Says no from the start of the destructor on.

    // The create step: asks the installed factory for the peer, the parent's first. True: a peer
    // stands, also when it did before.
    virtual bool CreatePeer();
    [[nodiscard]] IPeer* GetPeer() const;
    void OnPeerPressed(); // The user pressed it: fires kControlEvent unless it is disabled.

protected:
    virtual std::unique_ptr<IPeer> MakePeer(); // Null: this kind has none, or it can't be made.
    void DestroyPeer();
    void Tell(Change change) const; // To the peer, if there is one.
    void SetBoundsRect(const Rect& bounds);
    void ReleaseControls();                // The children go, the last first.
    [[nodiscard]] Size GetSetSize() const; // As set by SetBounds or the build; 0: not set.
    void EndLife();                        // From here on every watch says no.

private:
    friend class BuildReader;
    struct Extra; // What a row never has; made when first written.

    Extra& GetExtra() const;
    void LeaveForm(CSkinForm& form) const;

    String id_;
    CSkinObject* parent_ = nullptr;
    mutable std::unique_ptr<Extra> extra_;
    Rect bounds_;
    int anchorStyle_ = anchor::kNone;
    bool shown_ = true;
    bool enabled_ = true;
};

} // namespace kivo::ui
