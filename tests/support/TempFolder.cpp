#include "tests/support/TempFolder.h"

#include "shell/contracts/common/Text.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kivo::test {

namespace {

void Check(bool done, const std::string& path)
{
    if (!done)
        throw std::runtime_error("not made for the test: " + path);
}

} // namespace

TempFolder::TempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kivo-test-XXXXXX").string();
    Check(mkdtemp(name.data()) != nullptr, name);
    Check(chmod(name.c_str(), 0755) == 0, name); // Tests as another user must get in.
    path_ = name;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

String TempFolder::GetPath() const
{
    return GetPath("");
}

String TempFolder::GetPath(std::string_view name) const
{
    return common::PathToText(GetNative(name));
}

std::string TempFolder::GetNative(std::string_view name) const
{
    return (path_ / name).string();
}

void TempFolder::Write(std::string_view name, std::string_view bytes) const
{
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

void TempFolder::MakeFolder(std::string_view name) const
{
    Check(mkdir(GetNative(name).c_str(), 0755) == 0, GetNative(name));
}

void TempFolder::MakeFifo(std::string_view name) const
{
    Check(mkfifo(GetNative(name).c_str(), 0644) == 0, GetNative(name));
}

void TempFolder::Link(std::string_view target, std::string_view name) const
{
    Check(symlink(std::string(target).c_str(), GetNative(name).c_str()) == 0, GetNative(name));
}

std::string TempFolder::Read(std::string_view name) const
{
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool TempFolder::Has(std::string_view name) const
{
    return std::filesystem::exists(path_ / name);
}

std::vector<std::string> TempFolder::List() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
        if (!entry.is_directory())
            names.push_back(entry.path().lexically_relative(path_).string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> TempFolder::ListNames(std::string_view folder) const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_ / folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kivo::test
