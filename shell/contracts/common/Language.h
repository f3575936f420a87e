#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <map>

namespace kivo::common {

// The texts of the program in the user's language. Thread: user interface, after the load any for
// reading.
class KIVO_API CMutiLanSupport {
public:
    [[nodiscard]] static CMutiLanSupport* GetInstance();

    // The text of a string id, trimmed at both ends before the look-up; the id itself if no table
    // has it.
    [[nodiscard]] String GetStringViaID(const String& id) const;

    // The name of the user's language as the folders below "lang" are named: "en", "de", "zh_CN", …
    [[nodiscard]] String GetLangSetting() const { return language_; }
    void SetLangSetting(const String& language) { language_ = language; }

    // Adds a table: UTF-8 lines "ID=text"; "\n" in a text is a line end; ';' begins a comment line;
    // sections are passed over. Later tables win. False: it can't be read.
    bool AddTable(const String& path);
    void AddText(const String& id, const String& text);
    void Clear();

private:
    std::map<String, String> texts_;
    String language_ = u"en";
};

} // namespace kivo::common
