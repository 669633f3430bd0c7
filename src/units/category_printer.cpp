// Printing a category as a `category` block of the description language: its
// units, its default units and either every rule between its units or a
// compact set that links every unit to an earlier one. The block reads back
// into the same category; a missing rule is written as a comment.
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "etc/format.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "units/statement_text.h"

namespace {

using quantor::detail::StatementName;
using quantor::detail::StatementWrite;
using Units = std::vector<std::unique_ptr<QtrUnitBase>>;

// The rule by which the unit at `source` converts into the unit at `target`.
const QtrConvInfoBase* Rule(const Units& units, std::size_t source, std::size_t target) {
    return units[source]->ConvInfo(units[target].get());
}

// Units and rules of this library print themselves; the category holds no
// others, as it creates and completes only those.
void PrintUnit(QtrTextFile* file, const QtrUnitBase& unit) {
    if (const auto* own = dynamic_cast<const QtrUnitStd*>(&unit)) own->PrettyPrint(file);
}

void PrintRule(QtrTextFile* file, const QtrConvInfoBase& rule) {
    if (const auto* own = dynamic_cast<const QtrConvInfoStd*>(&rule)) own->PrettyPrint(file);
}

// Prints the rule from `source` to `target`, or a comment that it is missing;
// answers whether the rule exists.
bool PrintRuleOrGap(QtrTextFile* file, const Units& units, std::size_t source, std::size_t target) {
    const QtrConvInfoBase* rule = Rule(units, source, target);
    if (rule) {
        PrintRule(file, *rule);
    } else {
        StatementWrite(file, QtrFormat(L"\n\t// convert %s <- %s : no convinfo\n", StatementName(units[target]->Name()),
                                       StatementName(units[source]->Name())));
    }
    return rule != nullptr;
}

void PrintAllRules(QtrTextFile* file, const Units& units) {
    for (std::size_t target = 0; target < units.size(); ++target) {
        for (std::size_t source = 0; source < units.size(); ++source) {
            if (source != target) PrintRuleOrGap(file, units, source, target);
        }
    }
}

struct Link {
    std::size_t source;
    std::size_t target;
};

// The first rule, by ascending source from `source` on, that leads to an
// earlier unit not before `target`.
std::optional<Link> FindLink(const Units& units, std::size_t source, std::size_t target) {
    for (std::size_t k = source; k < units.size(); ++k) {
        for (std::size_t m = target; m < k; ++m) {
            if (Rule(units, k, m)) return Link{k, m};
        }
    }
    return std::nullopt;
}

// Links every unit to an earlier one; with complete rules these are the rules
// from every later unit to the first.
void PrintCompactRules(QtrTextFile* file, const Units& units) {
    std::size_t target = 0;
    std::size_t source = 1;
    while (target + 1 < units.size() && source < units.size()) {
        if (source == target) source = target + 1;
        if (PrintRuleOrGap(file, units, source, target)) {
            ++source;
        } else if (std::optional<Link> link = FindLink(units, source, target)) {
            source = link->source;
            target = link->target;
        } else {
            ++target;
        }
    }
}

}  // namespace

void QtrCategoryStd::PrettyPrint(QtrTextFile* file, bool allRules) const {
    StatementWrite(file, QtrFormat(L"\ncategory %s", StatementName(name_)));
    StatementWrite(file, L"\n{\n");
    for (const auto& unit : units_) PrintUnit(file, *unit);
    if (defaultIntern_) {
        StatementWrite(file, QtrFormat(L"\tdefaultintern %s;\n", StatementName(defaultIntern_->Name())));
    }
    if (defaultSurface_) {
        StatementWrite(file, QtrFormat(L"\tdefaultsurface %s;\n", StatementName(defaultSurface_->Name())));
    }
    if (allRules) {
        PrintAllRules(file, units_);
    } else {
        PrintCompactRules(file, units_);
    }
    StatementWrite(file, QtrFormat(L"\n} // %s\n\n", StatementName(name_)));
}
