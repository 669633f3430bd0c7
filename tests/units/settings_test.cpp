// The settings source: the factory slot, and the default settings that
// answer from the environment, with the shipped data folder found from where
// the library's code lies when no folder is set.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <optional>

#include "units/defaults_test_support.h"
#include "units/settings_source.h"

namespace {

using namespace defaults_test;

// Sets (or, for null, unsets) an environment variable for one test.
class EnvironmentOverride {
public:
    EnvironmentOverride(const char* name, const char* value) : name_(name) {
        if (const char* previous = std::getenv(name)) previous_ = previous;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~EnvironmentOverride() { previous_ ? setenv(name_, previous_->c_str(), 1) : unsetenv(name_); }

private:
    const char* name_;
    std::optional<std::string> previous_;
};

struct Answer {
    int32_t code;
    QtrVariant value;
};

Answer Ask(QtrSettings& settings, const wchar_t* section, const wchar_t* key) {
    Answer answer{0, {0, L"untouched", -1}};
    answer.code = settings.SettingsGetValue(section, key, QTR_VT_I4, answer.value, 3);
    return answer;
}

// The data folder that the default settings of the shared library at
// `library` answer.
std::wstring FolderOfLibrary(const fs::path& library) {
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        ADD_FAILURE() << dlerror();
        return {};
    }
    std::wstring folder;
    using Setter = QtrSettingsFactory (*)(QtrSettingsFactory);
    // The symbol of QtrSetSettingsFactory.
    if (const auto set = reinterpret_cast<Setter>(dlsym(
            handle, "_Z21QtrSetSettingsFactorySt8functionIFSt10unique_ptrI11QtrSettingsSt14default_deleteIS1_EEvEE"))) {
        const QtrSettingsFactory factory = set(nullptr);
        set(factory);
        folder = Ask(*factory(), L"unitsandcurrencies", L"curr_dscr_filepath").value.str;
    }
    dlclose(handle);
    return folder;
}

TEST(EnvironmentSettings, AnswerTheirThreeKeysAndNoOther) {
    const EnvironmentOverride folder("QUANTOR_UNITS_DIR", "/opt/catalogue");
    const EnvironmentOverride mode("QUANTOR_CURRENCY_MODE", "99");
    const EnvironmentOverride language("QUANTOR_LANGUAGE_ID", "-1031");
    const auto settings = quantor::detail::SettingsCreate();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->SettingsPrepare(4), 0);

    const Answer path = Ask(*settings, L"unitsandcurrencies", L"curr_dscr_filepath");
    EXPECT_EQ(path.code, 0);
    EXPECT_EQ(path.value.type, QTR_VT_BSTR);
    EXPECT_EQ(path.value.str, L"/opt/catalogue");
    const Answer currency = Ask(*settings, L"unitsandcurrencies", L"mode");
    EXPECT_EQ(currency.code, 0);
    EXPECT_EQ(currency.value.type, QTR_VT_I4);
    EXPECT_EQ(currency.value.i4, 99);
    EXPECT_EQ(Ask(*settings, L"common", L"languageid").value.i4, -1031);

    for (const auto& [section, key] :
         {std::pair{L"option-configuration/unitsandcurrencies/mode", L"default"}, std::pair{L"common", L"mode"},
          std::pair{L"unitsandcurrencies", L"languageid"}}) {
        const Answer other = Ask(*settings, section, key);
        EXPECT_NE(other.code, 0) << section << L"/" << key;
        EXPECT_EQ(other.value.str, L"untouched");
    }
}

TEST(EnvironmentSettings, UnsetOrMalformedNumbersAreMissing) {
    for (const char* text : {static_cast<const char*>(nullptr), "", "12abc", " 7", "0x10", "99999999999"}) {
        const EnvironmentOverride mode("QUANTOR_CURRENCY_MODE", text);
        const Answer answer = Ask(*quantor::detail::SettingsCreate(), L"unitsandcurrencies", L"mode");
        EXPECT_NE(answer.code, 0) << (text ? text : "(unset)");
        EXPECT_EQ(answer.value.i4, -1);
    }
}

TEST(EnvironmentSettings, UnsetFolderIsTheDataFolderBesideTheLibrary) {
    const EnvironmentOverride unset("QUANTOR_UNITS_DIR", nullptr);
    // The tests link the library's code into themselves, so their own folder
    // stands for an installed library's folder.
    const fs::path testFolder = fs::canonical("/proc/self/exe").parent_path();
    const fs::path linked =
        PathOf(Ask(*quantor::detail::SettingsCreate(), L"unitsandcurrencies", L"curr_dscr_filepath").value.str);
    const fs::path relative = linked.lexically_relative(testFolder);
    EXPECT_EQ(relative.filename(), "unitsandcurrencies");

    // The build tree holds the tests in <build>/tests and the library in <build>/src.
    const fs::path buildTreeLibrary = testFolder.parent_path() / "src/libquantor.so";
    if (!fs::exists(buildTreeLibrary)) GTEST_SKIP() << "no shared library at " << buildTreeLibrary;
    EXPECT_EQ(PathOf(FolderOfLibrary(buildTreeLibrary)), fs::path(QUANTOR_TEST_DATA_DIR) / "unitsandcurrencies");

    const TempFolder prefix;
    fs::create_directory(prefix.Path() / "lib");
    const fs::path installed = prefix.Path() / "lib/libquantor.so";
    fs::copy_file(fs::canonical(buildTreeLibrary), installed);
    EXPECT_EQ(PathOf(FolderOfLibrary(installed)), (prefix.Path() / "lib" / relative).lexically_normal());
}

TEST(SettingsFactory, InstallingAnswersTheFactoryReplaced) {
    const QtrSettingsFactory environment = QtrSetSettingsFactory(nullptr);
    EXPECT_EQ(quantor::detail::SettingsCreate(), nullptr);
    SettingsScript script;
    SettingsScriptInstall(script);
    EXPECT_NE(quantor::detail::SettingsCreate(), nullptr);
    const QtrSettingsFactory scripted = QtrSetSettingsFactory(environment);
    EXPECT_NE(scripted(), nullptr);
    EXPECT_EQ(script.created, 2);
    EXPECT_NE(quantor::detail::SettingsCreate(), nullptr);
    EXPECT_EQ(script.created, 2);
}

}  // namespace
