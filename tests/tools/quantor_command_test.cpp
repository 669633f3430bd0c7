// The quantor command run as a process: golden output of each subcommand,
// every usage and lookup error with its exit status, batch conversion with
// bad lines, names and settings in each form, and JSON output read back. The
// command reads the small catalogue in tests/tools/data, so the expected
// output does not change with the shipped catalogue.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "support/scratch_folder.h"
#include "tools/command_runner.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const std::string kTestCatalogue = (fs::path(QUANTOR_TEST_DATA_DIR).parent_path() / "tests/tools/data").string();
const std::vector<std::string> kEnvironment = {"LC_ALL=C", "PATH=/usr/bin:/bin", "QUANTOR_UNITS_DIR=" + kTestCatalogue};

CommandResult Quantor(const std::vector<std::string>& args, const std::string& input = "") {
    return CommandRunner::Run(args, input, kEnvironment);
}

CommandResult QuantorWith(const std::vector<std::string>& environment, const std::vector<std::string>& args) {
    std::vector<std::string> full = kEnvironment;
    full.insert(full.end(), environment.begin(), environment.end());
    return CommandRunner::Run(args, "", full);
}

void ExpectOutput(const CommandResult& result, const std::string& out) {
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, "");
}

void ExpectFailure(const CommandResult& result, int status, const std::string& message) {
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(message), std::string::npos) << result.err;
}

fs::path FileWrite(const fs::path& path, const std::string& text) {
    std::ofstream(path) << text;
    return path;
}

TEST(QuantorConvert, ConvertsWithTheShippedCatalogue) {
    ExpectOutput(CommandRunner::Run({"convert", "2.5", "km", "m"}, "", {"LC_ALL=C", "PATH=/usr/bin:/bin"}), "2500\n");
}

TEST(QuantorConvert, ConvertsWithTheChosenCatalogue) {
    ExpectOutput(Quantor({"convert", "2.5", "km", "m"}), "2500\n");
    ExpectOutput(Quantor({"convert", "212", "degF", "degC"}), "100\n");
    ExpectOutput(Quantor({"convert", "-40", "degC", "degF"}), "-40\n");
    ExpectOutput(Quantor({"convert", "+1e3", "mm", "m"}), "1\n");
    // A category as the source stands for its storage unit, as the target
    // (or no target) for its display unit.
    ExpectOutput(Quantor({"convert", "1", "Length", "mm"}), "1000\n");
    ExpectOutput(Quantor({"convert", "5", "km"}), "5000\n");
    ExpectOutput(Quantor({"convert", "1", "m3", "Volume"}), "1000\n");
    ExpectOutput(Quantor({"convert", "--digits", "4,2", "1234.5", "m", "km"}), "1.23450\n");
    ExpectOutput(Quantor({"convert", "1234.5", "m", "km", "--digits=4,2"}), "1.23450\n");
}

TEST(QuantorConvert, RefusesEveryArgumentThatIsNotWhollyOneFiniteNumber) {
    for (const char* bad : {"1,5", "1/3", "0x10", "2.5abc", "1e400", "inf", "nan", "", " 1", "1 ", "+-5", "1e"}) {
        const CommandResult result = Quantor({"convert", bad, "m", "km"});
        ExpectFailure(result, 2, std::string("not a number: ") + bad + " (");
        EXPECT_NE(result.err.find("usage: quantor convert"), std::string::npos) << bad;
    }
}

TEST(QuantorConvert, TheLocaleNeverChangesAResult) {
    std::vector<std::string> german = kEnvironment;
    german[0] = "LC_ALL=de_DE.UTF-8";
    german.push_back("LANG=de_DE.UTF-8");
    EXPECT_EQ(CommandRunner::Run({"convert", "2.5", "km", "m"}, "", german).out, "2500\n");
    EXPECT_EQ(CommandRunner::Run({"convert", "2,5", "km", "m"}, "", german).status, 2);
    EXPECT_EQ(CommandRunner::Run({"convert", "0.5", "m", "km"}, "", german).out, "0.0005\n");
}

TEST(QuantorConvert, LookupErrorsTellAnUnknownNameFromTwoCategories) {
    ExpectFailure(Quantor({"convert", "1", "mettre", "ft"}), 1,
                  "quantor: no unit or category is named \"mettre\" (did you mean: metre?)\n");
    ExpectFailure(Quantor({"convert", "1", "xyzzy", "ft"}), 1, "quantor: no unit or category is named \"xyzzy\"\n");
    ExpectFailure(Quantor({"convert", "1", "m", "kg"}), 1,
                  "quantor: cannot convert m to kg: m is a Length unit, kg is a Mass unit\n");
    ExpectFailure(Quantor({"convert", "1", "Length", "kg"}), 1, "Length is a category, kg is a Mass unit");
    ExpectFailure(Quantor({"convert", "1", "m", "kgg"}), 1, "no unit or category is named \"kgg\" (did you mean: kg?)");
    ExpectFailure(Quantor({"convert", "--digits", "4", "1", "m", "km"}), 2, "--digits takes two whole numbers");
}

TEST(QuantorConvert, NamesInEachForm) {
    // Exact names, synonyms, a unique match in any letter case, display names.
    ExpectOutput(Quantor({"convert", "12", "in", "ft"}), "1\n");
    ExpectOutput(Quantor({"convert", "12", "inch", "feet"}), "1\n");
    ExpectOutput(Quantor({"convert", "12", "INCH", "Ft"}), "1\n");
    ExpectOutput(Quantor({"--lang", "de", "convert", "12", "Zoll", "Fuß"}), "1\n");
    ExpectOutput(Quantor({"convert", "-", "--lang", "de"}, "12 Zoll Fuß\n12 inch foot\n"), "1\n1\n");
    EXPECT_EQ(Quantor({"convert", "12", "Zoll", "Fuß"}).status, 1) << "German names only in German";
}

TEST(QuantorHelp, HelpGoesToStandardOutputAndUsageErrorsToStandardError) {
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {}, {"--help"}, {"-h"}, {"help"}, {"help", "convert"}, {"convert", "--help"}, {"units", "--help"}}) {
        const CommandResult result = Quantor(args);
        EXPECT_EQ(result.status, 0) << testing::PrintToString(args);
        EXPECT_EQ(result.out.rfind("usage: quantor", 0), 0u) << result.out;
        EXPECT_EQ(result.err, "");
    }
    EXPECT_NE(Quantor({"help", "units"}).out.find("usage: quantor units [CATEGORY]\n"), std::string::npos);
    ExpectOutput(Quantor({"--version"}), "quantor 0.1.0\n");
    ExpectFailure(Quantor({"frobnicate"}), 2, "quantor: unknown command: frobnicate\n");
    ExpectFailure(Quantor({"help", "frobnicate"}), 2, "quantor: unknown command: frobnicate");
    ExpectFailure(Quantor({"convert", "1", "m", "km", "--bogus"}), 2, "unknown option: --bogus for quantor convert");
    ExpectFailure(Quantor({"convert", "1"}), 2, "usage: quantor convert [OPTIONS] VALUE FROM [TO]");
    ExpectFailure(Quantor({"translate"}), 2, "quantor translate needs UNIT");
    ExpectFailure(Quantor({"categories", "extra"}), 2, "quantor categories takes only no arguments");
    ExpectFailure(Quantor({"--lang"}), 2, "option --lang needs a value");
    ExpectFailure(Quantor({"--lang", "xx", "units"}), 2, "unknown language: xx (use en, de, fr, es");
    ExpectFailure(Quantor({"--region", "mars", "units"}), 2, "unknown currency region: mars (use common, atlantic");
}

TEST(QuantorBatch, AnswersEachLineAndReportsBadLinesByNumber) {
    const std::string input = "2.5 km m\nx km m\n\n2 km\n3 xyzzy m\n4 m kg\n5 m ft yd\n1e400 m km\n100 mm\n";
    const CommandResult result = Quantor({"convert", "-"}, input);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "2500\n\n2000\n\n\n\n\n0.1\n");
    EXPECT_EQ(result.err,
              "quantor: <stdin>:2: not a number: x\n"
              "quantor: <stdin>:5: no unit or category is named \"xyzzy\"\n"
              "quantor: <stdin>:6: cannot convert m to kg: m is a Length unit, kg is a Mass unit\n"
              "quantor: <stdin>:7: expected VALUE FROM [TO], found more than three words\n"
              "quantor: <stdin>:8: not a number: 1e400\n");
    ExpectOutput(Quantor({"convert", "-"}, "1 km m\r\n\t2 km   m\n3 km m"), "1000\n2000\n3000\n");
}

TEST(QuantorBatch, ReadsAFileAndFormatsWithDigits) {
    ScratchFolder folder;
    const fs::path lines = FileWrite(folder.path / "lines.txt", "1234.5 m km\n1 km m\n");
    ExpectOutput(Quantor({"convert", "--file", lines.string()}), "1.2345\n1000\n");
    ExpectOutput(Quantor({"convert", "--file", lines.string(), "--digits", "4,2"}), "1.23450\n   1000\n");
    ExpectFailure(Quantor({"convert", "--file", (folder.path / "missing").string()}), 1, "cannot open");
    ExpectFailure(Quantor({"convert", "-", "1"}), 2, "takes no VALUE FROM TO");
}

TEST(QuantorJson, EverySubcommandWritesJsonThatReadsBack) {
    const json converted = json::parse(Quantor({"--json", "convert", "2.5", "km", "m"}).out);
    EXPECT_EQ(converted["result"], 2500.0);
    EXPECT_EQ(converted["from"], "km");
    EXPECT_EQ(converted["to"], "m");

    const CommandResult batch = Quantor({"convert", "-", "--json"}, "1 km m\nx km m\n");
    EXPECT_EQ(batch.status, 1);
    const size_t newline = batch.out.find('\n');
    EXPECT_EQ(json::parse(batch.out.substr(0, newline))["result"], 1000.0);
    EXPECT_EQ(json::parse(batch.out.substr(newline + 1))["error"], "not a number: x");

    const json categories = json::parse(Quantor({"categories", "--json"}).out);
    ASSERT_TRUE(categories.is_array());
    EXPECT_EQ(categories[0], json({{"name", "Length"}, {"storage", "m"}, {"surface", "m"}}));
    const json units = json::parse(Quantor({"units", "Temperature", "--json"}).out);
    EXPECT_EQ(units.size(), 3u);
    EXPECT_EQ(units[1], json({{"name", "degC"}, {"display", "°C"}, {"category", "Temperature"}}));

    const json unit = json::parse(Quantor({"info", "degF", "--json"}).out);
    EXPECT_EQ(unit["category"], "Temperature");
    EXPECT_EQ(unit["surface"], "degC");
    const json category = json::parse(Quantor({"info", "Temperature", "--json"}).out);
    EXPECT_EQ(category["units"], json({"K", "degC", "degF"}));

    EXPECT_EQ(json::parse(Quantor({"value", "degC", "2.5", "--json"}).out),
              json({{"text", "u:degC i:4004000000000000 n:2.5"}}));
    EXPECT_EQ(json::parse(Quantor({"--json", "read", "u:metre i:4004000000000000 n:2.5"}).out),
              json({{"value", 2.5}, {"unit", "metre"}}));
    EXPECT_EQ(json::parse(Quantor({"--json", "--lang", "de", "translate", "ft"}).out), json({{"display", "Fuß"}}));
    EXPECT_TRUE(json::parse(Quantor({"--json", "print"}).out)["text"].get<std::string>().find("category Length") !=
                std::string::npos);
}

TEST(QuantorCatalogue, ListsShowsAndPrints) {
    ExpectOutput(Quantor({"units", "Temperature"}), "K          K\ndegC       °C\ndegF       °F\n");
    const CommandResult categories = Quantor({"categories"});
    EXPECT_EQ(categories.out.substr(0, categories.out.find('\n') + 1), "Length         storage m        display m\n");
    ExpectOutput(Quantor({"info", "Temperature"}),
                 "Temperature: a category\n  synonyms:     -\n  storage unit: K\n  display unit: degC\n  units: K degC "
                 "degF\n");
    const std::string feet = Quantor({"info", "feet"}).out;
    EXPECT_EQ(feet.substr(0, feet.find("  category")),
              "feet is a synonym of ft\nft: a unit of Length\n  display name:          ft\n"
              "  synonyms:              feet, foot\n");
    const std::string info = Quantor({"info", "degF"}).out;
    EXPECT_EQ(info.substr(0, info.find('\n')), "degF: a unit of Temperature");
    EXPECT_NE(info.find("    degF -> degC     stated   x * 0.555555555555556 - 17.7777777777778\n"), std::string::npos)
        << info;
    ExpectFailure(Quantor({"units", "km"}), 1, "km is a Length unit, not a category");
    ExpectFailure(Quantor({"info", "nothing"}), 1, "no unit or category is named \"nothing\"");

    ScratchFolder folder;
    const fs::path file = FileWrite(folder.path / "small.txt",
                                    "category Small { unit aa, bb; defaultintern aa; defaultsurface bb;"
                                    " convert bb <- aa * 2; }\n");
    const CommandResult printed = Quantor({"--file", file.string(), "print"});
    EXPECT_EQ(printed.status, 0);
    EXPECT_NE(printed.out.find("category Small"), std::string::npos) << printed.out;
    EXPECT_EQ(printed.out.find("category Length"), std::string::npos) << "--file replaces the catalogue";
    ExpectOutput(Quantor({"--file", file.string(), "convert", "4", "bb", "aa"}), "8\n");
    ExpectFailure(Quantor({"--file", (folder.path / "missing.txt").string(), "categories"}), 1, "cannot load");
}

TEST(QuantorCheck, ShowsEachFindingAtItsPlaceAcrossFilesReadInOrder) {
    ScratchFolder folder;
    const fs::path good = FileWrite(folder.path / "good.txt", "category Good { unit aa, bb; defaultintern aa; convert bb <- aa * 2; }\n");
    const fs::path bad = FileWrite(folder.path / "bad.txt", "category Bad\n{\n\tunit cc;\n\tdefaultintern zz;\n}\n");
    const CommandResult passed = Quantor({"check", good.string()});
    ExpectOutput(passed, "ok: 0 errors, 0 warnings in 1 file\n");

    const CommandResult failed = Quantor({"check", good.string(), bad.string()});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out.substr(0, failed.out.find('\n', failed.out.find('^')) + 1),
              bad.string() + ":4:16: error: 'zz' is not a unit of category 'Bad' declared before this statement. "
                             "Declare it with a unit statement first, or correct the name.\n"
                             "    \tdefaultintern zz;\n"
                             "    \t              ^\n");
    EXPECT_NE(failed.out.find("\nfailed: 1 error, 1 warning in 2 files\n"), std::string::npos) << failed.out;

    // Warnings alone pass, unless --strict.
    const fs::path warned = FileWrite(folder.path / "warned.txt", "category W\n{\n\tunit aa;\n}\n");
    const CommandResult lenient = Quantor({"check", warned.string()});
    EXPECT_EQ(lenient.status, 0);
    EXPECT_NE(lenient.out.find(warned.string() + ":1:10: warning: "), std::string::npos) << lenient.out;
    EXPECT_NE(lenient.out.find("    category W\n             ^\nok: 0 errors, 1 warning in 1 file\n"), std::string::npos);
    EXPECT_EQ(Quantor({"check", "--strict", warned.string()}).status, 1);

    const json report = json::parse(Quantor({"check", "--json", bad.string(), good.string()}).out);
    EXPECT_EQ(report["passed"], false);
    EXPECT_EQ(report["errors"], 1);
    EXPECT_EQ(report["warnings"], 1);
    EXPECT_EQ(report["findings"][0]["line"], 4);
    EXPECT_EQ(report["findings"][0]["column"], 16);
    EXPECT_EQ(report["findings"][0]["severity"], "error");

    // Without files: the files of the default catalogue, region file included.
    ExpectOutput(Quantor({"check", "--region", "america"}), "ok: 0 errors, 0 warnings in 3 files\n");
    const CommandResult empty = Quantor({"check", "--units-dir", folder.path.string()});
    EXPECT_EQ(empty.status, 1);
    EXPECT_NE(empty.out.find("unit_dscr.txt: error: The file was not found"), std::string::npos) << empty.out;

    const CommandResult missing = Quantor({"check", (folder.path / "missing.txt").string()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.out.find("missing.txt: error: The file was not found"), std::string::npos) << missing.out;
}

TEST(QuantorValues, WritesReadsAndTranslates) {
    ExpectOutput(Quantor({"read", "u:metre i:4004000000000000 n:2.5"}), "2.5 metre\n");
    ExpectFailure(Quantor({"read", "u:m i:4004000000000000"}), 1, "not a value-with-unit text");
    ExpectOutput(Quantor({"value", "degC", "-0"}), "u:degC i:8000000000000000 n:-0\n");
    ExpectFailure(Quantor({"value", "m", "2.5"}), 1, "too short");
    ExpectFailure(Quantor({"value", "degC", "warm"}), 2, "not a number: warm");
    ExpectOutput(Quantor({"translate", "ft"}), "ft\n");
}

TEST(QuantorSettings, LanguagesAndRegionsByNameOrNumberFromOptionsAndEnvironment) {
    for (const char* language : {"de", "DE", "0407", "0x0407", "1031"}) {
        ExpectOutput(Quantor({"--lang", language, "translate", "ft"}), "Fuß\n");
        ExpectOutput(QuantorWith({std::string("QUANTOR_LANGUAGE_ID=") + language}, {"translate", "ft"}), "Fuß\n");
    }
    const CommandResult unreadable = QuantorWith({"QUANTOR_LANGUAGE_ID=klingon"}, {"units", "Length"});
    EXPECT_EQ(unreadable.status, 0);
    EXPECT_EQ(unreadable.err,
              "Quantor: QUANTOR_LANGUAGE_ID=\"klingon\" is neither a known name nor a number; the setting is ignored\n")
        << "reported once, not once per unit";
    const CommandResult missing = Quantor({"--lang", "0x0410", "units", "Length"});
    EXPECT_EQ(std::count(missing.err.begin(), missing.err.end(), '\n'), 1) << missing.err;

    ExpectFailure(Quantor({"convert", "100", "CLP"}), 1, "no unit or category is named \"CLP\"");
    for (const char* region : {"america", "4"}) {
        ExpectOutput(Quantor({"--region", region, "convert", "100", "CLP"}), "2\n");
        ExpectOutput(QuantorWith({std::string("QUANTOR_CURRENCY_MODE=") + region}, {"convert", "100", "CLP"}), "2\n");
    }
    const CommandResult shipped = CommandRunner::Run({"--units-dir", kTestCatalogue, "units", "Length"}, "", {"PATH=/bin"});
    ExpectOutput(shipped, "m          m\nkm         km\nmm         mm\nin         in\nft         ft\n");
}

}  // namespace
