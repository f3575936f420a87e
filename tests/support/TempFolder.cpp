#include "tests/support/TempFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kivo::test {

TempFolder::TempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kivo-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder for the test: " + name);
    path_ = name;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

String TempFolder::GetPath() const
{
    return path_.u16string() + u"/";
}

String TempFolder::GetPath(std::string_view name) const
{
    return (path_ / name).u16string();
}

void TempFolder::Write(std::string_view name, std::string_view bytes) const
{
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
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

} // namespace kivo::test
