#include "host/Arguments.h"

#include "host/sign/SignAddress.h"
#include "host/Terminal.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

#include <getopt.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace kivo::host {

namespace {

constexpr std::size_t kLongestItem = 32768;

Item Refuse(std::string_view raw, std::string_view why)
{
    constexpr std::size_t kShown = 200;
    std::string reason = ForTerminal(raw.substr(0, kShown));
    if (raw.size() > kShown)
        reason += "…";
    reason += ": ";
    reason += why;
    return {ItemKind::Refused, String(), reason};
}

bool HasPrefix(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() &&
           common::string_compare_no_case(text.substr(0, prefix.size()), prefix) == 0;
}

int HexValue(char c)
{
    int value = -1;
    std::from_chars(&c, &c + 1, value, 16);
    return value;
}

// False: a percent sign without two hexadecimal digits behind it, or an escaped zero byte.
bool DecodePercent(std::string_view text, std::string& bytes)
{
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        if (i + 2 >= text.size())
            return false;
        const int high = HexValue(text[i + 1]);
        const int low = HexValue(text[i + 2]);
        if (high < 0 || low < 0 || high + low == 0)
            return false;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return true;
}

// Folds ".", ".." and doubled separators by the text alone. `path` begins with a separator.
std::string FoldPath(std::string_view path)
{
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (part == ".." && !parts.empty())
            parts.pop_back();
        else if (!part.empty() && part != "." && part != "..")
            parts.push_back(part);
    }
    std::string folded;
    for (const std::string_view part : parts) {
        folded += '/';
        folded += part;
    }
    return folded.empty() ? "/" : folded;
}

std::string MakeAbsolute(std::string_view path, std::string_view folder)
{
    if (!path.empty() && path.front() == '/')
        return FoldPath(path);
    std::string whole(folder);
    whole += '/';
    whole += path;
    return FoldPath(whole);
}

Item ReadFileAddress(std::string_view raw)
{
    constexpr std::string_view kLocal = "file:///";
    constexpr std::string_view kLocalHost = "file://localhost/";
    std::string_view path;
    if (HasPrefix(raw, kLocal))
        path = raw.substr(kLocal.size() - 1);
    else if (HasPrefix(raw, kLocalHost))
        path = raw.substr(kLocalHost.size() - 1);
    else
        return Refuse(raw, "not a file of this computer");
    std::string bytes;
    if (!DecodePercent(path, bytes))
        return Refuse(raw, "not a proper file address");
    return {ItemKind::Path, common::PathToText(FoldPath(bytes)), {}};
}

Item ReadAddress(std::string_view raw)
{
    if (!IsStreamScheme(raw.substr(0, raw.find(':'))))
        return Refuse(raw, "addresses of this kind can't be played");
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    if (std::any_of(raw.begin(), raw.end(), isControl))
        return Refuse(raw, "not a proper address");
    return {ItemKind::Address, common::utf8_to_CString(raw), {}};
}

} // namespace

Item NormalizeItem(std::string_view raw, std::string_view folder)
{
    if (raw.empty())
        return Refuse(raw, "an empty name");
    if (raw.size() > kLongestItem)
        return Refuse(raw, "the name is too long");
    if (raw.find('\0') != std::string_view::npos)
        return Refuse(raw, "not a proper name");
    if (HasPrefix(raw, "file:"))
        return ReadFileAddress(raw);
    if (UrlIsW(common::PathToText(raw)))
        return ReadAddress(raw);
    if (raw.front() != '/' && folder.empty())
        return Refuse(raw, "not a full path");
    return {ItemKind::Path, common::PathToText(MakeAbsolute(raw, folder)), {}};
}

namespace {

enum OptionCode : int {
    kItem = 1, // How getopt_long names what is no option.
    kProfile = 256,
    kAudioFile,
    kScreenshot,
    kMusicServer,
    kQuitAtEnd,
    kVersion,
    kHelp
};

constexpr std::array kOptions{
    option{"profile",      required_argument, nullptr, kProfile    },
    option{"audio-file",   required_argument, nullptr, kAudioFile  },
    option{"screenshot",   required_argument, nullptr, kScreenshot },
    option{"music-server", required_argument, nullptr, kMusicServer},
    option{"quit-at-end",  no_argument,       nullptr, kQuitAtEnd  },
    option{"version",      no_argument,       nullptr, kVersion    },
    option{"help",         no_argument,       nullptr, kHelp       },
    option{nullptr,        0,                 nullptr, 0           },
};

// Host names and addresses, a port behind a colon; nothing that could be taken for another part of
// an address.
bool IsServerName(std::string_view name)
{
    const auto isAllowed = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               c == '.' || c == '-' || c == ':' || c == '[' || c == ']';
    };
    return !name.empty() && name.front() != '-' && name.front() != ':' && name.size() <= 255 &&
           std::all_of(name.begin(), name.end(), isAllowed);
}

class Parser {
public:
    explicit Parser(std::string_view folder)
        : folder_(folder)
    {
    }

    ParsedArguments Parse(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> copy = arguments;
        std::vector<char*> argv;
        argv.reserve(copy.size() + 1);
        for (std::string& argument : copy)
            argv.push_back(argument.data());
        const int count = static_cast<int>(argv.size());
        argv.push_back(nullptr);

        optind = 0; // Starts anew; "-": items come in their order, ":": no messages of its own.
        int code = 0;
        while (result_.error.empty() && (code = Next(count, argv.data())) != -1)
            Take(code, argv[static_cast<std::size_t>(optind) - 1]);
        for (int i = optind; result_.error.empty() && i < count; ++i)
            AddItem(argv[static_cast<std::size_t>(i)]);
        return std::move(result_);
    }

private:
    static int Next(int count, char** argv)
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the only thread there is at this moment
        return getopt_long(count, argv, "-:", kOptions.data(), nullptr);
    }

    void Take(int code, const char* argument)
    {
        Options& options = result_.options;
        switch (code) {
        case kItem: AddItem(optarg); break;
        case kProfile: options.profile = ReadPath("--profile"); break;
        case kAudioFile: options.audioFile = ReadTarget("--audio-file"); break;
        case kScreenshot: options.screenshot = ReadTarget("--screenshot"); break;
        case kMusicServer: ReadServer(); break;
        case kQuitAtEnd: options.quitAtEnd = true; break;
        case kVersion: options.showVersion = true; break;
        case kHelp: options.showHelp = true; break;
        case ':': Fail(ForTerminal(argument) + " needs a value"); break;
        default: Fail("unknown option " + ForTerminal(argument)); break;
        }
    }

    [[nodiscard]] std::string ReadPath(std::string_view name)
    {
        if (*optarg == '\0')
            Fail(std::string(name) + " needs a value");
        return MakeAbsolute(optarg, folder_);
    }

    // A file to be written: its folder must be there, and no folder may stand in its place.
    std::string ReadTarget(std::string_view name)
    {
        std::string path = ReadPath(name);
        const std::string folder = path.substr(0, path.rfind('/') + 1);
        if (!PathIsDirectoryW(common::PathToText(folder)))
            Fail(ForTerminal(folder) + ": no such folder");
        else if (PathIsDirectoryW(common::PathToText(path)))
            Fail(ForTerminal(path) + ": is a folder");
        return path;
    }

    void ReadServer()
    {
        if (!IsServerName(optarg))
            Fail("--music-server takes HOST or HOST:PORT");
        result_.options.musicServer = optarg;
    }

    void AddItem(std::string_view raw)
    {
        Item item = NormalizeItem(raw, folder_);
        if (item.kind == ItemKind::Refused)
            Fail(item.reason);
        else if (item.kind == ItemKind::Path && !PathFileExistsW(item.text))
            Fail(ForTerminal(raw) + ": no such file or folder");
        else
            result_.options.items.push_back(std::move(item.text));
    }

    void Fail(std::string error)
    {
        if (result_.error.empty())
            result_.error = std::move(error);
    }

    std::string_view folder_;
    ParsedArguments result_;
};

} // namespace

ParsedArguments ParseArguments(const std::vector<std::string>& arguments, std::string_view folder)
{
    return Parser(folder).Parse(arguments);
}

std::string GetHelpText()
{
    return "Usage: kivo [OPTION]… [FILE | FOLDER | URL]…\n"
           "Plays files, the files of folders, and addresses (http, https, mms, rtsp).\n"
           "\n"
           "  --profile DIR          keep settings and groups in DIR\n"
           "  --audio-file FILE.wav  write the sound into FILE.wav instead of playing it,\n"
           "                         as fast as it can be decoded\n"
           "  --quit-at-end          end when the player has come to rest\n"
           "  --screenshot FILE.png  write a picture of the window and end\n"
           "  --music-server HOST[:PORT]\n"
           "                         where the music cabinet's pages come from\n"
           "  --version              print the version and end\n"
           "  --help                 print this help and end\n"
           "  --                     what follows is a name, also if it begins with -\n"
           "\n"
           "With --quit-at-end the play mode of the profile holds. A profile whose mode\n"
           "repeats the track (1), repeats the group (3) or plays at random (4) never rests.\n"
           "\n"
           "Exit status: 0; 1 nothing could be played or a plug-in failed; 2 a wrong option or\n"
           "a missing file; 3 the profile is in use.\n";
}

std::string GetVersionText()
{
    return "kivo " KIVO_VERSION "\n";
}

} // namespace kivo::host
