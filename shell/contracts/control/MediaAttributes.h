#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <vector>

// The attributes of media files and streams by name, as the Windows Media Format interfaces tell
// them.
namespace kivo {

using HRESULT = std::int32_t;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT ASF_E_NOTFOUND = static_cast<HRESULT>(0xC00D07F0U);
[[nodiscard]] constexpr bool Failed(HRESULT result)
{
    return result < 0;
}

// The header of one open file or stream. Thread: any, one object on one thread at a time.
class IWMHeaderInfo3 {
public:
    // Stream 0 alone. Null `value`: `length` becomes the size in bytes. Else `length` bytes are
    // copied: text as UTF-16 with its terminator ("Title", "Author", "Description", "WM/Genre",
    // "WM/AlbumTitle"), "Duration" as 64-bit count of 100 ns, "Bitrate" as 32-bit bits per second.
    // ASF_E_NOTFOUND: there is no such attribute.
    virtual HRESULT GetAttributeByName(std::uint16_t stream,
                                       const char16_t* name,
                                       std::uint8_t* value,
                                       std::uint16_t* length) = 0;

protected:
    ~IWMHeaderInfo3() = default;
};

// Opens one local file for its attributes. Bounded: 2 seconds, 100 MB; a hostile file has no
// attributes. Thread: any, one object on one thread at a time.
class IWMMetadataEditor {
public:
    // S_OK: its header can be asked for. E_FAIL: missing, no regular file, or no media. What was
    // open before is closed either way.
    virtual HRESULT Open(const String& path) = 0;
    // Null until a file is open whose header could be read. Owned by the editor, until the next
    // Open.
    [[nodiscard]] virtual IWMHeaderInfo3* QueryHeaderInfo() = 0;
    virtual void Release() = 0; // Frees the editor.

protected:
    ~IWMMetadataEditor() = default;
};

enum class WMT_STATUS : int {
    Error = 0,
    Opened = 1,
    EndOfFile = 4,
    Started = 11,
    NewMetadata = 20
};

// Hears a stream's reader. Thread: any.
class IWMReaderCallback {
public:
    virtual void AddRef() = 0;
    virtual void Release() = 0;
    virtual HRESULT OnStatus(WMT_STATUS status, HRESULT result) = 0;

protected:
    ~IWMReaderCallback() = default;
};

// Reads the header of a network stream on a thread of its own. Thread: the owner's for all calls.
class IWMReader {
public:
    // Holds a reference on the callback until Close. A failed result: no status will come.
    virtual HRESULT Open(const String& url, IWMReaderCallback* callback) = 0;
    virtual HRESULT Close() = 0; // No status begins after it; doesn't wait for the network.
    [[nodiscard]] virtual IWMHeaderInfo3* QueryHeaderInfo() = 0; // Owned by the reader.
    virtual void Release() = 0;

protected:
    ~IWMReader() = default;
};

// Each loads its module of platform/attributes at its first call; null: it is missing. The caller
// frees the object by Release. Thread: any.
[[nodiscard]] KIVO_API IWMMetadataEditor* WMCreateEditor();
[[nodiscard]] KIVO_API IWMReader* WMCreateReader();

// For tests: other makers; null restores the module's. Not while a reader or editor exists.
struct MediaAttributeMakers {
    IWMMetadataEditor* (*createEditor)() = nullptr;
    IWMReader* (*createReader)() = nullptr;
};
KIVO_API void SetMediaAttributeMakers(const MediaAttributeMakers& makers);

} // namespace kivo
