#include "medialib/PackedEntry.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cstring>

namespace kivo::tunehive {

namespace {

// A block: size of the key, count of the fields, the key; then per field its key, the size of its
// text, the text. The two heads are whole words, numbers in the fields take as many bytes as they
// need.
struct Head {
    std::uint32_t keySize;
    std::uint32_t fieldCount;
};

constexpr std::size_t kMaxNumberSize = 5; // Seven bits a byte.

char* WriteNumber(char* to, std::uint32_t number)
{
    for (; number >= 0x80U; number >>= 7U)
        *to++ = static_cast<char>(static_cast<unsigned char>(number | 0x80U));
    *to++ = static_cast<char>(number);
    return to;
}

std::uint32_t ReadNumber(const char*& next)
{
    std::uint32_t number = 0;
    for (unsigned shift = 0;; shift += 7U) {
        const auto byte = static_cast<unsigned char>(*next++);
        number |= (byte & 0x7FU) << shift;
        if (byte < 0x80U)
            return number;
    }
}

std::size_t GetNumberSize(std::uint32_t number)
{
    char bytes[kMaxNumberSize];
    return static_cast<std::size_t>(WriteNumber(bytes, number) - bytes);
}

Head ReadHead(const char* block)
{
    Head head{};
    std::memcpy(&head, block, sizeof head);
    return head;
}

char* WriteText(char* to, std::string_view text)
{
    return std::copy(text.begin(), text.end(), to);
}

} // namespace

CPackedEntry::CPackedEntry(std::string_view key,
                           std::span<const PackedField> fields,
                           std::pmr::memory_resource& memory)
{
    std::size_t size = sizeof(Head) + key.size();
    for (const PackedField& field : fields) {
        size += GetNumberSize(static_cast<std::uint32_t>(field.key)) + field.text.size();
        size += GetNumberSize(static_cast<std::uint32_t>(field.text.size()));
    }
    auto* const block = static_cast<char*>(memory.allocate(size, alignof(Head)));
    block_ = block;
    const Head head = {static_cast<std::uint32_t>(key.size()),
                       static_cast<std::uint32_t>(fields.size())};
    std::memcpy(block, &head, sizeof head);
    char* to = WriteText(block + sizeof head, key);
    for (const PackedField& field : fields) {
        to = WriteNumber(to, static_cast<std::uint32_t>(field.key));
        to = WriteNumber(to, static_cast<std::uint32_t>(field.text.size()));
        to = WriteText(to, field.text);
    }
}

std::string_view CPackedEntry::GetKey() const
{
    return {block_ + sizeof(Head), ReadHead(block_).keySize};
}

MediaInfo CPackedEntry::Unpack() const
{
    MediaInfo info;
    ForEachField([&info](const PackedField& field) {
        info.emplace_hint(info.end(), field.key, common::utf8_to_CString(field.text));
    });
    return info;
}

std::uint32_t CPackedEntry::GetCount() const
{
    return ReadHead(block_).fieldCount;
}

const char* CPackedEntry::GetFields() const
{
    return block_ + sizeof(Head) + ReadHead(block_).keySize;
}

PackedField CPackedEntry::ReadField(const char*& next)
{
    const auto key = static_cast<std::int32_t>(ReadNumber(next));
    const std::size_t size = ReadNumber(next);
    const PackedField field = {
        key, {next, size}
    };
    next += size;
    return field;
}

bool ComesBefore(std::string_view a, std::string_view b)
{
    const auto [atA, atB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (atA == a.end() || atB == b.end())
        return atA == a.end() && atB != b.end();
    // From here up lead bytes stand for surrogates and what lies above them.
    constexpr unsigned char kFirstLead = 0xED;
    const auto byteA = static_cast<unsigned char>(*atA);
    const auto byteB = static_cast<unsigned char>(*atB);
    if (byteA < kFirstLead || byteB < kFirstLead)
        return byteA < byteB;
    return common::utf8_to_CString(a.substr(static_cast<std::size_t>(atA - a.begin()))) <
           common::utf8_to_CString(b.substr(static_cast<std::size_t>(atB - b.begin())));
}

} // namespace kivo::tunehive
