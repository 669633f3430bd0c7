// Helpers for the tests of the process-wide defaults: a scripted settings
// source that records how it is asked, a recorder of log entries, the test
// catalogue, and a way to run a scenario in a fresh process, since the
// defaults are built once per process.
#pragma once

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "etc/format.h"
#include "etc/utf8.h"
#include "quantor/settings.h"
#include "quantor/sinks.h"

namespace defaults_test {

namespace fs = std::filesystem;

// Small description and translation files: Length and Time in
// unit_dscr.txt, Currency in curr_dscr_edy.txt, one category per region file.
inline fs::path CatalogueFolder() { return fs::path(QUANTOR_TEST_DATA_DIR).parent_path() / "tests/data/defaults"; }

inline std::wstring Wide(const fs::path& path) { return quantor::detail::FromUtf8(path.string()); }
inline fs::path PathOf(const std::wstring& text) { return quantor::detail::ToUtf8(text); }

// What a scripted settings source answers, and a record of every call.
struct SettingsScript {
    std::map<std::pair<std::wstring, std::wstring>, QtrVariant> values;
    std::set<int32_t> failingPrepareLevels;
    std::set<int32_t> refusedFlags;
    std::atomic<int> created{0};

    void Set(const std::wstring& section, const std::wstring& key, QtrVariant value) {
        values[{section, key}] = std::move(value);
    }
    void Folder(const fs::path& folder) {
        Set(L"unitsandcurrencies", L"curr_dscr_filepath", {QTR_VT_BSTR, Wide(folder), 0});
    }
    void Mode(int32_t mode) { Set(L"unitsandcurrencies", L"mode", {QTR_VT_I4, L"", mode}); }
    void Language(int32_t id) { Set(L"common", L"languageid", {QTR_VT_I4, L"", id}); }

    void Record(std::wstring call) {
        std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
    }
    std::vector<std::wstring> Calls() const {
        std::lock_guard lock(mutex_);
        return calls_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::wstring> calls_;
};

class ScriptedSettings : public QtrSettings {
public:
    explicit ScriptedSettings(SettingsScript& script) : script_(script) {}
    int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t expectedType,
                             QtrVariant& value, int32_t flags) override {
        script_.Record(QtrFormat(L"get %s/%s %d %d", section, key, expectedType, flags));
        const auto entry = script_.values.find({section, key});
        if (script_.refusedFlags.contains(flags) || entry == script_.values.end()) return 1;
        value = entry->second;
        return 0;
    }
    int32_t SettingsPrepare(int32_t level) override {
        script_.Record(QtrFormat(L"prepare %d", level));
        return script_.failingPrepareLevels.contains(level) ? 1 : 0;
    }

private:
    SettingsScript& script_;
};

// Installs a factory of scripted settings; the script must outlive its use.
inline void SettingsScriptInstall(SettingsScript& script) {
    QtrSetSettingsFactory([&script] {
        ++script.created;
        return std::make_unique<ScriptedSettings>(script);
    });
}

// Settings of the test catalogue: its folder, no region file, German names.
inline SettingsScript& CatalogueScriptInstall() {
    static SettingsScript script;
    script.Folder(CatalogueFolder());
    script.Language(1031);
    SettingsScriptInstall(script);
    return script;
}

// A log entry's line and message.
using LogLine = std::pair<uint32_t, std::wstring>;

// Records the log entries written while it exists.
class LogRecorder {
public:
    LogRecorder()
        : previous_(QtrSetLogSink([this](const QtrLogEntry& entry) {
              std::lock_guard lock(mutex_);
              entries_.push_back(entry);
          })) {}
    ~LogRecorder() { QtrSetLogSink(std::move(previous_)); }

    std::vector<LogLine> Lines() const {
        std::lock_guard lock(mutex_);
        std::vector<LogLine> lines;
        for (const QtrLogEntry& entry : entries_) lines.emplace_back(entry.line, entry.message);
        return lines;
    }

private:
    mutable std::mutex mutex_;
    std::vector<QtrLogEntry> entries_;
    QtrLogSink previous_;
};

// A fresh folder under the test temporary folder, removed afterwards.
class TempFolder {
public:
    explicit TempFolder(const std::string& name = "defaults") {
        std::string pattern = ::testing::TempDir() + name + "XXXXXX";
        if (mkdtemp(pattern.data())) path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path& Path() const { return path_; }

private:
    fs::path path_;
};

inline void FileWrite(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline void CatalogueCopy(const fs::path& folder) {
    fs::copy(CatalogueFolder(), folder, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

// Runs `scenario`, writes its failures to stderr and ends the process with
// status 0 only when it passed.
[[noreturn]] inline void ScenarioRunAndExit(const std::function<void()>& scenario) {
    ::testing::TestPartResultArray failures;
    {
        const ::testing::ScopedFakeTestPartResultReporter reporter(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &failures);
        scenario();
    }
    for (int i = 0; i < failures.size(); ++i) {
        const ::testing::TestPartResult& failure = failures.GetTestPartResult(i);
        const char* file = failure.file_name() ? failure.file_name() : "(unknown file)";
        std::fprintf(stderr, "%s:%d: %s\n", file, failure.line_number(), failure.message());
    }
    std::exit(failures.size() == 0 ? 0 : 1);
}

// Runs `scenario` in a newly started copy of this test, so that it finds no
// defaults built, and expects it to pass there.
inline void ExpectPassesInFreshProcess(const std::function<void()>& scenario) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(ScenarioRunAndExit(scenario), ::testing::ExitedWithCode(0), "");
}

}  // namespace defaults_test
