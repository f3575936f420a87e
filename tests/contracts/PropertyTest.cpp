#include "shell/contracts/base/Property.h"

#include "shell/contracts/base/Pack.h"
#include "shell/contracts/base/PackError.h"
#include "shell/contracts/base/Unpack.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

namespace kivo {
namespace {

Property MakeProperty(const Property::Entries& entries)
{
    Property property;
    property.merge(entries);
    return property;
}

std::string Marshal(const Property& property)
{
    PackBuffer buffer;
    Pack pack(buffer);
    property.marshal(pack);
    return {buffer.data(), buffer.size()};
}

// False: the input was cut.
bool Unmarshal(Property& property, const std::string& bytes)
{
    Unpack unpack(bytes.data(), bytes.size());
    try {
        property.unmarshal(unpack);
    } catch (UnpackError* error) {
        error->Delete();
        return false;
    }
    return true;
}

TEST(Property, TheWireFormIsToTheByte)
{
    // Ascending as unsigned numbers.
    const Property property = MakeProperty({
        {0x80000000U, ""  },
        {1,           "ab"}
    });
    const std::string bytes("\2\0\0\0"
                            "\1\0\0\0\2\0ab"
                            "\0\0\0\x80\0\0",
                            18);
    EXPECT_EQ(Marshal(property), bytes);
    EXPECT_EQ(Marshal({}), std::string(4, '\0'));
}

TEST(Property, ReadingAddsToWhatIsThere)
{
    Property property = MakeProperty({
        {1, "old" },
        {2, "kept"}
    });
    ASSERT_TRUE(Unmarshal(property,
                          Marshal(MakeProperty({
                              {1, "new"  },
                              {3, "added"}
    }))));
    EXPECT_EQ(property.GetEntries(),
              (Property::Entries{
                  {1, "new"  },
                  {2, "kept" },
                  {3, "added"}
    }));
    ASSERT_TRUE(Unmarshal(property, std::string(4, '\0')));
    EXPECT_EQ(property.GetEntries().size(), 3U);
}

TEST(Property, AKeyThatComesTwiceEndsWithItsLastValue)
{
    Property property;
    ASSERT_TRUE(Unmarshal(property,
                          std::string("\2\0\0\0"
                                      "\7\0\0\0\1\0a"
                                      "\7\0\0\0\1\0b",
                                      18)));
    EXPECT_EQ(property.GetBytes(7), "b");
}

TEST(Property, EachCutOfAnInputKeepsTheWholeEntriesBeforeIt)
{
    const std::string bytes = Marshal(MakeProperty({
        {1, "one"  },
        {2, ""     },
        {3, "three"}
    }));
    const std::size_t ends[] = {4 + 9, 4 + 9 + 6, 4 + 9 + 6 + 11}; // behind each entry
    ASSERT_EQ(bytes.size(), ends[2]);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        SCOPED_TRACE(length);
        Property property;
        EXPECT_FALSE(Unmarshal(property, bytes.substr(0, length)));
        EXPECT_EQ(property.GetEntries().size(),
                  std::size_t{length >= ends[0]} + std::size_t{length >= ends[1]});
    }
}

TEST(Property, AHugeCountOfNothingEndsAtOnce)
{
    Property property;
    EXPECT_FALSE(Unmarshal(property, "\xFF\xFF\xFF\xFF"));
    EXPECT_TRUE(property.GetEntries().empty());
}

TEST(Property, RandomRecordsComeBackFromTheWire)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Property::Entries entries;
        for (auto count = random() % 20; count > 0; --count) {
            std::string value(random() % 300, '\0');
            for (char& c : value)
                c = static_cast<char>(random() & 0xFFU);
            entries[static_cast<std::uint32_t>(random())] = value;
        }
        Property property;
        ASSERT_TRUE(Unmarshal(property, Marshal(MakeProperty(entries))));
        ASSERT_EQ(property.GetEntries(), entries);
    }
}

TEST(Property, SubtractTakesEqualValuesAlone)
{
    Property property = MakeProperty({
        {1, "same"},
        {2, "mine"},
        {3, "kept"}
    });
    property.subtract(MakeProperty({
        {1, "same" },
        {2, "other"},
        {4, "new"  }
    }));
    EXPECT_EQ(property.GetEntries(),
              (Property::Entries{
                  {2, "mine"},
                  {3, "kept"}
    }));
    property.subtract(property);
    EXPECT_TRUE(property.GetEntries().empty());
}

TEST(Property, TextIsUtf8AndAbsenceIsEmpty)
{
    Property property;
    property.SetText(0, u"中\xDC80");
    EXPECT_EQ(property.GetBytes(0), "中\xED\xB2\x80");
    EXPECT_EQ(property.GetText(0), u"中\xDC80");
    property.SetText(0, u"new");
    EXPECT_EQ(property.GetText(0), u"new");
    EXPECT_EQ(property.GetText(1), u"");
    EXPECT_EQ(property.GetBytes(1), "");
    EXPECT_EQ(property.GetEntries().size(), 1U);
}

TEST(Property, TraceSaysThatItIsNotThere)
{
    std::ostringstream stream;
    EXPECT_EQ(&Property().trace(stream), &stream);
    EXPECT_EQ(stream.str(), "trace Marshallable [ not immplement ]");
}

} // namespace
} // namespace kivo
