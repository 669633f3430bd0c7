// The conversion rule: its formula and number formats, the derived rules
// (inverse and chain) with their failures, and the `convert` statement it
// prints.
#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// Collects log messages and trace text for one test and restores the
// previous sinks afterwards.
class ConvInfoTest : public ::testing::Test {
protected:
    void SetUp() override {
        previousLog_ = QtrSetLogSink([this](const QtrLogEntry& entry) { log_.push_back(entry.message); });
        previousTrace_ = QtrSetTraceSink([this](const std::wstring& text) { trace_ += text; });
    }
    void TearDown() override {
        QtrSetLogSink(previousLog_);
        QtrSetTraceSink(previousTrace_);
    }

    // A rule from `source` to `target` that converts by `factor` and `addend`.
    static std::unique_ptr<QtrConvInfoStd> Rule(const QtrUnitBase& target, const QtrUnitBase& source, double factor,
                                                double addend = 0.0, int pre = 0, int post = 0) {
        auto rule = std::make_unique<QtrConvInfoStd>();
        rule->SetUnits(&target, &source);
        rule->SetFormula(factor, addend);
        rule->SetPreFmtshft(pre);
        rule->SetPostFmtshft(post);
        return rule;
    }

    // The statement that `rule` prints to the trace.
    std::wstring Printed(const QtrConvInfoStd& rule) {
        trace_.clear();
        rule.PrettyPrint(nullptr);
        return trace_;
    }

    QtrUnitStd m_{nullptr, L"m"};
    QtrUnitStd km_{nullptr, L"km"};
    QtrUnitStd mm_{nullptr, L"mm"};
    std::vector<std::wstring> log_;
    std::wstring trace_;

private:
    QtrLogSink previousLog_;
    QtrTraceSink previousTrace_;
};

TEST_F(ConvInfoTest, NewRuleIsEmptyAndCopiesShareTheUnits) {
    QtrConvInfoStd rule;
    EXPECT_EQ(rule.Convert(42.0), 0.0);
    EXPECT_EQ(rule.SrcUnit(), nullptr);
    EXPECT_FALSE(rule.Is_Explicit());

    rule = *Rule(m_, km_, 1.8, 32.0, 2, -1);
    EXPECT_DOUBLE_EQ(rule.Convert(100.0), 212.0);
    EXPECT_EQ(rule.TrgtUnit(), &m_);
    EXPECT_EQ(rule.SrcUnit(), &km_);
    int pre = 0, post = 0;
    rule.FormatDeltas(pre, post);
    EXPECT_EQ(pre, 2);
    EXPECT_EQ(post, -1);
}

TEST_F(ConvInfoTest, FormatAddsShiftsAndSwitchesOffNegativeSides) {
    auto none = Rule(m_, km_, 1.0);
    EXPECT_EQ(none->FormatStringGen(0, 0), L"%.0f");
    EXPECT_EQ(none->FormatStringGen(0, 3), L"%.3f");
    EXPECT_EQ(none->FormatStringGen(4, 2), L"%7.2f");
    EXPECT_EQ(none->FormatStringGen(4, 0), L"%4.0f");
    EXPECT_EQ(none->FormatStringGen(-5, -5), L"%.0f");

    auto shifted = Rule(m_, km_, 1.0, 0.0, 3, 1);
    EXPECT_EQ(shifted->FormatStringGen(-1, 2), L"%.3f");
    EXPECT_EQ(shifted->FormatStringGen(2, 2), L"%9.3f");
    EXPECT_EQ(shifted->FormatStringGen(0, 0), L"%5.1f") << "a zero request still receives the shift";
    EXPECT_EQ(shifted->FormatStringGen(2, -1), L"%5.0f");

    auto shrinking = Rule(m_, km_, 1.0, 0.0, -3, -1);
    EXPECT_EQ(shrinking->FormatStringGen(2, 1), L"%.0f");
}

TEST_F(ConvInfoTest, InverseUndoesTheRule) {
    auto rule = Rule(m_, km_, 1.8, 32.0, 2, -1);
    rule->SetExplicit(true);
    std::unique_ptr<QtrConvInfoStd> inverse(rule->NewInverse());
    ASSERT_NE(inverse, nullptr);
    EXPECT_EQ(inverse->Factor(), 1.0 / 1.8);
    EXPECT_EQ(inverse->Addend(), -32.0 / 1.8);
    EXPECT_EQ(inverse->TrgtUnit(), &km_);
    EXPECT_EQ(inverse->SrcUnit(), &m_);
    EXPECT_EQ(inverse->FmtPreDecpnt(), -2);
    EXPECT_EQ(inverse->FmtPostDecpnt(), 1);
    EXPECT_FALSE(inverse->Is_Explicit());
    EXPECT_NEAR(inverse->Convert(rule->Convert(37.5)), 37.5, 1e-12);
    EXPECT_TRUE(log_.empty());
}

TEST_F(ConvInfoTest, InverseOfFactorZeroFails) {
    auto rule = Rule(m_, km_, 0.0, 5.0);
    EXPECT_EQ(rule->NewInverse(), nullptr);
    ASSERT_EQ(log_.size(), 1u);
    EXPECT_EQ(log_[0], L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n");

    auto tiny = Rule(m_, km_, 1e-300);
    std::unique_ptr<QtrConvInfoStd> inverse(tiny->NewInverse());
    EXPECT_NE(inverse, nullptr) << "only an exact zero is refused";
}

TEST_F(ConvInfoTest, ChainAppliesInnerThenOuter) {
    auto kmToM = Rule(m_, km_, 1000.0, 0.0, 3, -3);
    auto mToMm = Rule(mm_, m_, 1000.0, 2.0, 1, 2);
    std::unique_ptr<QtrConvInfoStd> chain(QtrConvInfoStd::NewChain(mToMm.get(), kmToM.get()));
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->TrgtUnit(), &mm_);
    EXPECT_EQ(chain->SrcUnit(), &km_);
    EXPECT_DOUBLE_EQ(chain->Convert(2.5), mToMm->Convert(kmToM->Convert(2.5)));
    EXPECT_EQ(chain->Factor(), 1e6);
    EXPECT_EQ(chain->Addend(), 2.0);
    EXPECT_EQ(chain->FmtPreDecpnt(), 4);
    EXPECT_EQ(chain->FmtPostDecpnt(), -1);
    EXPECT_FALSE(chain->Is_Explicit());

    auto degFToDegC = Rule(m_, km_, 1.0 / 1.8, -32.0 / 1.8);
    std::unique_ptr<QtrConvInfoStd> back(degFToDegC->NewInverse());
    std::unique_ptr<QtrConvInfoStd> identity(QtrConvInfoStd::NewChain(back.get(), degFToDegC.get()));
    ASSERT_NE(identity, nullptr);
    EXPECT_NEAR(identity->Factor(), 1.0, 1e-15);
    EXPECT_NEAR(identity->Addend(), 0.0, 1e-13);
}

TEST_F(ConvInfoTest, ChainNeedsTheVeryLinkingUnitObject) {
    const QtrUnitStd otherM(nullptr, L"m");
    auto kmToM = Rule(m_, km_, 1000.0);
    auto otherMToMm = Rule(mm_, otherM, 1000.0);
    EXPECT_EQ(QtrConvInfoStd::NewChain(otherMToMm.get(), kmToM.get()), nullptr);
    ASSERT_EQ(log_.size(), 1u);
    EXPECT_EQ(log_[0], L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): inconsistent\n");

    log_.clear();
    EXPECT_EQ(QtrConvInfoStd::NewChain(nullptr, kmToM.get()), nullptr);
    EXPECT_EQ(QtrConvInfoStd::NewChain(kmToM.get(), nullptr), nullptr);
    const QtrConvInfoStd unlinked;
    EXPECT_EQ(QtrConvInfoStd::NewChain(&unlinked, &unlinked), nullptr);
    ASSERT_EQ(log_.size(), 3u);
    EXPECT_EQ(log_[0], L"QtrConvInfoStd::NewChain([(null)<=(null)],[m<=km]): inconsistent\n");
}

TEST_F(ConvInfoTest, PrintsTheStatementThatDefinesTheTarget) {
    EXPECT_EQ(Printed(*Rule(m_, km_, 1000.0)), L"\n\tconvert  m\t<- km / 1000;\n");
    EXPECT_EQ(Printed(*Rule(km_, m_, 0.001)), L"\n\tconvert  km\t<- m * 1000;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, 1.0)), L"\n\tconvert  m\t<- km;\n");

    // degC from degF: x degF is (x - 32) / 1.8 degC, written as degF * 1.8 + 32.
    const QtrUnitStd degC(nullptr, L"degC"), degF(nullptr, L"degF");
    auto toCelsius = Rule(degC, degF, 1.0 / 1.8, -32.0 / 1.8);
    toCelsius->SetExplicit(true);
    EXPECT_EQ(Printed(*toCelsius), L"\n\tconvert  degC\t<- degF * 1.8 - 32;\t// explicit\n");
    EXPECT_EQ(Printed(*Rule(degC, degF, 1.0 / 1.8, 32.0 / 1.8)), L"\n\tconvert  degC\t<- degF * 1.8 + 32;\n");
}

TEST_F(ConvInfoTest, PrintsTheFormatClauseOnlyWithBothShifts) {
    EXPECT_EQ(Printed(*Rule(m_, km_, 1000.0, 0.0, 2, -1)), L"\n\tconvert  m\t<- km / 1000\tformat 2, -1;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, 1000.0, 0.0, 2, 0)), L"\n\tconvert  m\t<- km / 1000;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, 1000.0, 0.0, 0, 3)), L"\n\tconvert  m\t<- km / 1000;\n");
}

TEST_F(ConvInfoTest, PrintsANegativeFactorOnItsNumber) {
    EXPECT_EQ(Printed(*Rule(m_, km_, -1.0)), L"\n\tconvert  m\t<- km * -1;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, -0.5, 1.0)), L"\n\tconvert  m\t<- km * -2 - 2;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, -1000.0, 3000.0)), L"\n\tconvert  m\t<- km / -1000 - 3;\n");
}

TEST_F(ConvInfoTest, PrintsTheShortestNumbersThatReadBackIntoTheRule) {
    // 1 x is 3 m plus a third of a metre: the addend needs sixteen digits.
    const QtrUnitStd x(nullptr, L"x");
    EXPECT_EQ(Printed(*Rule(x, m_, 1.0 / 3.0, 1.0 / 9.0)), L"\n\tconvert  x\t<- m * 3 + 0.3333333333333333;\n");
    EXPECT_EQ(Printed(*Rule(x, m_, 0.3)), L"\n\tconvert  x\t<- m * 3.3333333333333335;\n");
    EXPECT_EQ(Printed(*Rule(m_, km_, 1000.0, 1e-9)), L"\n\tconvert  m\t<- km / 1000 + 1e-12;\n");
}

// The reader takes `S * f + a` as factor 1/f and addend a/f, and `S / n` as
// f = 1/n. These give the factor and addend that a printed rule reads back as.
struct ReadBackRule {
    double factor = 0.0;
    double addend = 0.0;
};

ReadBackRule ReadBack(const std::wstring& statement) {
    static const std::wregex form(LR"(<- \S+ (\*|/) (\S+?)(?: (\+|-) (\S+?))?;)");
    std::wsmatch parts;
    if (!std::regex_search(statement, parts, form)) return {};
    const double number = std::wcstod(parts[2].str().c_str(), nullptr);
    const double f = parts[1] == L"*" ? number : 1.0 / number;
    const double sign = parts[3] == L"-" ? -1.0 : 1.0;
    const double a = parts[3].matched ? sign * std::wcstod(parts[4].str().c_str(), nullptr) : 0.0;
    return {1.0 / f, a / f};
}

TEST_F(ConvInfoTest, PrintedRulesReadBackIntoTheSameRule) {
    for (const double factor : {1.0 / 1.8, 0.3, 1.0 / 7.0, 2.0 / 3.0, -1.0 / 3.0, 1.0 / 25.4, 1e-7 / 3.0}) {
        const std::wstring text = Printed(*Rule(m_, km_, factor));
        EXPECT_EQ(ReadBack(text).factor, factor) << text;
    }
    // Not every double is the reciprocal of a double, so some rules can only
    // come back to within the last digits.
    for (const double factor : {1.0 / 1.8, 12345.678, -1.0 / 3.0, 1e-7 / 3.0}) {
        for (const double addend : {1.0 / 3.0, -273.15 * factor}) {
            const std::wstring text = Printed(*Rule(m_, km_, factor, addend));
            const ReadBackRule read = ReadBack(text);
            EXPECT_DOUBLE_EQ(read.factor, factor) << text;
            EXPECT_DOUBLE_EQ(read.addend, addend) << text;
        }
    }
}

TEST_F(ConvInfoTest, QuotesNamesThatAreNoIdentifiers) {
    const QtrUnitStd degreeF(nullptr, L"\u00b0F"), slashed(nullptr, L"m/s \"x\"");
    EXPECT_EQ(Printed(*Rule(degreeF, mm_, 1.0 / 25.4)), L"\n\tconvert  \"\u00b0F\"\t<- mm * 25.4;\n");
    EXPECT_EQ(Printed(*Rule(m_, slashed, 1.0)), L"\n\tconvert  m\t<- \"m\\/s \\\"x\\\"\";\n");
}

TEST_F(ConvInfoTest, PrintsNothingWithoutBothUnits) {
    QtrConvInfoStd rule;
    rule.SetFormula(2.0, 0.0);
    rule.SetUnits(&m_, nullptr);
    EXPECT_EQ(Printed(rule), L"");
    rule.SetUnits(nullptr, &km_);
    EXPECT_EQ(Printed(rule), L"");
}

}  // namespace
