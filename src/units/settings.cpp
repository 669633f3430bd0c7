// The settings source of the process-wide defaults. A host installs its own
// factory; the default one answers from the environment: QUANTOR_UNITS_DIR
// (or, when unset, the shipped data folder found from the library's own
// location), QUANTOR_CURRENCY_MODE (a region name or a mode number) and
// QUANTOR_LANGUAGE_ID (a language code or a language id). Whatever a host's
// factory or settings throw is caught here and reported.
#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <mutex>

#include "etc/diag_log.h"
#include "etc/utf8.h"
#include "quantor/setting_names.h"
#include "units/settings_source.h"

namespace {

namespace fs = std::filesystem;

// The answer for a key the environment does not set; any non-zero code fails.
constexpr int32_t kSettingUnavailable = 1;

// The file that holds this code: the shared library, or a program that
// linked the library's objects in. A program is named as it was started,
// possibly relative to a folder it has since left, so it is read from /proc.
fs::path LibraryFile() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&LibraryFile), &info) != 0 && info.dli_fname && info.dli_fname[0] == '/')
        return info.dli_fname;
    return "/proc/self/exe";
}

fs::path CanonicalOrAsGiven(const fs::path& path) {
    std::error_code error;
    fs::path canonical = fs::canonical(path, error);
    return error ? path : canonical;
}

// Code in the build tree reads the catalogue beside the sources; installed
// code reads it from the data folder of its install prefix, which lies at
// one place relative to the library folder and at another relative to the
// folder of a program that linked the library's objects in.
std::wstring ShippedDataFolderFind() {
    const fs::path file = CanonicalOrAsGiven(LibraryFile());
    const fs::path folder = file.parent_path();
    if (folder == CanonicalOrAsGiven(QUANTOR_BUILD_LIBRARY_DIR) || folder == CanonicalOrAsGiven(QUANTOR_BUILD_PROGRAM_DIR))
        return quantor::detail::FromUtf8(QUANTOR_SOURCE_DATA_DIR);
    const bool inProgram = file == CanonicalOrAsGiven("/proc/self/exe");
    const fs::path installed =
        (folder / (inProgram ? QUANTOR_INSTALLED_PROGRAM_DATA_RELPATH : QUANTOR_INSTALLED_DATA_RELPATH)).lexically_normal();
    return quantor::detail::FromUtf8(installed.string());
}

const std::wstring& ShippedDataFolder() {
    static const std::wstring folder = ShippedDataFolderFind();
    return folder;
}

// An environment variable's value; null when it is unset or empty.
const char* EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value && value[0] != '\0' ? value : nullptr;
}

using NumberRead = bool (*)(const wchar_t* text, int32_t& value);

// Reports a value that is neither a known name nor a number, once per
// variable and process: the defaults ask again on every use while they fail.
void MalformedReport(const char* variable, const std::wstring& text, std::atomic<bool>& reported) {
    if (reported.exchange(true)) return;
    Error_Report(kSrcUnitsStd, __LINE__, L"%s=\"%s\" is neither a known name nor a number; the setting is ignored\n",
                 quantor::detail::FromUtf8(variable), text);
}

int32_t IntegerAnswer(const char* variable, NumberRead read, std::atomic<bool>& reported, QtrVariant& value) {
    const char* text = EnvironmentValue(variable);
    if (!text) return kSettingUnavailable;
    const std::wstring wide = quantor::detail::FromUtf8(text);
    int32_t number = 0;
    if (!read(wide.c_str(), number)) {
        MalformedReport(variable, wide, reported);
        return kSettingUnavailable;
    }
    value.type = QTR_VT_I4;
    value.i4 = number;
    return 0;
}

int32_t FolderAnswer(QtrVariant& value) {
    const char* text = EnvironmentValue("QUANTOR_UNITS_DIR");
    value.type = QTR_VT_BSTR;
    value.str = text ? quantor::detail::FromUtf8(text) : ShippedDataFolder();
    return 0;
}

class EnvironmentSettings : public QtrSettings {
public:
    int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t /*expectedType*/,
                             QtrVariant& value, int32_t /*flags*/) override {
        if (section == L"unitsandcurrencies" && key == L"curr_dscr_filepath") return FolderAnswer(value);
        if (section == L"unitsandcurrencies" && key == L"mode")
            return IntegerAnswer("QUANTOR_CURRENCY_MODE", QtrCurrencyModeRead, modeReported, value);
        if (section == L"common" && key == L"languageid")
            return IntegerAnswer("QUANTOR_LANGUAGE_ID", QtrLanguageIdRead, languageReported, value);
        return kSettingUnavailable;
    }
    int32_t SettingsPrepare(int32_t /*level*/) override { return 0; }

private:
    static inline std::atomic<bool> modeReported{false};
    static inline std::atomic<bool> languageReported{false};
};

class FactorySlot {
public:
    QtrSettingsFactory Exchange(QtrSettingsFactory next) {
        std::lock_guard lock(mutex_);
        std::swap(factory_, next);
        return next;
    }
    QtrSettingsFactory Get() const {
        std::lock_guard lock(mutex_);
        return factory_;
    }

private:
    mutable std::mutex mutex_;
    QtrSettingsFactory factory_ = [] { return std::make_unique<EnvironmentSettings>(); };
};

FactorySlot& TheFactorySlot() {
    static FactorySlot slot;
    return slot;
}

// What a host's exception says, for the log.
std::wstring ExceptionText() {
    try {
        throw;
    } catch (const std::exception& error) {
        return quantor::detail::FromUtf8(error.what());
    } catch (...) {
        return L"unknown exception";
    }
}

// The host's settings, with every exception they throw caught, reported and
// turned into a failed call, so that none crosses the library.
class GuardedSettings : public QtrSettings {
public:
    explicit GuardedSettings(std::unique_ptr<QtrSettings> host) : host_(std::move(host)) {}
    int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t expectedType,
                             QtrVariant& value, int32_t flags) override {
        try {
            return host_->SettingsGetValue(section, key, expectedType, value, flags);
        } catch (...) {
            Error_Report(kSrcUnitsStd, __LINE__, L"QtrSettings::SettingsGetValue(\"%s\",\"%s\"): threw %s\n", section,
                         key, ExceptionText());
            return kSettingUnavailable;
        }
    }
    int32_t SettingsPrepare(int32_t level) override {
        try {
            return host_->SettingsPrepare(level);
        } catch (...) {
            Error_Report(kSrcUnitsStd, __LINE__, L"QtrSettings::SettingsPrepare(%d): threw %s\n", level,
                         ExceptionText());
            return kSettingUnavailable;
        }
    }

private:
    std::unique_ptr<QtrSettings> host_;
};

}  // namespace

QtrSettingsFactory QtrSetSettingsFactory(QtrSettingsFactory factory) {
    return TheFactorySlot().Exchange(std::move(factory));
}

namespace quantor::detail {

std::unique_ptr<QtrSettings> SettingsCreate() {
    // Called outside the lock, so a factory may itself install another.
    const QtrSettingsFactory factory = TheFactorySlot().Get();
    if (!factory) return nullptr;
    std::unique_ptr<QtrSettings> settings;
    try {
        settings = factory();
    } catch (...) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrSettingsFactory: creation threw %s\n", ExceptionText());
        return nullptr;
    }
    return settings ? std::make_unique<GuardedSettings>(std::move(settings)) : nullptr;
}

bool SettingsPrepareLevels(QtrSettings& settings, std::initializer_list<int32_t> levels) {
    for (const int32_t level : levels)
        if (settings.SettingsPrepare(level) != 0) return false;
    return true;
}

FolderSetting SettingsFolderRead(QtrSettings& settings, std::wstring& folder) {
    const std::wstring section = L"unitsandcurrencies";
    const std::wstring key = L"curr_dscr_filepath";
    QtrVariant value{QTR_VT_BSTR, L"", 0};
    if (settings.SettingsGetValue(section, key, QTR_VT_BSTR, value, 3) != 0 &&
        settings.SettingsGetValue(section, key, QTR_VT_BSTR, value, 1) != 0)
        return FolderSetting::Missing;
    if (value.type != QTR_VT_BSTR) return FolderSetting::NotString;
    folder = value.str;
    return FolderSetting::Read;
}

std::optional<int32_t> LanguageIdRead() {
    const auto settings = SettingsCreate();
    if (!settings || !SettingsPrepareLevels(*settings, {4, 3})) return std::nullopt;
    QtrVariant language{QTR_VT_I4, L"", 1033};
    if (settings->SettingsGetValue(L"common", L"languageid", QTR_VT_I4, language, 0) != 0)
        settings->SettingsGetValue(L"option-configuration/common/languageid", L"default", QTR_VT_I4, language, 3);
    return language.type == QTR_VT_I4 ? language.i4 : 1033;
}

}  // namespace quantor::detail
