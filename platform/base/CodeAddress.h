#pragma once

// Which library a piece of code or static data lies in. Thread: any.
namespace kivo {

// Both lie in one library, or both in the program. False for null and for what no library holds.
[[nodiscard]] bool IsSameLibrary(const void* a, const void* b);

} // namespace kivo
