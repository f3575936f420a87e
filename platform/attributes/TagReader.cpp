#include "platform/attributes/TagReader.h"

#include "platform/attributes/BoundedStream.h"
#include "platform/attributes/CommentBounds.h"
#include "platform/attributes/Mp3Length.h"
#include "platform/attributes/Mp4Video.h"
#include "platform/attributes/TagText.h"
#include "platform/attributes/TextFrameFactory.h"
#include "shell/contracts/common/Text.h"

#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/apetag.h>
#include <taglib/asffile.h>
#include <taglib/commentsframe.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>
#include <taglib/xingheader.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <type_traits>

namespace kivo::attributes {

namespace {

constexpr std::size_t kHeadBytes = 64;
constexpr unsigned long kPictureBlockLimit =
    16UL * 1024 * 1024; // Blocks of formats that keep pictures among texts.
constexpr std::int64_t kSmallBudget = 16 * 1024 * 1024; // Of formats that make texts of all of it.
constexpr std::int64_t kId3v2HeaderBytes = 10;
constexpr std::int64_t kLargestLeadingTag = 32 * 1024 * 1024;
constexpr std::int64_t kId3v1Bytes = 128;

void Set(std::optional<String>& field, const TagLib::String& text)
{
    if (!field || field->empty())
        field = ToString(text);
}

// Fields that are already filled stay.
void TakeTag(AttributeRecord& record, const TagLib::Tag* tag)
{
    if (tag == nullptr)
        return;
    Set(record.title, tag->title());
    Set(record.author, tag->artist());
    Set(record.album, tag->album());
    Set(record.genre, tag->genre());
    Set(record.comment, tag->comment());
}

void TakeProperties(AttributeRecord& record, const TagLib::AudioProperties* properties)
{
    if (properties == nullptr)
        return;
    if (properties->lengthInMilliseconds() > 0)
        record.milliseconds = properties->lengthInMilliseconds();
    if (properties->bitrate() > 0)
        record.bitsPerSecond = static_cast<std::uint32_t>(properties->bitrate()) * 1000U;
}

// The first comment that isn't a machine's note: one music program keeps its numbers in comments of
// this name.
TagLib::String FindComment(const TagLib::ID3v2::Tag& tag)
{
    for (const auto* frame : tag.frameList("COMM")) {
        const auto* comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame);
        if (comment != nullptr && !comment->description().startsWith("iTun"))
            return comment->text();
    }
    return {};
}

// TagLib reads the 30-byte form of the comment past the text handler, so it is read here.
String ReadId3v1Comment(MediaSource& source)
{
    std::array<char, kId3v1Bytes> tag{};
    if (source.ReadAt(source.GetLength() - kId3v1Bytes, tag.data(), tag.size()) != tag.size() ||
        std::string_view(tag.data(), 3) != "TAG") {
        return {};
    }
    std::string_view comment(tag.data() + 97, tag[125] == '\0' ? 28 : 30);
    comment = comment.substr(0, std::min(comment.find('\0'), comment.size()));
    return common::MBCS2CString(comment, 0);
}

void TakeMpegTexts(AttributeRecord& record, TagLib::MPEG::File& file, MediaSource& source)
{
    TakeTag(record, file.tag());
    record.comment.reset();
    if (file.hasID3v2Tag())
        Set(record.comment, FindComment(*file.ID3v2Tag()));
    if (file.hasAPETag())
        Set(record.comment, file.APETag()->comment());
    if (file.hasID3v1Tag() && record.comment.value_or(String()).empty())
        record.comment = ReadId3v1Comment(source);
    if (!record.comment)
        record.comment = String();
}

std::optional<AttributeRecord> ReadMpeg(MediaSource& source, BoundedStream& stream)
{
    TextFrameFactory frames;
    TagLib::MPEG::File file(&stream, &frames);
    AttributeRecord record;
    TakeMpegTexts(record, file, source);
    TakeProperties(record, file.audioProperties());
    const auto* properties = file.audioProperties();
    const bool isEmpty = properties == nullptr || properties->sampleRate() == 0;
    if (isEmpty && !file.hasID3v1Tag() && !file.hasID3v2Tag() && !file.hasAPETag())
        return std::nullopt;
    const bool tellsLength = properties != nullptr && properties->xingHeader() != nullptr &&
                             properties->xingHeader()->isValid();
    if (!isEmpty && !tellsLength) {
        const auto base = source.GetLength() - stream.length();
        const auto end = source.GetLength() - (file.hasID3v1Tag() ? kId3v1Bytes : 0);
        if (const auto length = MeasureVariableRate(source, base + file.firstFrameOffset(), end)) {
            record.milliseconds = length->milliseconds;
            record.bitsPerSecond = length->bitsPerSecond;
        }
    }
    return record;
}

TagLib::String FirstAttribute(const TagLib::ASF::Tag& tag, const char* name)
{
    const auto& attributes = tag.attributeListMap();
    const auto found = attributes.find(name);
    return found == attributes.end() || found->second.isEmpty() ? TagLib::String()
                                                                : found->second.front().toString();
}

// Of a video: TagLib gives the sound's rate alone.
void UseWholeFileRate(AttributeRecord& record, const MediaSource& source)
{
    if (record.milliseconds.value_or(0) > 0)
        record.bitsPerSecond = GetMeanRate(source.GetLength(), *record.milliseconds);
}

// A stream-properties object whose stream type is video (ASF specification, GUID ASF_Video_Media).
bool HasAsfVideo(MediaSource& source)
{
    constexpr std::string_view kVideoMedia(
        "\xC0\xEF\x19\xBC\x4D\x5B\xCF\x11\xA8\xFD\x00\x80\x5F\x5C\x44\x2B", 16);
    std::string head(8 * 1024, '\0');
    head.resize(source.ReadAt(0, head.data(), head.size()));
    return head.find(kVideoMedia) != std::string::npos;
}

std::optional<AttributeRecord> ReadAsf(MediaSource& source, BoundedStream& stream)
{
    TagLib::ASF::File file(&stream);
    if (!file.isValid())
        return std::nullopt;
    AttributeRecord record;
    TakeTag(record, file.tag());
    // Writers differ on where these stand: in the content description or among the extended
    // attributes.
    Set(record.comment, FirstAttribute(*file.tag(), "Description"));
    Set(record.title, FirstAttribute(*file.tag(), "Title"));
    Set(record.author, FirstAttribute(*file.tag(), "Author"));
    TakeProperties(record, file.audioProperties());
    if (HasAsfVideo(source))
        UseWholeFileRate(record, source);
    return record;
}

// RIFF and its kin keep an ID3v2 tag in a chunk, which is read by our own factory.
template <class File>
std::optional<AttributeRecord> ReadChunked(BoundedStream& stream)
{
    stream.SetHidesId3Chunk(/*on=*/true);
    File file(&stream);
    stream.SetHidesId3Chunk(/*on=*/false);
    if (!file.isValid())
        return std::nullopt;
    AttributeRecord record;
    if (stream.GetId3ChunkOffset() >= 0) {
        stream.SetBlockLimit(kPictureBlockLimit);
        TextFrameFactory frames;
        const TagLib::ID3v2::Tag tag(&file, stream.GetId3ChunkOffset(), &frames);
        TakeTag(record, &tag);
        record.comment.reset();
        Set(record.comment, FindComment(tag));
    }
    if constexpr (std::is_same_v<File, TagLib::RIFF::WAV::File>)
        TakeTag(record, file.InfoTag());
    TakeProperties(record, file.audioProperties());
    return record;
}

std::optional<AttributeRecord> ReadMp4(MediaSource& source, BoundedStream& stream)
{
    TagLib::MP4::File file(&stream);
    if (!file.isValid())
        return std::nullopt;
    AttributeRecord record;
    TakeTag(record, file.tag());
    TakeProperties(record, file.audioProperties());
    if (HasMp4Video(source))
        UseWholeFileRate(record, source);
    return record;
}

// Formats that need nothing of their own.
template <class File, class... Args>
std::optional<AttributeRecord> ReadPlain(BoundedStream& stream, Args... args)
{
    File file(&stream, args...);
    if (!file.isValid())
        return std::nullopt;
    AttributeRecord record;
    TakeTag(record, file.tag());
    TakeProperties(record, file.audioProperties());
    return record;
}

std::optional<AttributeRecord>
ReadFlac(MediaSource& source, std::int64_t tagBytes, BoundedStream& stream)
{
    if (!HasSaneFlacComments(source, tagBytes + 4))
        return std::nullopt;
    stream.SetBlockLimit(kPictureBlockLimit);
    TextFrameFactory frames;
    return ReadPlain<TagLib::FLAC::File, TextFrameFactory*>(stream, &frames);
}

// The codec of an Ogg stream stands in its first packet, behind the page header.
std::optional<AttributeRecord> ReadOgg(MediaSource& source, BoundedStream& stream)
{
    std::array<char, 48> page{};
    const std::size_t got = source.ReadAt(0, page.data(), page.size());
    const std::string_view head(page.data(), got);
    if (head.find("OpusHead") != std::string_view::npos && HasSaneOggComments(source, 8))
        return ReadPlain<TagLib::Ogg::Opus::File>(stream);
    constexpr std::string_view kFlacMark("\x7F\x46LAC", 5);
    if (head.find(kFlacMark) != std::string_view::npos && HasSaneOggFlacComments(source)) {
        return ReadPlain<TagLib::Ogg::FLAC::File>(stream);
    }
    if (head.find("\x01vorbis") != std::string_view::npos && HasSaneOggComments(source, 7))
        return ReadPlain<TagLib::Ogg::Vorbis::File>(stream);
    return std::nullopt;
}

std::optional<AttributeRecord>
ReadByContent(MediaSource& source, const Sniffed& sniffed, BoundedStream& stream)
{
    switch (sniffed.content) {
    case Content::Mpeg: return ReadMpeg(source, stream);
    case Content::Asf: stream.SetBudget(kSmallBudget); return ReadAsf(source, stream);
    case Content::Wave: return ReadChunked<TagLib::RIFF::WAV::File>(stream);
    case Content::Aiff: return ReadChunked<TagLib::RIFF::AIFF::File>(stream);
    case Content::Mp4: stream.SetBudget(kSmallBudget); return ReadMp4(source, stream);
    case Content::Ape: return ReadPlain<TagLib::APE::File>(stream);
    case Content::WavPack: return ReadPlain<TagLib::WavPack::File>(stream);
    case Content::Flac: return ReadFlac(source, sniffed.tagBytes, stream);
    case Content::Ogg: stream.SetBudget(kSmallBudget); return ReadOgg(source, stream);
    default: return std::nullopt;
    }
}

Content ByMagic(std::string_view head)
{
    struct Magic {
        std::size_t offset;
        std::string_view bytes;
        Content content;
    };
    static constexpr Magic kMagic[] = {
        {0, {"\x30\x26\xB2\x75\x8E\x66\xCF\x11", 8}, Content::Asf    },
        {8, "WAVE",                                  Content::Wave   },
        {4, "ftyp",                                  Content::Mp4    },
        {0, "MAC ",                                  Content::Ape    },
        {0, "fLaC",                                  Content::Flac   },
        {0, "OggS",                                  Content::Ogg    },
        {0, "wvpk",                                  Content::WavPack},
        {8, "AIFF",                                  Content::Aiff   },
        {8, "AIFC",                                  Content::Aiff   },
        {0, "MThd",                                  Content::Midi   },
    };
    for (const auto& [offset, bytes, content] : kMagic) {
        if (head.size() < offset + bytes.size() || head.substr(offset, bytes.size()) != bytes)
            continue;
        const bool isContainer = offset != 8 || head.starts_with("RIFF") ||
                                 head.starts_with("RF64") || head.starts_with("FORM");
        if (isContainer)
            return content;
    }
    return Content::Unknown;
}

bool IsMpegFrame(std::string_view head)
{
    return head.size() >= 2 && head[0] == '\xFF' && (head[1] & 0xE0) == 0xE0 &&
           (head[1] & 0x06) != 0;
}

// Bytes of an ID3v2 tag at the start, header included (ID3v2.4.0, 3.1); 0: there is none.
std::int64_t MeasureLeadingTag(std::string_view head)
{
    if (head.size() < 10 || !head.starts_with("ID3"))
        return 0;
    std::int64_t size = 0;
    for (std::size_t i = 6; i < 10; ++i) {
        if ((head[i] & 0x80) != 0)
            return 0;
        size = size << 7 | head[i];
    }
    const bool hasFooter = (head[5] & 0x10) != 0;
    return size + kId3v2HeaderBytes * (hasFooter ? 2 : 1);
}

std::string ReadHead(MediaSource& source, std::int64_t offset)
{
    std::string head(kHeadBytes, '\0');
    head.resize(source.ReadAt(offset, head.data(), head.size()));
    return head;
}

} // namespace

Sniffed Sniff(MediaSource& source, bool isMp3Name)
{
    Sniffed sniffed;
    std::string head = ReadHead(source, 0);
    const std::int64_t tagBytes = MeasureLeadingTag(head);
    if (tagBytes > 0) {
        sniffed.tagBytes = tagBytes;
        head = ReadHead(source, tagBytes);
        sniffed.content = ByMagic(head);
        if (sniffed.content == Content::Unknown)
            sniffed.content = Content::Mpeg;
        // TagLib's own readers pass over the tag in these two; a tag too large to read is left out.
        const bool readsTag = sniffed.content == Content::Mpeg || sniffed.content == Content::Flac;
        if (!readsTag || tagBytes > kLargestLeadingTag)
            sniffed.offset = tagBytes;
        return sniffed;
    }
    sniffed.content = ByMagic(head);
    if (sniffed.content == Content::Unknown && (IsMpegFrame(head) || isMp3Name))
        sniffed.content = Content::Mpeg;
    return sniffed;
}

std::optional<AttributeRecord> ReadTags(MediaSource& source, const Sniffed& sniffed)
{
    BoundedStream stream(source, sniffed.offset);
    auto record = ReadByContent(source, sniffed, stream);
    const bool takesLeadingTag = sniffed.offset > 0 && sniffed.offset <= kLargestLeadingTag &&
                                 sniffed.content != Content::Mpeg;
    if (record && takesLeadingTag) {
        BoundedStream whole(source);
        TextFrameFactory frames;
        TagLib::MPEG::File tags(&whole, &frames, /*readProperties=*/false);
        TakeTag(*record, tags.ID3v2Tag());
    }
    return record;
}

} // namespace kivo::attributes
