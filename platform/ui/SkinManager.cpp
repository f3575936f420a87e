#include "shell/contracts/ui/SkinManager.h"

#include "platform/ui/XmlWalk.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <tinyxml.h>

#include <charconv>
#include <map>
#include <optional>
#include <sstream>
#include <utility>

namespace kivo::ui {

namespace {

constexpr std::size_t kMaxFileBytes = std::size_t{4} << 20;
constexpr std::size_t kMaxFaults = 100;

// A light and a dark value, as 0x00RRGGBB.
struct ColourPair {
    std::optional<std::uint32_t> light;
    std::optional<std::uint32_t> dark;
    int weight = 0;
    double size = 0.0;

    [[nodiscard]] std::optional<std::uint32_t> Get(bool isDark) const
    {
        return isDark && dark ? dark : light ? light : dark;
    }
};

struct SkinClass {
    ColourPair own;
    String background;
    std::map<COLORREF, ColourPair> colours;
};

std::optional<std::uint32_t> HexOf(std::string_view digits)
{
    std::uint32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [next, error] = std::from_chars(digits.data(), end, value, 16);
    if (digits.size() != 6 || error != std::errc() || next != end)
        return std::nullopt;
    return value;
}

// "#RRGGBB"; anything else is no colour.
std::optional<std::uint32_t> ColourOf(const std::string& value)
{
    return value.starts_with('#') ? HexOf(std::string_view(value).substr(1)) : std::nullopt;
}

ColourPair PairOf(const TiXmlElement& element)
{
    ColourPair pair;
    pair.light = ColourOf(GetAttribute(element, "light"));
    pair.dark = ColourOf(GetAttribute(element, "dark"));
    pair.weight = common::BytesToInt(GetAttribute(element, "weight"));
    const std::string size = GetAttribute(element, "size");
    std::from_chars(size.data(), size.data() + size.size(), pair.size);
    return pair;
}

String AttributeText(const TiXmlElement& element, std::string_view name)
{
    return common::utf8_to_CString(GetAttribute(element, name));
}

std::uint32_t PaintOf(COLORREF key)
{
    return (key & 0xFFU) << 16U | (key & 0xFF00U) | (key >> 16U & 0xFFU);
}

// The words of a key, one blank between them.
String Words(const String& key)
{
    String words;
    for (const char16_t unit : common::Trim(key))
        if (unit != u' ' || words.empty() || words.back() != u' ')
            words += unit;
    return words;
}

String NameOf(const String& path)
{
    return path.substr(path.find_last_of(u"/\\") + 1);
}

String WithSvg(const String& path)
{
    const String extension = PathFindExtensionW(path);
    return path.substr(0, path.size() - extension.size()) + u".svg";
}

} // namespace

struct CSkinManager::Impl {
    std::map<String, SkinClass, std::less<>> classes;
    std::map<String, SkinPicture> pictures;
    std::map<int, String> icons;
    std::vector<String> folders; // Of the skin files, each ending in a separator.
    std::vector<std::unique_ptr<TiXmlDocument>> builds;
    std::vector<String> faults;

    void ReadSkin(const TiXmlElement& root);
    void ReadClass(const TiXmlElement& element);
    void ReadPicture(const TiXmlElement& element);
    [[nodiscard]] const TiXmlElement*
    FindBuild(std::string_view element, std::string_view attribute, const String& value) const;
};

CSkinManager::CSkinManager()
    : impl_(std::make_unique<Impl>())
{
}

CSkinManager::~CSkinManager() = default;

CSkinManager* CSkinManager::GetInstance()
{
    static CSkinManager manager;
    return &manager;
}

int CSkinManager::IncludeSkinFile(const String& path)
{
    std::string xml;
    if (ReadFileBytes(path, xml, kMaxFileBytes) != ReadResult::Read || IncludeSkinText(xml) == 0)
        return 0;
    const String folder = common::GetFileDirFromPath(path);
    std::erase(impl_->folders, folder);
    impl_->folders.push_back(folder);
    return 1;
}

int CSkinManager::IncludeSkinBuildFile(const String& path)
{
    std::string xml;
    return ReadFileBytes(path, xml, kMaxFileBytes) == ReadResult::Read ? IncludeBuildText(xml) : 0;
}

int CSkinManager::IncludeSkinText(const std::string& xml)
{
    TiXmlDocument document;
    if (!ParseBounded(xml, document) || !IsNamed(*document.RootElement(), "skin"))
        return 0;
    impl_->ReadSkin(*document.RootElement());
    return 1;
}

int CSkinManager::IncludeBuildText(const std::string& xml)
{
    auto document = std::make_unique<TiXmlDocument>();
    if (!ParseBounded(xml, *document) || !IsNamed(*document->RootElement(), "build"))
        return 0;
    impl_->builds.push_back(std::move(document));
    return 1;
}

void CSkinManager::Clear()
{
    impl_ = std::make_unique<Impl>();
}

void CSkinManager::Impl::ReadSkin(const TiXmlElement& root)
{
    for (const TiXmlElement* element = root.FirstChildElement(); element != nullptr;
         element = element->NextSiblingElement()) {
        if (IsNamed(*element, "class"))
            ReadClass(*element);
        else if (IsNamed(*element, "picture"))
            ReadPicture(*element);
        else if (IsNamed(*element, "icon"))
            icons[common::BytesToInt(GetAttribute(*element, "id"))] =
                AttributeText(*element, "picture");
    }
}

void CSkinManager::Impl::ReadClass(const TiXmlElement& element)
{
    SkinClass& skinClass = classes[AttributeText(element, "name")];
    const ColourPair own = PairOf(element);
    if (own.light || own.dark)
        skinClass.own = own;
    const String background = AttributeText(element, "background");
    if (!background.empty())
        skinClass.background = background;
    for (const TiXmlElement* colour = FirstElement(element, "colour"); colour != nullptr;
         colour = NextElement(*colour, "colour"))
        if (const auto key = HexOf(GetAttribute(*colour, "value")))
            skinClass.colours[*key] = PairOf(*colour);
}

void CSkinManager::Impl::ReadPicture(const TiXmlElement& element)
{
    SkinPicture picture;
    picture.file = AttributeText(element, "file");
    std::istringstream states(GetAttribute(element, "states"));
    for (std::string state; states >> state;)
        picture.states.push_back(common::utf8_to_CString(state));
    picture.tint = AttributeText(element, "tint");
    picture.isMirrored = common::BytesToInt(GetAttribute(element, "mirror")) != 0;
    pictures[NameOf(picture.file)] = picture;
}

const TiXmlElement* CSkinManager::Impl::FindBuild(std::string_view element,
                                                  std::string_view attribute,
                                                  const String& value) const
{
    for (auto document = builds.rbegin(); document != builds.rend(); ++document)
        for (const TiXmlElement* node = FirstElement(*(*document)->RootElement(), element);
             node != nullptr;
             node = NextElement(*node, element))
            if (Words(AttributeText(*node, attribute)) == value)
                return node;
    return nullptr;
}

std::vector<String> CSkinManager::TakeBuildFaults()
{
    return std::exchange(impl_->faults, {});
}

void CSkinManager::NoteBuildFault(const String& fault)
{
    if (impl_->faults.size() < kMaxFaults)
        impl_->faults.push_back(fault);
}

const TiXmlNode* CSkinManager::GetBuildNode(const String& key) const
{
    return impl_->FindBuild("node", "key", Words(key));
}

const TiXmlNode* CSkinManager::GetFormNode(const String& id) const
{
    return impl_->FindBuild("form", "id", Words(id));
}

String CSkinManager::TranslatePath(const String& file, int /*reserved*/) const
{
    return ComposePath(u"%sskin\\" + file, {common::GetAppPath()});
}

String CSkinManager::FindPicture(const String& file) const
{
    if (file.empty() || file.front() == kSeparator)
        return file;
    for (auto folder = impl_->folders.rbegin(); folder != impl_->folders.rend(); ++folder) {
        String path = *folder + ComposePath(u"skin\\" + file, {});
        if (PathFileExistsW(path) || PathFileExistsW(WithSvg(path)))
            return path;
    }
    return TranslatePath(file, /*reserved=*/0);
}

SkinPicture CSkinManager::GetPicture(const String& file) const
{
    const auto found = impl_->pictures.find(NameOf(file));
    SkinPicture picture = found != impl_->pictures.end() ? found->second : SkinPicture{};
    picture.file = file;
    return picture;
}

String CSkinManager::GetIconPicture(int icon) const
{
    const auto found = impl_->icons.find(icon);
    return found != impl_->icons.end() ? found->second : String();
}

SkinColour CSkinManager::GetColour(std::initializer_list<StringView> classes, COLORREF key) const
{
    SkinColour colour;
    colour.rgb = PaintOf(key);
    for (const StringView name : classes) {
        const auto found = impl_->classes.find(name);
        if (found == impl_->classes.end())
            continue;
        const auto mapped = found->second.colours.find(key);
        if (mapped == found->second.colours.end())
            continue;
        colour.rgb = mapped->second.Get(dark_).value_or(colour.rgb);
        colour.weight = mapped->second.weight;
        colour.size = mapped->second.size;
        colour.isMapped = true;
        break;
    }
    return colour;
}

SkinColour CSkinManager::GetClassColour(StringView name) const
{
    SkinColour colour;
    const auto found = impl_->classes.find(name);
    const auto value = found != impl_->classes.end() ? found->second.own.Get(dark_) : std::nullopt;
    if (value) {
        colour.rgb = *value;
        colour.weight = found->second.own.weight;
        colour.size = found->second.own.size;
        colour.isMapped = true;
    } else {
        colour.role = String(name);
    }
    return colour;
}

SkinColour CSkinManager::GetBackground(StringView className) const
{
    const auto found = impl_->classes.find(className);
    if (found == impl_->classes.end() || found->second.background.empty())
        return {};
    SkinColour colour = GetClassColour(found->second.background);
    colour.isMapped = true;
    return colour;
}

} // namespace kivo::ui
