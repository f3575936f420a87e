#include "medialib/Id3v1.h"
#include "medialib/KivoMediaHelper.h"
#include "medialib/MpegFrame.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

namespace kivo::tunehive {

namespace {

constexpr std::int64_t kPositions = 10'001; // How far a header may lie from where it is due.
constexpr int kHeaderSize = 4;

std::uint32_t JoinHeader(const char* bytes)
{
    std::uint32_t header = 0;
    for (int i = 0; i < kHeaderSize; ++i)
        header = header << 8 | static_cast<unsigned char>(bytes[i]);
    return header;
}

// What the walk over all frames of a file comes to.
struct FrameSummary {
    MpegStream stream;
    bool hasStream = false; // At least one header was seen.
    std::int64_t frames = 0;
    std::int64_t bitRateSum = 0;
    double seconds = 0.0;
    int samplingRate = 0;
    StringView channelMode;
    StringView emphasis;
    bool isCopyrighted = false;
};

// Takes one header into the summary; `skip` becomes the way from behind it to the next one due.
// False: the file has no sampling rate to go by, and the walk ends.
bool AddFrame(FrameSummary& sum, std::uint32_t header, int& skip)
{
    if (sum.frames == 0) {
        sum.stream = DecodeStream(header);
        sum.hasStream = true;
    }
    const int bitRate = GetBitRate(sum.stream, header);
    if (bitRate > 0)
        sum.bitRateSum += bitRate;
    if (const int rate = GetSamplingRate(sum.stream.version, header); rate != 0)
        sum.samplingRate = rate;
    if (sum.samplingRate == 0)
        return false;
    sum.channelMode = GetChannelModeText(header);
    sum.emphasis = GetEmphasisText(header);
    sum.isCopyrighted = GetHeaderBits(header, 3, 1) != 0;
    const int size = GetFrameSize(sum.stream, header, bitRate, sum.samplingRate);
    ++sum.frames;
    if (bitRate > 0)
        sum.seconds += size * 8.0 / (bitRate * 1000);
    skip = size - kHeaderSize;
    return true;
}

std::optional<Id3v1Tag> ReadId3v1(const CBinaryFile& file)
{
    std::array<char, kId3v1Size> bytes{};
    const std::int64_t start = file.GetLength() - static_cast<std::int64_t>(bytes.size());
    if (start < 0 || file.ReadAt(start, bytes.data(), bytes.size()) != bytes.size())
        return std::nullopt;
    return ParseId3v1({bytes.data(), bytes.size()});
}

int ToInt(double number)
{
    return number < std::numeric_limits<int>::max() ? static_cast<int>(number)
                                                    : std::numeric_limits<int>::max();
}

void WriteFrames(const FrameSummary& sum, MediaInfo& info)
{
    const auto flag = [](bool on) { return String(on ? u"1" : u"0"); };
    const std::int64_t bitRate = sum.frames > 0 ? sum.bitRateSum / sum.frames : 0;
    info[kInfoLength] = common::ToText(sum.frames > 0 ? ToInt(sum.seconds) : 0);
    info[kInfoBitrate] = common::ToText(static_cast<int>(bitRate));
    info[kInfoMpegVersion] = sum.hasStream ? GetVersionText(sum.stream.version) : StringView();
    info[kInfoHasCrc] = flag(sum.stream.hasProtectionBit);
    info[kInfoIsCopy] = flag(sum.isCopyrighted);
    info[kInfoSampleRate] = common::ToText(sum.samplingRate);
    info[kInfoChannelMode] = sum.channelMode;
    info[kInfoEmphasis] = sum.emphasis;
}

void WriteTag(const Id3v1Tag& tag, MediaInfo& info)
{
    info[kInfoTitle] = common::Trim(tag.title);
    info[kInfoArtist] = common::Trim(tag.artist);
    info[kInfoAlbum] = common::Trim(tag.album);
    info[kInfoYear] = tag.year;
    info[kInfoComment] = tag.comment;
    info[kInfoGenre] = GetGenreName(tag.genre);
}

} // namespace

bool CKivoMediaHelper::FindFrameHeader(CFileWindow& file, std::uint32_t& header, int skip) const
{
    if (skip > 0)
        file.Skip(skip);
    for (std::int64_t left = kPositions; left > 0;) {
        const std::string_view bytes = file.Look();
        if (bytes.size() < kHeaderSize)
            return false;
        const std::int64_t usable =
            std::min(left, static_cast<std::int64_t>(bytes.size()) - kHeaderSize + 1);
        const void* hit = std::memchr(bytes.data(), 0xFF, static_cast<std::size_t>(usable));
        if (hit == nullptr) {
            file.Skip(usable);
            left -= usable;
            continue;
        }
        const char* found = static_cast<const char*>(hit);
        const std::int64_t passed = found - bytes.data();
        if ((static_cast<unsigned char>(found[1]) & 0xE0U) == 0xE0U) {
            header = JoinHeader(found);
            file.Skip(passed + kHeaderSize);
            return true;
        }
        file.Skip(passed + 1);
        left -= passed + 1;
    }
    return false;
}

bool CKivoMediaHelper::ReadMP3Info(const String& path, MediaInfo& info) const
{
    info.clear();
    CBinaryFile file;
    if (!file.Open(path))
        return false;
    FrameSummary sum;
    CFileWindow window(file);
    std::uint32_t header = 0;
    int skip = 0;
    while (FindFrameHeader(window, header, skip))
        if (!AddFrame(sum, header, skip))
            break;
    WriteFrames(sum, info);
    WriteTag(ReadId3v1(file).value_or(Id3v1Tag()), info);
    return true;
}

} // namespace kivo::tunehive
