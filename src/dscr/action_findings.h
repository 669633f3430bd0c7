// Findings of the semantic actions for the catalogue author: the warnings
// about declarations and rules that the model accepts silently (a unit
// declared twice, a name that another category or unit holds in the name
// index, a second rule for a pair, a format clause that does not print back,
// a category without default units) and, as errors, what the model reports
// only to the log (an unknown unit in a convert statement, a refused unit,
// units that no rule links). Each finding stands at the statement or the
// category block it comes from. None of them changes the parse result.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "dscr/pars_node.h"

class QtrAdminStd;
class QtrCategoryBase;
class QtrUnitBase;

// A place in the description file: 1-based line, 0-based column.
struct X_Place {
    int line = -1;
    int column = -1;
};

// Where the declarations read so far stand, so that a finding can point back
// to the earlier of two.
struct X_DeclarationPlaces {
    X_Place categoryHead;  // the name of the current category block
    std::unordered_map<const QtrUnitBase*, X_Place> units;
    std::map<std::pair<const QtrUnitBase*, const QtrUnitBase*>, X_Place> rules;  // (source, target)
};

// The place of a node's earliest token.
X_Place PlaceOf(const X_ParsNode* node);

// A new category block: warns when its name is indexed already for a unit,
// which then keeps the name.
void CategoryNameCheck(const QtrAdminStd* admin, const std::wstring& name, X_Place head);
// Before a unit is added: warns when its name is indexed already.
void UnitNameCheck(const QtrAdminStd* admin, const std::wstring& name, X_Place place);
void UnitRedeclared(const X_DeclarationPlaces& places, const QtrCategoryBase& category, const QtrUnitBase& held,
                    X_Place place);
void UnitRefused(const QtrCategoryBase& category, const std::wstring& name, X_Place place,
                 const std::wstring& libraryText);

// A `convert` statement naming a unit that the category does not hold.
void RuleUnitUnknown(const QtrCategoryBase& category, const std::wstring& name, X_Place place,
                     const std::wstring& libraryText);
// A `convert` statement for a pair that has a rule already; the later
// statement is ignored.
void RuleRepeated(const X_DeclarationPlaces& places, const QtrUnitBase& source, const QtrUnitBase& target,
                  X_Place place);
// A format clause with exactly one non-zero number, which the printers drop.
void FormatShiftCheck(int pre, int post, X_Place place);

// After completion failed: one error for every group of units that no rule
// links with the category's first unit, at the group's first declaration.
void CompletionMisses(const X_DeclarationPlaces& places, const QtrCategoryBase& category,
                      const std::wstring& libraryText);
// A category block that leaves its category without default units.
void DefaultsCheck(const QtrCategoryBase& category, X_Place head);
