#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/SWColorEdit.h"

namespace kivo::ui {

CSkinLabel::CSkinLabel() = default;

CSkinLabel::~CSkinLabel() = default;

void CSkinLabel::SetAlignmentHor(int alignment)
{
    alignment_ = alignment;
    Tell(Change::Look);
}

void CSkinLabel::SetMultiLine(int multiLine)
{
    multiLine_ = multiLine != 0;
    Tell(Change::Look);
}

void CSkinLabel::SetTextColour(COLORREF colour)
{
    colour_ = colour;
    Tell(Change::Look);
}

std::unique_ptr<IPeer> CSkinLabel::MakePeer()
{
    return GetPeerFactory().MakeLabel(*this);
}

CSkinButton::CSkinButton() = default;

CSkinButton::~CSkinButton() = default;

bool CSkinButton::OnPeerWheel(int angleDelta) const
{
    if (!wheelListener_.IsSet() || !IsEnabled())
        return false;
    wheelListener_(angleDelta);
    return true;
}

void CSkinButton::SetChecked(int checked)
{
    if (checked_ == (checked != 0))
        return;
    checked_ = checked != 0;
    Tell(Change::Look);
}

std::unique_ptr<IPeer> CSkinButton::MakePeer()
{
    return GetPeerFactory().MakeButton(*this);
}

CSWColorEdit::CSWColorEdit() = default;

CSWColorEdit::~CSWColorEdit() = default;

int CSWColorEdit::Create(unsigned style, const Rect& bounds, CWnd* parent, int id)
{
    return CSkinWnd::Create(style, u"Edit", String(), bounds, parent, id);
}

void CSWColorEdit::SetText(const String& text)
{
    if (text == text_)
        return;
    text_ = text;
    Tell(Change::Text);
}

void CSWColorEdit::SetLimitText(int units)
{
    limit_ = units;
    Tell(Change::Look);
}

void CSWColorEdit::SetPassword(int on)
{
    password_ = on != 0;
    Tell(Change::Look);
}

void CSWColorEdit::OnPeerText(const String& text)
{
    text_ = text;
}

std::unique_ptr<IPeer> CSWColorEdit::MakePeer()
{
    return GetPeerFactory().MakeEdit(*this);
}

CSkinCombox::CSkinCombox() = default;

CSkinCombox::~CSkinCombox() = default;

int CSkinCombox::Create(unsigned style, const Rect& bounds, CWnd* parent)
{
    // The height is that of the open list; the closed box is as high as its font wants it.
    const Rect field{bounds.left, bounds.top, bounds.right, bounds.top};
    return CSkinWnd::Create(style | wndstyle::kChild | wndstyle::kVisible,
                            u"ComboBox",
                            String(),
                            field,
                            parent,
                            /*id=*/0);
}

int CSkinCombox::AddString(const String& text)
{
    items_.push_back(text);
    Tell(Change::Items);
    return GetCount() - 1;
}

void CSkinCombox::ResetContent()
{
    items_.clear();
    selected_ = -1;
    Tell(Change::Items);
}

void CSkinCombox::SetCurSel(int row)
{
    selected_ = row >= 0 && row < GetCount() ? row : -1;
    Tell(Change::Selection);
}

String CSkinCombox::GetText() const
{
    return selected_ >= 0 ? items_[static_cast<std::size_t>(selected_)] : String();
}

void CSkinCombox::OnPeerSelected(int row)
{
    if (row < 0 || row >= GetCount() || row == selected_)
        return;
    selected_ = row;
    FireEvent(kControlEvent, this);
}

std::unique_ptr<IPeer> CSkinCombox::MakePeer()
{
    return GetPeerFactory().MakeCombox(*this);
}

CSkinPhoto::CSkinPhoto() = default;

CSkinPhoto::~CSkinPhoto() = default;

void CSkinPhoto::SetPhotoFile(const String& path, const PictureRect& source, int /*reserved*/)
{
    source_ = source;
    SetPicture(path);
}

std::unique_ptr<IPeer> CSkinPhoto::MakePeer()
{
    return GetPeerFactory().MakePhoto(*this);
}

} // namespace kivo::ui
