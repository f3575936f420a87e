#include "platform/attributes/MetadataEditor.h"

#include "platform/attributes/AvReader.h"
#include "platform/attributes/MediaSource.h"
#include "platform/attributes/RecordHeader.h"
#include "platform/attributes/TagReader.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

#include <memory>
#include <utility>

namespace kivo::attributes {

namespace {

// Formats in which a missing length is worth the second, costlier reader.
bool WantsSecondReader(Content content)
{
    return content == Content::Wave || content == Content::Mp4 || content == Content::Asf;
}

void FillMissing(AttributeRecord& record, const AttributeRecord& other)
{
    const auto fill = [](auto& field, const auto& value) {
        if (!field)
            field = value;
    };
    fill(record.milliseconds, other.milliseconds);
    fill(record.bitsPerSecond, other.bitsPerSecond);
    fill(record.title, other.title);
    fill(record.author, other.author);
    fill(record.album, other.album);
    fill(record.genre, other.genre);
    fill(record.comment, other.comment);
}

std::optional<AttributeRecord> ReadAttributes(const String& path)
{
    MediaSource source(path);
    if (!source.IsOpen() || source.GetLength() == 0)
        return std::nullopt;
    String extension = common::ToLowerAscii(PathFindExtensionW(path));
    extension.erase(0, 1);
    const Sniffed sniffed = Sniff(source, extension == u"mp3");
    if (sniffed.content == Content::Midi)
        return std::nullopt;

    auto record = ReadTags(source, sniffed);
    const bool isUnread = !record && sniffed.content == Content::Unknown;
    const bool isShort = !record || !record->milliseconds;
    if (isUnread || (isShort && WantsSecondReader(sniffed.content))) {
        const auto other = ReadByAvformat(source, common::CString_to_utf8(extension));
        if (record && other)
            FillMissing(*record, *other);
        else if (other)
            record = other;
    }
    return record;
}

class MetadataEditor final : public IWMMetadataEditor {
public:
    MetadataEditor() = default;
    virtual ~MetadataEditor() = default;

    HRESULT Open(const String& path) override
    {
        header_.reset();
        try {
            if (auto record = ReadAttributes(path))
                header_ = std::make_unique<RecordHeader>(std::move(*record));
        } catch (...) {
            // TagLib allocates what a file asks for; without memory the file has no attributes.
            return E_FAIL;
        }
        return header_ ? S_OK : E_FAIL;
    }

    IWMHeaderInfo3* QueryHeaderInfo() override { return header_.get(); }
    void Release() override { delete this; }

private:
    std::unique_ptr<RecordHeader> header_;
};

} // namespace

IWMMetadataEditor* MakeMetadataEditor()
{
    return new MetadataEditor;
}

} // namespace kivo::attributes
