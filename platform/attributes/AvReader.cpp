#include "platform/attributes/AvReader.h"

#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <mutex>

namespace kivo::attributes {

namespace {

constexpr std::size_t kLargestAllocation = 256UL * 1024 * 1024;
constexpr int kBufferBytes = 32 * 1024;
constexpr std::int64_t kMaxBytes = 16 * 1024 * 1024;
constexpr auto kMaxTime = std::chrono::milliseconds(1900);
constexpr int kMinProbeScore = 20; // Below it the name alone was believed.
constexpr unsigned kMaxStreams = 64;

struct Input {
    MediaSource* source = nullptr;
    std::int64_t position = 0;
    std::int64_t bytesLeft = kMaxBytes;
    std::chrono::steady_clock::time_point deadline;
};

int ReadInput(void* opaque, std::uint8_t* buffer, int size)
{
    auto& input = *static_cast<Input*>(opaque);
    const std::int64_t wanted = std::min<std::int64_t>(size, input.bytesLeft);
    if (wanted <= 0)
        return AVERROR_EOF;
    const std::size_t got =
        input.source->ReadAt(input.position, buffer, static_cast<std::size_t>(wanted));
    if (got == 0)
        return AVERROR_EOF;
    input.position += static_cast<std::int64_t>(got);
    input.bytesLeft -= static_cast<std::int64_t>(got);
    return static_cast<int>(got);
}

std::int64_t SeekInput(void* opaque, std::int64_t offset, int whence)
{
    auto& input = *static_cast<Input*>(opaque);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE: return input.source->GetLength();
    case SEEK_SET: break;
    case SEEK_CUR: offset += input.position; break;
    case SEEK_END: offset += input.source->GetLength(); break;
    default: return AVERROR(EINVAL);
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    input.position = offset;
    return offset;
}

int IsPastDeadline(void* opaque)
{
    return std::chrono::steady_clock::now() > static_cast<Input*>(opaque)->deadline ? 1 : 0;
}

// A file may name other files; none of them is opened.
int RefuseToOpen(AVFormatContext* /*context*/,
                 AVIOContext** /*io*/,
                 const char* /*url*/,
                 int /*flags*/,
                 AVDictionary** /*options*/)
{
    return AVERROR(EPERM);
}

struct CloseContext {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct FreeIo {
    void operator()(AVIOContext* io) const
    {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};
using ContextPtr = std::unique_ptr<AVFormatContext, CloseContext>;
using IoPtr = std::unique_ptr<AVIOContext, FreeIo>;

ContextPtr OpenInput(Input& input, AVIOContext* io, const std::string& extension)
{
    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr)
        return nullptr;
    context->pb = io;
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = RefuseToOpen;
    context->interrupt_callback = {IsPastDeadline, &input};
    context->max_streams = kMaxStreams;

    AVDictionary* options = nullptr;
    const char* formats = IsBeyond() ? "avi,mpeg,mpegvideo,mpegts,rm,mov,asf,flv,matroska,wav,aac"
                                     : "avi,mpeg,mpegvideo,mpegts,rm,mov,asf,flv,matroska,wav";
    av_dict_set(&options, "format_whitelist", formats, 0);
    av_dict_set(&options, "protocol_whitelist", "none", 0);
    av_dict_set(&options, "codec_whitelist", "none", 0);
    av_dict_set(&options, "probesize", "1000000", 0);
    av_dict_set(&options, "analyzeduration", "300000", 0);
    av_dict_set(&options, "max_probe_packets", "64", 0);
    const std::string name = "x." + extension;
    const int result =
        avformat_open_input(&context, name.c_str(), nullptr, &options); // Frees it on failure.
    av_dict_free(&options);
    if (result < 0)
        return nullptr;
    return ContextPtr(context);
}

std::int64_t FindMilliseconds(const AVFormatContext& context)
{
    constexpr std::int64_t kMicrosecondsPerMs = 1000;
    if (context.duration != AV_NOPTS_VALUE && context.duration > 0)
        return context.duration / kMicrosecondsPerMs;
    std::int64_t longest = 0;
    for (unsigned i = 0; i < context.nb_streams; ++i) {
        const AVStream& stream = *context.streams[i];
        if (stream.duration != AV_NOPTS_VALUE && stream.duration > 0)
            longest = std::max(
                longest, av_rescale_q(stream.duration, stream.time_base, AVRational{1, 1000}));
    }
    return longest;
}

String FindText(const AVFormatContext& context, std::initializer_list<const char*> names)
{
    const AVDictionary* const dictionaries[] = {
        context.metadata, context.nb_streams > 0 ? context.streams[0]->metadata : nullptr};
    for (const AVDictionary* dictionary : dictionaries) {
        for (const char* name : names) {
            const AVDictionaryEntry* entry = av_dict_get(dictionary, name, nullptr, 0);
            if (entry != nullptr && *entry->value != '\0')
                return common::MBCS2CString(entry->value,
                                            0); // Several formats hand raw bytes through.
        }
    }
    return {};
}

AttributeRecord TakeRecord(const AVFormatContext& context, const MediaSource& source)
{
    AttributeRecord record;
    record.title = FindText(context, {"title"});
    record.author = FindText(context, {"artist", "author"});
    record.album = FindText(context, {"album"});
    record.genre = FindText(context, {"genre"});
    record.comment = FindText(context, {"comment"});
    const std::int64_t milliseconds = FindMilliseconds(context);
    if (milliseconds > 0) {
        record.milliseconds = milliseconds;
        record.bitsPerSecond = GetMeanRate(source.GetLength(), milliseconds);
    }
    return record;
}

} // namespace

void PrepareAvformat()
{
    static std::once_flag once;
    std::call_once(once, [] {
        // One broken file asked for 646 MB without it; it holds for the whole process, so it is no
        // lower.
        av_max_alloc(kLargestAllocation);
        av_log_set_level(AV_LOG_QUIET);
    });
}

std::optional<AttributeRecord> ReadByAvformat(MediaSource& source, const std::string& extension)
{
    PrepareAvformat();
    source.ExpectSequentialReads();
    Input input;
    input.source = &source;
    input.deadline = std::chrono::steady_clock::now() + kMaxTime;
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (buffer == nullptr)
        return std::nullopt;
    const IoPtr io(avio_alloc_context(
        buffer, kBufferBytes, /*write_flag=*/0, &input, ReadInput, nullptr, SeekInput));
    if (!io) {
        av_free(buffer);
        return std::nullopt;
    }
    const ContextPtr context = OpenInput(input, io.get(), extension);
    if (!context || context->probe_score < kMinProbeScore)
        return std::nullopt;
    if (FindMilliseconds(*context) == 0 && avformat_find_stream_info(context.get(), nullptr) < 0)
        return std::nullopt;
    return TakeRecord(*context, source);
}

} // namespace kivo::attributes
