#include "shell/contracts/common/Xml.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/common/XmlBounds.h"
#include "shell/contracts/framework/Files.h"

#include <tinyxml.h>

#include <algorithm>
#include <string_view>

namespace kivo::common {
namespace {

constexpr std::size_t kMostBytes = std::size_t{16} * 1024 * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int kUtf8 = 65001;

// What a document of UTF-8 carries as its user data, so that its nodes know how to read their
// bytes.
char utf8Mark = 0;

bool IsDelimiter(char c)
{
    return c == '>' || c == '/' || c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsHexDigit(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// `rest` begins with an ampersand: does it begin a reference that the parser knows?
bool BeginsReference(std::string_view rest)
{
    for (const std::string_view known : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
        if (rest.starts_with(known))
            return true;
    if (!rest.starts_with("&#"))
        return false;
    const bool isHex = rest.size() > 2 && rest[2] == 'x';
    const auto* const digits = rest.begin() + (isHex ? 3 : 2);
    const auto* const end = std::find_if_not(digits, rest.end(), isHex ? IsHexDigit : IsDigit);
    return end != digits && end != rest.end() && *end == ';';
}

// How long what begins at `rest` stands as it is: a comment, a section of characters, a declaration
// or a processing instruction. 0: it is none of these.
std::size_t VerbatimLength(std::string_view rest)
{
    struct Verbatim {
        std::string_view begin;
        std::string_view end;
    };
    constexpr Verbatim kVerbatim[] = {
        {"<!--",      "-->"},
        {"<![CDATA[", "]]>"},
        {"<?",        "?>" },
        {"<!",        ">"  },
    };
    for (const auto& [begin, end] : kVerbatim) {
        if (!rest.starts_with(begin))
            continue;
        const std::size_t found = rest.find(end, begin.size());
        return found == std::string_view::npos ? rest.size() : found + end.size();
    }
    return 0;
}

// Playlists are written by hand and by careless programs: start and end tags differ in case, and
// ampersands of addresses stand bare. Mends both.
std::string Mend(std::string_view bytes)
{
    std::string mended;
    mended.reserve(bytes.size() + bytes.size() / 64);
    bool inName = false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::string_view rest = bytes.substr(i);
        const char c = bytes[i];
        if (c == '<') {
            const std::size_t verbatim = VerbatimLength(rest);
            inName = verbatim == 0;
            if (verbatim != 0) {
                mended += rest.substr(0, verbatim);
                i += verbatim - 1;
                continue;
            }
        } else if (inName && IsDelimiter(c) && bytes[i - 1] != '<') {
            inName = false;
        }
        if (inName)
            mended += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        else if (c == '&' && !BeginsReference(rest))
            mended += "&amp;";
        else
            mended += c;
    }
    return mended;
}

bool DeclaresUtf8(const TiXmlDocument& document)
{
    const TiXmlNode* first = document.FirstChild();
    const TiXmlDeclaration* declaration = first != nullptr ? first->ToDeclaration() : nullptr;
    if (declaration == nullptr)
        return false;
    return string_compare_no_case(declaration->Encoding(), "utf-8") == 0 ||
           string_compare_no_case(declaration->Encoding(), "utf8") == 0;
}

std::unique_ptr<TiXmlDocument> Parse(const std::string& text, TiXmlEncoding encoding)
{
    auto document = std::make_unique<TiXmlDocument>();
    document->SetTabSize(0); // Nobody asks for rows and columns, and counting them takes time.
    document->Parse(text.c_str(), nullptr, encoding);
    const bool isRead = !document->Error() && document->RootElement() != nullptr;
    return isRead ? std::move(document) : nullptr;
}

String Decode(const TiXmlNode& node, std::string_view bytes)
{
    const TiXmlDocument* document = node.GetDocument();
    const bool isUtf8 = document != nullptr && document->GetUserData() == &utf8Mark;
    return MBCS2CString(bytes, isUtf8 ? kUtf8 : 0);
}

const TiXmlNode* FindChild(const TiXmlNode& parent, std::string_view name)
{
    for (const TiXmlNode* child = parent.FirstChild(); child != nullptr;
         child = child->NextSibling())
        if (child->ToElement() != nullptr && string_compare_no_case(child->ValueStr(), name) == 0)
            return child;
    return nullptr;
}

} // namespace

CXmlDocument::CXmlDocument() = default;
CXmlDocument::~CXmlDocument() = default;

bool CXmlDocument::LoadFile(const String& path)
{
    document_.reset();
    std::string bytes;
    if (ReadFileBytes(path, bytes, kMostBytes) != ReadResult::Read)
        return false;
    const bool isMarked = bytes.starts_with(kByteOrderMark);
    const std::string text =
        Mend(std::string_view(bytes).substr(isMarked ? kByteOrderMark.size() : 0));
    if (text.find('\0') != std::string::npos || !IsInsideXmlBounds(text))
        return false;
    // In the parser's UTF-8 mode a lead byte without its followers swallows the quote behind it.
    if (IsWholeUtf8(text))
        document_ = Parse(text, TIXML_ENCODING_UTF8);
    if (!document_)
        document_ = Parse(text, TIXML_ENCODING_LEGACY);
    if (document_ && (isMarked || DeclaresUtf8(*document_)))
        document_->SetUserData(&utf8Mark);
    return document_ != nullptr;
}

const TiXmlNode* CXmlDocument::PathWalk(const String& path) const
{
    const TiXmlNode* node = document_.get();
    for (const String& name : AnalyzeString(path, u"/"))
        if (node != nullptr)
            node = FindChild(*node, CString_to_utf8(name));
    return node;
}

String CXmlDocument::GetNodeText(const TiXmlNode* node)
{
    if (node == nullptr)
        return {};
    if (node->ToText() != nullptr)
        return Decode(*node, node->ValueStr());
    std::string bytes;
    for (const TiXmlNode* child = node->FirstChild(); child != nullptr;
         child = child->NextSibling())
        if (child->ToText() != nullptr)
            bytes += child->ValueStr();
    return Decode(*node, bytes);
}

String CXmlDocument::GetNodeAttribute(const TiXmlNode* node, const String& name)
{
    const TiXmlElement* element = node != nullptr ? node->ToElement() : nullptr;
    if (element == nullptr)
        return {};
    const std::string wanted = CString_to_utf8(name);
    for (const TiXmlAttribute* attribute = element->FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next())
        if (string_compare_no_case(attribute->Name(), wanted) == 0)
            return Decode(*element, attribute->ValueStr());
    return {};
}

} // namespace kivo::common
