#pragma once

#include "shell/contracts/base/String.h"

#include <string>
#include <string_view>
#include <vector>

namespace kivo::test {

// A folder of a test's own whose names are bytes, gone with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    [[nodiscard]] std::string Native(std::string_view name = "") const;
    [[nodiscard]] String Path(std::string_view name = "") const;

    void Write(std::string_view name, std::string_view bytes) const;
    void MakeFolder(std::string_view name) const;
    void MakeFifo(std::string_view name) const;
    void Link(std::string_view target, std::string_view name) const; // The target as it is given.

    [[nodiscard]] std::string Read(std::string_view name) const;
    // The names in it or in a folder of it, sorted, hidden ones too.
    [[nodiscard]] std::vector<std::string> List(std::string_view name = "") const;

private:
    std::string path_; // Ends in a separator.
};

} // namespace kivo::test
