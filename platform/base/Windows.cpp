#include "shell/contracts/framework/Windows.h"

#include "platform/base/WindowTable.h"

#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace kivo {
namespace {

constexpr unsigned kGenerationShift = 32;
constexpr HWND kSlotMask = 0xFFFFFFFFU;

struct Slot {
    CWnd* window = nullptr;
    std::uint32_t generation = 0;
};

// Handles are slot + 1 and the slot's generation, so that neither half is ever 0 in a live one.
struct WindowTable {
    std::mutex mutex;
    std::vector<Slot> slots;
    std::vector<std::size_t> free;

    Slot* Find(HWND handle)
    {
        const HWND number = handle & kSlotMask;
        if (number == 0 || number > slots.size())
            return nullptr;
        Slot& slot = slots[number - 1];
        const bool alive = slot.window != nullptr && slot.generation == handle >> kGenerationShift;
        return alive ? &slot : nullptr;
    }
};

// Never destroyed: threads that outlive `main` may still ask.
WindowTable& Table()
{
    static auto* table = new WindowTable;
    return *table;
}

} // namespace

HWND EnterWindow(CWnd* window)
{
    WindowTable& table = Table();
    const std::lock_guard lock(table.mutex);
    if (table.free.empty()) {
        table.free.push_back(table.slots.size());
        table.slots.emplace_back();
    }
    const std::size_t index = table.free.back();
    table.free.pop_back();
    Slot& slot = table.slots[index];
    slot.window = window;
    ++slot.generation;
    return static_cast<HWND>(slot.generation) << kGenerationShift | (index + 1);
}

void LeaveWindow(HWND handle)
{
    WindowTable& table = Table();
    const std::lock_guard lock(table.mutex);
    Slot* slot = table.Find(handle);
    if (slot == nullptr)
        return;
    slot->window = nullptr;
    // A slot whose generations are used up is never entered again.
    if (slot->generation != UINT32_MAX)
        table.free.push_back((handle & kSlotMask) - 1);
}

CWnd* FindWindowOf(HWND handle)
{
    WindowTable& table = Table();
    const std::lock_guard lock(table.mutex);
    const Slot* slot = table.Find(handle);
    return slot != nullptr ? slot->window : nullptr;
}

bool IsWindowEntered(HWND handle)
{
    return FindWindowOf(handle) != nullptr;
}

CWnd::~CWnd()
{
    LeaveWindow(handle_);
}

bool CWnd::CreateHandle()
{
    if (handle_ == 0)
        handle_ = EnterWindow(this);
    return handle_ != 0;
}

void CWnd::DestroyWindow()
{
    LeaveWindow(std::exchange(handle_, 0));
    visible_ = false;
}

LPARAM CWnd::WindowProc(unsigned /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    return 0;
}

void CWnd::ShowWindow(int command)
{
    visible_ = command != 0 && IsWindow();
}

void CWnd::MoveWindow(const Rect& bounds)
{
    bounds_ = bounds;
}

bool CWnd::IsWindowVisible() const
{
    return visible_;
}

Rect CWnd::GetWindowRect() const
{
    return bounds_;
}

} // namespace kivo
