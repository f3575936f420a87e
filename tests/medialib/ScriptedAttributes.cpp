#include "tests/medialib/ScriptedAttributes.h"

#include <cstring>

namespace kivo::test {

namespace {
ScriptedAttributes* script = nullptr;
} // namespace

HRESULT ScriptedHeader::GetAttributeByName(std::uint16_t stream,
                                           const char16_t* name,
                                           std::uint8_t* value,
                                           std::uint16_t* length)
{
    if (const auto failure = failures.find(name); failure != failures.end())
        return failure->second;
    const auto found = values.find(name);
    if (stream != 0 || found == values.end())
        return ASF_E_NOTFOUND;
    if (value != nullptr)
        std::memcpy(value, found->second.data(), found->second.size());
    *length = static_cast<std::uint16_t>(found->second.size());
    return S_OK;
}

void ScriptedHeader::SetText(const String& name, const String& text)
{
    Set(name, text.c_str(), (text.size() + 1) * sizeof(char16_t));
}

void ScriptedHeader::Set(const String& name, const void* bytes, std::size_t count)
{
    const auto* const first = static_cast<const std::uint8_t*>(bytes);
    values[name].assign(first, first + count);
}

class ScriptedEditor final : public IWMMetadataEditor {
public:
    ScriptedEditor() { ++script->editors; }

    HRESULT Open(const String& path) override
    {
        ++script->editorOpens;
        if (script->onOpen)
            script->onOpen(path);
        const auto found = script->headers.find(path);
        if (found == script->headers.end())
            return E_FAIL;
        header_ = found->second; // A copy: several threads may have one file open.
        isOpen_ = true;
        return S_OK;
    }
    IWMHeaderInfo3* QueryHeaderInfo() override { return isOpen_ ? &header_ : nullptr; }
    void Release() override
    {
        --script->editors;
        delete this;
    }

private:
    ~ScriptedEditor() = default;

    ScriptedHeader header_;
    bool isOpen_ = false;
};

class ScriptedReader final : public IWMReader {
public:
    ScriptedReader() { ++script->readers; }

    HRESULT Open(const String& url, IWMReaderCallback* callback) override
    {
        url_ = url;
        script->log.push_back(u"open " + url);
        if (!script->opensStreams)
            return E_FAIL;
        callback->AddRef();
        callback_ = callback;
        script->callbacks_[url] = callback;
        return S_OK;
    }
    HRESULT Close() override
    {
        script->log.push_back(u"close " + url_);
        if (callback_ == nullptr)
            return E_FAIL;
        script->callbacks_.erase(url_);
        callback_->Release();
        callback_ = nullptr;
        return S_OK;
    }
    IWMHeaderInfo3* QueryHeaderInfo() override
    {
        const auto found = script->headers.find(url_);
        return found != script->headers.end() ? &found->second : nullptr;
    }
    void Release() override
    {
        --script->readers;
        delete this;
    }

private:
    ~ScriptedReader() = default;

    String url_;
    IWMReaderCallback* callback_ = nullptr;
};

ScriptedAttributes::ScriptedAttributes()
{
    script = this;
    MediaAttributeMakers makers;
    makers.createEditor = []() -> IWMMetadataEditor* {
        return script->hasEditor ? new ScriptedEditor : nullptr;
    };
    makers.createReader = []() -> IWMReader* {
        return script->hasReader ? new ScriptedReader : nullptr;
    };
    SetMediaAttributeMakers(makers);
}

ScriptedAttributes::~ScriptedAttributes()
{
    SetMediaAttributeMakers({});
    script = nullptr;
}

IWMReaderCallback* ScriptedAttributes::GetCallback(const String& url)
{
    const auto found = callbacks_.find(url);
    return found != callbacks_.end() ? found->second : nullptr;
}

} // namespace kivo::test
