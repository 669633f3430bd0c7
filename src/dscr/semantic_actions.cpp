// The semantic actions: each grammar reduction that means something to the
// unit model. Trees handed to an action are freed by it; categories, units
// and rules that the model does not take over are freed here as well.
#include "dscr/semantic_actions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

#include "dscr/parse_error.h"
#include "etc/diag_log.h"
#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

const std::wstring& NameText(const X_ParsNode* node) {
    static const std::wstring kNoName;
    return node ? node->Name() : kNoName;
}

// The administration keeps its categories, and a category its units, as
// changeable objects and shows them const; the actions go on filling them.
template <class Std, class Base>
Std* Changeable(const Base* object) {
    return const_cast<Std*>(dynamic_cast<const Std*>(object));
}

// Offers `category` to the administration; true when it holds it afterwards,
// also when the offer ran out of memory half way.
bool AdminTakes(QtrAdminStd& admin, QtrCategoryBase* category) {
    try {
        admin.Categ_Add(category);
    } catch (const std::bad_alloc&) {
    }
    return admin.Categ_Holds(category);
}

// Hands a category made by Cat_Begin to the administration or frees it; a
// reopened category belongs to the administration already.
void CategoryHandOver(X_ActionState& state) {
    if (state.newCategory && state.admin && AdminTakes(*state.admin, state.newCategory.get()))
        state.newCategory.release();
    state.newCategory.reset();
    state.category = nullptr;
}

void PendingDefaultRecord(const X_ActionState& state, const X_ParsNode* name, const QtrUnitBase*& pending,
                          const wchar_t* unknownMessage) {
    const QtrUnitBase* unit = name && name->IsName() ? state.category->Unit(name->Name().c_str()) : nullptr;
    if (unit) {
        pending = unit;
        return;
    }
    const std::wstring explanation = L"'" + NameText(name) + L"' is not a unit of category '" +
                                     state.category->Name() + L"' declared before this statement. Declare it "
                                     L"with a unit statement first, or correct the name.";
    ParseError_ExplainAt(name, explanation, unknownMessage);
}

bool IsNonConstant(const X_ParsNode* node) { return node && !node->IsConstantTree(); }

// Truncation toward zero, limited to the range of a 32-bit integer; NaN gives 0.
int32_t TruncatedShift(double value) {
    if (std::isnan(value)) return 0;
    constexpr double kLowest = std::numeric_limits<int32_t>::min();
    constexpr double kHighest = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::clamp(value, kLowest, kHighest));
}

bool FormulaRefused(const X_ParsNode* formula, const wchar_t* message) {
    ParseError_ReportAt(formula, message);
    if (formula) formula->Print(0, L"Conv_GetFromRight err");
    return false;
}

// What the walk down a source expression finds: the source unit's name, its
// one multiplication or division and its one addition or subtraction, and
// the sign changes on the way.
struct SourceShape {
    const X_ParsNode* name = nullptr;
    const X_ParsNode* factor = nullptr;
    const X_ParsNode* addend = nullptr;
    bool divide = false;
    bool subtract = false;
    double sign = 1.0;
};

// Records `operand` as the factor or addend; false if one is there already
// (the formula would mean more than one rule can hold) or it is no number.
bool OperandTake(const X_ParsNode* operand, const X_ParsNode*& slot) {
    if (slot || !operand || !operand->IsConstant()) return false;
    slot = operand;
    return true;
}

// Walks from `node` down the left operands to the source unit's name; false
// when it meets a node it cannot pass (a number, for one), a second factor or
// addend, an operand that is no number, or runs out.
bool SourceWalk(const X_ParsNode* node, SourceShape& shape) {
    for (; node; node = node->Left()) {
        switch (node->Type()) {
            case ND_DIV:
                shape.divide = true;
                [[fallthrough]];
            case ND_MULT:
                if (!OperandTake(node->Right(), shape.factor)) return false;
                break;
            case ND_MINUS:
                shape.subtract = true;
                [[fallthrough]];
            case ND_PLUS:
                if (!OperandTake(node->Right(), shape.addend)) return false;
                break;
            case ND_UNMINUS:
                shape.sign = -shape.sign;
                break;
            case ND_NAME:
                shape.name = node;
                return true;
            default:
                return false;
        }
    }
    return false;
}

// Reports a unit of a `convert` statement that the category does not hold,
// to the log and as a finding at its name.
void UnknownUnitReport(const X_ActionState& state, int32_t line, const wchar_t* format, const std::wstring& name,
                       const X_ParsNode* node) {
    const std::wstring message = QtrFormat(format, name);
    Error_Report(kSrcParsOps, line, L"%s", message);
    RuleUnitUnknown(*state.category, name, PlaceOf(node), message);
}

// Whether a rule made from factor f and addend a stores usable numbers: its
// factor 1/f is finite and not zero, its addend a/f finite.
bool IsStorableRule(double factor, double addend) {
    const double storedFactor = 1.0 / factor;
    return std::isfinite(storedFactor) && storedFactor != 0.0 && std::isfinite(addend / factor);
}

// Gives the current rule its units and formula and hands it to the source
// unit; unknown units are reported to the log.
void RuleHandOver(X_ActionState& state, const X_ParsNode& formula, const std::wstring& target,
                  const std::wstring& source, double factor, double addend) {
    QtrUnitStd* sourceUnit = Changeable<QtrUnitStd>(state.category->Unit(source.c_str()));
    const QtrUnitBase* targetUnit = state.category->Unit(target.c_str());
    if (!sourceUnit)
        UnknownUnitReport(state, 404, L"Conv_Finish: unknown src unit \"%s\"\n", source,
                          formula.Right()->FindName(source.c_str()));
    if (!targetUnit) UnknownUnitReport(state, 407, L"Conv_Finish: unknown target unit \"%s\"\n", target, formula.Left());
    if (!sourceUnit || !targetUnit || !state.rule) return;
    state.rule->SetUnits(targetUnit, sourceUnit);
    state.rule->SetFormula(1.0 / factor, addend / factor);
    const X_Token& statement = ParseState_Current().findings.Statement();
    const X_Place place{statement.line, statement.column};
    if (sourceUnit->ConvInfoAdd(state.rule.get()) > 0) {
        state.rule.release();
        state.places.rules[{sourceUnit, targetUnit}] = place;
    } else {
        RuleRepeated(state.places, *sourceUnit, *targetUnit, place);
    }
}

}  // namespace

X_ActionState::X_ActionState(QtrAdminStd* administration) : admin(administration) {}

// Without memory to find out whether the administration took the category,
// the category is left to it rather than freed twice.
X_ActionState::~X_ActionState() {
    try {
        CategoryHandOver(*this);
    } catch (const std::bad_alloc&) {
        (void)newCategory.release();
    }
}

void Cat_Begin(X_ActionState& state, X_ParsNodePtr name, X_ParsNodePtr /*value*/) {
    state.defaultIntern = nullptr;
    state.defaultSurface = nullptr;
    const std::wstring categoryName = NameText(name.get());
    state.places.categoryHead = PlaceOf(name.get());
    const QtrCategoryBase* held = state.admin ? state.admin->Category(categoryName.c_str()) : nullptr;
    state.category = Changeable<QtrCategoryStd>(held);
    if (state.category) return;
    // A held category of another kind cannot be added to: the block is then
    // read into a category without administration and dropped at its end.
    state.newCategory = std::make_unique<QtrCategoryStd>(categoryName.c_str(), held ? nullptr : state.admin);
    state.category = state.newCategory.get();
}

void Cat_DefaultIntern(X_ActionState& state, X_ParsNodePtr name) {
    PendingDefaultRecord(state, name.get(), state.defaultIntern, L"unknown default internal unit\n");
}

void Cat_DefaultSurface(X_ActionState& state, X_ParsNodePtr name) {
    PendingDefaultRecord(state, name.get(), state.defaultSurface, L"unknown default surface unit\n");
}

void Unit_Begin(X_ActionState& state, X_ParsNodePtr name, X_ParsNodePtr /*value*/) {
    const std::wstring& unitName = NameText(name.get());
    const X_Place place = PlaceOf(name.get());
    const QtrUnitBase* held = state.category->Unit(unitName.c_str());
    if (!held) UnitNameCheck(state.admin, unitName, place);
    auto unit = std::make_unique<QtrUnitStd>(state.category, unitName.c_str());
    int added = 0;
    try {
        added = state.category->UnitAdd(unit.get());
    } catch (const std::bad_alloc&) {
        // The category may hold the unit already when its name index ran out.
        std::vector<const QtrUnitBase*> units;
        state.category->UnitPtrs(units);
        if (std::ranges::find(units, unit.get()) != units.end()) (void)unit.release();
        throw;
    }
    if (added > 0) {
        // The category owns the unit now. Places serve only the findings, so
        // they are kept only for a collector.
        const QtrUnitBase* taken = unit.release();
        if (ParseState_Current().findings.IsCollecting()) state.places.units[taken] = place;
    } else if (added == 0 && held) {
        UnitRedeclared(state.places, *state.category, *held, place);
    } else if (added < 0) {
        constexpr const wchar_t* kRefused = L"Unit_Begin, cannot add unit";
        Error_Report(kSrcParsOps, 588, kRefused);
        UnitRefused(*state.category, unitName, place, kRefused);
    }
}

void Conv_Begin(X_ActionState& state) {
    state.rule = std::make_unique<QtrConvInfoStd>();
    state.rule->SetExplicit(true);
}

void Conv_FmtShft(X_ActionState& state, X_ParsNodePtr pre, X_ParsNodePtr post) {
    const X_ParsNode* culprit = IsNonConstant(post.get()) ? post.get() : IsNonConstant(pre.get()) ? pre.get() : nullptr;
    if (culprit || !pre || !post) {
        ParseError_ReportAt(culprit, L"Conv_FmtShft(,): constant expected\n");
    } else if (state.rule) {
        state.rule->SetPreFmtshft(TruncatedShift(pre->Value()));
        state.rule->SetPostFmtshft(TruncatedShift(post->Value()));
        FormatShiftCheck(state.rule->FmtPreDecpnt(), state.rule->FmtPostDecpnt(), PlaceOf(pre.get()));
    } else {
        ParseError_Report(L"Conv_FmtShft(,): no ConvInfo-Ptr\n");
    }
}

bool Conv_GetFromRight(const X_ParsNode* formula, std::wstring& target, std::wstring& source, double& factor,
                       double& addend) {
    if (!formula || formula->Type() != ND_CONVFORM)
        return FormulaRefused(formula, L"Conv_GetFromRight(.): ND_CONVFORM-node expected\n");
    if (!formula->Left() || !formula->Left()->IsName())
        return FormulaRefused(formula, L"Conv_GetFromRight(.): left name-node expected\n");
    target.clear();
    source.clear();
    factor = 1.0;
    addend = 0.0;
    SourceShape shape;
    if (!SourceWalk(formula->Right(), shape) || shape.name->Name().empty())
        return FormulaRefused(formula, L"Conv_GetFromRight(): error in formula\n");
    double readAddend = 0.0;
    double readFactor = shape.sign;
    if (shape.addend) readAddend = shape.subtract ? -shape.addend->Value() : shape.addend->Value();
    if (shape.factor) {
        readFactor *= shape.factor->Value();
        if (shape.divide) readFactor = 1.0 / readFactor;
    }
    if (!IsStorableRule(readFactor, readAddend))
        return FormulaRefused(formula, L"Conv_GetFromRight(): error in formula\n");
    source = shape.name->Name();
    factor = readFactor;
    addend = readAddend;
    target = formula->Left()->Name();
    return true;
}

void Conv_Finish(X_ActionState& state, X_ParsNodePtr formula) {
    std::wstring target, source;
    double factor = 1.0;
    double addend = 0.0;
    if (formula) {
        formula->Tree_Opt();
        if (Conv_GetFromRight(formula.get(), target, source, factor, addend))
            RuleHandOver(state, *formula, target, source, factor, addend);
    }
    state.rule.reset();
}

void Cat_Finish(X_ActionState& state) {
    // Completion runs before the default units are set.
    if (!state.category->ConvInfoComplete()) {
        constexpr const wchar_t* kMisses = L"Cat_Finish: ConvInfoComplete misses some conversion rules\n";
        Error_Report(kSrcParsOps, 285, kMisses);
        CompletionMisses(state.places, *state.category, kMisses);
    }
    if (!state.defaultIntern) state.defaultIntern = state.defaultSurface;
    if (!state.defaultSurface) state.defaultSurface = state.defaultIntern;
    if (state.defaultIntern) state.category->DefaultInternUnitSet(state.defaultIntern);
    if (state.defaultSurface) state.category->DefaultSurfaceUnitSet(state.defaultSurface);
    DefaultsCheck(*state.category, state.places.categoryHead);
    if (state.newCategory) CategoryNameCheck(state.admin, state.category->Name(), state.places.categoryHead);
    CategoryHandOver(state);
    state.rule.reset();
    state.defaultIntern = nullptr;
    state.defaultSurface = nullptr;
}

X_ParsNodePtr Expr_Const(X_ParsNodePtr expression) {
    if (!expression) return nullptr;
    expression->Tree_Opt();
    if (expression->IsConstantTree()) return expression;
    ParseError_ReportAt(expression.get(), L"no constant expression\n");
    expression->Print(0, L"should be Const-Expr");
    return nullptr;
}
