// The semantic actions: what each statement does, which errors count against
// the file and where they stand, and the example file conversion by conversion.
#include <climits>
#include <cmath>

#include "dscr/parse_test_support.h"
#include "quantor/convinfo.h"

namespace {

using SemanticActions = ParseTest;

// Each body is read as a category block; where a row gives a factor, the
// block must leave a rule from m to km with that factor, addend and shifts.
TEST_F(SemanticActions, StatementTable) {
    const struct { std::string body; bool accepted; Messages errors; double factor = NAN, addend = 0.0;
                   int pre = 0, post = 0; size_t counted = 0; } rows[] = {
        {"defaultintern m; unit m;", false, {L"unknown default internal unit\n"}},
        {"unit m, km; convert km <- 1000 * m;", true, {}, 0.001},
        {"unit m, km; convert km <- 1000;", false, {L"Conv_GetFromRight(): error in formula\n"}},
        {"unit m, km; convert km <- m * 1000;", true, {}, 0.001},
        {"unit m, km, x; convert km <- m * x;", false, {L"Conv_GetFromRight(): error in formula\n"}},
        {"unit m, km; convert km <- m format 1 + 1, 0;", true, {}, 1.0, 0.0, 2, 0},
        // Only the first error of a statement is written; both are counted.
        {"unit m, km; convert km <- m format n, 0;", false, {L"no constant expression\n"}, NAN, 0.0, 0, 0, 2},
        {"unit m: 5;", true, {}},
        {"unit m: n;", false, {L"no constant expression\n"}},
        // Precedence, left grouping, a copying empty operand; shifts truncated and clamped.
        {"unit m, km; convert km <- m format 10 - 2 - 3 * 4, 2 *;", true, {}, 1.0, 0.0, -4, 4},
        {"unit m, km; convert km <- m format -2.9, 1e300;", true, {}, 1.0, 0.0, -2, INT_MAX},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        QtrAdminDscr admin;
        ExpectOutcome(admin, "category A {\n" + row.body + "\n}\n", row.accepted, row.errors, row.counted);
        if (std::isnan(row.factor)) continue;
        const QtrConvInfoBase* rule = admin.ConvInfo(L"km", L"m");
        ASSERT_NE(rule, nullptr);
        EXPECT_THAT(rule->Factor(), testing::NanSensitiveDoubleEq(row.factor));
        EXPECT_THAT(rule->Addend(), testing::NanSensitiveDoubleEq(row.addend));
        EXPECT_EQ(std::pair(rule->FmtPreDecpnt(), rule->FmtPostDecpnt()), std::pair(row.pre, row.post));
    }
}

TEST_F(SemanticActions, DefaultSurfaceSetsBothAndUnknownUnitsAreOnlyLogged) {
    QtrAdminDscr admin;
    ASSERT_TRUE(Parse(admin, "category A { unit m, mm; defaultsurface mm; convert km <- m / 1000; }"));
    EXPECT_EQ(admin.DefaultInternUnitGet(L"A"), admin.Unit(L"mm"));
    EXPECT_EQ(admin.DefaultSurfaceUnitGet(L"A"), admin.Unit(L"mm"));
    EXPECT_THAT(log_.Messages(), testing::Contains(L"Conv_Finish: unknown target unit \"km\"\n"));
}

// A report about a formula stands at the formula's first token.
TEST_F(SemanticActions, CountedErrorsArePositionedAndSummedUp) {
    QtrAdminDscr admin;
    ExpectOutcome(admin, "category A {\n\tunit m: n;\n\tconvert  km\t<- 1000;\n\tdefaultintern x;\n}", false,
                  {L"no constant expression\n", L"Conv_GetFromRight(): error in formula\n",
                   L"unknown default internal unit\n"});
    EXPECT_EQ(ParseErrors(true).at(1), L"3,10 Conv_GetFromRight(): error in formula\n");
    ASSERT_EQ(log_.Entries().size(), 1u);
    EXPECT_EQ(log_.Entries()[0].line, 108u);
}

// The example description file: its lines define km, "in" and mm the other
// way round than physics would, and the test holds them to what they say.
TEST_F(SemanticActions, ExampleFileConvertsAsItsStatementsSay) {
    QtrAdminDscr admin;
    ASSERT_TRUE(Parse(admin,
                      "// lengths\ncategory Length\n{\n\tunit m;\n\tunit km, mm, \"in\";\n\tdefaultintern m;\n"
                      "\tdefaultsurface mm;\n\tconvert  km\t<- m / 1000\tformat 3, 0;\n"
                      "\tconvert  \"in\"\t<- m / 0.0254;\n\tconvert  mm\t<- m * 1000;\t// explicit\n} // Length\n"));
    // How many m one of each unit makes, as the statements say.
    const struct { const wchar_t* name; double inMetres; } units[] = {
        {L"m", 1.0}, {L"km", 1.0 / 1000}, {L"mm", 1000.0}, {L"in", 1.0 / 0.0254}};
    for (const auto& source : units)
        for (const auto& target : units) {
            SCOPED_TRACE(std::wstring(source.name) + L" -> " + target.name);
            double result = 0.0;
            ASSERT_TRUE(admin.Convert(result, target.name, 2.5, source.name));
            EXPECT_NEAR(result, 2.5 * source.inMetres / target.inMetres, 1e-12 * result);
        }
}

}  // namespace
