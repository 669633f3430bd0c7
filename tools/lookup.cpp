// Resolution of typed names with messages that tell an unknown name from
// names of two categories.
#include "lookup.h"

#include "text.h"

namespace quantor_cli {

namespace {

std::string CategoryName(const QtrUnitBase& unit) {
    return unit.Category() ? Utf8(unit.Category()->Name()) : std::string("(no category)");
}

const QtrUnitBase* SourceUnit(const Named& named) {
    return named.unit ? named.unit : named.category->DefaultInternUnitGet();
}

const QtrUnitBase* TargetUnit(const Named& named) {
    return named.unit ? named.unit : named.category->DefaultSurfaceUnitGet();
}

}  // namespace

std::string Describe(const std::string& typed, const Named& named) {
    if (named.unit) return typed + " is a " + CategoryName(*named.unit) + " unit";
    return typed + " is a category";
}

const QtrNameResolver* NameLookup::Resolver() const {
    if (!resolverMade_) {
        resolverMade_ = true;
        resolver_ = resolverMake_();
    }
    return resolver_;
}

// The resolver tries the exact name first as well, so asking the catalogue
// first changes no answer.
Named NameLookup::Resolve(const std::string& typed) const {
    const std::wstring wide = Wide(typed);
    Named named;
    if (!wide.empty() && admin_.FastFind(wide.c_str(), named.category, named.unit)) {
        named.match = QtrNameMatch::Exact;
    } else if (const QtrNameResolver* resolver = Resolver()) {
        const QtrResolvedName resolved = resolver->Resolve(wide.c_str());
        named = {resolved.category, resolved.unit, resolved.match};
    }
    if (named.unit) named.category = named.unit->Category();
    return named;
}

std::vector<std::string> NameLookup::Synonyms(const Named& named) const {
    std::vector<std::string> synonyms;
    const QtrNameResolver* resolver = Resolver();
    if (!resolver) return synonyms;
    const QtrResolvedName target{named.unit ? nullptr : named.category, named.unit, named.match};
    for (const std::wstring& synonym : resolver->Synonyms(target)) synonyms.push_back(Utf8(synonym));
    return synonyms;
}

std::string NameLookup::UnknownMessage(const std::string& typed) const {
    std::string message = "no unit or category is named \"" + typed + "\"";
    const QtrNameResolver* resolver = Resolver();
    const std::vector<std::wstring> suggestions =
        resolver ? resolver->Suggest(Wide(typed).c_str()) : std::vector<std::wstring>();
    for (size_t i = 0; i < suggestions.size(); ++i) message += (i == 0 ? " (did you mean: " : ", ") + Utf8(suggestions[i]);
    return suggestions.empty() ? message : message + "?)";
}

bool NameLookup::Find(const std::string& typed, Named& named, std::string& error) const {
    named = Resolve(typed);
    if (named.unit || named.category) return true;
    error = UnknownMessage(typed);
    return false;
}

bool NameLookup::UnitFind(const std::string& typed, const QtrUnitBase*& unit, std::string& error) const {
    Named named;
    if (!Find(typed, named, error)) return false;
    if (!named.unit) {
        error = typed + " is a category, not a unit";
        return false;
    }
    unit = named.unit;
    return true;
}

bool NameLookup::CategoryFind(const std::string& typed, const QtrCategoryBase*& category, std::string& error) const {
    Named named;
    if (!Find(typed, named, error)) return false;
    if (named.unit) {
        error = Describe(typed, named) + ", not a category";
        return false;
    }
    category = named.category;
    return true;
}

bool NameLookup::PairFind(const std::string& from, const std::string& to, ConversionPair& pair,
                          std::string& error) const {
    Named source, target;
    if (!Find(from, source, error)) return false;
    if (to.empty()) target.category = source.category;
    else if (!Find(to, target, error)) return false;
    if (source.category != target.category) {
        error = "cannot convert " + from + " to " + to + ": " + Describe(from, source) + ", " + Describe(to, target);
        return false;
    }
    pair = {SourceUnit(source), TargetUnit(target)};
    if (!pair.source || !pair.target) {
        error = "the category " + Utf8(source.category->Name()) + " names no default unit";
        return false;
    }
    return true;
}

}  // namespace quantor_cli
