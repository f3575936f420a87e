#include "platform/ui/BuildReader.h"

#include "platform/ui/Layout.h"
#include "platform/ui/XmlWalk.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinList.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <tinyxml.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

namespace kivo::ui {

namespace {

constexpr int kMaxLength = 20000; // Pixels; more is no screen.

struct Kind {
    const char* element;
    std::unique_ptr<CSkinObject> (*make)();
};

template <class T>
std::unique_ptr<CSkinObject> Make()
{
    return std::make_unique<T>();
}

constexpr Kind kKinds[] = {
    {"panel",    Make<CSkinPanel>     },
    {"button",   Make<CSkinButton>    },
    {"label",    Make<CSkinLabel>     },
    {"edit",     Make<CSWColorEdit>   },
    {"combo",    Make<CSkinCombox>    },
    {"slider",   Make<CSkinSlider>    },
    {"photo",    Make<CSkinPhoto>     },
    {"splitter",
     []() -> std::unique_ptr<CSkinObject> {
         return std::make_unique<CSkinSplitter>(/*style=*/0, /*reserved=*/0);
     }                                },
    {"list",     Make<CSkinList>      },
    {"browser",  Make<CSkinWebBrowser>},
};

struct Word {
    const char* word;
    int value;
};

constexpr Word kDocks[] = {
    {"top",    anchor::kTop   },
    {"bottom", anchor::kBottom},
    {"left",   anchor::kLeft  },
    {"right",  anchor::kRight },
    {"fill",   anchor::kFill  },
    {"none",   anchor::kNone  },
};

constexpr Word kAligns[] = {
    {"leading",  align::kLeading },
    {"centre",   align::kCentre  },
    {"trailing", align::kTrailing},
};

std::vector<int> Numbers(const std::string& value)
{
    std::vector<int> numbers;
    const char* place = value.data();
    const char* const end = place + value.size();
    while (place != end) {
        int number = 0;
        const auto [next, error] = std::from_chars(place, end, number);
        if (error == std::errc()) {
            numbers.push_back(std::clamp(number, -kMaxLength, kMaxLength));
            place = next;
        } else {
            ++place;
        }
    }
    return numbers;
}

int Number(const std::string& value)
{
    const std::vector<int> numbers = Numbers(value);
    return numbers.empty() ? 0 : numbers.front();
}

// One number is for all edges, two are across and down, four left, top, right, bottom.
Rect Edges(const std::string& value)
{
    const std::vector<int> n = Numbers(value);
    switch (n.size()) {
    case 1: return {n[0], n[0], n[0], n[0]};
    case 2: return {n[0], n[1], n[0], n[1]};
    case 4: return {n[0], n[1], n[2], n[3]};
    default: return {};
    }
}

template <std::size_t N>
std::optional<int> ValueOf(const Word (&words)[N], const std::string& value)
{
    for (const Word& word : words)
        if (common::string_compare_no_case(word.word, value) == 0)
            return word.value;
    return std::nullopt;
}

String TextOf(const std::string& value)
{
    return common::CMutiLanSupport::GetInstance()->GetStringViaID(common::utf8_to_CString(value));
}

bool IsWindowed(const CSkinObject& object)
{
    return dynamic_cast<const CSkinWnd*>(&object) != nullptr;
}

} // namespace

void BuildReader::Build(CSkinObject& object, const TiXmlNode& node)
{
    const TiXmlElement* element = node.ToElement();
    if (element == nullptr)
        return;
    Apply(object, *element);
    if (!IsWindowed(object))
        object.CreatePeer();
    MakeControls(object, *element);
    NameBuddies(object, object);
}

void BuildReader::MakeControls(CSkinObject& parent, const TiXmlElement& element)
{
    for (const TiXmlElement* child = element.FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        const auto* kind =
            std::find_if(std::begin(kKinds), std::end(kKinds), [child](const Kind& k) {
                return IsNamed(*child, k.element);
            });
        if (kind == std::end(kKinds)) {
            Note(std::string(child->Value()) + ": no such element");
            continue;
        }
        CSkinObject* control = kind->make().release();
        parent.RegisterControl(control);
        Apply(*control, *child);
        if (!IsWindowed(*control))
            control->CreatePeer();
        MakeControls(*control, *child);
        // Bounds stand from here on; a size that nobody has set is the preferred one.
        const Rect place = control->GetOwnPlace();
        const Size size = control->GetWantedSize();
        control->SetBoundsRect(
            {place.left, place.top, place.left + size.width, place.top + size.height});
    }
}

void BuildReader::Apply(CSkinObject& object, const TiXmlElement& element)
{
    for (const TiXmlAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next()) {
        const std::string name = common::CString_to_utf8(
            common::ToLowerAscii(common::utf8_to_CString(attribute->Name())));
        const std::string value = attribute->Value();
        if (!ApplyOwn(object, name, value) && !ApplyPlace(object, name, value) &&
            !ApplyText(object, name, value) && !ApplyKind(object, name, value))
            Note(std::string(element.Value()) + ' ' +
                 common::CString_to_utf8(object.GetObjectID()) + ": " + name);
    }
}

bool BuildReader::ApplyOwn(CSkinObject& object, const std::string& name, const std::string& value)
{
    if (name == "key")
        return true; // Of a node; it was found by it.
    if (name == "id") {
        // A form and a node's object have their id already.
        if (object.GetObjectID().empty())
            object.SetObjectID(common::utf8_to_CString(value));
        return true;
    }
    if (name == "visible") {
        object.CSkinObject::SetVisible(Number(value));
        return true;
    }
    if (name == "skin") {
        object.SetSkinName(common::utf8_to_CString(value));
        return true;
    }
    return false;
}

bool BuildReader::ApplyPlace(CSkinObject& object, const std::string& name, const std::string& value)
{
    Rect place = object.GetOwnPlace();
    Size minimum = object.GetMinimumSize();
    if (name == "dock") {
        object.SetAnchorStyle(ValueOf(kDocks, value).value_or(Number(value)));
    } else if (name == "bounds") {
        const std::vector<int> n = Numbers(value);
        if (n.size() != 4)
            return false;
        object.SetBounds(n[0], n[1], n[2], n[3]);
    } else if (name == "width") {
        object.SetBounds(place.left, place.top, Number(value), HeightOf(place));
    } else if (name == "height") {
        object.SetBounds(place.left, place.top, WidthOf(place), Number(value));
    } else if (name == "min-width") {
        minimum.width = Number(value);
        object.SetMinimumSize(minimum);
    } else if (name == "min-height") {
        minimum.height = Number(value);
        object.SetMinimumSize(minimum);
    } else if (name == "margin") {
        object.SetMargin(Edges(value));
    } else if (name == "padding") {
        object.SetPadding(Edges(value));
    } else if (name == "gap") {
        object.SetGap(Number(value));
    } else {
        return false;
    }
    return true;
}

bool BuildReader::ApplyText(CSkinObject& object, const std::string& name, const std::string& value)
{
    if (name == "text")
        object.SetText(TextOf(value));
    else if (name == "tip")
        object.SetTooltip(TextOf(value));
    else if (name == "name")
        object.SetAccessibleName(TextOf(value));
    else if (name == "picture")
        object.SetPicture(common::utf8_to_CString(value));
    else
        return false;
    return true;
}

bool BuildReader::ApplyKind(CSkinObject& object, const std::string& name, const std::string& value)
{
    if (auto* label = dynamic_cast<CSkinLabel*>(&object)) {
        if (name == "buddy")
            label->SetBuddy(common::utf8_to_CString(value));
        else if (name == "multiline")
            label->SetMultiLine(Number(value));
        else if (name == "align")
            label->SetAlignmentHor(ValueOf(kAligns, value).value_or(align::kLeading));
        else
            return false;
        return true;
    }
    auto* slider = dynamic_cast<CSkinSlider*>(&object);
    if (slider != nullptr && name == "vertical") {
        slider->SetVertical(Number(value));
        return true;
    }
    auto* edit = dynamic_cast<CSWColorEdit*>(&object);
    if (edit != nullptr && name == "password") {
        edit->SetPassword(Number(value));
        return true;
    }
    return false;
}

// A field that has no name of its own is called after the label that points at it.
void BuildReader::NameBuddies(CSkinObject& root, const CSkinObject& parent)
{
    for (CSkinObject* control : parent.GetControls()) {
        NameBuddies(root, *control);
        const auto* label = dynamic_cast<const CSkinLabel*>(control);
        if (label == nullptr || label->GetBuddy().empty())
            continue;
        CSkinObject* buddy = root.FindControlRecusive(label->GetBuddy());
        if (buddy == nullptr)
            Note("label " + common::CString_to_utf8(label->GetObjectID()) + ": no such buddy");
        else if (buddy->GetAccessibleName().empty())
            buddy->SetAccessibleName(label->GetText());
    }
}

void BuildReader::Note(const std::string& fault)
{
    CSkinManager::GetInstance()->NoteBuildFault(common::utf8_to_CString(fault));
}

} // namespace kivo::ui
