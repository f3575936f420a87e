#pragma once

#include "shell/contracts/base/String.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kivo::test {

// A folder of a test's own, gone with the object.
class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    [[nodiscard]] String GetPath() const;                      // Ends in a separator.
    [[nodiscard]] String GetPath(std::string_view name) const; // Of a file below it.
    [[nodiscard]] std::filesystem::path GetNative() const { return path_; }

    void Write(std::string_view name, std::string_view bytes) const; // Makes folders on its way.
    [[nodiscard]] std::string Read(std::string_view name) const;     // Empty if it isn't there.
    [[nodiscard]] bool Has(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> List() const; // All files, sorted, as relative paths.

private:
    std::filesystem::path path_;
};

} // namespace kivo::test
