// The conversion rule: a linear formula from a source unit to a target unit
// with two number-format shifts, its composition with another rule, its
// inverse, and its text as a `convert` statement.
#include <climits>
#include <cstddef>
#include <cmath>
#include <optional>
#include <utility>

#include "etc/diag_log.h"
#include "quantor/convinfo.h"
#include "units/number_format.h"
#include "units/number_text.h"
#include "units/rule_formula_text.h"
#include "units/statement_text.h"

using quantor::detail::AppendInteger;
using quantor::detail::AppendRuleFormulaText;
using quantor::detail::AppendStatementName;
using quantor::detail::StatementWrite;

namespace {

// Shifts are added and negated in a wider type and clamped, so extreme
// values saturate instead of overflowing.
int ClampToInt(long long value) {
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}

// Digits requested for one side of the decimal point plus the rule's shift;
// a negative request switches that side off.
int ShiftedDigits(int digits, int shift) {
    return digits < 0 ? 0 : ClampToInt(static_cast<long long>(digits) + shift);
}

// The unit's name for messages; null (printed "(null)") for a missing unit.
const wchar_t* NameForMessage(const QtrUnitBase* unit) { return unit ? unit->Name().c_str() : nullptr; }

}  // namespace

QtrConvInfoStd::QtrConvInfoStd() { Clear(); }

void QtrConvInfoStd::Clear() {
    target_ = nullptr;
    source_ = nullptr;
    preShift_ = 0;
    postShift_ = 0;
    factor_ = 0.0;
    addend_ = 0.0;
    explicit_ = false;
}

double QtrConvInfoStd::Addend() const { return addend_; }
double QtrConvInfoStd::Factor() const { return factor_; }

void QtrConvInfoStd::FormatDeltas(int& pre, int& post) const {
    pre = preShift_;
    post = postShift_;
}

int QtrConvInfoStd::FmtPostDecpnt() const { return postShift_; }
int QtrConvInfoStd::FmtPreDecpnt() const { return preShift_; }

std::wstring QtrConvInfoStd::FormatStringGen(int preDigits, int postDigits) const {
    return quantor::detail::NumberFormat(ShiftedDigits(preDigits, preShift_), ShiftedDigits(postDigits, postShift_));
}

bool QtrConvInfoStd::Is_Explicit() const { return explicit_; }
const QtrUnitBase* QtrConvInfoStd::SrcUnit() const { return source_; }
const QtrUnitBase* QtrConvInfoStd::TrgtUnit() const { return target_; }
double QtrConvInfoStd::Convert(double value) const { return value * factor_ + addend_; }

void QtrConvInfoStd::SetFormula(double factor, double addend) {
    factor_ = factor;
    addend_ = addend;
}

void QtrConvInfoStd::SetUnits(const QtrUnitBase* target, const QtrUnitBase* source) {
    target_ = target;
    source_ = source;
}

void QtrConvInfoStd::SetPreFmtshft(int shift) { preShift_ = shift; }
void QtrConvInfoStd::SetPostFmtshft(int shift) { postShift_ = shift; }
void QtrConvInfoStd::SetExplicit(bool isExplicit) { explicit_ = isExplicit; }

namespace {

// A derived rule keeps a finite factor other than zero and a finite addend:
// a chain or an inverse that overflows or underflows would convert every
// value to zero, infinity or NaN, so it is not made.
bool IsStorableFormula(double factor, double addend) {
    return std::isfinite(factor) && factor != 0.0 && std::isfinite(addend);
}

}  // namespace

std::optional<QtrConvInfoStd> QtrConvInfoStd::Chain(const QtrConvInfoBase* outer, const QtrConvInfoBase* inner) {
    const QtrUnitBase* outerTarget = outer ? outer->TrgtUnit() : nullptr;
    const QtrUnitBase* outerSource = outer ? outer->SrcUnit() : nullptr;
    const QtrUnitBase* innerTarget = inner ? inner->TrgtUnit() : nullptr;
    const QtrUnitBase* innerSource = inner ? inner->SrcUnit() : nullptr;
    // The very unit object must link the two rules; equal names are not enough.
    if (!outerSource || outerSource != innerTarget) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrConvInfoStd::NewChain([%s<=%s],[%s<=%s]): inconsistent\n",
                     NameForMessage(outerTarget), NameForMessage(outerSource), NameForMessage(innerTarget),
                     NameForMessage(innerSource));
        return std::nullopt;
    }
    const double factor = outer->Factor() * inner->Factor();
    const double addend = outer->Factor() * inner->Addend() + outer->Addend();
    if (!IsStorableFormula(factor, addend)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrConvInfoStd::NewChain([%s<=%s],[%s<=%s]): out of range\n",
                     NameForMessage(outerTarget), NameForMessage(outerSource), NameForMessage(innerTarget),
                     NameForMessage(innerSource));
        return std::nullopt;
    }
    std::optional<QtrConvInfoStd> chain(std::in_place);
    chain->SetFormula(factor, addend);
    chain->SetUnits(outerTarget, innerSource);
    chain->SetPreFmtshft(ClampToInt(static_cast<long long>(outer->FmtPreDecpnt()) + inner->FmtPreDecpnt()));
    chain->SetPostFmtshft(ClampToInt(static_cast<long long>(outer->FmtPostDecpnt()) + inner->FmtPostDecpnt()));
    return chain;
}

QtrConvInfoStd* QtrConvInfoStd::NewChain(const QtrConvInfoBase* outer, const QtrConvInfoBase* inner) {
    std::optional<QtrConvInfoStd> chain = Chain(outer, inner);
    return chain ? new QtrConvInfoStd(*chain) : nullptr;
}

std::optional<QtrConvInfoStd> QtrConvInfoStd::Inverse() const {
    if (factor_ == 0.0) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n");
        return std::nullopt;
    }
    if (!IsStorableFormula(1.0 / factor_, -addend_ / factor_)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrConvInfoStd::NewInverse(): 1 / Factor() out of range\n");
        return std::nullopt;
    }
    std::optional<QtrConvInfoStd> inverse(std::in_place);
    inverse->SetFormula(1.0 / factor_, -addend_ / factor_);
    inverse->SetUnits(source_, target_);
    inverse->SetPreFmtshft(ClampToInt(-static_cast<long long>(preShift_)));
    inverse->SetPostFmtshft(ClampToInt(-static_cast<long long>(postShift_)));
    return inverse;
}

QtrConvInfoStd* QtrConvInfoStd::NewInverse() const {
    std::optional<QtrConvInfoStd> inverse = Inverse();
    return inverse ? new QtrConvInfoStd(*inverse) : nullptr;
}

// Room for a whole `convert` statement of usual names, so that it is built
// with one allocation.
constexpr std::size_t kStatementRoom = 128;

// The statement describes one target unit in source units, the reverse of
// the value conversion. A negative factor keeps its sign on the printed
// number so that the statement reads back into the same rule.
void QtrConvInfoStd::PrettyPrint(QtrTextFile* file) const {
    if (!target_ || !source_) return;
    std::wstring text;
    text.reserve(kStatementRoom);
    text += L"\n\tconvert  ";
    AppendStatementName(text, target_->Name());
    text += L"\t<- ";
    AppendStatementName(text, source_->Name());
    AppendRuleFormulaText(text, factor_, addend_);
    if (preShift_ != 0 && postShift_ != 0) {
        text += L"\tformat ";
        AppendInteger(text, preShift_);
        text += L", ";
        AppendInteger(text, postShift_);
    }
    text += explicit_ ? L";\t// explicit\n" : L";\n";
    StatementWrite(file, text);
}
