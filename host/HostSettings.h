#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kivo::host {

// The host's own settings: texts by key, in one file of lines "key=text". Keys are ASCII without
// '='; texts are UTF-8. Keys that nobody asks for are kept and written back.
// Thread: user interface.
class HostSettings {
public:
    // `path` is bytes. A missing file is an empty one. One that can't be read is set aside at the
    // first save, so that nothing of it is lost.
    explicit HostSettings(std::string path);

    [[nodiscard]] std::string Get(std::string_view key, std::string_view otherwise) const;
    [[nodiscard]] int GetNumber(std::string_view key, int otherwise) const;

    // True: the text is another one now.
    bool Set(std::string_view key, std::string_view text);
    bool SetNumber(std::string_view key, int number);

    // Writes what changed. False: that failed; the old file stands and the next save tries again.
    bool Save();

private:
    void Read(std::string_view bytes);

    std::string path_;
    std::map<std::string, std::string, std::less<>> texts_;
    bool changed_ = false;
    bool broken_ = false; // The file is there and didn't give its content.
};

} // namespace kivo::host
