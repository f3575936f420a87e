#include "shell/contracts/framework/Hooks.h"

#include <algorithm>
#include <vector>

namespace kivo {
namespace {

struct Hook {
    HookHandle handle;
    int type;
    HookProc procedure;
};

struct HookTable {
    std::vector<Hook> hooks; // In order of their handles: the newest stands last.
    HookHandle last = 0;
    // The pass under way: the type it asks and the hook that it asked last.
    int passType = 0;
    HookHandle passAt = 0;

    LPARAM AskBelow(int code, WPARAM wParam, LPARAM lParam);
};

HookTable& Hooks()
{
    static HookTable table;
    return table;
}

// Asks the newest hook of the pass that is older than the one asked last. By handle, not by place:
// hooks leave, and others come, while a pass is under way.
LPARAM HookTable::AskBelow(int code, WPARAM wParam, LPARAM lParam)
{
    const auto next = std::find_if(hooks.rbegin(), hooks.rend(), [this](const Hook& hook) {
        return hook.type == passType && hook.handle < passAt;
    });
    if (next == hooks.rend())
        return 0;
    const HookHandle asker = passAt;
    passAt = next->handle;
    const LPARAM result = next->procedure(code, wParam, lParam);
    passAt = asker;
    return result;
}

} // namespace

HookHandle SetWindowsHookExW(int type, HookProc procedure)
{
    if ((type != WH_KEYBOARD && type != WH_MOUSE) || procedure == nullptr)
        return 0;
    HookTable& table = Hooks();
    table.hooks.push_back({++table.last, type, procedure});
    return table.last;
}

int UnhookWindowsHookEx(HookHandle hook)
{
    return std::erase_if(Hooks().hooks, [hook](const Hook& h) { return h.handle == hook; }) != 0
               ? 1
               : 0;
}

LPARAM CallNextHookEx(HookHandle /*hook*/, int code, WPARAM wParam, LPARAM lParam)
{
    return Hooks().AskBelow(code, wParam, lParam);
}

LPARAM RunHooks(int type, WPARAM wParam, LPARAM lParam)
{
    HookTable& table = Hooks();
    const int outerType = table.passType;
    const HookHandle outerAt = table.passAt;
    table.passType = type;
    table.passAt = table.last + 1;
    const LPARAM result = table.AskBelow(/*code=*/0, wParam, lParam);
    table.passType = outerType;
    table.passAt = outerAt;
    return result;
}

} // namespace kivo
