// The two process-wide defaults: the administration loaded from the
// description files that the settings point to (the unit file, the common
// currency file and the region file of the currency mode), and the
// translation dictionary of the settings' language. Each is built once per
// process; its loading runs under a lock, so threads that ask at the same
// time get the same object, and a failed load is tried again on the next call.
// An administration is handed out only whole: readers never see it change.
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "etc/diag_log.h"
#include "quantor/admin_dscr.h"
#include "quantor/functions.h"
#include "quantor/translation.h"
#include "units/settings_source.h"

namespace {

using quantor::detail::FolderSetting;

// The default administration is loaded into `building`, which no caller
// sees, and published once whole. Without settings a caller gets the
// administration as failed loads left it (usually empty); it is set aside
// unchanged from then on, and a later load starts afresh. Every administration
// handed out lives to process end and never changes.
struct DefaultAdministration {
    std::mutex loading;
    std::atomic<const QtrAdminDscr*> loaded{nullptr};
    std::unique_ptr<QtrAdminDscr> building;
    std::vector<std::unique_ptr<QtrAdminDscr>> kept;
};

bool IsEmpty(const QtrAdminStd& admin) {
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    return categories.empty();
}

struct DefaultDictionary {
    XLMTranslDict dictionary;
    std::mutex loading;
    std::atomic<const XLMTranslDict*> ready{nullptr};
};

// Built on first use under the runtime's once-guard and never destroyed, so
// that a host may still convert from the destructors of its own statics, and
// so that a process does not spend its exit freeing thousands of rules. They
// stay reachable through these pointers until the process ends.
DefaultAdministration& TheDefaultAdministration() {
    static DefaultAdministration* const instance = new DefaultAdministration;
    return *instance;
}

DefaultDictionary& TheDefaultDictionary() {
    static DefaultDictionary* const instance = new DefaultDictionary;
    return *instance;
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

// Which of the default description files a path is, in reading order.
enum class DefaultFile { Units, Currencies, Region };

// Walks the description files that the settings select, in reading order,
// asking the settings exactly when loading needs each answer: the folder
// first, the currency mode after the unit file. `visit` answers false to stop
// the walk, which then answers false too.
template <class Visit>
bool DefaultFilesWalk(QtrSettings& settings, Visit visit) {
    const std::wstring folder = BaseFolderGet(settings);
    if (!visit(folder + L"unit_dscr.txt", DefaultFile::Units)) return false;
    const int32_t mode = CurrencyModeGet(settings);
    if (!visit(folder + L"curr_dscr_edy.txt", DefaultFile::Currencies)) return false;
    const wchar_t* region = RegionFileName(mode);
    return !region || visit(folder + region, DefaultFile::Region);
}

// Parses `path` into the administration. On failure the message is composed
// first and then used as the format, so a '%' in the path stays as written;
// the region file's message keeps its own wording, without quotes.
bool FileParse(QtrAdminDscr& admin, const std::wstring& path, DefaultFile file) {
    if (admin.Import_Parse(path.c_str())) return true;
    const std::wstring cannotParse = L"QtrAdminStd::QtrAdminDefault: cannot parse \"" + path + L"\"";
    switch (file) {
        case DefaultFile::Units:
            Error_Report(kSrcUnitsStd, 617, cannotParse.c_str());
            break;
        case DefaultFile::Currencies:
            Error_Report(kSrcUnitsStd, 635, cannotParse.c_str());
            break;
        case DefaultFile::Region:
            Error_Report(kSrcUnitsStd, 693, (L"QtrAdminStd::QtrAdminDefault: cannot" + path).c_str());
            break;
    }
    return false;
}

enum class LoadOutcome { Loaded, ParseFailed, NoSettings };

// Parses every file that the settings select into the administration, in
// order, and stops at the first that fails.
LoadOutcome DefaultFilesLoad(QtrAdminDscr& admin) {
    const auto settings = quantor::detail::SettingsCreate();
    if (!settings) return LoadOutcome::NoSettings;
    const auto parse = [&admin](const std::wstring& path, DefaultFile file) { return FileParse(admin, path, file); };
    return DefaultFilesWalk(*settings, parse) ? LoadOutcome::Loaded : LoadOutcome::ParseFailed;
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
    if (const QtrAdminDscr* loaded = instance.loaded.load(std::memory_order_acquire)) return loaded;
    std::lock_guard lock(instance.loading);
    if (const QtrAdminDscr* loaded = instance.loaded.load(std::memory_order_relaxed)) return loaded;
    if (!instance.building) instance.building = std::make_unique<QtrAdminDscr>();
    const auto handOut = [&instance] {
        instance.building->published_ = true;
        instance.kept.push_back(std::move(instance.building));
        return instance.kept.back().get();
    };
    switch (DefaultFilesLoad(*instance.building)) {
        case LoadOutcome::Loaded:
            instance.loaded.store(handOut(), std::memory_order_release);
            return instance.loaded.load(std::memory_order_relaxed);
        case LoadOutcome::NoSettings:
            // Without settings the administration is handed out as it
            // stands, unloaded and without a message.
            if (!instance.kept.empty() && IsEmpty(*instance.building)) return instance.kept.back().get();
            return handOut();
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

std::vector<std::wstring> QtrDefaultDescriptionFiles() {
    std::vector<std::wstring> paths;
    const auto settings = quantor::detail::SettingsCreate();
    if (!settings) return paths;
    DefaultFilesWalk(*settings, [&paths](const std::wstring& path, DefaultFile) {
        paths.push_back(path);
        return true;
    });
    return paths;
}
