#include "host/Texts.h"

#include "host/UserLanguage.h"
#include "platform/base/CodePages.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace kivo::host {

namespace {

namespace fs = std::filesystem;
using common::CMutiLanSupport;

constexpr char kTable[] = "stringid.ini";

bool HasTable(const fs::path& folder, const std::string& language)
{
    std::error_code error;
    return fs::is_regular_file(folder / "lang" / language / kTable, error);
}

void AddTable(const fs::path& folder, const std::string& language)
{
    const fs::path table = folder / "lang" / language / kTable;
    CMutiLanSupport::GetInstance()->AddTable(common::PathToText(table.native()));
}

} // namespace

void LoadTexts(const std::string& appFolder, const std::string& locale)
{
    const std::vector<std::string> names = GetLanguages(locale);
    common::SetLegacyCodePage(LegacyCodePageOf(names.front()));
    const auto language = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return HasTable(appFolder, name);
    });
    AddTable(appFolder, "en");
    if (language == names.end())
        return;
    AddTable(appFolder, *language);
    CMutiLanSupport::GetInstance()->SetLangSetting(common::utf8_to_CString(*language));
}

void LoadPluginTexts(const std::string& folder, const String& table)
{
    AddTable(folder, "en");
    CMutiLanSupport::GetInstance()->AddTable(table);
}

String GetText(const char16_t* id)
{
    return CMutiLanSupport::GetInstance()->GetStringViaID(id);
}

} // namespace kivo::host
