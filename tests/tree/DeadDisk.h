#pragma once

namespace kivo::test {

// While it stands, the folder "/dead/" lies on a disk that doesn't answer: whoever asks for a file
// there waits, as in a mount whose server has gone. The thread that made it never waits; that it
// asked is counted, since there it would have stopped the window. One at a time.
// It takes the place of `stat`, `access` and `open` in programs that link with --wrap for them.
class DeadDisk {
public:
    DeadDisk();
    DeadDisk(const DeadDisk&) = delete;
    DeadDisk& operator=(const DeadDisk&) = delete;
    ~DeadDisk(); // As Answer.

    void Answer();           // From now on nothing is there, and nobody waits.
    void WaitForAQuestion(); // Until another thread waits for the disk.
    [[nodiscard]] int CountOwnQuestions() const;
};

} // namespace kivo::test
