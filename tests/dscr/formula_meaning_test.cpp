// A `convert` statement stores a rule only when the rule means exactly the
// statement's arithmetic: formulas that the rule cannot hold, and numbers
// that would make its factor zero, infinite or NaN, are errors of the file.
#include <cmath>

#include "dscr/parse_test_support.h"
#include "quantor/convinfo.h"

namespace {

using FormulaMeaning = ParseTest;

TEST_F(FormulaMeaning, FormulasThatNoRuleCanHoldAreRefused) {
    const char* formulas[] = {
        "m * (1e400 - 1e400)",  // NaN
        "m * 1e400",            // stored factor 1/inf = 0
        "m / 1e400",            // stored factor inf
        "m * 1e-400",           // the number reads as 0: stored factor inf
        "m * 1e300 + 1e308 * 10",  // infinite addend
        "m * x",                // a unit name as factor
        "m + x",                // a unit name as addend
        "m / 2 * 3",            // two factors
        "m - 32 + 5",           // two addends
        "(m + 1) * 2 + 3 - x",
        "0 * m",
        "1000",
    };
    for (const char* formula : formulas) {
        SCOPED_TRACE(formula);
        QtrAdminDscr admin;
        EXPECT_FALSE(Parse(admin, std::string("category A { unit m, k, x;\n convert k <- ") + formula + ";\n}\n"));
        // One error for the statement: the formula's, or the simplifier's
        // where it meets the fault first (a zero factor leaves the target
        // alone beside a constant).
        const Messages errors = ParseErrors();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_THAT(errors[0], testing::AnyOf(L"Conv_GetFromRight(): error in formula\n",
                                              testing::StartsWith(L"Tree_ExprElim: cannot delete subexprs in ND_CONVFORM")));
        EXPECT_EQ(admin.ConvInfo(L"k", L"m"), nullptr);
    }
}

TEST_F(FormulaMeaning, FormulasOfOneFactorAndOneAddendAreRead) {
    const struct { const char* formula; double factor, addend; } rows[] = {
        {"m * 1.8 + 32", 1 / 1.8, 32 / 1.8},
        {"(m + 32) * 1.8", 1 / 1.8, 32.0},
        {"-m / 4 - 1", -4.0, 4.0},
        {"2 * 3 * m", 1 / 6.0, 0.0},
        {"m * 2 / 3 * 4", 3 / 8.0, 0.0},
        {"m * 1e300", 1e-300, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.formula);
        QtrAdminDscr admin;
        ExpectOutcome(admin, std::string("category A { unit m, k;\n convert k <- ") + row.formula + ";\n}\n", true, {});
        const QtrConvInfoBase* rule = admin.ConvInfo(L"k", L"m");
        ASSERT_NE(rule, nullptr);
        EXPECT_DOUBLE_EQ(rule->Factor(), row.factor);
        EXPECT_DOUBLE_EQ(rule->Addend(), row.addend);
    }
}

}  // namespace
