#include "shell/contracts/base/Pack.h"

#include "shell/contracts/base/PackError.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace kivo {

namespace {

std::atomic<std::uint32_t> blocksInUse = 0;
std::atomic<std::uint32_t> peakBlocks = 0;

void CountBlocks(std::uint32_t added)
{
    const std::uint32_t count = blocksInUse += added;
    std::uint32_t peak = peakBlocks;
    while (count > peak && !peakBlocks.compare_exchange_weak(peak, count)) {
    }
}

} // namespace

PackBuffer::~PackBuffer()
{
    std::free(data_);
    blocksInUse -= blocks_;
}

bool PackBuffer::reserve(std::size_t count)
{
    const std::size_t room = std::size_t{blocks_} * kBlockBytes - used_;
    if (count <= room)
        return true;
    const std::size_t shortfall = count - room;
    if (shortfall > std::size_t{kMaxBlocks} * kBlockBytes)
        return false;
    const std::size_t added = (shortfall + kBlockBytes - 1) / kBlockBytes;
    const std::size_t blocks = blocks_ + added;
    if (blocks > kMaxBlocks)
        return false;
    auto* const data = static_cast<char*>(std::malloc(blocks * kBlockBytes));
    if (data == nullptr)
        return false;
    if (data_ != nullptr) {
        std::memcpy(data, data_, used_);
        std::free(data_);
    }
    CountBlocks(static_cast<std::uint32_t>(added));
    data_ = data;
    blocks_ = static_cast<std::uint32_t>(blocks);
    return true;
}

void PackBuffer::write(const void* bytes, std::size_t count)
{
    std::memcpy(data_ + used_, bytes, count);
    used_ += static_cast<std::uint32_t>(count);
}

std::uint32_t PackBuffer::GetBlocksInUse()
{
    return blocksInUse;
}

std::uint32_t PackBuffer::GetPeakBlocks()
{
    return peakBlocks;
}

Pack::Pack(PackBuffer& buffer)
    : buffer_(&buffer)
{
}

void Pack::append(const void* bytes, std::size_t count)
{
    if (count == 0)
        return;
    if (!buffer_->reserve(count))
        throw new PackError(u"append buffer overflow");
    buffer_->write(bytes, count);
}

void Pack::push_uint16(std::uint16_t value)
{
    const std::array<std::uint8_t, 2> bytes = {static_cast<std::uint8_t>(value & 0xFFU),
                                               static_cast<std::uint8_t>(value >> 8U)};
    append(bytes.data(), bytes.size());
}

void Pack::push_uint32(std::uint32_t value)
{
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFFU);
    append(bytes.data(), bytes.size());
}

void Pack::push_varstr(const void* bytes, std::size_t count)
{
    if (count > 0xFFFF)
        throw new PackError(u"push_varstr: varstr too big");
    push_uint16(static_cast<std::uint16_t>(count));
    append(bytes, count);
}

} // namespace kivo
