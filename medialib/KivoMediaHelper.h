#pragma once

#include "medialib/FileWindow.h"
#include "medialib/MediaInfo.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/control/MediaAttributes.h"
#include "shell/contracts/framework/Arrays.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kivo {
class Property;
}

namespace kivo::tunehive {

// Operations on media files as files: their kind, their tags, the playlists and folders that name
// them. It has no state; failures are silent and leave the out value as far as it got.
// Thread: any, also at once.
class CKivoMediaHelper {
public:
    virtual ~CKivoMediaHelper() = default;

    // Fills `info` from the frame headers of an MP3 file, all of them, and its ID3v1 tag: fourteen
    // keys, texts empty and numbers "0" where nothing was found. "bitrate" is in kilobits per
    // second, "length" cut to whole seconds. False: it can't be opened, `info` is empty.
    bool ReadMP3Info(const String& path, MediaInfo& info) const;

    // Skips `skip` bytes, if above 0, and searches the next 10,001 positions for a frame header.
    // True: `header` holds it and the position is behind its four bytes. False: there is none.
    bool FindFrameHeader(CFileWindow& file, std::uint32_t& header, int skip) const;

    // Fills `info` with a local file's attributes through the platform's editor. Untouched when
    // there is no editor or the file's header can't be read.
    void ReadWMFInfo(const String& path, MediaInfo& info) const;

    // The attributes of an open header. A text that it lacks becomes empty; a number that it lacks,
    // and whatever it fails to give, isn't written. `header` is borrowed.
    void ReadWMAttributes(IWMHeaderInfo3* header, MediaInfo& info) const;

    // The bytes of one attribute of stream 0. S_OK without a value: there is no such attribute.
    // Any other failure leaves `value` as it was.
    HRESULT GetWMAttribute(IWMHeaderInfo3* header,
                           const char16_t* name,
                           std::optional<std::vector<std::uint8_t>>& value) const;

    // Whether a folder import takes files of this extension, given without its dot, in any case.
    [[nodiscard]] bool IsMediaExtension(const String& extension) const;

    // Whether a path counts as video by what follows its last dot, in any case.
    [[nodiscard]] bool IsVideoFile(const String& path) const;

    // Replaces `paths` by the media files below the folder: all files of one folder before those of
    // its subfolders, by name. `goesOn` is asked before each folder; false ends the walk there.
    void ListMediaFiles(const String& folder,
                        CStringArray& paths,
                        const std::function<bool()>& goesOn = {}) const;

    // Appends the paths of an M3U playlist in file order. Reading ends at the first empty line.
    // Absolute lines are taken as they are; others only where they name something below the root
    // or, failing that, beside the playlist.
    void ReadM3UPlaylist(const String& path, CStringArray& paths) const;

    // Adds the entries of an ASX playlist under their URLs: key 0 title, 1 author, 14 the URL.
    // An entry without one stands under the empty text; of two with one URL the later stays.
    void ReadASXPlaylist(const String& path, std::map<String, Property>& entries) const;
};

// The process-wide instance. Thread: any.
[[nodiscard]] CKivoMediaHelper& GetMediaHelperInstance();

} // namespace kivo::tunehive
