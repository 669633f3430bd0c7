// The subcommands that show the catalogue: categories, units, info, print,
// and the hidden list of names for shell completion.
#include <string>
#include <vector>

#include "command.h"
#include "output.h"
#include "session.h"
#include "text.h"

namespace quantor_cli {

namespace {

std::string NameOf(const QtrUnitBase* unit) { return unit ? Utf8(unit->Name()) : std::string("-"); }

std::string Padded(std::string text, size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::vector<const QtrCategoryBase*> Categories(const QtrAdminStd& admin) {
    std::vector<const QtrCategoryBase*> categories;
    admin.CategPtrs(categories);
    return categories;
}

std::vector<const QtrUnitBase*> UnitsOf(const QtrCategoryBase& category) {
    std::vector<const QtrUnitBase*> units;
    category.UnitPtrs(units);
    return units;
}

// "x * 1000" or "x * 1.8 + 32": what the rule does to a value x.
std::string RuleFormula(const QtrConvInfoBase& rule) {
    std::string formula = "x * " + NumberText(rule.Factor());
    if (rule.Addend() > 0) formula += " + " + NumberText(rule.Addend());
    if (rule.Addend() < 0) formula += " - " + NumberText(-rule.Addend());
    return formula;
}

void RuleJson(JsonWriter& json, const QtrConvInfoBase& rule) {
    json.BeginObject()
        .Field("from", NameOf(rule.SrcUnit()))
        .Field("to", NameOf(rule.TrgtUnit()))
        .Field("factor", rule.Factor())
        .Field("addend", rule.Addend())
        .Field("stated", rule.Is_Explicit())
        .EndObject();
}

// The rules from `unit` to every other unit of its category, or to it.
std::vector<const QtrConvInfoBase*> RulesOf(const QtrUnitBase& unit, bool fromUnit) {
    std::vector<const QtrConvInfoBase*> rules;
    for (const QtrUnitBase* other : UnitsOf(*unit.Category())) {
        if (other == &unit) continue;
        const QtrConvInfoBase* rule = fromUnit ? unit.ConvInfo(other) : other->ConvInfo(&unit);
        if (rule) rules.push_back(rule);
    }
    return rules;
}

// "a, b, c", or "-" for none.
std::string ListText(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
    return text.empty() ? "-" : text;
}

void UnitInfoText(Session& session, const QtrUnitBase& unit, const std::vector<std::string>& synonyms) {
    const QtrCategoryBase& category = *unit.Category();
    Out().Line(Utf8(unit.Name()) + ": a unit of " + Utf8(category.Name()));
    Out().Line("  display name:          " + Utf8(session.DisplayName(unit)));
    Out().Line("  synonyms:              " + ListText(synonyms));
    Out().Line("  category's storage:    " + NameOf(category.DefaultInternUnitGet()));
    Out().Line("  category's display:    " + NameOf(category.DefaultSurfaceUnitGet()));
    for (const bool fromUnit : {true, false}) {
        Out().Line(fromUnit ? "  rules from it (x in the source unit):" : "  rules to it:");
        for (const QtrConvInfoBase* rule : RulesOf(unit, fromUnit)) {
            const std::string ends = NameOf(rule->SrcUnit()) + " -> " + NameOf(rule->TrgtUnit());
            Out().Line("    " + Padded(ends, 16) + " " + (rule->Is_Explicit() ? "stated   " : "derived  ") +
                       RuleFormula(*rule));
        }
    }
}

void UnitInfoJson(Session& session, const QtrUnitBase& unit, const std::vector<std::string>& synonyms) {
    const QtrCategoryBase& category = *unit.Category();
    std::string out;
    JsonWriter json(out);
    json.BeginObject().Field("kind", "unit").Field("name", Utf8(unit.Name())).Field("category", Utf8(category.Name()));
    json.Field("display", Utf8(session.DisplayName(unit))).StringArray("synonyms", synonyms);
    json.Field("storage", NameOf(category.DefaultInternUnitGet())).Field("surface", NameOf(category.DefaultSurfaceUnitGet()));
    for (const bool fromUnit : {true, false}) {
        json.Key(fromUnit ? "rulesFrom" : "rulesTo").BeginArray();
        for (const QtrConvInfoBase* rule : RulesOf(unit, fromUnit)) RuleJson(json, *rule);
        json.EndArray();
    }
    json.EndObject();
    Out().Line(out);
}

void CategoryInfo(Session& session, const QtrCategoryBase& category, const std::vector<std::string>& synonyms) {
    std::vector<std::string> units;
    for (const QtrUnitBase* unit : UnitsOf(category)) units.push_back(Utf8(unit->Name()));
    if (session.Json()) {
        std::string out;
        JsonWriter(out)
            .BeginObject()
            .Field("kind", "category")
            .Field("name", Utf8(category.Name()))
            .Field("storage", NameOf(category.DefaultInternUnitGet()))
            .Field("surface", NameOf(category.DefaultSurfaceUnitGet()))
            .StringArray("synonyms", synonyms)
            .StringArray("units", units)
            .EndObject();
        Out().Line(out);
        return;
    }
    std::string list;
    for (const std::string& unit : units) list += " " + unit;
    Out().Line(Utf8(category.Name()) + ": a category");
    Out().Line("  synonyms:     " + ListText(synonyms));
    Out().Line("  storage unit: " + NameOf(category.DefaultInternUnitGet()));
    Out().Line("  display unit: " + NameOf(category.DefaultSurfaceUnitGet()));
    Out().Line("  units:" + list);
}

void UnitRowsWrite(Session& session, const QtrCategoryBase& category, bool withCategory, JsonWriter* json) {
    for (const QtrUnitBase* unit : UnitsOf(category)) {
        const std::string name = Utf8(unit->Name()), display = Utf8(session.DisplayName(*unit));
        if (json) {
            json->BeginObject().Field("name", name).Field("display", display).Field("category", Utf8(category.Name())).EndObject();
            continue;
        }
        Out().Line(Padded(name, 10) + " " + (withCategory ? Padded(display, 12) + " " + Utf8(category.Name()) : display));
    }
}

// How a name that is not the exact name was found, for info.
const char* MatchText(QtrNameMatch match) {
    switch (match) {
        case QtrNameMatch::Synonym:
            return "synonym";
        case QtrNameMatch::DisplayName:
            return "display name";
        case QtrNameMatch::CaseInsensitive:
            return "name in other letter case";
        default:
            return "name";
    }
}

}  // namespace

int CategoriesRun(Session& session, const Invocation&) {
    const QtrAdminStd* admin = session.Catalogue();
    if (!admin) return kExitFailed;
    std::string out;
    JsonWriter json(out);
    json.BeginArray();
    for (const QtrCategoryBase* category : Categories(*admin)) {
        const std::string name = Utf8(category->Name());
        const std::string storage = NameOf(category->DefaultInternUnitGet()), display = NameOf(category->DefaultSurfaceUnitGet());
        if (session.Json()) json.BeginObject().Field("name", name).Field("storage", storage).Field("surface", display).EndObject();
        else Out().Line(Padded(name, 14) + " storage " + Padded(storage, 8) + " display " + display);
    }
    json.EndArray();
    if (session.Json()) Out().Line(out);
    return kExitOk;
}

int UnitsRun(Session& session, const Invocation& invocation) {
    const NameLookup* names = session.Names();
    if (!names) return kExitFailed;
    std::vector<const QtrCategoryBase*> categories;
    if (invocation.args.empty()) {
        categories = Categories(*session.Catalogue());
    } else {
        const QtrCategoryBase* category = nullptr;
        std::string error;
        if (!names->CategoryFind(invocation.args[0], category, error)) {
            ErrorLine(error);
            return kExitFailed;
        }
        categories.push_back(category);
    }
    std::string out;
    JsonWriter json(out);
    json.BeginArray();
    for (const QtrCategoryBase* category : categories)
        UnitRowsWrite(session, *category, invocation.args.empty(), session.Json() ? &json : nullptr);
    json.EndArray();
    if (session.Json()) Out().Line(out);
    return kExitOk;
}

int InfoRun(Session& session, const Invocation& invocation) {
    const NameLookup* names = session.Names();
    if (!names) return kExitFailed;
    Named named;
    std::string error;
    if (!names->Find(invocation.args[0], named, error)) {
        ErrorLine(error);
        return kExitFailed;
    }
    if (named.match != QtrNameMatch::Exact && !session.Json()) {
        const std::string name = Utf8(named.unit ? named.unit->Name() : named.category->Name());
        Out().Line(invocation.args[0] + " is a " + MatchText(named.match) + " of " + name);
    }
    const std::vector<std::string> synonyms = names->Synonyms(named);
    if (!named.unit) CategoryInfo(session, *named.category, synonyms);
    else if (session.Json()) UnitInfoJson(session, *named.unit, synonyms);
    else UnitInfoText(session, *named.unit, synonyms);
    return kExitOk;
}

int PrintRun(Session& session, const Invocation& invocation) {
    const QtrAdminStd* admin = session.Catalogue();
    if (!admin) return kExitFailed;
    std::wstring text;
    const QtrTraceSink previous = QtrSetTraceSink([&text](const std::wstring& part) { text += part; });
    admin->PrettyPrint(nullptr, invocation.Has("--all-rules"));
    QtrSetTraceSink(previous);
    if (!session.Json()) {
        Out().Write(Utf8(text));
        return kExitOk;
    }
    std::string out;
    JsonWriter(out).BeginObject().Field("text", Utf8(text)).EndObject();
    Out().Line(out);
    return kExitOk;
}

int NamesRun(Session& session, const Invocation&) {
    const QtrAdminStd* admin = session.Catalogue();
    if (!admin) return kExitFailed;
    for (const QtrCategoryBase* category : Categories(*admin)) {
        Out().Line(Utf8(category->Name()));
        for (const QtrUnitBase* unit : UnitsOf(*category)) Out().Line(Utf8(unit->Name()));
    }
    return kExitOk;
}

}  // namespace quantor_cli
