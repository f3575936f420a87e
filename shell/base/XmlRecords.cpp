#include "shell/base/XmlRecords.h"

#include "shell/base/PlainElement.h"
#include "shell/base/XmlBounds.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <tinyxml.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr std::size_t kMaxBytes = std::size_t{256} << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Line ends become LF and the text stops at a NUL, as TiXmlDocument::LoadFile has it.
void NormalizeLines(std::string& text)
{
    if (text.find('\r') == std::string::npos && text.find('\0') == std::string::npos)
        return;
    std::size_t to = 0;
    for (std::size_t from = 0; from < text.size() && text[from] != '\0'; ++from) {
        const bool isReturn = text[from] == '\r';
        if (isReturn && from + 1 < text.size() && text[from + 1] == '\n')
            ++from;
        text[to++] = isReturn ? '\n' : text[from];
    }
    text.resize(to);
}

// Nearly all names are spelt as they are asked for.
bool IsSameName(std::string_view a, std::string_view b)
{
    return a == b || (a.size() == b.size() && common::string_compare_no_case(a, b) == 0);
}

bool NamesUtf8(const std::string& encoding)
{
    return common::string_compare_no_case(encoding, "utf-8") == 0 ||
           common::string_compare_no_case(encoding, "utf8") == 0;
}

// Whether TinyXML's UTF-8 mode makes a difference, and can be had. In it a lead byte without its
// followers swallows the quote behind it. The values are the same bytes in both modes but for
// references to characters by number; the mode also takes some characters that begin with EF for
// blanks. The byte mode is the quicker one.
bool NeedsUtf8(std::string_view text)
{
    const bool differs =
        text.find('\xEF') != std::string_view::npos || text.find("&#") != std::string_view::npos;
    return differs && common::IsWholeUtf8(text);
}

// Walks a document with TinyXML's own parsers, one node of the upper two levels at a time. It is an
// element only to reach the steps that TinyXML keeps for its nodes.
class RecordParser : private TiXmlElement {
public:
    RecordParser(const char* root, XmlProlog& prolog, const TakeXmlRecord& take)
        : TiXmlElement("")
        , root_(root)
        , prolog_(prolog)
        , take_(take)
    {
    }

    XmlResult ParseDocument(const char* text, bool needsUtf8);

private:
    const char* SkipBlanks(const char* text) const;
    void FindProlog(const char* text, bool needsUtf8);
    bool IsRoot(const char* text) const;
    const char* ParseNode(const char* text, bool isRecord);
    void Take(const TiXmlElement& element);
    const char* ParseRoot(const char* text);
    const char* ParseRecords(const char* text);

    const char* const root_;
    XmlProlog& prolog_;
    const TakeXmlRecord& take_;
    TiXmlEncoding encoding_ = TIXML_ENCODING_LEGACY;
    bool hasRoot_ = false;
    std::vector<XmlAttribute> attributes_; // Of the record that was read last.
    std::string decoded_;                  // What its values aren't in the text.
};

XmlResult RecordParser::ParseDocument(const char* text, bool needsUtf8)
{
    text = SkipBlanks(text);
    FindProlog(text, needsUtf8);
    // What stands between nodes of the document and begins no node ends it.
    while (text != nullptr && *text == '<') {
        text = !hasRoot_ && IsRoot(text) ? ParseRoot(text) : ParseNode(text, /*isRecord=*/false);
        text = SkipBlanks(text);
    }
    if (text == nullptr)
        return XmlResult::Failed;
    return hasRoot_ ? XmlResult::Read : XmlResult::NoRoot;
}

// Null, the sign of a fault, only for null; TinyXML's own gives it at the end of the text too.
const char* RecordParser::SkipBlanks(const char* text) const
{
    const char* const rest = text != nullptr ? SkipWhiteSpace(text, encoding_) : nullptr;
    return rest != nullptr ? rest : text;
}

void RecordParser::FindProlog(const char* text, bool needsUtf8)
{
    prolog_ = {};
    // At the text's end StringEqual would end the process with a failed assertion.
    if (*text == '\0' || !StringEqual(text, "<?xml", /*ignoreCase=*/true, TIXML_ENCODING_LEGACY))
        return;
    TiXmlDeclaration declaration;
    declaration.Parse(text, nullptr, TIXML_ENCODING_LEGACY);
    prolog_ = {/*isDeclared=*/true, declaration.Encoding()};
    if (needsUtf8 && NamesUtf8(prolog_.encoding))
        encoding_ = TIXML_ENCODING_UTF8;
}

bool RecordParser::IsRoot(const char* text) const
{
    std::string name;
    return ReadName(text + 1, &name, encoding_) != nullptr &&
           common::string_compare_no_case(name, root_) == 0;
}

const char* RecordParser::ParseNode(const char* text, bool isRecord)
{
    if (isRecord) {
        std::string_view name;
        if (const char* const rest = ReadPlainElement(text, name, attributes_, decoded_)) {
            take_({name, attributes_});
            return rest;
        }
    }
    // Nearly all nodes are elements; Identify would compare each with all other kinds first.
    if (text[1] == '_' || IsAlpha(static_cast<unsigned char>(text[1]), encoding_) != 0) {
        TiXmlElement element("");
        const char* const rest = element.Parse(text, nullptr, encoding_);
        if (rest != nullptr && isRecord)
            Take(element);
        return rest;
    }
    const std::unique_ptr<TiXmlNode> node(Identify(text, encoding_));
    if (node == nullptr)
        return nullptr;
    return node->Parse(text, nullptr, encoding_);
}

void RecordParser::Take(const TiXmlElement& element)
{
    attributes_.clear();
    for (const TiXmlAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next())
        attributes_.push_back({attribute->NameTStr(), attribute->ValueStr()});
    take_({element.ValueStr(), attributes_});
}

// The start tag alone goes to TinyXML, as an element without content.
const char* RecordParser::ParseRoot(const char* text)
{
    const char* const end = FindTagEnd(text);
    if (end == nullptr)
        return nullptr;
    const bool isClosed = end[-1] == '/';
    const std::string tag = std::string(text, isClosed ? end - 1 : end) + "/>";
    TiXmlElement root("");
    if (root.Parse(tag.c_str(), nullptr, encoding_) == nullptr)
        return nullptr;
    hasRoot_ = true;
    if (isClosed)
        return end + 1;

    const char* rest = ParseRecords(end + 1);
    const std::string endTag = "</" + root.ValueStr();
    if (rest == nullptr || !StringEqual(rest, endTag.c_str(), /*ignoreCase=*/false, encoding_))
        return nullptr;
    rest = SkipBlanks(rest + endTag.size());
    return *rest == '>' ? rest + 1 : nullptr;
}

// To the end tag of the root; null without one.
const char* RecordParser::ParseRecords(const char* text)
{
    text = SkipBlanks(text);
    while (text != nullptr && *text != '\0') {
        if (text[0] == '<' && text[1] == '/')
            return text;
        if (*text == '<') {
            text = ParseNode(text, /*isRecord=*/true);
        } else {
            TiXmlText passedOver("");
            text = passedOver.Parse(text, nullptr, encoding_);
        }
        text = SkipBlanks(text);
    }
    return nullptr;
}

} // namespace

XmlResult
ParseXmlRecords(std::string bytes, const char* root, XmlProlog& prolog, const TakeXmlRecord& take)
{
    prolog = {};
    if (bytes.empty())
        return XmlResult::Empty;
    if (bytes.size() > kMaxBytes)
        return XmlResult::Failed;
    if (bytes.starts_with(kByteOrderMark))
        bytes.erase(0, kByteOrderMark.size());
    NormalizeLines(bytes);
    if (!IsInsideXmlBounds(bytes))
        return XmlResult::Failed;
    return RecordParser(root, prolog, take).ParseDocument(bytes.c_str(), NeedsUtf8(bytes));
}

XmlResult
ReadXmlRecords(const String& path, const char* root, XmlProlog& prolog, const TakeXmlRecord& take)
{
    prolog = {};
    std::string bytes;
    switch (ReadFileBytes(path, bytes, kMaxBytes)) {
    case ReadResult::Read: return ParseXmlRecords(std::move(bytes), root, prolog, take);
    case ReadResult::Missing: return XmlResult::Missing;
    case ReadResult::TooLarge:
    case ReadResult::Failed: break;
    }
    return XmlResult::Failed;
}

bool IsNamed(const XmlRecord& record, std::string_view name)
{
    return IsSameName(record.name, name);
}

std::string_view GetAttribute(const XmlRecord& record, std::string_view name)
{
    for (const XmlAttribute& attribute : record.attributes)
        if (IsSameName(attribute.name, name))
            return attribute.value;
    return {};
}

} // namespace kivo::tunehive
