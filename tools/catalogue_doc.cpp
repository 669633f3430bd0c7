// Writes the reference of the shipped catalogue as Markdown on standard
// output: every category with its default units, and every unit with its
// display names in English, German, French and Spanish and its definition in
// the category's internal unit. docs/units.md is this program's output
// (scripts/units-doc.sh), so the reference never drifts from the catalogue.
#include <cctype>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include <quantor/quantor.h>

namespace {

const char* const kLanguages[][2] = {{"0409", "English"}, {"0407", "German"}, {"040c", "French"}, {"0c0a", "Spanish"}};

std::string Utf8(const std::wstring& text) {
    std::string out;
    for (const wchar_t wide : text) {
        const auto c = static_cast<unsigned long>(wide);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::wstring Wide(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }

// The shortest decimal text that reads back to the same double.
std::string Number(double value) {
    char text[40];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(text, sizeof text, "%.*g", precision, value);
        if (std::stod(text) == value) break;
    }
    return text;
}

// A table cell: the pipe, which would end the cell, is escaped.
std::string Cell(const std::wstring& text) {
    std::string cell;
    for (const char c : Utf8(text)) cell += c == '|' ? std::string("\\|") : std::string(1, c);
    return cell;
}

// "1 km = 1000 m", or "x degC = x + 273.15 K" for a rule with an addend.
std::string Definition(const QtrCategoryBase& category, const QtrUnitBase& unit, const QtrUnitBase& intern) {
    if (&unit == &intern) return "internal unit";
    const QtrConvInfoBase* rule = category.ConvInfo(intern.Name().c_str(), unit.Name().c_str());
    if (!rule) return "no rule";
    const std::string name = Utf8(unit.Name()), target = Utf8(intern.Name());
    if (rule->Addend() == 0.0) return "1 " + name + " = " + Number(rule->Factor()) + " " + target;
    const std::string factor = rule->Factor() == 1.0 ? "x" : Number(rule->Factor()) + " x";
    const std::string sign = rule->Addend() < 0 ? " − " : " + ";
    return "x " + name + " = " + factor + sign + Number(std::abs(rule->Addend())) + " " + target;
}

void WriteCategory(const QtrCategoryBase& category, const std::vector<XLMTranslDict>& names) {
    const QtrUnitBase* intern = category.DefaultInternUnitGet();
    const QtrUnitBase* surface = category.DefaultSurfaceUnitGet();
    std::cout << "\n## " << Utf8(category.Name()) << "\n\n";
    std::cout << "Internal unit `" << Utf8(intern->Name()) << "`, display unit `" << Utf8(surface->Name()) << "`.\n\n";
    std::cout << "| unit |";
    for (const auto& language : kLanguages) std::cout << ' ' << language[1] << " |";
    std::cout << " definition |\n|---|";
    for (size_t i = 0; i < std::size(kLanguages); ++i) std::cout << "---|";
    std::cout << "---|\n";
    std::vector<const QtrUnitBase*> units;
    category.UnitPtrs(units);
    for (const QtrUnitBase* unit : units) {
        std::cout << "| `" << Utf8(unit->Name()) << "` |";
        for (const XLMTranslDict& dictionary : names)
            std::cout << ' ' << Cell(dictionary.StringTranslate(unit->Name().c_str())) << " |";
        std::cout << ' ' << Definition(category, *unit, *intern) << " |\n";
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: catalogue_doc DATA_FOLDER\n"
                     "writes the reference of the catalogue in DATA_FOLDER as Markdown\n";
        return 2;
    }
    const std::string folder = std::string(argv[1]) + "/";
    QtrAdminDscr admin;
    for (const char* file : {"unit_dscr.txt", "curr_dscr_edy.txt"}) {
        if (!admin.Import_Parse(Wide(folder + file).c_str())) {
            std::cerr << "catalogue_doc: cannot read " << folder << file << "\n";
            return 1;
        }
    }
    std::vector<XLMTranslDict> names(std::size(kLanguages));
    for (size_t i = 0; i < names.size(); ++i) {
        const std::string file = folder + "UnitAbbrevNames" + kLanguages[i][0] + ".rlg";
        if (!names[i].RLGFileRead(Wide(file).c_str(), false)) {
            std::cerr << "catalogue_doc: cannot read " << file << "\n";
            return 1;
        }
    }
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    std::cout << "# Units of the shipped catalogue\n\n"
                 "Generated by `scripts/units-doc.sh` from `data/unitsandcurrencies` (unit_dscr.txt and\n"
                 "curr_dscr_edy.txt); do not edit by hand. Each table lists a category's units with their\n"
                 "display names (UnitAbbrevNames*.rlg) and their definition in the category's internal\n"
                 "unit, as the catalogue converts it. Synonyms are in UnitSynonyms*.rlg; how to write the\n"
                 "catalogue is in docs/catalogue.md.\n\n";
    for (const QtrCategoryBase* category : categories) {
        std::string anchor = Utf8(category->Name());
        for (char& c : anchor) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        std::cout << "- [" << Utf8(category->Name()) << "](#" << anchor << ")\n";
    }
    for (const QtrCategoryBase* category : categories) WriteCategory(*category, names);
    return 0;
}
