#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace kivo::test {

// A program that a test starts and speaks with: lines to its input, lines from its output. It gets
// the test's surrounding, and is killed at the end of the object or of the test, whatever comes
// first.
class Process {
public:
    // `variables`: "NAME=value" each, beside those of the test.
    explicit Process(const std::vector<std::string>& command,
                     const std::vector<std::string>& variables = {});
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    void Say(const std::string& line) const;
    void CloseInput(); // Nothing more is said.

    // The next line that `isMeant` takes, those before it included in GetOutput; empty: there was
    // none in that time, or the program has ended.
    std::string WaitFor(const std::function<bool(const std::string&)>& isMeant, int milliseconds);
    std::string WaitFor(const std::string& beginning, int milliseconds = 20000);

    void Kill();                              // Without warning. It has gone afterwards.
    int WaitForEnd(int milliseconds = 20000); // Its status; -1: it didn't end, or by a signal.
    void Signal(int number) const;

    [[nodiscard]] pid_t GetId() const { return id_; }
    [[nodiscard]] const std::string& GetOutput() const { return output_; }

private:
    bool ReadMore(int milliseconds);

    pid_t id_ = -1;
    int input_ = -1;
    int outcome_ = -1;
    std::size_t position_ = 0; // Of the first line that nobody has waited for.
    std::string output_;
};

// Runs the command to its end. Its status; -1: it couldn't be run.
int RunCommand(const std::vector<std::string>& command);

} // namespace kivo::test
