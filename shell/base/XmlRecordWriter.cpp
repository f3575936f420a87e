#include "shell/base/XmlRecordWriter.h"

#include <tinyxml.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kivo::tunehive {

namespace {

constexpr std::size_t kWriteBlock = std::size_t{64} << 10;

constexpr std::uint64_t kOnes = 0x0101010101010101U;

// The high bit of some byte is set when the word holds that byte, or one below it.
constexpr std::uint64_t FindByte(std::uint64_t word, unsigned char byte)
{
    const std::uint64_t same = word ^ (kOnes * byte);
    return (same - kOnes) & ~same & (kOnes << 7U);
}

constexpr std::uint64_t FindBelow(std::uint64_t word, unsigned char byte)
{
    return (word - kOnes * byte) & ~word & (kOnes << 7U);
}

constexpr bool IsEscaped(std::uint64_t word)
{
    // & and ', < and > differ in one bit each.
    return (FindBelow(word, ' ') | FindByte(word, '"') | FindByte(word | kOnes, '\'') |
            FindByte(word | (kOnes << 1U), '>')) != 0;
}

// Whether any byte is one that XML writes in another way. Eight at a time: a large group has ten
// million of them, and next to none is.
bool HasEscaped(std::string_view value)
{
    std::uint64_t word = 0;
    for (; value.size() >= sizeof word; value.remove_prefix(sizeof word)) {
        std::memcpy(&word, value.data(), sizeof word);
        if (IsEscaped(word))
            return true;
    }
    word = kOnes * 'a';
    if (!value.empty()) // An empty view may point nowhere.
        std::memcpy(&word, value.data(), value.size());
    return IsEscaped(word);
}

} // namespace

XmlRecordWriter::XmlRecordWriter(const String& path, const char* root)
    : file_(path)
    , root_(root)
{
    buffer_.reserve(kWriteBlock * 2);
    TiXmlDeclaration("1.0", "utf-8", "no").Print(nullptr, 0, &buffer_);
    buffer_ += "\n<" + root_;
}

void XmlRecordWriter::Write(std::string_view name, std::span<const XmlAttribute> attributes)
{
    buffer_ += isEmpty_ ? ">\n    <" : "    <";
    isEmpty_ = false;
    buffer_ += name;
    for (const XmlAttribute& attribute : attributes) {
        buffer_ += ' ';
        buffer_ += attribute.name;
        buffer_ += '=';
        AppendValue(attribute.value);
    }
    buffer_ += " />\n";
    if (buffer_.size() < kWriteBlock)
        return;
    file_.Write(buffer_);
    buffer_.clear();
}

void XmlRecordWriter::AppendValue(std::string_view value)
{
    if (!HasEscaped(value)) {
        buffer_ += '"';
        buffer_ += value;
        buffer_ += '"';
        return;
    }
    const std::string text(value);
    const char quote = value.find('"') == std::string_view::npos ? '"' : '\'';
    buffer_ += quote;
    TiXmlBase::EncodeString(text, &buffer_);
    buffer_ += quote;
}

bool XmlRecordWriter::Commit()
{
    buffer_ += isEmpty_ ? " />\n" : "</" + root_ + ">\n";
    file_.Write(buffer_);
    buffer_.clear();
    return file_.Commit();
}

} // namespace kivo::tunehive
