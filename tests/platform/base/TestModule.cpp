#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/WinApp.h"

// A library as the program loads them: an application object, and the functions by which a module
// of attributes is known.
namespace {

int* ended = nullptr;
bool refuses = false;

class App final : public kivo::CWinApp {
public:
    int InitInstance() override { return CWinApp::InitInstance() + 1; }
    int ExitInstance() override
    {
        if (ended != nullptr)
            ++*ended;
        return CWinApp::ExitInstance();
    }
};

class UselessApp final : public kivo::CWinApp {
public:
    int InitInstance() override { return 0; }
};

App app;
kivo::AppRun run(app);
UselessApp uselessApp;
kivo::AppRun uselessRun(uselessApp);

} // namespace

extern "C" KIVO_API int TestIsOfUse()
{
    return run.IsOfUse() ? 1 : 0;
}

extern "C" KIVO_API int TestUselessIsOfUse()
{
    return uselessRun.IsOfUse() ? 1 : 0;
}

extern "C" KIVO_API void TestTellEnd(int* count)
{
    ended = count;
}

// What is made is only handed through; its address is all that the test looks at.
extern "C" KIVO_API void* KivoCreateMetadataEditor()
{
    return refuses ? nullptr : &app;
}

extern "C" KIVO_API void TestRefuse(int on)
{
    refuses = on != 0;
}
