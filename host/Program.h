#pragma once

#include "host/Arguments.h"

#include <memory>
#include <string>

namespace kivo::host {

// One run of the program, from the lock on the profile to the last library. Thread: the main one.
class Program {
public:
    explicit Program(Options options);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    [[nodiscard]] int Run(); // Once. Gives the exit status.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
