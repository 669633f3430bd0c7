// The semantic actions and the loading entry points: what each statement
// does to the administration, which errors count against the file and which
// only reach the log, where the counted ones are positioned, the reading of
// a formula's factor and addend, the example description file conversion by
// conversion, reopened categories, and QtrAdminDscr::Import_Parse.
#include "dscr/semantic_actions.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "dscr/parse_test_support.h"
#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"

namespace {

using Messages = std::vector<std::wstring>;

const QtrConvInfoBase* RuleOf(const QtrAdminBase& admin, const wchar_t* source, const wchar_t* target) {
    const QtrUnitBase* unit = admin.Unit(source);
    return unit ? unit->ConvInfo(target) : nullptr;
}

class SemanticActions : public ParseTest {
protected:
    // Reads `body` as the statements of one category block "A".
    bool ParseBlock(QtrAdminDscr& admin, const std::string& body) { return Parse(admin, "category A {\n" + body + "\n}\n"); }
    Messages LogLines(uint32_t line) const {
        Messages messages;
        for (const QtrLogEntry& entry : log_)
            if (entry.line == line) messages.push_back(entry.message);
        return messages;
    }
};

TEST_F(SemanticActions, StatementTable) {
    const struct {
        std::string body;
        bool accepted;
        Messages errors;
        std::function<void(const QtrAdminDscr&)> check;
    } rows[] = {
        {"defaultintern m; unit m;", false, {L"unknown default internal unit\n"}, {}},
        {"unit m, mm; defaultsurface mm;", true, {},
         [](const QtrAdminDscr& admin) {
             EXPECT_EQ(admin.DefaultInternUnitGet(L"A"), admin.Unit(L"mm"));
             EXPECT_EQ(admin.DefaultSurfaceUnitGet(L"A"), admin.Unit(L"mm"));
         }},
        {"unit m; convert km <- m / 1000;", true, {}, {}},
        {"unit m, km; convert km <- 1000 * m;", true, {},
         [](const QtrAdminDscr& admin) { EXPECT_DOUBLE_EQ(RuleOf(admin, L"m", L"km")->Factor(), 0.001); }},
        {"unit m, km; convert km <- 1000;", false, {L"Conv_GetFromRight(): error in formula\n"}, {}},
        {"unit m, km; convert km <- m * 1000;", true, {},
         [](const QtrAdminDscr& admin) {
             const QtrConvInfoBase* rule = RuleOf(admin, L"m", L"km");
             EXPECT_EQ(rule->Factor(), 1.0 / 1000);
             EXPECT_EQ(rule->Addend(), 0.0);
             EXPECT_TRUE(rule->Is_Explicit());
             EXPECT_EQ(rule->SrcUnit(), admin.Unit(L"m"));
             EXPECT_EQ(rule->TrgtUnit(), admin.Unit(L"km"));
         }},
        {"unit m, km, x; convert km <- m * x;", true, {},
         [](const QtrAdminDscr& admin) { EXPECT_TRUE(std::isinf(RuleOf(admin, L"m", L"km")->Factor())); }},
        {"unit m, km; convert km <- m format 1 + 1, 0;", true, {},
         [](const QtrAdminDscr& admin) {
             EXPECT_EQ(RuleOf(admin, L"m", L"km")->FmtPreDecpnt(), 2);
             EXPECT_EQ(RuleOf(admin, L"m", L"km")->FmtPostDecpnt(), 0);
         }},
        {"unit m, km; convert km <- m format n, 0;", false,
         {L"no constant expression\n", L"Conv_FmtShft(,): constant expected\n"}, {}},
        {"unit m: 5;", true, {}, [](const QtrAdminDscr& admin) { EXPECT_NE(admin.Unit(L"m"), nullptr); }},
        {"unit m: n;", false, {L"no constant expression\n"}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body);
        trace_.clear();
        QtrAdminDscr admin;
        EXPECT_EQ(ParseBlock(admin, row.body), row.accepted);
        EXPECT_EQ(ParseErrorMessages(), row.errors);
        if (row.check) row.check(admin);
    }
}

TEST_F(SemanticActions, ModelErrorsGoToTheLogAndLeaveTheParseSuccessful) {
    QtrAdminDscr admin;
    EXPECT_TRUE(ParseBlock(admin, "unit m, x, y; convert km <- cm * 2; convert km <- m / 1000;"));
    EXPECT_EQ(LogLines(404), Messages{L"Conv_Finish: unknown src unit \"cm\"\n"});
    EXPECT_EQ(LogLines(407),
              (Messages{L"Conv_Finish: unknown target unit \"km\"\n", L"Conv_Finish: unknown target unit \"km\"\n"}));
    // No rule links m, x and y, so completion cannot finish.
    EXPECT_EQ(LogLines(285), Messages{L"Cat_Finish: ConvInfoComplete misses some conversion rules\n"});
    EXPECT_TRUE(ParseErrors().empty());
}

TEST_F(SemanticActions, CountedErrorsGiveOneSummaryLineAndNothingElseInTheLog) {
    QtrAdminDscr admin;
    EXPECT_FALSE(ParseBlock(admin, "unit m; defaultintern x; defaultsurface y;\nunit k: n;"));
    EXPECT_EQ(ParseErrors().size(), 3u);
    ASSERT_EQ(log_.size(), 1u);
    EXPECT_EQ(log_[0].line, 108u);
    EXPECT_EQ(log_[0].message, L"Parse_UnitdescrFile(,\"" + path_ + L"\"): 3 errors\n");
}

TEST_F(SemanticActions, CountedErrorsArePositionedAtTheirNodeOrTheLastToken) {
    QtrAdminDscr admin;
    const std::string body =
        "\tunit m, km;\n"
        "\tconvert  km\t<- 1000;\n"
        "\tdefaultintern  x;\n"
        "\tconvert km <- m format 1, n + 2 ;\n";
    EXPECT_FALSE(ParseBlock(admin, body));
    const std::vector<ReportedParseError> errors = ParseErrors();
    ASSERT_EQ(errors.size(), 4u);
    // The formula's report stands at its first token, the target km.
    EXPECT_EQ(errors[0].message, L"Conv_GetFromRight(): error in formula\n");
    EXPECT_EQ(errors[0].line, 3);
    EXPECT_EQ(errors[0].column, 10);
    EXPECT_EQ(errors[1].message, L"unknown default internal unit\n");
    EXPECT_EQ(errors[1].line, 4);
    EXPECT_EQ(errors[1].column, 16);
    EXPECT_EQ(errors[2].message, L"no constant expression\n");
    EXPECT_EQ(errors[2].line, 5);
    EXPECT_EQ(errors[2].column, 27);
    // No node to blame: the report stands at the last token, the ";".
    EXPECT_EQ(errors[3].message, L"Conv_FmtShft(,): constant expected\n");
    EXPECT_EQ(errors[3].line, 5);
    EXPECT_EQ(errors[3].column, 33);
}

TEST_F(SemanticActions, FormatShiftsAreTruncatedTowardZeroAndLimited) {
    const struct {
        const char* clause;
        int pre, post;
    } rows[] = {{"2.9, -0.5", 2, 0}, {"-2.9, 7.99", -2, 7}, {"1e300, -1e300", INT_MAX, INT_MIN}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.clause);
        QtrAdminDscr admin;
        ASSERT_TRUE(ParseBlock(admin, std::string("unit m, k; convert k <- m format ") + row.clause + ";"));
        EXPECT_EQ(RuleOf(admin, L"m", L"k")->FmtPreDecpnt(), row.pre);
        EXPECT_EQ(RuleOf(admin, L"m", L"k")->FmtPostDecpnt(), row.post);
    }
}

TEST_F(SemanticActions, RefusedUnitsAndRulesLeaveTheFirstInPlace) {
    QtrAdminDscr admin;
    EXPECT_TRUE(ParseBlock(admin, "unit m, km; unit m; convert km <- m * 1000; convert km <- m * 2;"));
    std::vector<std::wstring> names;
    admin.UnitNames(names, admin.Category(L"A"));
    EXPECT_EQ(names, (std::vector<std::wstring>{L"m", L"km"}));
    EXPECT_EQ(RuleOf(admin, L"m", L"km")->Factor(), 1.0 / 1000);
}

TEST_F(SemanticActions, ConvertStatementsReadAsUnitAlgebra) {
    QtrAdminDscr admin;
    ASSERT_TRUE(Parse(admin,
                      "category Length { unit m, km; convert m <- km / 1000; }\n"
                      "category Temperature { unit degC, degF; convert degC <- degF * 1.8 - 32; }\n"));
    double result = 0.0;
    ASSERT_TRUE(admin.Convert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    ASSERT_TRUE(admin.Convert(result, L"degC", 212.0, L"degF"));
    EXPECT_DOUBLE_EQ(result, 100.0);
    ASSERT_TRUE(admin.Convert(result, L"degF", 100.0, L"degC"));
    EXPECT_DOUBLE_EQ(result, 212.0);
}

// The example description file: its lines define km, "in" and mm the other
// way round than physics would, and the test holds them to what they say.
TEST_F(SemanticActions, ExampleFileConvertsAsItsStatementsSay) {
    QtrAdminDscr admin;
    ASSERT_TRUE(Parse(admin,
                      "// lengths\n"
                      "category Length\n"
                      "{\n"
                      "\tunit m;\n"
                      "\tunit km, mm, \"in\";\n"
                      "\tdefaultintern m;\n"
                      "\tdefaultsurface mm;\n"
                      "\tconvert  km\t<- m / 1000\tformat 3, 0;\n"
                      "\tconvert  \"in\"\t<- m / 0.0254;\n"
                      "\tconvert  mm\t<- m * 1000;\t// explicit\n"
                      "} // Length\n"));
    std::vector<std::wstring> names;
    admin.UnitNames(names, admin.Category(L"Length"));
    EXPECT_EQ(names, (std::vector<std::wstring>{L"m", L"km", L"mm", L"in"}));
    EXPECT_EQ(admin.DefaultInternUnitGet(L"Length"), admin.Unit(L"m"));
    EXPECT_EQ(admin.DefaultSurfaceUnitGet(L"Length"), admin.Unit(L"mm"));

    // How many m one of each unit makes, as the statements say: one km is
    // 1/1000 m, one in is 1/0.0254 m and one mm is 1000 m.
    const struct {
        const wchar_t* name;
        double inMetres;
    } units[] = {{L"m", 1.0}, {L"km", 1.0 / 1000}, {L"mm", 1000.0}, {L"in", 1.0 / 0.0254}};
    for (const auto& source : units) {
        for (const auto& target : units) {
            SCOPED_TRACE(std::wstring(source.name) + L" -> " + target.name);
            double result = 0.0;
            ASSERT_TRUE(admin.Convert(result, target.name, 2.5, source.name));
            const double expected = 2.5 * source.inMetres / target.inMetres;
            EXPECT_NEAR(result, expected, 1e-12 * expected);
        }
    }
    for (const wchar_t* target : {L"km", L"mm", L"in"}) EXPECT_TRUE(RuleOf(admin, L"m", target)->Is_Explicit());
    EXPECT_FALSE(RuleOf(admin, L"km", L"m")->Is_Explicit());
    EXPECT_EQ(RuleOf(admin, L"m", L"km")->FmtPreDecpnt(), 3);
    EXPECT_EQ(RuleOf(admin, L"km", L"m")->FmtPreDecpnt(), -3);
    EXPECT_EQ(RuleOf(admin, L"m", L"in")->FmtPreDecpnt(), 0);
}

TEST_F(SemanticActions, SecondBlockOfACategoryAddsToIt) {
    QtrAdminDscr admin;
    EXPECT_TRUE(Parse(admin,
                      "category L { unit m; defaultintern m; }\n"
                      "category T { unit s; }\n"
                      "category L { unit km; convert km <- m * 1000; defaultsurface km; }\n"));
    std::vector<std::wstring> names;
    admin.CategNames(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"L", L"T"}));
    double result = 0.0;
    ASSERT_TRUE(admin.Convert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_EQ(admin.DefaultInternUnitGet(L"L"), admin.Unit(L"km"));
    EXPECT_EQ(admin.DefaultSurfaceUnitGet(L"L"), admin.Unit(L"km"));

    // A reopened block cut short by a syntax error leaves the category with
    // the administration.
    EXPECT_FALSE(Parse(admin, "category L { unit mm; convert mm <- m / 1000; = }"));
    EXPECT_EQ(admin.Unit(L"mm")->Category(), admin.Category(L"L"));
}

TEST_F(SemanticActions, ImportsAddToEachOtherAndSetTheImportFlag) {
    const std::wstring length = WriteFile("length.dscr", "category Length { unit m, km; convert km <- m * 1000; }");
    const std::wstring faulty = WriteFile("faulty.dscr", "category Mass { unit kg; defaultintern g; }");
    const std::wstring time = WriteFile("time.dscr", "category Time { unit s, h; convert h <- s * 3600; }");
    QtrAdminDscr admin;
    EXPECT_FALSE(admin.IsValid());
    EXPECT_TRUE(admin.Import_Parse(length.c_str()));
    EXPECT_TRUE(admin.IsValid());
    EXPECT_FALSE(admin.Import_Parse(faulty.c_str()));
    EXPECT_FALSE(admin.IsValid());
    EXPECT_TRUE(admin.Import_Parse(time.c_str()));
    EXPECT_TRUE(admin.IsValid());
    std::vector<std::wstring> names;
    admin.CategNames(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Length", L"Mass", L"Time"}));
}

TEST_F(SemanticActions, ImportOfAFileNowhereToBeFoundKeepsTheImportFlag) {
    QtrAdminDscr admin;
    ASSERT_TRUE(admin.Import_Parse(WriteFile("a.dscr", "category A { }").c_str()));
    for (const wchar_t* name : {L"quantor_semantic_actions_test_nowhere.dscr", static_cast<const wchar_t*>(nullptr)}) {
        log_.clear();
        EXPECT_FALSE(admin.Import_Parse(name));
        EXPECT_TRUE(admin.IsValid());
        ASSERT_FALSE(log_.empty());
        EXPECT_EQ(log_.back().line, 37u);
        EXPECT_EQ(log_.back().message, QtrFormat(L"QtrAdminDscr::Import_Parse(\"%s\"): file not found\n", name));
    }
}

// Formula trees built by hand, as the simplifier leaves them.
class FormulaReading : public SemanticActions {
protected:
    static X_ParsNodePtr Name(const wchar_t* text) {
        return X_ParsNode::NewLeaf(ND_NAME, X_Token{1, 0, TOKID_ID, text});
    }
    static X_ParsNodePtr Number(const wchar_t* text) {
        return X_ParsNode::NewLeaf(ND_FLOAT, X_Token{1, 0, TOKID_FLOAT, text});
    }
    static X_ParsNodePtr Op(TE_PNodeId type, X_ParsNodePtr left, X_ParsNodePtr right = nullptr) {
        return X_ParsNode::NewOperator(type, std::move(left), std::move(right));
    }
    static X_ParsNodePtr Formula(const wchar_t* target, X_ParsNodePtr source) {
        return Op(ND_CONVFORM, Name(target), std::move(source));
    }
    bool Read(const X_ParsNodePtr& formula) {
        return Conv_GetFromRight(formula.get(), target_, source_, factor_, addend_);
    }

    std::wstring target_, source_;
    double factor_ = 0.0, addend_ = 0.0;
};

TEST_F(FormulaReading, InnermostOperatorsCountAndSignsChangeTheFactor) {
    ASSERT_TRUE(Read(Formula(L"x", Op(ND_UNMINUS, Name(L"m")))));
    EXPECT_EQ(target_, L"x");
    EXPECT_EQ(source_, L"m");
    EXPECT_EQ(factor_, -1.0);
    EXPECT_EQ(addend_, 0.0);
    ASSERT_TRUE(Read(Formula(L"t", Op(ND_MULT, Op(ND_MULT, Name(L"s"), Number(L"2")), Number(L"3")))));
    EXPECT_EQ(factor_, 2.0);
    // The subtraction's flag stays set for the inner addition.
    ASSERT_TRUE(Read(Formula(L"t", Op(ND_MINUS, Op(ND_PLUS, Name(L"s"), Number(L"5")), Number(L"7")))));
    EXPECT_EQ(addend_, -5.0);
    ASSERT_TRUE(Read(Formula(L"t", Op(ND_UNMINUS, Op(ND_DIV, Name(L"s"), Number(L"4"))))));
    EXPECT_EQ(factor_, -0.25);
}

TEST_F(FormulaReading, FormulasOfAnotherShapeAreReported) {
    EXPECT_FALSE(Read(nullptr));
    EXPECT_FALSE(Read(Name(L"m")));
    EXPECT_FALSE(Read(Op(ND_CONVFORM, Number(L"1"), Name(L"m"))));
    EXPECT_FALSE(Read(Formula(L"km", Number(L"1000"))));
    EXPECT_FALSE(Read(Formula(L"km", Op(ND_MULT, Number(L"2"), Name(L"m")))));
    EXPECT_FALSE(Read(Formula(L"km", Op(ND_UNMINUS, nullptr))));
    EXPECT_FALSE(Read(Formula(L"km", Name(L""))));
    EXPECT_EQ(ParseErrorMessages(), (Messages{L"Conv_GetFromRight(.): ND_CONVFORM-node expected\n",
                                              L"Conv_GetFromRight(.): ND_CONVFORM-node expected\n",
                                              L"Conv_GetFromRight(.): left name-node expected\n",
                                              L"Conv_GetFromRight(): error in formula\n",
                                              L"Conv_GetFromRight(): error in formula\n",
                                              L"Conv_GetFromRight(): error in formula\n",
                                              L"Conv_GetFromRight(): error in formula\n"}));
    size_t printed = 0;
    for (const std::wstring& text : trace_) printed += text.find(L"Conv_GetFromRight err") != std::wstring::npos;
    EXPECT_EQ(printed, 6u);
}

}  // namespace
