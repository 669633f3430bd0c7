// The quantor command: converts values, lists the catalogue, checks and
// prints description files, and writes and reads value-with-unit strings,
// all through the library's public interface. Each subcommand is a row of a
// table with its name, its arguments and its handler.
#include <quantor/quantor.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Args = std::vector<std::wstring>;

void Print(const std::wstring& text) { std::printf("%ls", text.c_str()); }
void PrintLine(const std::wstring& text) { std::printf("%ls\n", text.c_str()); }
void PrintError(const std::wstring& text) { std::fprintf(stderr, "quantor: %ls\n", text.c_str()); }

std::wstring Widen(const char* text) {
    std::wstring out(std::mbstowcs(nullptr, text, 0) + 1, L'\0');
    const size_t length = std::mbstowcs(out.data(), text, out.size());
    out.resize(length == static_cast<size_t>(-1) ? 0 : length);
    return out;
}

bool ReadNumber(const std::wstring& text, double& value) {
    int status = 0;
    return FloatScan(value, status, text.c_str()) && status == 0;
}

bool ReadInt(const std::wstring& text, int& value) {
    wchar_t* end = nullptr;
    const long number = std::wcstol(text.c_str(), &end, 10);
    if (text.empty() || *end != L'\0' || number < -1000 || number > 1000) return false;
    value = static_cast<int>(number);
    return true;
}

const QtrAdminStd* DefaultAdmin() {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    if (!admin) PrintError(L"the catalogue could not be loaded (see the messages above)");
    return admin;
}

std::wstring UnitName(const QtrUnitBase* unit) { return unit ? unit->Name() : std::wstring(L"-"); }

std::wstring DisplayName(const std::wstring& unitName) {
    std::wstring shown;
    UnitTranslateDefault(shown, unitName.c_str());
    return shown;
}

// convert VALUE FROM TO
int Convert(const Args& args) {
    double value = 0.0;
    if (!ReadNumber(args[0], value)) {
        PrintError(L"not a number: " + args[0]);
        return 2;
    }
    if (!DefaultAdmin()) return 1;
    double result = 0.0;
    if (!UnitConvert(result, args[2].c_str(), value, args[1].c_str())) {
        PrintError(L"cannot convert from " + args[1] + L" to " + args[2]);
        return 1;
    }
    std::printf("%.17g\n", result);
    return 0;
}

// show VALUE FROM TO PRE POST: the converted value in the target's number format
int Show(const Args& args) {
    double value = 0.0;
    int pre = 0, post = 0;
    if (!ReadNumber(args[0], value) || !ReadInt(args[3], pre) || !ReadInt(args[4], post)) {
        PrintError(L"expected a number and two digit counts");
        return 2;
    }
    if (!DefaultAdmin()) return 1;
    const QtrUnitBase* source = UnitSearch(args[1].c_str());
    if (!source) {
        PrintError(L"unknown unit: " + args[1]);
        return 1;
    }
    const std::wstring text = source->ConvertOutputGen(args[2].c_str(), value, pre, post);
    if (text.empty()) return 1;
    PrintLine(text + L" " + DisplayName(args[2]));
    return 0;
}

// categories: every category with its storage and display unit
int Categories(const Args&) {
    const QtrAdminStd* admin = DefaultAdmin();
    if (!admin) return 1;
    std::vector<const QtrCategoryBase*> categories;
    admin->CategPtrs(categories);
    for (const QtrCategoryBase* category : categories) {
        std::printf("%-14ls storage %-8ls display %ls\n", category->Name().c_str(),
                    UnitName(category->DefaultInternUnitGet()).c_str(),
                    UnitName(category->DefaultSurfaceUnitGet()).c_str());
    }
    return 0;
}

// units CATEGORY
int Units(const Args& args) {
    const QtrAdminStd* admin = DefaultAdmin();
    if (!admin) return 1;
    std::vector<const QtrUnitBase*> units;
    if (!admin->UnitPtrs(units, args[0].c_str())) {
        PrintError(L"unknown category: " + args[0]);
        return 1;
    }
    for (const QtrUnitBase* unit : units) std::printf("%-10ls %ls\n", unit->Name().c_str(), DisplayName(unit->Name()).c_str());
    return 0;
}

// value UNIT VALUE
int Value(const Args& args) {
    double value = 0.0;
    if (!ReadNumber(args[1], value)) {
        PrintError(L"not a number: " + args[1]);
        return 2;
    }
    std::wstring text;
    if (!QtrAdminStd::UnitAndValueStringGen(args[0].c_str(), value, text)) {
        PrintError(L"unit names need at least four characters: " + args[0]);
        return 1;
    }
    PrintLine(text);
    return 0;
}

// read TEXT
int Read(const Args& args) {
    std::wstring unit;
    double value = 0.0;
    if (!QtrAdminStd::UnitAndValueGetFromString(unit, value, args[0].c_str())) {
        PrintError(L"not a value-with-unit string: " + args[0]);
        return 1;
    }
    std::printf("%.17g %ls\n", value, unit.c_str());
    return 0;
}

// translate UNIT
int Translate(const Args& args) {
    PrintLine(DisplayName(args[0]));
    return 0;
}

// A parser error as the library writes it to the trace:
// "<file>(<line>,<column>): ##### parser-error: <message>".
struct ParserError {
    std::wstring file;
    int line = 0;
    int column = 0;
    std::wstring message;
};

bool SplitParserError(const std::wstring& text, ParserError& error) {
    const std::wstring marker = L"): ##### parser-error: ";
    const size_t end = text.find(marker);
    if (end == std::wstring::npos) return false;
    const size_t open = text.rfind(L'(', end);
    if (open == std::wstring::npos) return false;
    if (std::swscanf(text.c_str() + open, L"(%d,%d)", &error.line, &error.column) != 2) return false;
    error.file = text.substr(0, open);
    error.message = text.substr(end + marker.size());
    while (!error.message.empty() && error.message.back() == L'\n') error.message.pop_back();
    return true;
}

std::string SourceLine(const std::wstring& file, int line) {
    std::string narrow(file.size() * 4 + 1, '\0');
    narrow.resize(std::wcstombs(narrow.data(), file.c_str(), narrow.size()));
    std::ifstream in(narrow);
    std::string text;
    for (int n = 0; n < line && std::getline(in, text); ++n) {}
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return text;
}

// Shows a parser error as "file:line:column: message", the source line and a caret.
void ShowParserError(const ParserError& error) {
    std::fprintf(stderr, "%ls:%d:%d: %ls\n", error.file.c_str(), error.line, error.column + 1, error.message.c_str());
    const std::string source = SourceLine(error.file, error.line);
    if (source.empty()) return;
    std::fprintf(stderr, "    %s\n    ", source.c_str());
    for (int i = 0; i < error.column && i < static_cast<int>(source.size()); ++i)
        std::fputc(source[static_cast<size_t>(i)] == '\t' ? '\t' : ' ', stderr);
    std::fputs("^\n", stderr);
}

// Loads description files into a fresh administration, showing every error.
bool LoadFiles(const Args& files, QtrAdminDscr& admin) {
    const QtrTraceSink previousTrace = QtrSetTraceSink([](const std::wstring& text) {
        ParserError error;
        if (SplitParserError(text, error)) ShowParserError(error);
    });
    bool ok = true;
    for (const std::wstring& file : files) ok = admin.Import_Parse(file.c_str()) && ok;
    QtrSetTraceSink(previousTrace);
    return ok;
}

// check FILE...
int Check(const Args& args) {
    QtrAdminDscr admin;
    if (!LoadFiles(args, admin)) return 1;
    std::vector<std::wstring> names;
    admin.CategNames(names);
    std::printf("ok: %zu categories\n", names.size());
    return 0;
}

// print [--all] [FILE...]: the catalogue in the description language
int PrintCatalogue(const Args& args) {
    Args files = args;
    bool allRules = false;
    if (!files.empty() && files.front() == L"--all") {
        allRules = true;
        files.erase(files.begin());
    }
    QtrAdminDscr loaded;
    const QtrAdminStd* admin = &loaded;
    if (files.empty()) admin = DefaultAdmin();
    else if (!LoadFiles(files, loaded)) return 1;
    if (!admin) return 1;
    const QtrTraceSink previous = QtrSetTraceSink(Print);
    admin->PrettyPrint(nullptr, allRules);
    QtrSetTraceSink(previous);
    return 0;
}

struct Command {
    const wchar_t* name;
    const wchar_t* arguments;
    const wchar_t* help;
    size_t minArgs;
    size_t maxArgs;
    int (*run)(const Args&);
};

constexpr size_t kMany = 1000;

const Command kCommands[] = {
    {L"convert", L"VALUE FROM TO", L"convert a value; FROM may name a category (its storage unit)", 3, 3, Convert},
    {L"show", L"VALUE FROM TO PRE POST", L"the converted value in the target's number format", 5, 5, Show},
    {L"categories", L"", L"list the categories with their storage and display units", 0, 0, Categories},
    {L"units", L"CATEGORY", L"list a category's units with their display names", 1, 1, Units},
    {L"value", L"UNIT VALUE", L"write a value with its unit in exact text form", 2, 2, Value},
    {L"read", L"TEXT", L"read a value-with-unit text", 1, 1, Read},
    {L"translate", L"UNIT", L"the display name of a unit in the configured language", 1, 1, Translate},
    {L"check", L"FILE...", L"check description files, showing each error at its place", 1, kMany, Check},
    {L"print", L"[--all] [FILE...]", L"print the catalogue, or the given files, as a description", 0, kMany, PrintCatalogue},
};

void Usage() {
    std::fprintf(stderr, "usage: quantor COMMAND [ARGS]\n\ncommands:\n");
    for (const Command& command : kCommands) {
        const std::wstring head = std::wstring(command.name) + L" " + command.arguments;
        std::fprintf(stderr, "  %-30ls %ls\n", head.c_str(), command.help);
    }
    std::fprintf(stderr,
                 "\nThe catalogue is read from QUANTOR_UNITS_DIR (default: the shipped data folder);\n"
                 "QUANTOR_CURRENCY_MODE picks a currency region, QUANTOR_LANGUAGE_ID the display language.\n");
}

}  // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    if (argc < 2) {
        Usage();
        return 2;
    }
    const std::wstring name = Widen(argv[1]);
    Args args;
    for (int i = 2; i < argc; ++i) args.push_back(Widen(argv[i]));
    for (const Command& command : kCommands) {
        if (name != command.name) continue;
        if (args.size() < command.minArgs || args.size() > command.maxArgs) {
            std::fprintf(stderr, "usage: quantor %ls %ls\n", command.name, command.arguments);
            return 2;
        }
        return command.run(args);
    }
    Usage();
    return 2;
}
