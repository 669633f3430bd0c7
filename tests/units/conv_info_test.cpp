// The conversion rule: number formats, the derived rules (inverse and chain)
// with their failures, and the `convert` statement it prints, whose numbers
// are the shortest that read back into the same rule.
#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>
#include <vector>

#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "support/sink_capture.h"
#include "units/statement_text.h"

namespace {

class ConvInfoTest : public ::testing::Test {
protected:
    // A rule from `source` to `target`: value * factor + addend.
    static std::unique_ptr<QtrConvInfoStd> Rule(const QtrUnitBase& target, const QtrUnitBase& source, double factor,
                                                double addend = 0.0, int pre = 0, int post = 0) {
        auto rule = std::make_unique<QtrConvInfoStd>();
        rule->SetUnits(&target, &source);
        rule->SetFormula(factor, addend);
        rule->SetPreFmtshft(pre);
        rule->SetPostFmtshft(post);
        return rule;
    }

    std::wstring Printed(const QtrConvInfoStd& rule) {
        trace_.Clear();
        rule.PrettyPrint(nullptr);
        return trace_.Text();
    }

    QtrUnitStd m_{nullptr, L"m"};
    QtrUnitStd km_{nullptr, L"km"};
    QtrUnitStd mm_{nullptr, L"mm"};
    LogCapture log_;
    TraceCapture trace_;
};

TEST_F(ConvInfoTest, FormatAddsShiftsAndSwitchesOffNegativeSides) {
    struct Case {
        int preShift, postShift, pre, post;
        const wchar_t* format;
    };
    for (const Case& c : {Case{0, 0, 0, 0, L"%.0f"}, Case{0, 0, 0, 3, L"%.3f"}, Case{0, 0, 4, 2, L"%7.2f"},
                          Case{0, 0, 4, 0, L"%4.0f"}, Case{0, 0, -5, -5, L"%.0f"}, Case{3, 1, -1, 2, L"%.3f"},
                          Case{3, 1, 2, 2, L"%9.3f"}, Case{3, 1, 0, 0, L"%5.1f"}, Case{3, 1, 2, -1, L"%5.0f"},
                          Case{-3, -1, 2, 1, L"%.0f"}}) {
        EXPECT_EQ(Rule(m_, km_, 1.0, 0.0, c.preShift, c.postShift)->FormatStringGen(c.pre, c.post), c.format)
            << "shifts " << c.preShift << "," << c.postShift << " digits " << c.pre << "," << c.post;
    }
}

TEST_F(ConvInfoTest, InverseUndoesTheRuleButNotAFactorOfZero) {
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

    EXPECT_EQ(Rule(m_, km_, 0.0, 5.0)->NewInverse(), nullptr);
    EXPECT_EQ(log_.Messages(), std::vector<std::wstring>{L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n"});
    EXPECT_NE(std::unique_ptr<QtrConvInfoStd>(Rule(m_, km_, 1e-300)->NewInverse()), nullptr);
}

TEST_F(ConvInfoTest, ChainAppliesInnerThenOuterThroughTheVeryLinkingUnit) {
    const auto kmToM = Rule(m_, km_, 1000.0, 0.0, 3, -3);
    const auto mToMm = Rule(mm_, m_, 1000.0, 2.0, 1, 2);
    std::unique_ptr<QtrConvInfoStd> chain(QtrConvInfoStd::NewChain(mToMm.get(), kmToM.get()));
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->TrgtUnit(), &mm_);
    EXPECT_EQ(chain->SrcUnit(), &km_);
    EXPECT_EQ(chain->Factor(), 1e6);
    EXPECT_EQ(chain->Addend(), 2.0);
    EXPECT_EQ(chain->FmtPreDecpnt(), 4);
    EXPECT_EQ(chain->FmtPostDecpnt(), -1);
    EXPECT_FALSE(chain->Is_Explicit());

    const QtrUnitStd otherM(nullptr, L"m");
    EXPECT_EQ(QtrConvInfoStd::NewChain(Rule(mm_, otherM, 1000.0).get(), kmToM.get()), nullptr);
    EXPECT_EQ(QtrConvInfoStd::NewChain(nullptr, kmToM.get()), nullptr);
    EXPECT_EQ(log_.Messages(), (std::vector<std::wstring>{
                                   L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): inconsistent\n",
                                   L"QtrConvInfoStd::NewChain([(null)<=(null)],[m<=km]): inconsistent\n"}));
}

TEST_F(ConvInfoTest, PrintsTheStatementThatDefinesTheTarget) {
    const QtrUnitStd degC(nullptr, L"degC"), degF(nullptr, L"degF"), x(nullptr, L"x");
    const QtrUnitStd degreeF(nullptr, L"\u00b0F"), slashed(nullptr, L"m/s \"x\"");
    struct Case {
        const QtrUnitBase& target;
        const QtrUnitBase& source;
        double factor, addend;
        int pre, post;
        const wchar_t* statement;  // after "\n\tconvert  "
    };
    for (const Case& c : {
             Case{m_, km_, 1000.0, 0.0, 0, 0, L"m\t<- km / 1000;\n"},
             Case{m_, km_, 1.0, 0.0, 0, 0, L"m\t<- km;\n"},
             // x degF is (x - 32) / 1.8 degC.
             Case{degC, degF, 1.0 / 1.8, -32.0 / 1.8, 0, 0, L"degC\t<- degF * 1.8 - 32;\n"},
             Case{m_, km_, 1000.0, 0.0, 2, -1, L"m\t<- km / 1000\tformat 2, -1;\n"},
             Case{m_, km_, 1000.0, 0.0, 2, 0, L"m\t<- km / 1000;\n"},
             Case{m_, km_, 1000.0, 0.0, 0, 3, L"m\t<- km / 1000;\n"},
             Case{m_, km_, -0.5, 1.0, 0, 0, L"m\t<- km * -2 - 2;\n"},
             Case{m_, km_, -1000.0, 3000.0, 0, 0, L"m\t<- km / -1000 - 3;\n"},
             Case{x, m_, 1.0 / 3.0, 1.0 / 9.0, 0, 0, L"x\t<- m * 3 + 0.3333333333333333;\n"},
             Case{x, m_, 0.3, 0.0, 0, 0, L"x\t<- m * 3.3333333333333335;\n"},
             Case{degreeF, mm_, 1.0 / 25.4, 0.0, 0, 0, L"\"\u00b0F\"\t<- mm * 25.4;\n"},
             Case{m_, slashed, 1.0, 0.0, 0, 0, L"m\t<- \"m\\/s \\\"x\\\"\";\n"},
         }) {
        EXPECT_EQ(Printed(*Rule(c.target, c.source, c.factor, c.addend, c.pre, c.post)),
                  std::wstring(L"\n\tconvert  ") + c.statement);
    }
    const auto explicitRule = Rule(m_, km_, 1000.0);
    explicitRule->SetExplicit(true);
    EXPECT_EQ(Printed(*explicitRule), L"\n\tconvert  m\t<- km / 1000;\t// explicit\n");
    QtrConvInfoStd halfLinked;
    halfLinked.SetUnits(&m_, nullptr);
    EXPECT_EQ(Printed(halfLinked), L"");
}

TEST(StatementNumber, IsTheShortestPercentGTextThatReadsBack) {
    using quantor::detail::StatementNumber;
    EXPECT_EQ(StatementNumber(1000.0), L"1000");
    EXPECT_EQ(StatementNumber(0.0254), L"0.0254");
    EXPECT_EQ(StatementNumber(1.8), L"1.8");
    EXPECT_EQ(StatementNumber(0.1 + 0.2), L"0.30000000000000004");
    for (const double value : {1.0 / 7.0, 2.0 / 3.0, 1e300 / 3.0, 5e-324, -1.0 / 9.0})
        EXPECT_EQ(std::wcstod(StatementNumber(value).c_str(), nullptr), value) << StatementNumber(value);
}

}  // namespace
