// The conversion rule: number formats, the derived rules (inverse and chain)
// with their failures, and the `convert` statement it prints, whose numbers
// are the shortest that read back into the same rule.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "quantor/unit.h"
#include "support/rules.h"
#include "support/sink_capture.h"

namespace {

class ConvInfoTest : public ::testing::Test {
protected:
    static std::unique_ptr<QtrConvInfoStd> Rule(const QtrUnitBase& target, const QtrUnitBase& source, double factor,
                                                double addend = 0.0, int pre = 0, int post = 0) {
        return std::unique_ptr<QtrConvInfoStd>(NewRule(&target, &source, factor, addend, false, pre, post));
    }
    static auto Fields(const QtrConvInfoBase& rule) {
        return std::tuple(rule.TrgtUnit(), rule.SrcUnit(), rule.Factor(), rule.Addend(), rule.FmtPreDecpnt(),
                          rule.FmtPostDecpnt(), rule.Is_Explicit());
    }
    static std::wstring Printed(const QtrConvInfoStd& rule) {
        const TraceCapture trace;
        rule.PrettyPrint(nullptr);
        return trace.Text();
    }

    const QtrUnitStd m_{nullptr, L"m"}, km_{nullptr, L"km"}, mm_{nullptr, L"mm"};
    LogCapture log_;
};

TEST_F(ConvInfoTest, FormatAddsShiftsAndSwitchesOffNegativeSides) {
    // Shifts before and after the point, digits before and after it, format.
    const std::tuple<int, int, int, int, const wchar_t*> cases[] = {
        {0, 0, 0, 0, L"%.0f"},   {0, 0, 0, 3, L"%.3f"}, {0, 0, 4, 2, L"%7.2f"}, {0, 0, 4, 0, L"%4.0f"},
        {0, 0, -5, -5, L"%.0f"}, {3, 1, -1, 2, L"%.3f"}, {3, 1, 2, 2, L"%9.3f"}, {3, 1, 0, 0, L"%5.1f"},
        {3, 1, 2, -1, L"%5.0f"}, {-3, -1, 2, 1, L"%.0f"}};
    for (const auto& [preShift, postShift, pre, post, format] : cases)
        EXPECT_EQ(Rule(m_, km_, 1.0, 0.0, preShift, postShift)->FormatStringGen(pre, post), format)
            << "shifts " << preShift << "," << postShift << " digits " << pre << "," << post;
}

TEST_F(ConvInfoTest, InverseUndoesTheRuleButNotAFactorOfZero) {
    auto rule = Rule(m_, km_, 1.8, 32.0, 2, -1);
    rule->SetExplicit(true);
    std::unique_ptr<QtrConvInfoStd> inverse(rule->NewInverse());
    ASSERT_NE(inverse, nullptr);
    EXPECT_EQ(Fields(*inverse), std::tuple(&km_, &m_, 1.0 / 1.8, -32.0 / 1.8, -2, 1, false));
    EXPECT_EQ(Rule(m_, km_, 0.0, 5.0)->NewInverse(), nullptr);
    EXPECT_EQ(log_.Messages(), std::vector<std::wstring>{L"QtrConvInfoStd::NewInverse(): Factor() == 0, impossible\n"});
    EXPECT_NE(std::unique_ptr<QtrConvInfoStd>(Rule(m_, km_, 1e-300)->NewInverse()), nullptr);
}

TEST_F(ConvInfoTest, ChainAppliesInnerThenOuterThroughTheVeryLinkingUnit) {
    const auto kmToM = Rule(m_, km_, 1000.0, 0.0, 3, -3);
    const auto mToMm = Rule(mm_, m_, 1000.0, 2.0, 1, 2);
    std::unique_ptr<QtrConvInfoStd> chain(QtrConvInfoStd::NewChain(mToMm.get(), kmToM.get()));
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(Fields(*chain), std::tuple(&mm_, &km_, 1e6, 2.0, 4, -1, false));
    const QtrUnitStd otherM(nullptr, L"m");
    EXPECT_EQ(QtrConvInfoStd::NewChain(Rule(mm_, otherM, 1000.0).get(), kmToM.get()), nullptr);
    EXPECT_EQ(QtrConvInfoStd::NewChain(nullptr, kmToM.get()), nullptr);
    EXPECT_EQ(log_.Messages(), (std::vector<std::wstring>{
                                   L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): inconsistent\n",
                                   L"QtrConvInfoStd::NewChain([(null)<=(null)],[m<=km]): inconsistent\n"}));
}

// A derived rule never holds zero, an infinity or NaN: chains and inverses
// that leave double precision are refused.
TEST_F(ConvInfoTest, ChainsAndInversesOutOfDoubleRangeAreNotMade) {
    EXPECT_EQ(QtrConvInfoStd::NewChain(Rule(mm_, m_, 1e200).get(), Rule(m_, km_, 1e200).get()), nullptr);
    EXPECT_EQ(QtrConvInfoStd::NewChain(Rule(mm_, m_, 1e-200).get(), Rule(m_, km_, 1e-200).get()), nullptr);
    EXPECT_EQ(QtrConvInfoStd::NewChain(Rule(mm_, m_, 1e200).get(), Rule(m_, km_, 1.0, 1e200).get()), nullptr);
    EXPECT_EQ(Rule(m_, km_, 1e-320)->NewInverse(), nullptr);
    EXPECT_EQ(Rule(m_, km_, 1e-300, 1e10)->NewInverse(), nullptr);
    EXPECT_EQ(log_.Messages(), (std::vector<std::wstring>{L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): out of range\n",
                                                          L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): out of range\n",
                                                          L"QtrConvInfoStd::NewChain([mm<=m],[m<=km]): out of range\n",
                                                          L"QtrConvInfoStd::NewInverse(): 1 / Factor() out of range\n",
                                                          L"QtrConvInfoStd::NewInverse(): 1 / Factor() out of range\n"}));
}

TEST_F(ConvInfoTest, PrintsTheStatementThatDefinesTheTarget) {
    const QtrUnitStd degC(nullptr, L"degC"), degF(nullptr, L"degF"), x(nullptr, L"x");
    const QtrUnitStd degreeF(nullptr, L"\u00b0F"), slashed(nullptr, L"m/s \"x\"");
    // Target, source, factor, addend, shifts, and the statement after "\n\tconvert  ".
    const std::tuple<const QtrUnitStd&, const QtrUnitStd&, double, double, int, int, std::wstring> cases[] = {
        {m_, km_, 1000.0, 0.0, 0, 0, L"m\t<- km / 1000;\n"},
        {m_, km_, 1.0, 0.0, 0, 0, L"m\t<- km;\n"},
        // x degF is (x - 32) / 1.8 degC.
        {degC, degF, 1.0 / 1.8, -32.0 / 1.8, 0, 0, L"degC\t<- degF * 1.8 - 32;\n"},
        {m_, km_, 1000.0, 0.0, 2, -1, L"m\t<- km / 1000\tformat 2, -1;\n"},
        {m_, km_, 1000.0, 0.0, 2, 0, L"m\t<- km / 1000;\n"},
        {m_, km_, 1000.0, 0.0, 0, 3, L"m\t<- km / 1000;\n"},
        {m_, km_, -0.5, 1.0, 0, 0, L"m\t<- km * -2 - 2;\n"},
        {m_, km_, -1000.0, 3000.0, 0, 0, L"m\t<- km / -1000 - 3;\n"},
        {x, m_, 1.0 / 3.0, 1.0 / 9.0, 0, 0, L"x\t<- m * 3 + 0.3333333333333333;\n"},
        {x, m_, 0.3, 0.0, 0, 0, L"x\t<- m * 3.3333333333333335;\n"},
        {degreeF, mm_, 1.0 / 25.4, 0.0, 0, 0, L"\"\u00b0F\"\t<- mm * 25.4;\n"},
        {m_, slashed, 1.0, 0.0, 0, 0, L"m\t<- \"m\\/s \\\"x\\\"\";\n"},
    };
    for (const auto& [target, source, factor, addend, pre, post, statement] : cases)
        EXPECT_EQ(Printed(*Rule(target, source, factor, addend, pre, post)), L"\n\tconvert  " + statement);
    const auto explicitRule = Rule(m_, km_, 1000.0);
    explicitRule->SetExplicit(true);
    EXPECT_EQ(Printed(*explicitRule), L"\n\tconvert  m\t<- km / 1000;\t// explicit\n");
    QtrConvInfoStd halfLinked;
    halfLinked.SetUnits(&m_, nullptr);
    EXPECT_EQ(Printed(halfLinked), L"");
}

}  // namespace
