#include "shell/contracts/base/Unpack.h"

#include "shell/contracts/base/PackError.h"

namespace kivo {

namespace {

std::uint32_t ReadLittleEndian(const char* bytes, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return value;
}

} // namespace

Unpack::Unpack(const void* bytes, std::size_t count)
    : next_(static_cast<const char*>(bytes))
    , left_(count)
{
}

std::uint16_t Unpack::pop_uint16()
{
    if (left_ < 2)
        throw new UnpackError(u"pop_uint16: not enough data");
    return static_cast<std::uint16_t>(ReadLittleEndian(pop_fetch_ptr(2), 2));
}

std::uint32_t Unpack::pop_uint32()
{
    if (left_ < 4)
        throw new UnpackError(u"pop_uint32: not enough data");
    return ReadLittleEndian(pop_fetch_ptr(4), 4);
}

const char* Unpack::pop_fetch_ptr(std::size_t count)
{
    if (left_ < count)
        throw new UnpackError(u"pop_fetch_ptr: not enough data");
    const char* const fetched = next_;
    next_ += count;
    left_ -= count;
    return fetched;
}

std::string Unpack::pop_varstr()
{
    const std::uint16_t length = pop_uint16();
    return {pop_fetch_ptr(length), length};
}

} // namespace kivo
