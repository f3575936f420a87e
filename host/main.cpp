#include "host/Arguments.h"
#include "host/Program.h"
#include "platform/base/BrowserSafety.h"
#include "platform/base/HeapPools.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

// The folder in which the program was started, the way there as the user went; empty: gone.
std::string GetStartFolder()
{
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> folder(get_current_dir_name());
    return folder && *folder == '/' ? folder.get() : "";
}

} // namespace

int main(int argc, char** argv)
{
    constexpr int kWrongUse = 2;
    kivo::SecureBrowserEnvironment();
    kivo::LimitHeapPools();
    const std::vector<std::string> arguments(argv, argv + argc);
    kivo::host::ParsedArguments parsed = kivo::host::ParseArguments(arguments, GetStartFolder());
    if (parsed.options.showHelp || parsed.options.showVersion) {
        std::fputs(parsed.options.showHelp ? kivo::host::GetHelpText().c_str()
                                           : kivo::host::GetVersionText().c_str(),
                   stdout);
        return 0;
    }
    if (!parsed.error.empty()) {
        std::fprintf(stderr, "kivo: %s\n", parsed.error.c_str());
        return kWrongUse;
    }
    return kivo::host::Program(std::move(parsed.options)).Run();
}
