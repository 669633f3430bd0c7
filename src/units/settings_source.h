// Access to the host's settings for the process-wide defaults: creating a
// settings source through the installed factory, preparing it, and reading
// the folder that holds the description and translation files and the
// language of unit names.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "quantor/settings.h"

namespace quantor::detail {

// A settings source from the installed factory; null when creation fails.
std::unique_ptr<QtrSettings> SettingsCreate();

// Calls SettingsPrepare with each level in turn and stops at the first that
// fails; true when all of them succeeded.
bool SettingsPrepareLevels(QtrSettings& settings, std::initializer_list<int32_t> levels);

enum class FolderSetting { Read, Missing, NotString };

// Reads "unitsandcurrencies"/"curr_dscr_filepath" with flags 3, then 1.
// `folder` receives the setting only when the answer is FolderSetting::Read.
FolderSetting SettingsFolderRead(QtrSettings& settings, std::wstring& folder);

// The language of unit names: "common"/"languageid", falling back to
// "option-configuration/common/languageid"/"default", and 1033 when neither
// holds an integer. Empty when there is no settings source or preparing it
// with levels 4 and 3 fails.
std::optional<int32_t> LanguageIdRead();

}  // namespace quantor::detail
