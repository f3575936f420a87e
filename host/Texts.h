#pragma once

#include "shell/contracts/base/String.h"

#include <string>

// The texts of the program and of its plug-ins. Thread: user interface.
namespace kivo::host {

// Finds the user's language among those that program and plug-ins bring, makes it the language of
// the program, reads the program's own texts and sets the code page of older files. `appFolder` is
// bytes and ends in a separator; `locale` is that of the environment.
void LoadTexts(const std::string& appFolder, const std::string& locale);

// The texts of a plug-in: English first, so that none is missing, then those of the language.
// `folder` is bytes, of the plug-in, without a separator at the end; `table` its table's path.
void LoadPluginTexts(const std::string& folder, const String& table);

[[nodiscard]] String GetText(const char16_t* id);

} // namespace kivo::host
