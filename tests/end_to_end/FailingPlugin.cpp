#include "shell/contracts/base/IPlugin.h"

#include <cstdio>

namespace {

// Its start fails; what the host does then shows on the error stream.
class FailingPlugin : public kivo::IPlugin {
public:
    ~FailingPlugin() override { std::fputs("failing: gone\n", stderr); }
    int OnLoad(kivo::CWnd* /*parent*/, kivo::IPluginWindowLayout* /*layout*/) override { return 0; }
    int OnUnLoad() override
    {
        std::fputs("failing: taken down\n", stderr);
        return 1;
    }
    int GetHostWord1() override { return 1; }
    int GetHostWord2() override { return 0; }
    int GetHostWord3() override { return 1; }
    int GetHostWord4() override { return 0; }
};

FailingPlugin plugin;

} // namespace

extern "C" KIVO_API kivo::IPlugin* GetKivoPluginInstance()
{
    return &plugin;
}
