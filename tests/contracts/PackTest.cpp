#include "shell/contracts/base/Pack.h"

#include "shell/contracts/base/PackError.h"
#include "shell/contracts/base/Unpack.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kivo {
namespace {

std::string TakeBytes(const PackBuffer& buffer)
{
    return {buffer.data(), buffer.size()};
}

// The message of the error that `run` raises; empty: none.
template <class Error>
String CatchError(const std::function<void()>& run, unsigned code)
{
    try {
        run();
    } catch (Error* error) {
        EXPECT_EQ(error->GetCode(), code);
        String message = error->GetMessage();
        error->Delete();
        return message;
    }
    return {};
}

TEST(Pack, IntegersAreLittleEndian)
{
    PackBuffer buffer;
    Pack pack(buffer);
    pack.push_uint16(0x1234);
    pack.push_uint32(0x89ABCDEF);
    EXPECT_EQ(TakeBytes(buffer), "\x34\x12\xEF\xCD\xAB\x89");
}

TEST(Pack, NoBytesTakeNoBlock)
{
    PackBuffer buffer;
    Pack(buffer).append(nullptr, 0);
    EXPECT_EQ(buffer.blocks(), 0U);
    EXPECT_EQ(buffer.size(), 0U);
}

struct RoomCase {
    const char* name;
    std::size_t first;
    std::size_t second;
    std::uint32_t blocks;
};

constexpr RoomCase kRoomCases[] = {
    {"OneByte",                 1,     0,     1},
    {"ABlock",                  16384, 0,     1},
    {"AByteMoreThanABlock",     16385, 0,     2},
    {"WhatIsFreeIsUsed",        100,   16284, 1},
    {"TheShortfallIsRoundedUp", 100,   16285, 2},
    {"OnlyTheShortfallIsAdded", 20000, 20000, 3},
};

TEST(Pack, RoomComesInBlocksAndKeepsTheBytes)
{
    for (const RoomCase& row : kRoomCases) {
        SCOPED_TRACE(row.name);
        const std::string first(row.first, 'a');
        const std::string second(row.second, 'b');
        const std::uint32_t before = PackBuffer::GetBlocksInUse();
        {
            PackBuffer buffer;
            Pack pack(buffer);
            pack.append(first.data(), first.size());
            pack.append(second.data(), second.size());
            EXPECT_EQ(buffer.blocks(), row.blocks);
            EXPECT_EQ(TakeBytes(buffer), first + second);
            EXPECT_EQ(PackBuffer::GetBlocksInUse(), before + row.blocks);
            EXPECT_GE(PackBuffer::GetPeakBlocks(), before + row.blocks);
        }
        EXPECT_EQ(PackBuffer::GetBlocksInUse(), before);
    }
}

TEST(Pack, MoreThanAllBlocksOverflowsAndChangesNothing)
{
    PackBuffer buffer;
    Pack pack(buffer);
    pack.append("x", 1);
    const std::size_t all = std::size_t{PackBuffer::kMaxBlocks} * PackBuffer::kBlockBytes;
    for (const std::size_t count : {all, ~std::size_t{0}})
        EXPECT_EQ(CatchError<PackError>([&] { pack.append("y", count); }, 999),
                  u"append buffer overflow");
    EXPECT_EQ(TakeBytes(buffer), "x");
    EXPECT_EQ(buffer.blocks(), 1U);
}

TEST(Pack, ATextOf65535BytesPacksAndALongerOneLeavesTheBuffer)
{
    PackBuffer buffer;
    Pack pack(buffer);
    const std::string text(65536, 't');
    EXPECT_EQ(CatchError<PackError>([&] { pack.push_varstr(text.data(), 65536); }, 999),
              u"push_varstr: varstr too big");
    EXPECT_EQ(buffer.size(), 0U);
    pack.push_varstr(text.data(), 65535);
    EXPECT_EQ(TakeBytes(buffer), "\xFF\xFF" + text.substr(1));
}

struct ShortCase {
    const char* name;
    std::string bytes;
    void (*pop)(Unpack&);
    const char16_t* message;
};

const ShortCase kShortCases[] = {
    {"Number",
     "\x01",         [](Unpack& unpack) { static_cast<void>(unpack.pop_uint16()); },
     u"pop_uint16: not enough data"   },
    {"LongNumber",
     "\x01\x02\x03", [](Unpack& unpack) { static_cast<void>(unpack.pop_uint32()); },
     u"pop_uint32: not enough data"   },
    {"Bytes",
     "\x01",         [](Unpack& unpack) { static_cast<void>(unpack.pop_fetch_ptr(2)); },
     u"pop_fetch_ptr: not enough data"},
    {"LengthOfAText",
     "\x01",         [](Unpack& unpack) { static_cast<void>(unpack.pop_varstr()); },
     u"pop_uint16: not enough data"   },
    {"Text",
     {"\x02\0x", 3},
     [](Unpack& unpack) { static_cast<void>(unpack.pop_varstr()); },
     u"pop_fetch_ptr: not enough data"},
};

TEST(Unpack, ACutInputSaysWhereItEnds)
{
    for (const ShortCase& row : kShortCases) {
        SCOPED_TRACE(row.name);
        Unpack unpack(row.bytes.data(), row.bytes.size());
        EXPECT_EQ(CatchError<UnpackError>([&] { row.pop(unpack); }, 998), row.message);
    }
}

} // namespace
} // namespace kivo
