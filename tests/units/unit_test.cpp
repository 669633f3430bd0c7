// The unit: conversion to itself and through its rules, number formats and
// formatted values, the rules it accepts or refuses and who owns them, and
// the `unit` statement it prints.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// A category that knows nothing but its name.
class FakeCategory : public QtrCategoryBase {
public:
    explicit FakeCategory(std::wstring name) : name_(std::move(name)) {}
    const QtrAdminBase* AdminPtr() const override { return nullptr; }
    bool Convert(double&, const wchar_t*, double, const wchar_t*) const override { return false; }
    const QtrConvInfoBase* ConvInfo(const wchar_t*, const wchar_t*) const override { return nullptr; }
    const QtrUnitBase* DefaultInternUnitGet(std::wstring&) const override { return nullptr; }
    const QtrUnitBase* DefaultInternUnitGet() const override { return nullptr; }
    void DefaultInternUnitSet(const QtrUnitBase*) override {}
    bool DefaultInternUnitSet(const wchar_t*) override { return false; }
    const QtrUnitBase* DefaultSurfaceUnitGet(std::wstring&) const override { return nullptr; }
    const QtrUnitBase* DefaultSurfaceUnitGet() const override { return nullptr; }
    void DefaultSurfaceUnitSet(const QtrUnitBase*) override {}
    bool DefaultSurfaceUnitSet(const wchar_t*) override { return false; }
    const std::wstring& Name() const override { return name_; }
    void UnitNames(std::vector<std::wstring>&) const override {}
    void UnitPtrs(std::vector<const QtrUnitBase*>&) const override {}
    const QtrUnitBase* Unit(const wchar_t*) const override { return nullptr; }

private:
    std::wstring name_;
};

// A rule of another implementation; it records its own destruction.
class ForeignRule : public QtrConvInfoBase {
public:
    ForeignRule(const QtrUnitBase* target, const QtrUnitBase* source, bool& destroyed)
        : target_(target), source_(source), destroyed_(destroyed) {}
    ~ForeignRule() override { destroyed_ = true; }
    double Addend() const override { return 0.0; }
    double Factor() const override { return 1.0; }
    void FormatDeltas(int& pre, int& post) const override { pre = post = 0; }
    int FmtPostDecpnt() const override { return 0; }
    int FmtPreDecpnt() const override { return 0; }
    std::wstring FormatStringGen(int, int) const override { return L"%g"; }
    bool Is_Explicit() const override { return false; }
    const QtrUnitBase* SrcUnit() const override { return source_; }
    const QtrUnitBase* TrgtUnit() const override { return target_; }
    double Convert(double value) const override { return value; }

private:
    const QtrUnitBase* target_;
    const QtrUnitBase* source_;
    bool& destroyed_;
};

// Units of one category with a log capture; the previous sinks are restored
// after each test.
class UnitTest : public ::testing::Test {
protected:
    void SetUp() override {
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { log_.push_back(entry.message); });
        previousTrace_ = QtrSetTraceSink([this](const std::wstring& text) { trace_ += text; });
    }
    void TearDown() override {
        QtrSetLogSink(previousLog_);
        QtrSetTraceSink(previousTrace_);
    }

    // A new rule from `source` to `target`; the caller hands it on or owns it.
    static QtrConvInfoStd* NewRule(const QtrUnitBase* target, const QtrUnitBase* source, double factor,
                                   bool isExplicit = true, int pre = 0, int post = 0) {
        auto* rule = new QtrConvInfoStd;
        rule->SetUnits(target, source);
        rule->SetFormula(factor, 0.0);
        rule->SetExplicit(isExplicit);
        rule->SetPreFmtshft(pre);
        rule->SetPostFmtshft(post);
        return rule;
    }

    // Adds a rule that must be refused; answers the code and frees the rule.
    int AddRefused(QtrUnitStd& unit, QtrConvInfoStd* rule) {
        const int code = unit.ConvInfoAdd(rule);
        delete rule;
        return code;
    }

    FakeCategory length_{L"length"};
    QtrUnitStd km_{&length_, L"km"};
    QtrUnitStd m_{&length_, L"m"};
    QtrUnitStd x_{&length_, L"x"};
    std::vector<std::wstring> log_;
    std::wstring trace_;

private:
    QtrLogSink previousLog_;
    QtrTraceSink previousTrace_;
};

TEST_F(UnitTest, KeepsItsNameAndCategory) {
    EXPECT_EQ(km_.Name(), L"km");
    EXPECT_EQ(km_.Category(), &length_);
    EXPECT_TRUE(log_.empty());

    const QtrUnitStd unnamed(&length_, nullptr);
    EXPECT_EQ(unnamed.Name(), L"");
    EXPECT_EQ(log_, std::vector<std::wstring>{L"QtrUnitStd::Name(): empty!!!\n"});
}

TEST_F(UnitTest, ConvertsToItselfWithoutARule) {
    double result = 0.0;
    EXPECT_TRUE(km_.Convert(result, L"km", 5.0));
    EXPECT_EQ(result, 5.0);
    EXPECT_TRUE(km_.Convert(result, &km_, 7.0));
    EXPECT_EQ(result, 7.0);
    EXPECT_TRUE(log_.empty());
}

TEST_F(UnitTest, ConvertsThroughTheRuleForTheTarget) {
    ASSERT_EQ(km_.ConvInfoAdd(NewRule(&m_, &km_, 1000.0)), 1);
    double result = 0.0;
    EXPECT_TRUE(km_.Convert(result, L"m", 2.5));
    EXPECT_EQ(result, 2500.0);
    EXPECT_TRUE(km_.Convert(result, &m_, 0.5));
    EXPECT_EQ(result, 500.0);

    result = -1.0;
    EXPECT_FALSE(km_.Convert(result, L"yd", 2.5));
    EXPECT_FALSE(km_.Convert(result, static_cast<const wchar_t*>(nullptr), 1.0));
    EXPECT_FALSE(km_.Convert(result, static_cast<const QtrUnitBase*>(nullptr), 1.0));
    EXPECT_FALSE(km_.Convert(result, L"M", 1.0)) << "names are case-sensitive";
    EXPECT_EQ(result, -1.0);
    ASSERT_EQ(log_.size(), 4u);
    EXPECT_EQ(log_[0], L"QtrUnitStd::Convert(,yd,2.5): no conv. info\n");
    EXPECT_EQ(log_[1], L"QtrUnitStd::Convert(,(null),1): no conv. info\n");
}

TEST_F(UnitTest, LooksRulesUpByTargetName) {
    QtrConvInfoStd* toM = NewRule(&m_, &km_, 1000.0, true, 3, -1);
    ASSERT_EQ(km_.ConvInfoAdd(toM), 1);
    EXPECT_EQ(km_.ConvInfo(L"m"), toM);
    EXPECT_EQ(km_.ConvInfo(&m_), toM);
    EXPECT_EQ(km_.ConvInfo(L"x"), nullptr);
    EXPECT_EQ(km_.ConvInfo(static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_EQ(km_.ConvInfo(static_cast<const QtrUnitBase*>(nullptr)), nullptr);

    int shift = 99;
    EXPECT_TRUE(km_.FmtPreDecpnt(shift, &m_));
    EXPECT_EQ(shift, 3);
    EXPECT_TRUE(km_.FmtPostDecpnt(shift, &m_));
    EXPECT_EQ(shift, -1);
    shift = 99;
    EXPECT_FALSE(km_.FmtPreDecpnt(shift, &x_));
    EXPECT_FALSE(km_.FmtPostDecpnt(shift, nullptr));
    EXPECT_FALSE(km_.FmtPreDecpnt(shift, &km_)) << "no identity rule held";
    EXPECT_EQ(shift, 99);

    ASSERT_EQ(km_.ConvInfoAdd(NewRule(&km_, &km_, 1.0)), 1);
    EXPECT_TRUE(km_.FmtPreDecpnt(shift, &km_));
    EXPECT_EQ(shift, 0);
    EXPECT_TRUE(log_.empty());
}

TEST_F(UnitTest, BuildsNumberFormatsForTheTarget) {
    ASSERT_EQ(km_.ConvInfoAdd(NewRule(&x_, &km_, 2.0, true, 1, -1)), 1);
    EXPECT_EQ(km_.FormatStringGen(L"km", 3, 2), L"%6.2f");
    EXPECT_EQ(km_.FormatStringGen(&km_, 4, 0), L"%4.0f");
    EXPECT_EQ(km_.FormatStringGen(L"km", -1, 2), L"%.2f");
    EXPECT_EQ(km_.FormatStringGen(L"km", -1, -1), L"%.0f");
    EXPECT_EQ(km_.FormatStringGen(L"x", 3, 2), L"%6.1f");
    EXPECT_EQ(km_.FormatStringGen(&x_, -1, 2), L"%.1f");
    EXPECT_EQ(km_.FormatStringGen(L"yd", 3, 2), L"%g");
    EXPECT_EQ(km_.FormatStringGen(static_cast<const wchar_t*>(nullptr), 3, 2), L"%g");
    EXPECT_EQ(km_.FormatStringGen(static_cast<const QtrUnitBase*>(nullptr), 3, 2), L"%g");
    EXPECT_TRUE(log_.empty());
}

TEST_F(UnitTest, FormatsConvertedValuesWithoutTheUnit) {
    ASSERT_EQ(km_.ConvInfoAdd(NewRule(&m_, &km_, 1000.0, true, 3, -1)), 1);
    EXPECT_EQ(km_.ConvertOutputGen(L"m", 1.23456, 1, 2), L"1234.6");
    EXPECT_EQ(km_.ConvertOutputGen(&m_, 2.0, 2, 1), L" 2000");
    EXPECT_EQ(km_.ConvertOutputGen(&km_, 3.14159, 3, 2), L"  3.14");
    EXPECT_TRUE(log_.empty());

    EXPECT_EQ(km_.ConvertOutputGen(L"yd", 2.5, 3, 2), L"");
    EXPECT_EQ(log_, (std::vector<std::wstring>{L"QtrUnitStd::Convert(,yd,2.5): no conv. info\n",
                                               L"QtrUnitStd::ConvertOutputGen(\"yd\",2.5,3,2): cannot convert\n"}));
    EXPECT_EQ(km_.ConvertOutputGen(static_cast<const QtrUnitBase*>(nullptr), 1.0, 3, 2), L"");
}

TEST_F(UnitTest, AnExplicitRuleDisplacesOnlyADerivedOne) {
    QtrConvInfoStd* derived = NewRule(&m_, &km_, 999.0, false);
    EXPECT_EQ(km_.ConvInfoAdd(derived), 1);
    EXPECT_EQ(AddRefused(km_, NewRule(&m_, &km_, 998.0, false)), 0);
    EXPECT_EQ(km_.ConvInfo(L"m"), derived);

    QtrConvInfoStd* explicitRule = NewRule(&m_, &km_, 1000.0, true);
    EXPECT_EQ(km_.ConvInfoAdd(explicitRule), 1) << "the derived rule is replaced and freed";
    EXPECT_EQ(km_.ConvInfo(L"m"), explicitRule);

    EXPECT_EQ(AddRefused(km_, NewRule(&m_, &km_, 1001.0, true)), 0);
    EXPECT_EQ(AddRefused(km_, NewRule(&m_, &km_, 1002.0, false)), 0);
    EXPECT_EQ(km_.ConvInfo(L"m"), explicitRule);
    EXPECT_TRUE(log_.empty());
}

TEST_F(UnitTest, RefusesRulesThatDoNotStartHereOrLeaveTheCategory) {
    const std::wstring refused = L"QtrUnitStd::ConvInfoAdd: incompatible conversion-info\n";
    const auto expectRefusal = [&](QtrUnitStd& unit, QtrConvInfoStd* rule, const std::wstring& reason) {
        log_.clear();
        EXPECT_EQ(AddRefused(unit, rule), -1);
        EXPECT_EQ(log_, (std::vector<std::wstring>{reason, refused}));
    };
    const std::wstring incomplete = L"Unit_IsCompatible_ConvInfo: incomplete conv-info, pSrc or pTrgt == NULL\n";
    expectRefusal(km_, NewRule(&m_, nullptr, 1.0), incomplete);
    expectRefusal(km_, NewRule(nullptr, &km_, 1.0), incomplete);
    log_.clear();
    EXPECT_EQ(km_.ConvInfoAdd(nullptr), -1);
    EXPECT_EQ(log_, (std::vector<std::wstring>{incomplete, refused}));

    expectRefusal(km_, NewRule(&x_, &m_, 1.0), L"Unit_IsCompatible_ConvInfo: \"km\" != \"m\"\n");

    QtrUnitStd homeless(nullptr, L"km");
    const QtrUnitStd uncategorised(nullptr, L"u");
    const std::wstring missing = L"Unit_IsCompatible_ConvInfo: category missing\n";
    expectRefusal(homeless, NewRule(&m_, &homeless, 1.0), missing);
    expectRefusal(km_, NewRule(&uncategorised, &km_, 1.0), missing);

    const FakeCategory time(L"time");
    const QtrUnitStd second(&time, L"s");
    expectRefusal(km_, NewRule(&second, &km_, 1.0), L"Unit_IsCompatible_ConvInfo: \"length\" != \"time\"\n");

    // The source's name is checked before the categories.
    expectRefusal(km_, NewRule(&second, &m_, 1.0), L"Unit_IsCompatible_ConvInfo: \"km\" != \"m\"\n");
    EXPECT_EQ(km_.ConvInfo(L"m"), nullptr);
}

TEST_F(UnitTest, NamesNotObjectsDecideCompatibility) {
    const QtrUnitStd otherKm(&length_, L"km");
    const FakeCategory otherLength(L"length");
    const QtrUnitStd otherM(&otherLength, L"m");
    EXPECT_EQ(km_.ConvInfoAdd(NewRule(&otherM, &otherKm, 1000.0)), 1);
    EXPECT_TRUE(log_.empty());
}

TEST_F(UnitTest, ReplacesOnlyARuleItHolds) {
    QtrConvInfoStd* stray = NewRule(&m_, &km_, 1000.0);
    EXPECT_FALSE(km_.ConvInfoReplace(&m_, stray));
    EXPECT_FALSE(km_.ConvInfoReplace(nullptr, stray));
    EXPECT_EQ(log_, (std::vector<std::wstring>{L"QtrUnitStd::ConvInfoReplace([m],): not found\n",
                                               L"QtrUnitStd::ConvInfoReplace([(null)],): not found\n"}));

    ASSERT_EQ(km_.ConvInfoAdd(NewRule(&m_, &km_, 999.0)), 1);
    EXPECT_TRUE(km_.ConvInfoReplace(&m_, stray));
    EXPECT_EQ(km_.ConvInfo(L"m"), stray);
    EXPECT_TRUE(km_.ConvInfoReplace(&m_, stray)) << "replacing a rule by itself keeps it";
    EXPECT_FALSE(km_.ConvInfoReplace(&m_, nullptr));
    EXPECT_EQ(km_.ConvInfo(L"m"), stray);
}

TEST_F(UnitTest, ListsRulesInTargetNameOrder) {
    const QtrUnitStd mm(&length_, L"mm"), cm(&length_, L"cm"), upper(&length_, L"Zm");
    const std::vector<const QtrUnitBase*> targets{&mm, &m_, &cm, &upper};
    for (const QtrUnitBase* target : targets)
        ASSERT_EQ(km_.ConvInfoAdd(NewRule(target, &km_, 1.0)), 1);

    std::vector<const QtrConvInfoBase*> rules{nullptr};
    EXPECT_EQ(km_.ConvInfosGet(rules), 4);
    std::vector<std::wstring> names;
    for (const QtrConvInfoBase* rule : rules) names.push_back(rule->TrgtUnit()->Name());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Zm", L"cm", L"m", L"mm"}));

    const QtrUnitStd empty(&length_, L"e");
    EXPECT_EQ(empty.ConvInfosGet(rules), 0);
    EXPECT_TRUE(rules.empty());
}

TEST_F(UnitTest, FreesOnlyItsOwnRuleType) {
    bool destroyed = false;
    auto foreign = std::make_unique<ForeignRule>(&m_, &x_, destroyed);
    {
        QtrUnitStd x(&length_, L"x");
        ASSERT_EQ(x.ConvInfoAdd(foreign.get()), 1);
        ASSERT_EQ(x.ConvInfoAdd(NewRule(&km_, &x, 0.001)), 1);
    }
    EXPECT_FALSE(destroyed);
}

TEST_F(UnitTest, PrintsAUnitStatement) {
    km_.PrettyPrint(nullptr);
    const QtrUnitStd keyword(&length_, L"unit"), degree(&length_, L"\u00b0");
    keyword.PrettyPrint(nullptr);
    degree.PrettyPrint(nullptr);
    EXPECT_EQ(trace_, L"\tunit km;\n\tunit \"unit\";\n\tunit \"\u00b0\";\n");
}

}  // namespace
