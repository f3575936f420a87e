#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>

namespace kivo::host {

// Both ends of a pipe: what is written into it can be read back.
class Pipe {
public:
    Pipe() { EXPECT_EQ(pipe(ends_.data()), 0); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        close(ends_[0]);
        close(ends_[1]);
    }

    [[nodiscard]] int GetInput() const { return ends_[1]; }

    // All that has been written since the last call; at most 4 KB.
    std::string Take()
    {
        EXPECT_EQ(write(ends_[1], ".", 1), 1); // So that there is something to read.
        std::array<char, 4096> buffer{};
        const ssize_t count = read(ends_[0], buffer.data(), buffer.size());
        return {buffer.data(), static_cast<std::size_t>(count - 1)};
    }

private:
    std::array<int, 2> ends_{-1, -1};
};

} // namespace kivo::host
