// The unit: conversion to itself and through its rules, number formats and
// formatted values, and the rules it accepts or refuses and who owns them.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "quantor/category.h"
#include "quantor/unit.h"
#include "support/rules.h"
#include "support/sink_capture.h"

namespace {

class UnitTest : public ::testing::Test {
protected:
    // Adds `rule` to `unit`; a rule not taken over stays with the caller and is freed here.
    static int Add(QtrUnitStd& unit, QtrConvInfoStd* rule) {
        const int code = unit.ConvInfoAdd(rule);
        if (code != 1) delete rule;
        return code;
    }

    QtrCategoryStd length_{L"length", nullptr};
    QtrUnitStd km_{&length_, L"km"}, m_{&length_, L"m"}, x_{&length_, L"x"};
    LogCapture log_;
};

TEST_F(UnitTest, ConvertsToItselfWithoutARuleAndElseThroughTheTargetsRule) {
    double result = 0.0;
    EXPECT_TRUE(km_.Convert(result, L"km", 5.0));
    EXPECT_EQ(result, 5.0);

    ASSERT_EQ(Add(km_, NewRule(&m_, &km_, 1000.0)), 1);
    EXPECT_TRUE(km_.Convert(result, L"m", 2.5));
    EXPECT_EQ(result, 2500.0);
    EXPECT_EQ(km_.ConvertOutputGen(&m_, 1.23456, 1, 2), L"1234.56");
    const QtrUnitStd otherKm(&length_, L"km");
    double same = 0.0;
    EXPECT_TRUE(km_.Convert(same, &otherKm, 7.0)) << "a unit of the same name is the unit itself";
    EXPECT_EQ(same, 7.0);

    EXPECT_FALSE(km_.Convert(result, L"yd", 2.5));
    EXPECT_EQ(result, 2500.0);
    EXPECT_EQ(km_.ConvertOutputGen(L"yd", 2.5, 3, 2), L"");
    EXPECT_EQ(log_.Messages(), (std::vector<std::wstring>{
                                   L"QtrUnitStd::Convert(,yd,2.5): no conv. info\n",
                                   L"QtrUnitStd::Convert(,yd,2.5): no conv. info\n",
                                   L"QtrUnitStd::ConvertOutputGen(\"yd\",2.5,3,2): cannot convert\n"}));
}

TEST_F(UnitTest, FormatsItsOwnValuesWithoutShiftsAndOthersByTheirRule) {
    ASSERT_EQ(Add(km_, NewRule(&km_, &km_, 1.0, 0.0, true, 5, 5)), 1);
    ASSERT_EQ(Add(km_, NewRule(&x_, &km_, 2.0, 0.0, true, 1, -1)), 1);
    EXPECT_EQ(km_.FormatStringGen(L"km", 3, 2), L"%6.2f") << "the identity rule's shifts are not applied";
    EXPECT_EQ(km_.FormatStringGen(L"x", 3, 2), L"%6.1f");
    EXPECT_EQ(km_.FormatStringGen(L"yd", 3, 2), L"%g");
    EXPECT_EQ(km_.FormatStringGen(static_cast<const wchar_t*>(nullptr), 3, 2), L"%g");
    EXPECT_TRUE(log_.Entries().empty());
}

TEST_F(UnitTest, AnExplicitRuleDisplacesOnlyADerivedOne) {
    QtrConvInfoStd* derived = NewRule(&m_, &km_, 999.0, 0.0, false);
    EXPECT_EQ(Add(km_, derived), 1);
    EXPECT_EQ(Add(km_, NewRule(&m_, &km_, 998.0, 0.0, false)), 0);
    EXPECT_EQ(km_.ConvInfo(L"m"), derived);

    QtrConvInfoStd* explicitRule = NewRule(&m_, &km_, 1000.0);
    EXPECT_EQ(Add(km_, explicitRule), 1);
    EXPECT_EQ(Add(km_, NewRule(&m_, &km_, 1001.0)), 0);
    EXPECT_EQ(Add(km_, NewRule(&m_, &km_, 1002.0, 0.0, false)), 0);
    EXPECT_EQ(km_.ConvInfo(L"m"), explicitRule);

    QtrConvInfoStd* replacement = NewRule(&m_, &km_, 2.0);
    EXPECT_FALSE(km_.ConvInfoReplace(&x_, replacement));
    EXPECT_EQ(log_.Messages(), std::vector<std::wstring>{L"QtrUnitStd::ConvInfoReplace([x],): not found\n"});
    EXPECT_TRUE(km_.ConvInfoReplace(&m_, replacement));
    EXPECT_EQ(km_.ConvInfo(L"m"), replacement);
}

TEST_F(UnitTest, KeepsCopiesOfRulesLikeRulesItTakesOver) {
    // More copies than one block holds, so that earlier copies must stay put.
    std::vector<std::unique_ptr<QtrUnitStd>> targets;
    std::vector<const QtrConvInfoBase*> held;
    for (int i = 0; i < 40; ++i) {
        targets.push_back(std::make_unique<QtrUnitStd>(&length_, (L"t" + std::to_wstring(i)).c_str()));
        const std::unique_ptr<QtrConvInfoStd> rule(NewRule(targets.back().get(), &km_, 1.0 + i, 0.0, false));
        ASSERT_EQ(km_.ConvInfoAddCopy(*rule), 1);
        held.push_back(km_.ConvInfo(targets.back().get()));
        ASSERT_NE(held.back(), rule.get());
        if (i == 4) km_.ConvInfosReserve(30);
    }
    for (int i = 0; i < 40; ++i) EXPECT_EQ(km_.ConvInfo(targets[i].get())->Factor(), 1.0 + i);
    EXPECT_EQ(km_.ConvInfosHeld(), held);

    const std::unique_ptr<QtrConvInfoStd> again(NewRule(targets[3].get(), &km_, 7.0, 0.0, false));
    EXPECT_EQ(km_.ConvInfoAddCopy(*again), 0);
    const std::unique_ptr<QtrConvInfoStd> foreign(NewRule(&km_, &m_, 7.0));
    EXPECT_EQ(km_.ConvInfoAddCopy(*foreign), -1);
    // An explicit rule displaces a stored copy, and the unit frees only what it allocated.
    EXPECT_EQ(Add(km_, NewRule(targets[3].get(), &km_, 9.0)), 1);
    EXPECT_EQ(km_.ConvInfo(targets[3].get())->Factor(), 9.0);
    const std::unique_ptr<QtrConvInfoStd> identity(NewRule(&km_, &km_, 1.0));
    EXPECT_EQ(km_.ConvInfoAddCopy(*identity), 1);
    EXPECT_TRUE(km_.ConvInfoReplace(&km_, NewRule(&km_, &km_, 1.0)));
    EXPECT_EQ(km_.ConvInfosHeld().size(), 41u);
}

TEST_F(UnitTest, FindsEveryRuleByNameAndByUnitAndListsThemInNameOrder) {
    // Enough targets to grow the table several times, named so that the
    // order of names differs from the order of adding.
    std::vector<std::unique_ptr<QtrUnitStd>> targets;
    for (int i = 0; i < 300; ++i) {
        targets.push_back(std::make_unique<QtrUnitStd>(&length_, (L"t" + std::to_wstring((i * 37) % 300)).c_str()));
        ASSERT_EQ(Add(km_, NewRule(targets.back().get(), &km_, 1.0 + i)), 1);
    }
    const QtrUnitStd sameName(&length_, L"t5");
    EXPECT_EQ(km_.ConvInfo(L"t5"), km_.ConvInfo(&sameName)) << "names, not objects, are the keys";
    double byObject = 0.0, byName = 0.0;
    EXPECT_TRUE(km_.Convert(byObject, &sameName, 1.0));
    EXPECT_TRUE(km_.Convert(byName, L"t5", 1.0));
    EXPECT_EQ(byObject, byName);
    for (const auto& target : targets) {
        const QtrConvInfoBase* rule = km_.ConvInfo(target.get());
        ASSERT_NE(rule, nullptr);
        EXPECT_EQ(rule->TrgtUnit(), target.get());
        EXPECT_EQ(km_.ConvInfo(target->Name().c_str()), rule);
        EXPECT_TRUE(km_.Convert(byObject, target.get(), 1.0));
        EXPECT_EQ(byObject, rule->Convert(1.0));
    }
    EXPECT_EQ(km_.ConvInfo(L"t300"), nullptr);
    EXPECT_EQ(km_.ConvInfo(L""), nullptr);

    std::vector<const QtrConvInfoBase*> rules;
    ASSERT_EQ(km_.ConvInfosGet(rules), 300);
    for (size_t i = 1; i < rules.size(); ++i)
        EXPECT_LT(rules[i - 1]->TrgtUnit()->Name(), rules[i]->TrgtUnit()->Name());
}

TEST_F(UnitTest, AReplacementToAnotherTargetStaysUnderTheKeyItReplaced) {
    ASSERT_EQ(Add(km_, NewRule(&m_, &km_, 1000.0)), 1);
    ASSERT_EQ(Add(km_, NewRule(&km_, &km_, 1.0)), 1);
    QtrConvInfoStd* toX = NewRule(&x_, &km_, 3.0);
    ASSERT_TRUE(km_.ConvInfoReplace(&m_, toX));
    EXPECT_EQ(km_.ConvInfo(L"m"), toX);
    EXPECT_EQ(km_.ConvInfo(L"x"), nullptr);
    double result = 0.0;
    EXPECT_TRUE(km_.Convert(result, &m_, 1.0));
    EXPECT_EQ(result, 3.0) << "converting into m follows the rule kept under m";
    EXPECT_FALSE(km_.Convert(result, &x_, 1.0)) << "no rule is kept under x";
    QtrConvInfoStd* alsoToX = NewRule(&x_, &km_, 4.0);
    EXPECT_EQ(Add(km_, alsoToX), 1) << "x is a key of its own";
    EXPECT_EQ(km_.ConvInfo(L"x"), alsoToX);
    std::vector<const QtrConvInfoBase*> rules;
    km_.ConvInfosGet(rules);
    EXPECT_EQ(rules, (std::vector<const QtrConvInfoBase*>{km_.ConvInfo(L"km"), toX, alsoToX}));
    // Replaced once more by a rule to its key's target, the key is the target's again.
    QtrConvInfoStd* backToM = NewRule(&m_, &km_, 1000.0);
    ASSERT_TRUE(km_.ConvInfoReplace(&m_, backToM));
    EXPECT_EQ(km_.ConvInfo(&m_), backToM);
}

TEST_F(UnitTest, RefusesRulesThatDoNotStartHereOrLeaveTheCategory) {
    const QtrCategoryStd time(L"time", nullptr), otherLength(L"length", nullptr);
    const QtrUnitStd second(&time, L"s"), uncategorised(nullptr, L"u"), otherKm(&otherLength, L"km");
    QtrUnitStd homeless(nullptr, L"km");
    const std::wstring incomplete = L"Unit_IsCompatible_ConvInfo: incomplete conv-info, pSrc or pTrgt == NULL\n";
    const std::wstring missing = L"Unit_IsCompatible_ConvInfo: category missing\n";
    // The unit, the rule's target and source, and why it is refused.
    const std::tuple<QtrUnitStd&, const QtrUnitBase*, const QtrUnitBase*, std::wstring> cases[] = {
        {km_, &m_, nullptr, incomplete}, {km_, nullptr, &km_, incomplete},
        {km_, &x_, &m_, L"Unit_IsCompatible_ConvInfo: \"km\" != \"m\"\n"}, {homeless, &m_, &homeless, missing},
        {km_, &uncategorised, &km_, missing},
        {km_, &second, &km_, L"Unit_IsCompatible_ConvInfo: \"length\" != \"time\"\n"}};
    for (const auto& [unit, target, source, reason] : cases) {
        log_.Clear();
        EXPECT_EQ(Add(unit, NewRule(target, source, 1.0)), -1);
        EXPECT_EQ(log_.Messages(),
                  (std::vector<std::wstring>{reason, L"QtrUnitStd::ConvInfoAdd: incompatible conversion-info\n"}));
    }
    EXPECT_EQ(km_.ConvInfo(L"m"), nullptr);
    // Names, not objects, decide.
    EXPECT_EQ(Add(km_, NewRule(&m_, &otherKm, 1000.0)), 1);
}

}  // namespace
