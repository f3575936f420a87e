#include "tests/platform/base/ScratchFolder.h"

#include "shell/contracts/common/Text.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kivo::test {
namespace {

void Check(bool done, const std::string& what)
{
    if (!done)
        throw std::runtime_error(what);
}

} // namespace

ScratchFolder::ScratchFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kivo-base-XXXXXX").string();
    Check(mkdtemp(name.data()) != nullptr, name);
    Check(chmod(name.c_str(), 0755) == 0, name); // Tests of other users must get in.
    path_ = name + '/';
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::Native(std::string_view name) const
{
    return path_ + std::string(name);
}

String ScratchFolder::Path(std::string_view name) const
{
    return common::PathToText(Native(name));
}

void ScratchFolder::Write(std::string_view name, std::string_view bytes) const
{
    std::ofstream file(Native(name), std::ios::binary);
    file << bytes;
    file.close();
    Check(file.good(), Native(name));
}

void ScratchFolder::MakeFolder(std::string_view name) const
{
    Check(mkdir(Native(name).c_str(), 0755) == 0, Native(name));
}

void ScratchFolder::MakeFifo(std::string_view name) const
{
    Check(mkfifo(Native(name).c_str(), 0644) == 0, Native(name));
}

void ScratchFolder::Link(std::string_view target, std::string_view name) const
{
    Check(symlink(std::string(target).c_str(), Native(name).c_str()) == 0, Native(name));
}

std::string ScratchFolder::Read(std::string_view name) const
{
    std::ifstream file(Native(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> ScratchFolder::List(std::string_view name) const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Native(name)))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kivo::test
