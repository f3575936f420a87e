#include "tests/platform/engine/Damage.h"

#include <cstddef>
#include <iterator>

namespace kivo::test {

namespace {

std::size_t Below(std::mt19937& random, std::size_t limit)
{
    return limit == 0 ? 0 : random() % limit;
}

void FlipBits(std::string& bytes, std::mt19937& random)
{
    const std::size_t count = 1 + Below(random, 64);
    for (std::size_t i = 0; i < count; ++i) {
        char& byte = bytes[Below(random, bytes.size())];
        byte = static_cast<char>(byte ^ (1 << Below(random, 8)));
    }
}

void Cut(std::string& bytes, std::mt19937& random)
{
    bytes.resize(Below(random, bytes.size()));
}

void Zero(std::string& bytes, std::mt19937& random)
{
    const std::size_t at = Below(random, bytes.size());
    const std::size_t count = Below(random, bytes.size() - at);
    bytes.replace(at, count, count, '\0');
}

void PutIn(std::string& bytes, std::mt19937& random)
{
    std::string more;
    for (std::size_t i = Below(random, 4'000); i > 0; --i)
        more.push_back(static_cast<char>(random()));
    bytes.insert(Below(random, bytes.size()), more);
}

void Grow(std::string& bytes, std::mt19937& random)
{
    const std::size_t at = Below(random, bytes.size() < 400 ? bytes.size() : 400);
    for (std::size_t i = at; i < at + 4 && i < bytes.size(); ++i)
        bytes[i] = '\x7F';
}

} // namespace

std::string DamageBytes(std::string bytes, std::mt19937& random)
{
    constexpr void (*kWays[])(std::string&, std::mt19937&) = {FlipBits, Cut, Zero, PutIn, Grow};
    kWays[Below(random, std::size(kWays))](bytes, random);
    return bytes;
}

} // namespace kivo::test
