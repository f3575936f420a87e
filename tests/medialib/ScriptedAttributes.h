#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/control/MediaAttributes.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace kivo::test {

// A header in memory. A name that isn't there is ASF_E_NOTFOUND.
class ScriptedHeader final : public IWMHeaderInfo3 {
public:
    HRESULT GetAttributeByName(std::uint16_t stream,
                               const char16_t* name,
                               std::uint8_t* value,
                               std::uint16_t* length) override;

    void SetText(const String& name, const String& text); // With its terminator.
    template <class T>
    void SetNumber(const String& name, T number) // Of the attribute's size.
    {
        Set(name, &number, sizeof number);
    }

    std::map<String, std::vector<std::uint8_t>> values;
    std::map<String, HRESULT> failures; // Names that give this result instead.

private:
    void Set(const String& name, const void* bytes, std::size_t count);
};

// While it stands, editors and readers come from here. One at a time; set it up before threads
// start. A path or URL without a header has none.
class ScriptedAttributes {
public:
    ScriptedAttributes();
    ScriptedAttributes(const ScriptedAttributes&) = delete;
    ScriptedAttributes& operator=(const ScriptedAttributes&) = delete;
    ~ScriptedAttributes();

    std::map<String, ScriptedHeader> headers; // By path or URL.
    bool hasEditor = true;
    bool hasReader = true;
    bool opensStreams = true;                  // Whether a reader's Open succeeds.
    std::function<void(const String&)> onOpen; // Runs in each Open of an editor.

    // The callback of an open reader; null when none is open. Borrowed.
    [[nodiscard]] IWMReaderCallback* GetCallback(const String& url);

    std::atomic<int> editorOpens = 0; // Files opened for their attributes.
    std::atomic<int> editors = 0;     // That stand.
    std::atomic<int> readers = 0;     // That stand.
    std::vector<String> log;          // "open URL", "close URL" of readers, in order.

private:
    friend class ScriptedEditor;
    friend class ScriptedReader;

    std::map<String, IWMReaderCallback*> callbacks_;
};

} // namespace kivo::test
