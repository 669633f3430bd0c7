// The unit: converts its values into the other units of its category through
// the rules it owns, builds number formats for converted values, and checks
// every rule it is given against its own name and category.
#include "quantor/unit.h"

#include <typeinfo>

#include "etc/diag_log.h"
#include "quantor/convinfo.h"
#include "units/name_hash.h"
#include "units/number_format.h"
#include "units/statement_text.h"

namespace {

// The unit's name as a lookup key; null for a missing unit, which then
// answers like an unknown name.
const wchar_t* NameOf(const QtrUnitBase* unit) { return unit ? unit->Name().c_str() : nullptr; }

// Whether two names are the same text; the very same string needs no
// comparing, as when a rule leads from the unit itself within its category.
bool SameText(const std::wstring& a, const std::wstring& b) { return &a == &b || a == b; }

// Reports why `rule` cannot belong to the unit `name` of `category`.
bool IsCompatibleRule(const std::wstring& name, const QtrCategoryBase* category, const QtrConvInfoBase* rule) {
    const QtrUnitBase* source = rule ? rule->SrcUnit() : nullptr;
    const QtrUnitBase* target = rule ? rule->TrgtUnit() : nullptr;
    if (!source || !target) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Unit_IsCompatible_ConvInfo: incomplete conv-info, pSrc or pTrgt == NULL\n");
        return false;
    }
    if (!SameText(source->Name(), name)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Unit_IsCompatible_ConvInfo: \"%s\" != \"%s\"\n", name, source->Name());
        return false;
    }
    const QtrCategoryBase* targetCategory = target->Category();
    if (!category || !targetCategory) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Unit_IsCompatible_ConvInfo: category missing\n");
        return false;
    }
    if (!SameText(category->Name(), targetCategory->Name())) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Unit_IsCompatible_ConvInfo: \"%s\" != \"%s\"\n", category->Name(),
                     targetCategory->Name());
        return false;
    }
    return true;
}

// Reports that no rule leads to the unit `name` (a text or a null pointer);
// answers false.
template <typename Name>
bool NoRuleReported(const Name& name, double value) {
    Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::Convert(,%s,%g): no conv. info\n", name, value);
    return false;
}

// Only rules of this library are owned and freed by a unit; rules of other
// implementations are left to whoever made them.
void DeleteIfOwned(const QtrConvInfoBase* rule) {
    if (rule && typeid(*rule) == typeid(QtrConvInfoStd)) delete static_cast<const QtrConvInfoStd*>(rule);
    else delete dynamic_cast<const QtrConvInfoStd*>(rule);
}

}  // namespace

QtrUnitStd::QtrUnitStd(const QtrCategoryBase* category, const wchar_t* name)
    : name_(name ? name : L""), nameHash_(quantor::detail::NameHash(name_)), category_(category) {}

QtrUnitStd::~QtrUnitStd() {
    for (const QtrConvInfoBase* rule : rules_.Rules()) RuleFree(rule);
    rules_.Clear();
    category_ = nullptr;
}

const QtrCategoryBase* QtrUnitStd::Category() const { return category_; }

const std::wstring& QtrUnitStd::Name() const {
    if (name_.empty()) Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::Name(): empty!!!\n");
    return name_;
}

bool QtrUnitStd::IsOwnName(const wchar_t* unitName) const { return unitName && name_ == unitName; }

const QtrUnitStd* QtrUnitStd::NamedUnitStd(const QtrUnitBase& unit) {
    if (typeid(unit) != typeid(QtrUnitStd)) return nullptr;
    const auto& own = static_cast<const QtrUnitStd&>(unit);
    return own.name_.empty() ? nullptr : &own;
}

const QtrConvInfoBase* QtrUnitStd::RuleTo(const QtrUnitStd& unit) const {
    return rules_.Find(&unit, unit.name_, unit.nameHash_);
}

const QtrConvInfoBase* QtrUnitStd::RuleTo(const QtrUnitBase& unit) const {
    const QtrUnitStd* own = NamedUnitStd(unit);
    return own ? RuleTo(*own) : rules_.Find(unit.Name());
}

// A unit given by pointer is converted into by its name, whose length is
// known, so its text is neither measured nor compared character by character;
// a named unit of this library brings its name hash as well.
bool QtrUnitStd::Convert(double& result, const QtrUnitBase* unit, double value) const {
    if (!unit) return Convert(result, NameOf(unit), value);
    const QtrUnitStd* own = NamedUnitStd(*unit);
    if (!own) return ConvertNamed(result, unit->Name(), value);
    if (own == this || (own->nameHash_ == nameHash_ && own->name_ == name_)) {
        result = value;
        return true;
    }
    if (const QtrConvInfoBase* rule = RuleTo(*own)) {
        result = rule->Convert(value);
        return true;
    }
    return NoRuleReported(own->name_, value);
}

bool QtrUnitStd::Convert(double& result, const wchar_t* unitName, double value) const {
    return unitName ? ConvertNamed(result, unitName, value) : NoRuleReported(unitName, value);
}

bool QtrUnitStd::ConvertNamed(double& result, std::wstring_view name, double value) const {
    if (name == name_) {
        result = value;
        return true;
    }
    if (const QtrConvInfoBase* rule = rules_.Find(name)) {
        result = rule->Convert(value);
        return true;
    }
    return NoRuleReported(name, value);
}

std::wstring QtrUnitStd::ConvertOutputGen(const QtrUnitBase* unit, double value, int preDigits,
                                          int postDigits) const {
    return ConvertOutputGen(NameOf(unit), value, preDigits, postDigits);
}

std::wstring QtrUnitStd::ConvertOutputGen(const wchar_t* unitName, double value, int preDigits,
                                          int postDigits) const {
    double converted = 0.0;
    if (!Convert(converted, unitName, value)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::ConvertOutputGen(\"%s\",%g,%d,%d): cannot convert\n",
                     unitName, value, preDigits, postDigits);
        return {};
    }
    return QtrFormat(FormatStringGen(unitName, preDigits, postDigits).c_str(), converted);
}

const QtrConvInfoBase* QtrUnitStd::ConvInfo(const QtrUnitBase* unit) const { return unit ? RuleTo(*unit) : nullptr; }

const QtrConvInfoBase* QtrUnitStd::ConvInfo(const wchar_t* unitName) const {
    return unitName ? rules_.Find(unitName) : nullptr;
}

bool QtrUnitStd::FmtPreDecpnt(int& shift, const QtrUnitBase* unit) const {
    const QtrConvInfoBase* rule = ConvInfo(unit);
    if (rule) shift = rule->FmtPreDecpnt();
    return rule != nullptr;
}

bool QtrUnitStd::FmtPostDecpnt(int& shift, const QtrUnitBase* unit) const {
    const QtrConvInfoBase* rule = ConvInfo(unit);
    if (rule) shift = rule->FmtPostDecpnt();
    return rule != nullptr;
}

std::wstring QtrUnitStd::FormatStringGen(const QtrUnitBase* unit, int preDigits, int postDigits) const {
    return FormatStringGen(NameOf(unit), preDigits, postDigits);
}

std::wstring QtrUnitStd::FormatStringGen(const wchar_t* unitName, int preDigits, int postDigits) const {
    // A value shown in its own unit takes the digits as asked, without shifts.
    if (IsOwnName(unitName)) return quantor::detail::NumberFormat(preDigits, postDigits);
    if (const QtrConvInfoBase* rule = ConvInfo(unitName)) return rule->FormatStringGen(preDigits, postDigits);
    return L"%g";
}

int QtrUnitStd::ConvInfoAdd(const QtrConvInfoBase* rule) {
    if (!IsCompatibleRule(name_, category_, rule)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::ConvInfoAdd: incompatible conversion-info\n");
        return -1;
    }
    const QtrUnitStd* target = NamedUnitStd(*rule->TrgtUnit());
    if (target ? rules_.Insert(rule, target->nameHash_) : rules_.Insert(rule)) return 1;
    // Only an explicit rule displaces a held one, and only a derived one.
    if (rule->Is_Explicit() && !RuleTo(*rule->TrgtUnit())->Is_Explicit())
        return ConvInfoReplace(rule->TrgtUnit(), rule) ? 1 : 0;
    return 0;
}

bool QtrUnitStd::ConvInfoReplace(const QtrUnitBase* target, const QtrConvInfoBase* rule) {
    // A held rule is never given up for no rule at all.
    if (!rule) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::ConvInfoReplace([%s],): no conv. info\n", NameOf(target));
        return false;
    }
    const QtrConvInfoBase* held = target ? rules_.Replace(target->Name(), rule) : nullptr;
    if (!held) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrUnitStd::ConvInfoReplace([%s],): not found\n", NameOf(target));
        return false;
    }
    if (held != rule) RuleFree(held);
    return true;
}

int QtrUnitStd::ConvInfoAddCopy(const QtrConvInfoStd& rule) {
    const int added = ConvInfoAdd(store_.Add(rule));
    if (added != 1) store_.DropLast();
    return added;
}

void QtrUnitStd::RuleFree(const QtrConvInfoBase* rule) const {
    if (!store_.Holds(rule)) DeleteIfOwned(rule);
}

// The rules still to come are those completion derives, which it adds as
// copies.
void QtrUnitStd::ConvInfosReserve(std::size_t count) {
    const std::size_t held = rules_.Rules().size();
    if (count > held) store_.Reserve(count - held);
    rules_.Reserve(count);
}

int QtrUnitStd::ConvInfosGet(std::vector<const QtrConvInfoBase*>& out) const {
    out = rules_.RulesByKey();
    return static_cast<int>(out.size());
}

void QtrUnitStd::PrettyPrint(QtrTextFile* file) const {
    quantor::detail::StatementWrite(file, QtrFormat(L"\tunit %s;\n", quantor::detail::StatementName(name_)));
}
