#pragma once

#include "host/Arguments.h"
#include "host/sign/ISignNetwork.h"

#include <functional>
#include <memory>
#include <string>

namespace kivo::host {

// One run of the program, from the lock on the profile to the last library. Thread: the main one.
class Program {
public:
    // Makes the network of signs for the user of that name, once the event loop is there.
    using MakeSigns = std::function<std::unique_ptr<ISignNetwork>(const String& localName)>;

    explicit Program(Options options); // With the real network and the desktop's keyring.
    Program(Options options, MakeSigns makeSigns);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    [[nodiscard]] int Run(); // Once. Gives the exit status.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
