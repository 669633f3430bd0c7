// The two process-wide defaults: the administration loaded from the
// description files that the settings point to (the unit file, the common
// currency file and the region file of the currency mode), and the
// translation dictionary of the settings' language. Each is built once per
// process; its loading runs under a lock, so threads that ask at the same
// time get the same object, and a failed load is tried again on the next call.
#include <atomic>
#include <mutex>
#include <string>

#include "etc/diag_log.h"
#include "quantor/admin_dscr.h"
#include "quantor/translation.h"
#include "units/settings_source.h"

namespace {

using quantor::detail::FolderSetting;

struct DefaultAdministration {
    QtrAdminDscr admin;
    std::mutex loading;
    std::atomic<bool> loaded{false};
};

struct DefaultDictionary {
    XLMTranslDict dictionary;
    std::mutex loading;
    std::atomic<const XLMTranslDict*> ready{nullptr};
};

// Function-local statics: built on first use under the runtime's once-guard
// and destroyed at process exit.
DefaultAdministration& TheDefaultAdministration() {
    static DefaultAdministration instance;
    return instance;
}

DefaultDictionary& TheDefaultDictionary() {
    static DefaultDictionary instance;
    return instance;
}

// The region file parsed after the base files, or null for a mode without one.
const wchar_t* RegionFileName(int32_t mode) {
    switch (mode) {
        case 2:
            return L"curr_dscr_atlantic.txt";
        case 3:
            return L"curr_dscr_extended_european.txt";
        case 4:
            return L"curr_dscr_america.txt";
        case 5:
            return L"curr_dscr_asia_pacific.txt";
        case 6:
            return L"curr_dscr_middle_east.txt";
        case 99:
            return L"curr_dscr_customized.txt";
        default:
            return nullptr;
    }
}

// The folder of the description files with its separator, or empty (bare
// file names) when the settings give none.
std::wstring BaseFolderGet(QtrSettings& settings) {
    if (!quantor::detail::SettingsPrepareLevels(settings, {4, 3, 1})) return {};
    std::wstring folder;
    switch (quantor::detail::SettingsFolderRead(settings, folder)) {
        case FolderSetting::Read:
            return folder + L"/";
        case FolderSetting::Missing:
            Error_Report(kSrcUnitsStd, 596,
                         L"QtrAdminStd::QtrAdminDefault: no settings for "
                         L"\"unitsandcurrencies\"/\"curr_dscr_filepath\"\n");
            return {};
        case FolderSetting::NotString:
            Error_Report(kSrcUnitsStd, 606,
                         L"QtrAdminStd::QtrAdminDefault: setting for "
                         L"\"unitsandcurrencies\"/\"curr_dscr_filepath\" contains no string\n");
            return {};
    }
    return {};
}

int32_t CurrencyModeGet(QtrSettings& settings) {
    QtrVariant mode{QTR_VT_I4, L"", 1};
    if (settings.SettingsGetValue(L"unitsandcurrencies", L"mode", QTR_VT_I4, mode, 0) != 0)
        settings.SettingsGetValue(L"option-configuration/unitsandcurrencies/mode", L"default", QTR_VT_I4, mode, 3);
    return mode.i4;
}

// Parses `path` into the administration. On failure the message is the
// prefix and the path (and the suffix), composed first and then used as the
// format, so a '%' in the path stays as it is written.
bool FileParse(QtrAdminDscr& admin, const std::wstring& path, int32_t line, const wchar_t* prefix,
               const wchar_t* suffix) {
    if (admin.Import_Parse(path.c_str())) return true;
    const std::wstring message = prefix + path + suffix;
    Error_Report(kSrcUnitsStd, line, message.c_str());
    return false;
}

enum class LoadOutcome { Loaded, ParseFailed, NoSettings };

// Parses every file that the settings select into the administration, in
// order, and stops at the first that fails.
LoadOutcome DefaultFilesLoad(QtrAdminDscr& admin) {
    const auto settings = quantor::detail::SettingsCreate();
    if (!settings) return LoadOutcome::NoSettings;
    const wchar_t* const cannotParse = L"QtrAdminStd::QtrAdminDefault: cannot parse \"";
    const std::wstring folder = BaseFolderGet(*settings);
    if (!FileParse(admin, folder + L"unit_dscr.txt", 617, cannotParse, L"\"")) return LoadOutcome::ParseFailed;
    const int32_t mode = CurrencyModeGet(*settings);
    if (!FileParse(admin, folder + L"curr_dscr_edy.txt", 635, cannotParse, L"\"")) return LoadOutcome::ParseFailed;
    const wchar_t* region = RegionFileName(mode);
    if (region && !FileParse(admin, folder + region, 693, L"QtrAdminStd::QtrAdminDefault: cannot", L""))
        return LoadOutcome::ParseFailed;
    return LoadOutcome::Loaded;
}

bool DictionaryRead(XLMTranslDict& dictionary) {
    std::wstring path = L"UnitAbbrevNames0409.rlg";
    if (const auto language = quantor::detail::LanguageIdRead()) {
        path = QtrFormat(L"UnitAbbrevNames%04x.rlg", *language);
        if (dictionary.RLGFileRead(path.c_str(), false)) return true;
    }
    Error_Report(kSrcUnitsStd, 768, L"QtrAdminStd::QtrTranslDictDefault(): cannot read from \"%s\"\n", path);
    return false;
}

}  // namespace

const QtrAdminStd* QtrAdminStd::QtrAdminDefault() {
    DefaultAdministration& instance = TheDefaultAdministration();
    if (instance.loaded.load(std::memory_order_acquire)) return &instance.admin;
    std::lock_guard lock(instance.loading);
    if (instance.loaded.load(std::memory_order_relaxed)) return &instance.admin;
    switch (DefaultFilesLoad(instance.admin)) {
        case LoadOutcome::Loaded:
            instance.loaded.store(true, std::memory_order_release);
            return &instance.admin;
        case LoadOutcome::NoSettings:
            // Without settings the administration is handed out empty and
            // stays unloaded, without a message.
            return &instance.admin;
        case LoadOutcome::ParseFailed:
            break;
    }
    return nullptr;
}

const XLMTranslDict* QtrAdminStd::QtrTranslDictDefault() {
    DefaultDictionary& instance = TheDefaultDictionary();
    if (const XLMTranslDict* ready = instance.ready.load(std::memory_order_acquire)) return ready;
    std::lock_guard lock(instance.loading);
    if (const XLMTranslDict* ready = instance.ready.load(std::memory_order_relaxed)) return ready;
    if (!DictionaryRead(instance.dictionary)) return nullptr;
    instance.ready.store(&instance.dictionary, std::memory_order_release);
    return &instance.dictionary;
}
