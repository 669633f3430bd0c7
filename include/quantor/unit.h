// The library's unit: a name, its category and the rules that lead from it to
// the other units of the category, keyed by target name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quantor/model.h"
#include "quantor/rule_store.h"
#include "quantor/rule_table.h"

class QUANTOR_API QtrUnitStd : public QtrUnitBase {
public:
    QtrUnitStd(const QtrCategoryBase* category, const wchar_t* name);
    QtrUnitStd(const QtrUnitStd&) = delete;
    QtrUnitStd& operator=(const QtrUnitStd&) = delete;
    // Frees the held rules of type QtrConvInfoStd; rules of other types are
    // left to whoever made them.
    ~QtrUnitStd() override;

    const QtrCategoryBase* Category() const override;
    const std::wstring& Name() const override;
    bool Convert(double& result, const QtrUnitBase* unit, double value) const override;
    bool Convert(double& result, const wchar_t* unitName, double value) const override;
    std::wstring ConvertOutputGen(const QtrUnitBase* unit, double value, int preDigits,
                                  int postDigits) const override;
    std::wstring ConvertOutputGen(const wchar_t* unitName, double value, int preDigits,
                                  int postDigits) const override;
    const QtrConvInfoBase* ConvInfo(const QtrUnitBase* unit) const override;
    const QtrConvInfoBase* ConvInfo(const wchar_t* unitName) const override;
    bool FmtPreDecpnt(int& shift, const QtrUnitBase* unit) const override;
    bool FmtPostDecpnt(int& shift, const QtrUnitBase* unit) const override;
    std::wstring FormatStringGen(const QtrUnitBase* unit, int preDigits, int postDigits) const override;
    std::wstring FormatStringGen(const wchar_t* unitName, int preDigits, int postDigits) const override;

    // 1: the unit took the rule over; 0: a rule for that target is kept and
    // the caller still owns `rule`; -1: incompatible, reported, caller owns it.
    int ConvInfoAdd(const QtrConvInfoBase* rule);
    // ConvInfoAdd for a copy of `rule` that the unit stores beside its other
    // copies, so that no heap object is made for it; answers as ConvInfoAdd,
    // and the caller keeps `rule` either way.
    int ConvInfoAddCopy(const QtrConvInfoStd& rule);
    // Replaces the rule kept for `target`, taking `rule` over; false (and the
    // caller keeps `rule`) when no rule for that target is held.
    bool ConvInfoReplace(const QtrUnitBase* target, const QtrConvInfoBase* rule);
    // Makes room for `count` rules in all; completion knows how many a unit
    // will hold.
    void ConvInfosReserve(std::size_t count);
    // Every rule in the order it was added, without a copy.
    const std::vector<const QtrConvInfoBase*>& ConvInfosHeld() const { return rules_.Rules(); }
    // Every rule in ascending order of target name; answers how many.
    int ConvInfosGet(std::vector<const QtrConvInfoBase*>& out) const;
    // Writes "\tunit <name>;\n"; to the trace when `file` is null.
    void PrettyPrint(QtrTextFile* file) const;

private:
    // Whether `unitName` is this unit's own name; conversion to the unit
    // itself needs no rule.
    bool IsOwnName(const wchar_t* unitName) const;
    // Converts into the unit called `name`: the unit itself needs no rule,
    // any other the rule kept under its name.
    bool ConvertNamed(double& result, std::wstring_view name, double value) const;
    // `unit` as a unit of this library with a name, whose rules are found by
    // its name hash and address; null for any other unit.
    static const QtrUnitStd* NamedUnitStd(const QtrUnitBase& unit);
    // The rule kept under the name of `unit`, or null.
    const QtrConvInfoBase* RuleTo(const QtrUnitBase& unit) const;
    const QtrConvInfoBase* RuleTo(const QtrUnitStd& unit) const;

    std::wstring name_;
    // The model name hash of name_, which never changes.
    std::uint64_t nameHash_;
    const QtrCategoryBase* category_;
    // Frees `rule` unless it is stored by value or not of this library.
    void RuleFree(const QtrConvInfoBase* rule) const;

    // The copies of rules held by value (ConvInfoAddCopy).
    quantor::detail::RuleStore store_;
    // Owned rules keyed by target name; a rule's target unit must outlive the
    // unit, as the units of one category do.
    quantor::detail::RuleTable rules_;
};
