// The semantic actions of the description language: the grammar's reductions
// that fill a unit administration. They create categories, units and
// conversion rules, set default units, read a `convert` formula's factor and
// addend off its simplified tree, and hand each finished category to the
// administration. Errors in the file go to the parser error report and count;
// errors of the model go to the diagnostics log and do not. Both, and the
// warnings about what the model accepts silently, are also findings.
#pragma once

#include <memory>
#include <string>

#include "dscr/action_findings.h"
#include "dscr/pars_node.h"

class QtrAdminStd;
class QtrCategoryStd;
class QtrConvInfoStd;
class QtrUnitBase;

// What the actions share while one file is read.
struct X_ActionState {
    explicit X_ActionState(QtrAdminStd* admin);
    // A category whose block a syntax error cut short is handed to the
    // administration as it stands: its units are in the name index already.
    ~X_ActionState();
    X_ActionState(const X_ActionState&) = delete;
    X_ActionState& operator=(const X_ActionState&) = delete;

    QtrAdminStd* admin;                             // the administration being filled; may be null
    QtrCategoryStd* category = nullptr;              // the category whose block is being read
    std::unique_ptr<QtrCategoryStd> newCategory;     // owns `category` until the administration takes it
    std::unique_ptr<QtrConvInfoStd> rule;            // the rule of the `convert` statement being read
    const QtrUnitBase* defaultIntern = nullptr;      // pending default units of the current block
    const QtrUnitBase* defaultSurface = nullptr;
    X_DeclarationPlaces places;                      // where categories, units and rules were declared
};

// Starts a category block; a second block of a name the administration holds
// adds to that category. The value clause is checked by the grammar and ignored.
void Cat_Begin(X_ActionState& state, X_ParsNodePtr name, X_ParsNodePtr value);
// Records a pending default unit; it must name a unit of the current category.
void Cat_DefaultIntern(X_ActionState& state, X_ParsNodePtr name);
void Cat_DefaultSurface(X_ActionState& state, X_ParsNodePtr name);
// Creates a unit in the current category; a unit the category refuses is freed.
void Unit_Begin(X_ActionState& state, X_ParsNodePtr name, X_ParsNodePtr value);
// Starts the explicit rule of a `convert` statement.
void Conv_Begin(X_ActionState& state);
// Sets the rule's format shifts from two constant expressions.
void Conv_FmtShft(X_ActionState& state, X_ParsNodePtr pre, X_ParsNodePtr post);
// Reads `convert T <- S * f + a` into a rule on S towards T with factor 1/f
// and addend a/f, and hands it to S.
void Conv_Finish(X_ActionState& state, X_ParsNodePtr formula);
// Completes the category's rules, sets its default units (one default
// statement sets both) and hands it to the administration.
void Cat_Finish(X_ActionState& state);
// The simplified expression when it is constant; otherwise reported and null.
X_ParsNodePtr Expr_Const(X_ParsNodePtr expression);

// Reads target name, source name, factor and addend off a simplified
// formula "target <- source [*|/ number] [+|- number]"; a formula of another
// shape, or one whose rule would store a factor that is zero, infinite or
// NaN or an addend that is infinite or NaN, is reported and answers false.
bool Conv_GetFromRight(const X_ParsNode* formula, std::wstring& target, std::wstring& source, double& factor,
                       double& addend);
