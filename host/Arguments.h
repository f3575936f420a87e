#pragma once

#include "shell/contracts/base/String.h"

#include <string>
#include <string_view>
#include <vector>

namespace kivo::host {

// What something to play was named as, on the command line, by another program or by a drop.
enum class ItemKind { Path, Address, Refused };

struct Item {
    ItemKind kind = ItemKind::Refused;
    String text;        // An absolute path or an address; empty when refused.
    std::string reason; // Why it was refused, one line in plain words.
};

// The one door for names of things to play: "file:///…" and "file://localhost/…" become the raw
// bytes of the path, any other "file:" is refused; http, https, mms, mmsh, mmst and rtsp are
// addresses, any other "scheme://" is refused; all else is a path, made absolute against `folder`
// without looking at the disk ("a/../b" is folded, links stay). Nothing is opened.
// `folder` is absolute; empty: relative paths are refused. Thread: any.
[[nodiscard]] Item NormalizeItem(std::string_view raw, std::string_view folder);

struct Options {
    std::string profile;     // Absolute path bytes; empty: the user's own directory.
    std::string audioFile;   // Absolute path bytes; empty: the sound device.
    std::string screenshot;  // Absolute path bytes; empty: none.
    std::string musicServer; // "HOST[:PORT]"; empty: the built-in one.
    bool quitAtEnd = false;
    bool showVersion = false;
    bool showHelp = false;
    std::vector<String> items; // Absolute paths that exist, and addresses, in the order given.
};

struct ParsedArguments {
    Options options;
    std::string error; // One line in plain words; empty: all is well.
};

// Reads the raw arguments, the first of them being the program's name. Paths are made absolute
// against `folder`; named files and folders must exist. Thread: user interface.
[[nodiscard]] ParsedArguments ParseArguments(const std::vector<std::string>& arguments,
                                             std::string_view folder);

[[nodiscard]] std::string GetHelpText();
[[nodiscard]] std::string GetVersionText();

} // namespace kivo::host
