#include "platform/attributes/StreamReader.h"

#include "platform/attributes/AvReader.h"
#include "platform/attributes/RecordHeader.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace kivo::attributes {

namespace {

constexpr const char* kProtocols = "http,https,tls,tcp,crypto,httpproxy,rtsp,rtp,mmsh,mmst";
constexpr const char* kTimeoutMicroseconds = "15000000";
constexpr std::size_t kLongestText = 1024;

struct CloseContext {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using ContextPtr = std::unique_ptr<AVFormatContext, CloseContext>;

// What reader and thread share; whichever goes last frees it, since nobody waits for the network.
struct StreamState {
    std::atomic<bool> stops{false};
    std::mutex mutex; // Guards what follows, and is held while a status is told: Close waits for a
                      // status under way.
    IWMReaderCallback* callback = nullptr;
    std::shared_ptr<RecordHeader> header;
};

String FindText(const AVDictionary* dictionary, const char* name)
{
    const AVDictionaryEntry* entry = av_dict_get(dictionary, name, nullptr, 0);
    return entry != nullptr ? common::MBCS2CString(entry->value, 0).substr(0, kLongestText)
                            : String();
}

String FirstText(const AVDictionary* dictionary, std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        String text = FindText(dictionary, name);
        if (!text.empty())
            return text;
    }
    return {};
}

AttributeRecord TakeRecord(const AVFormatContext& context)
{
    AttributeRecord record;
    record.title = FirstText(context.metadata, {"title", "StreamTitle", "icy-name"});
    record.author = FirstText(context.metadata, {"artist", "author"});
    record.album = FirstText(context.metadata, {"album"});
    record.genre = FirstText(context.metadata, {"genre", "icy-genre"});
    record.comment = FirstText(context.metadata, {"comment", "icy-description"});
    constexpr std::int64_t kMicrosecondsPerMs = 1000;
    if (context.duration != AV_NOPTS_VALUE && context.duration > 0)
        record.milliseconds = context.duration / kMicrosecondsPerMs;
    if (context.bit_rate > 0 && context.bit_rate < INT32_MAX)
        record.bitsPerSecond = static_cast<std::uint32_t>(context.bit_rate);
    return record;
}

void Tell(StreamState& state, WMT_STATUS status, std::shared_ptr<RecordHeader> header = nullptr)
{
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (header)
        state.header = std::move(header);
    if (state.callback != nullptr && !state.stops.load())
        state.callback->OnStatus(status, status == WMT_STATUS::Error ? E_FAIL : S_OK);
}

ContextPtr OpenStream(StreamState& state, const std::string& url)
{
    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr)
        return nullptr;
    context->interrupt_callback = {
        [](void* opaque) { return static_cast<StreamState*>(opaque)->stops.load() ? 1 : 0; },
        &state};
    context->event_flags = 0;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", kProtocols, 0);
    av_dict_set(&options, "codec_whitelist", "none", 0);
    av_dict_set(&options, "probesize", "1000000", 0);
    av_dict_set(&options, "analyzeduration", "300000", 0);
    av_dict_set(&options, "rw_timeout", kTimeoutMicroseconds, 0);
    av_dict_set(&options, "user_agent", "TuneHive", 0);
    const int result = avformat_open_input(&context, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    return result < 0 ? nullptr : ContextPtr(context);
}

void ReadToTheEnd(StreamState& state, AVFormatContext& context)
{
    AVPacket* packet = av_packet_alloc();
    while (packet != nullptr && !state.stops.load() && av_read_frame(&context, packet) >= 0) {
        av_packet_unref(packet);
        if ((context.event_flags & AVFMT_EVENT_FLAG_METADATA_UPDATED) != 0) {
            context.event_flags &= ~AVFMT_EVENT_FLAG_METADATA_UPDATED;
            Tell(state,
                 WMT_STATUS::NewMetadata,
                 std::make_shared<RecordHeader>(TakeRecord(context)));
        }
    }
    av_packet_free(&packet);
}

void RunStream(const std::shared_ptr<StreamState>& state, const std::string& url)
{
    const ContextPtr context = OpenStream(*state, url);
    if (!context) {
        Tell(*state, WMT_STATUS::Error);
        return;
    }
    context->event_flags &= ~AVFMT_EVENT_FLAG_METADATA_UPDATED;
    Tell(*state, WMT_STATUS::Opened, std::make_shared<RecordHeader>(TakeRecord(*context)));
    Tell(*state, WMT_STATUS::Started);
    ReadToTheEnd(*state, *context);
    Tell(*state, WMT_STATUS::EndOfFile);
}

// Empty: a scheme that isn't read. FFmpeg knows mms as mmsh alone.
std::string MapAddress(const String& url)
{
    const std::size_t colon = url.find(u"://");
    const bool hasControls =
        std::any_of(url.begin(), url.end(), [](char16_t unit) { return unit <= u' '; });
    if (!UrlIsW(url) || colon == String::npos || hasControls)
        return {};
    const String scheme = common::ToLowerAscii(StringView(url).substr(0, colon));
    const std::string rest = common::CString_to_utf8(StringView(url).substr(colon));
    if (scheme == u"mms")
        return "mmsh" + rest;
    for (const StringView allowed : {u"http", u"https", u"mmsh", u"mmst", u"rtsp"}) {
        if (scheme == allowed)
            return common::CString_to_utf8(scheme) + rest;
    }
    return {};
}

class StreamReader final : public IWMReader {
public:
    StreamReader() = default;
    virtual ~StreamReader() { End(); }

    HRESULT Open(const String& url, IWMReaderCallback* callback) override
    {
        const std::string address = MapAddress(url);
        if (address.empty() || callback == nullptr || state_)
            return E_FAIL;
        const auto state = std::make_shared<StreamState>();
        state->callback = callback;
        try {
            std::thread([state, address] { RunStream(state, address); }).detach();
        } catch (const std::system_error&) {
            return E_FAIL;
        }
        callback->AddRef();
        state_ = state;
        return S_OK;
    }

    HRESULT Close() override
    {
        if (!state_)
            return E_FAIL;
        End();
        return S_OK;
    }

    IWMHeaderInfo3* QueryHeaderInfo() override
    {
        if (state_) {
            const std::lock_guard<std::mutex> lock(state_->mutex);
            header_ = state_->header;
        }
        return header_.get();
    }

    void Release() override { delete this; }

private:
    void End()
    {
        if (!state_)
            return;
        state_->stops = true;
        IWMReaderCallback* callback = nullptr;
        {
            const std::lock_guard<std::mutex> lock(state_->mutex);
            std::swap(callback, state_->callback);
            header_ = state_->header;
        }
        if (callback != nullptr)
            callback->Release();
        state_.reset();
    }

    // Shared with the thread; see StreamState.
    std::shared_ptr<StreamState> state_;
    // Shared with the state: the thread may set a newer one while the owner reads this.
    std::shared_ptr<RecordHeader> header_;
};

} // namespace

IWMReader* MakeStreamReader()
{
    PrepareAvformat();
    return new StreamReader;
}

} // namespace kivo::attributes
