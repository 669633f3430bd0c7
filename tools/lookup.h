// Names as a person types them, resolved to units and categories of one
// catalogue. A name that resolves to nothing is answered with the closest
// known names; a source and target of two categories are answered with the
// category of each, so the two mistakes read differently.
#pragma once

#include <functional>
#include <string>

#include <quantor/quantor.h>

namespace quantor_cli {

// What a typed name stands for: a unit (and its category) or a category.
struct Named {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    QtrNameMatch match = QtrNameMatch::None;
};

// The two ends of a conversion.
struct ConversionPair {
    const QtrUnitBase* source = nullptr;
    const QtrUnitBase* target = nullptr;
};

// Exact names are looked up in the catalogue itself; the resolver, whose
// language files take longer to read than the catalogue, is made only for the
// first name that is not exact.
class NameLookup {
public:
    // `resolverMake` answers the resolver of `admin`, or null when there is none.
    NameLookup(const QtrAdminStd& admin, std::function<const QtrNameResolver*()> resolverMake)
        : admin_(admin), resolverMake_(std::move(resolverMake)) {}

    // What `typed` names; false with a message that says so and suggests
    // the closest names.
    bool Find(const std::string& typed, Named& named, std::string& error) const;
    bool UnitFind(const std::string& typed, const QtrUnitBase*& unit, std::string& error) const;
    bool CategoryFind(const std::string& typed, const QtrCategoryBase*& category, std::string& error) const;

    // The units a conversion runs between. A category as the source stands
    // for its default internal unit, as the target (or an empty target) for
    // its default surface unit; both ends must be of one category.
    bool PairFind(const std::string& from, const std::string& to, ConversionPair& pair, std::string& error) const;

    // The synonyms of the unit, or without one the category, that `named` names.
    std::vector<std::string> Synonyms(const Named& named) const;

private:
    Named Resolve(const std::string& typed) const;
    std::string UnknownMessage(const std::string& typed) const;
    const QtrNameResolver* Resolver() const;

    const QtrAdminStd& admin_;
    std::function<const QtrNameResolver*()> resolverMake_;
    mutable bool resolverMade_ = false;
    mutable const QtrNameResolver* resolver_ = nullptr;
};

// "m is a Length unit" or "Length is a category", for messages.
std::string Describe(const std::string& typed, const Named& named);

}  // namespace quantor_cli
