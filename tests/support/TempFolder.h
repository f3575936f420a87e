#pragma once

#include "shell/contracts/base/String.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kivo::test {

// A folder of a test's own, gone with the object. Names are bytes, and may lie below other folders.
class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    [[nodiscard]] String GetPath() const;                      // Ends in a separator.
    [[nodiscard]] String GetPath(std::string_view name) const; // Of a file below it.
    [[nodiscard]] std::filesystem::path GetNative() const { return path_; }
    [[nodiscard]] std::string GetNative(std::string_view name) const;

    void Write(std::string_view name, std::string_view bytes) const; // Makes folders on its way.
    void MakeFolder(std::string_view name) const;
    void MakeFifo(std::string_view name) const;
    void Link(std::string_view target, std::string_view name) const; // The target as it is given.

    [[nodiscard]] std::string Read(std::string_view name) const; // Empty if it isn't there.
    [[nodiscard]] bool Has(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> List() const; // All files, sorted, as relative paths.
    // The names in a folder, sorted, those of its folders and hidden ones too.
    [[nodiscard]] std::vector<std::string> ListNames(std::string_view folder = "") const;

private:
    std::filesystem::path path_;
};

} // namespace kivo::test
