#pragma once

namespace kivo::test {

[[nodiscard]] long CountThreads(); // Of this process, now.

// How often the threads of this process have gone to sleep, and so were woken.
[[nodiscard]] long CountWakeUps();

} // namespace kivo::test
