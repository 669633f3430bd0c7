// The grammar and the parser driver: what the grammar accepts, how
// expressions group, what an empty operand stands for, how the first syntax
// error and a full stack end a parse, how deep expressions are refused, and
// that parses on two threads keep to themselves.
#include <gtest/gtest.h>

#include <algorithm>

#include <atomic>
#include <cmath>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "dscr/parse_test_support.h"
#include "quantor/category.h"
#include "quantor/unit.h"

namespace {

using Messages = std::vector<std::wstring>;

std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

class Grammar : public ParseTest {
protected:
    // The format shifts that `clause` gives the rule of `convert k <- m`.
    bool FormatShifts(const std::string& clause, int& pre, int& post) {
        QtrAdminDscr admin;
        const bool parsed = Parse(admin, "category A { unit m, k; convert k <- m format " + clause + "; }");
        const QtrConvInfoBase* rule = admin.Unit(L"m") ? admin.Unit(L"m")->ConvInfo(L"k") : nullptr;
        if (!rule) return false;
        pre = rule->FmtPreDecpnt();
        post = rule->FmtPostDecpnt();
        return parsed;
    }
    int PreShift(const std::string& expression) {
        int pre = -999, post = -999;
        EXPECT_TRUE(FormatShifts(expression + ", 1", pre, post)) << expression;
        return pre;
    }
    Messages SummaryLines() const {
        Messages lines;
        for (const QtrLogEntry& entry : log_)
            if (entry.line == 108) lines.push_back(entry.message);
        return lines;
    }
    std::wstring Summary(int errors) const {
        return L"Parse_UnitdescrFile(,\"" + path_ + L"\"): " + std::to_wstring(errors) + L" errors\n";
    }
};

TEST_F(Grammar, OutcomeTable) {
    const Messages kParseError{L"parse error\n"};
    const struct {
        std::string text;
        bool accepted;
        Messages errors;
    } rows[] = {
        {"", false, kParseError},
        {"// no category at all\n   // comments only\n", false, kParseError},
        {"category Length { }", true, {}},
        {"category Length: 3 { unit m, km: 1000; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2, 0; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2; }", false, kParseError},
        {"category Length { unit m; } category Mass { unit kg; }", true, {}},
        {"category A { unit m = 1; }\ncategory B { unit kg; }", false, kParseError},
        {"category A { unit [m]; }", false, kParseError},
        {"category A { unit \"metre\"; }", true, {}},
        {"category A { unit m: " + std::string(10000, '(') + " }", false, {L"parser stack overflow\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 80));
        trace_.clear();
        log_.clear();
        QtrAdminDscr admin;
        EXPECT_EQ(Parse(admin, row.text), row.accepted);
        EXPECT_EQ(ParseErrorMessages(), row.errors);
        EXPECT_EQ(SummaryLines(), row.accepted ? Messages{} : Messages{Summary(1)});
    }
}

TEST_F(Grammar, AcceptedFilesFillTheAdministration) {
    QtrAdminDscr admin;
    ASSERT_TRUE(Parse(admin, "category Length { unit m; } category Mass { unit kg, \"metric ton\"; }\n"
                             "category Empty { }"));
    std::vector<std::wstring> names;
    admin.CategNames(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Length", L"Mass", L"Empty"}));
    ASSERT_NE(admin.Unit(L"metric ton"), nullptr);
    EXPECT_EQ(admin.Unit(L"metric ton")->Category()->Name(), L"Mass");
    admin.UnitNames(names, admin.Category(L"Empty"));
    EXPECT_TRUE(names.empty());
}

TEST_F(Grammar, FirstSyntaxErrorIsReportedAtItsTokenAndEndsTheParse) {
    QtrAdminDscr admin;
    const std::string text = "category A { unit m = 1; }\ncategory B { unit kg; }";
    EXPECT_FALSE(Parse(admin, text));
    const std::vector<ReportedParseError> errors = ParseErrors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].line, 1);
    EXPECT_EQ(errors[0].column, static_cast<int>(text.find('=')));
    EXPECT_EQ(admin.Category(L"B"), nullptr);
    // What was read before the error stays: the unit m of the open block.
    ASSERT_NE(admin.Unit(L"m"), nullptr);
    EXPECT_EQ(admin.Unit(L"m")->Category(), admin.Category(L"A"));
}

TEST_F(Grammar, TokensThatNoRuleUsesAreSyntaxErrors) {
    for (const std::string statement : {"unit a -> b;", "unit a => b;", "unit .5;", "unit a; }}"}) {
        SCOPED_TRACE(statement);
        trace_.clear();
        QtrAdminDscr admin;
        EXPECT_FALSE(Parse(admin, "category A { " + statement + " }"));
        EXPECT_EQ(ParseErrorMessages(), Messages{L"parse error\n"});
    }
}

TEST_F(Grammar, AbandonedParsesFreeTheTreesStillOnTheStack) {
    for (const std::string text : {"category A { unit m: (1 + (2 * 3", "category A { convert k <- m * (2 + 3 format 1,",
                                   "category A { unit m; convert k <- m / 1000 format 2 + 3 * 4 4"}) {
        SCOPED_TRACE(text);
        trace_.clear();
        QtrAdminDscr admin;
        EXPECT_FALSE(Parse(admin, text));
        EXPECT_EQ(ParseErrorMessages(), Messages{L"parse error\n"});
    }
}

TEST_F(Grammar, StackHoldsTenThousandEntries) {
    QtrAdminDscr admin;
    EXPECT_TRUE(Parse(admin, "category A { unit m: " + std::string(3000, '(') + "1" + std::string(3000, ')') + "; }"));
    EXPECT_TRUE(ParseErrors().empty());
    trace_.clear();
    EXPECT_FALSE(Parse(admin, "category A { unit m: " + std::string(100000, '(') + "1; }"));
    EXPECT_EQ(ParseErrorMessages(), Messages{L"parser stack overflow\n"});
    EXPECT_EQ(SummaryLines().back(), Summary(1));
}

TEST_F(Grammar, OperatorsGroupByPrecedenceFromTheLeft) {
    EXPECT_EQ(PreShift("2 - 3 * 4"), -10);
    EXPECT_EQ(PreShift("10 - 2 - 3"), 5);
    EXPECT_EQ(PreShift("64 / 4 / 2"), 8);
    EXPECT_EQ(PreShift("(2 - 3) * 4"), -4);
    EXPECT_EQ(PreShift("2 * -3 + +7"), 1);
    EXPECT_EQ(PreShift("-(2 + 3) * 2"), -10);
    EXPECT_EQ(PreShift("0x1F - 1.5e1 + 12. + 0.5"), 28);
}

TEST_F(Grammar, EmptyOperandIsACopyOfTheMostRecentReduction) {
    // "2 *" multiplies the 2 by a copy of itself; "1 +" adds a copy of the 1.
    int pre = 0, post = 0;
    ASSERT_TRUE(FormatShifts("2 *, 1 +", pre, post));
    EXPECT_EQ(pre, 4);
    EXPECT_EQ(post, 2);
    // After "3 * -" the empty operand copies the 3, so the clause reads
    // 3 * (-3) - 5: two signs in a row read a negated empty operand.
    EXPECT_EQ(PreShift("3 * - - 5"), -14);
    // A format number left empty copies the other one.
    ASSERT_TRUE(FormatShifts("3,", pre, post));
    EXPECT_EQ(post, 3);
}

TEST_F(Grammar, EmptyOperandAfterANameCopiesTheName) {
    QtrAdminDscr admin;
    EXPECT_FALSE(Parse(admin, "category A { unit m: ; }"));
    EXPECT_EQ(ParseErrorMessages(), Messages{L"no constant expression\n"});
    EXPECT_NE(admin.Unit(L"m"), nullptr);
}

TEST_F(Grammar, HeadsAndUnitDefinitionsLeaveNoValueBehind) {
    // The empty target of the formula follows a category head, and a unit
    // definition whose value the action has freed: it is null both times.
    for (const std::string text : {"category A: 5 { convert <- m; }", "category A { unit m: 5; convert <- m; }"}) {
        SCOPED_TRACE(text);
        trace_.clear();
        QtrAdminDscr admin;
        EXPECT_FALSE(Parse(admin, text));
        EXPECT_EQ(ParseErrorMessages(), Messages{L"Conv_GetFromRight(.): left name-node expected\n"});
    }
}

TEST_F(Grammar, ExpressionsUpToAThousandLevelsAreRead) {
    EXPECT_EQ(PreShift("1" + Repeated(" + 1", 1000)), 1001);
    EXPECT_TRUE(ParseErrors().empty());
}

TEST_F(Grammar, DeeperExpressionsAreRefusedAtTheirFirstToken) {
    const std::string head = "category A { unit m, k;\n convert k <- ";
    const struct {
        std::string formula;
        size_t firstToken;  // offset in the formula
    } rows[] = {
        {"1" + Repeated(" + 1", 1001), 0},                 // one level too deep
        {"m" + Repeated(" + m", 100000), 0},               // a formula of 100000 terms
        {"m / (2" + Repeated(" * 2", 100000) + ")", 5},    // the same inside parentheses
        {"m * (2 * " + Repeated("- ", 100000) + "3)", 5},  // 100000 signs, each copying what came before
        {"m * (2" + Repeated(" *", 40) + ")", 5},          // copies that double the tree forty times
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.formula.substr(0, 40));
        trace_.clear();
        log_.clear();
        QtrAdminDscr admin;
        EXPECT_FALSE(Parse(admin, head + row.formula + "; }"));
        const std::vector<ReportedParseError> errors = ParseErrors();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].message, L"expression too deep\n");
        EXPECT_EQ(errors[0].line, 2);
        EXPECT_EQ(errors[0].column, static_cast<int>(head.size() - head.find('\n') - 1 + row.firstToken));
        EXPECT_EQ(SummaryLines(), Messages{Summary(1)});
    }
}

// Runs of signs copy the operand before them, giving trees whose rewrites
// never settle; the simplifier gives up on them instead of running for hours.
TEST_F(Grammar, FormulasThatNeverSettleAreRefusedAsTooComplex) {
    QtrAdminDscr admin;
    EXPECT_FALSE(Parse(admin, "category A { unit m, k;\n convert k <- m format " + Repeated("-", 10) + "3, 0; }"));
    const std::vector<ReportedParseError> errors = ParseErrors();
    const auto tooComplex = std::count_if(errors.begin(), errors.end(), [](const ReportedParseError& error) {
        return error.message == L"X_ParsNode::Tree_Opt: formula too complex\n";
    });
    EXPECT_EQ(tooComplex, 1);
}

TEST_F(Grammar, MissingFileIsReportedToTheLog) {
    QtrAdminDscr admin;
    const std::wstring missing = quantor::detail::FromUtf8((folder_ / "missing.dscr").string());
    EXPECT_FALSE(Parse_UnitdescrFile(&admin, missing));
    ASSERT_FALSE(log_.empty());
    EXPECT_EQ(log_.back().line, 93u);
    EXPECT_EQ(log_.back().message, L"Parse_UnitdescrFile(,\"" + missing + L"\"): file not found\n");
}

// Two threads read two administrations at once, one of them from a faulty
// file; each parse counts only its own errors.
TEST(ParseThreads, ParsesOnTwoThreadsKeepTheirOwnState) {
    std::string pattern = (std::filesystem::temp_directory_path() / "quantor_threads_XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    const std::filesystem::path folder = pattern;
    const auto write = [&](const char* name, const std::string& text) {
        std::ofstream(folder / name) << text;
        return quantor::detail::FromUtf8((folder / name).string());
    };
    const std::wstring good = write("good.dscr",
                                    "category Length { unit m, km, mm; defaultintern m;\n"
                                    " convert km <- m * 1000; convert mm <- m / 1000 format 3, -3; }\n"
                                    "category Time { unit s, h; convert h <- s * 3600; }\n");
    const std::wstring faulty = write("faulty.dscr",
                                      "category Length { unit m; defaultintern x; defaultsurface y;\n"
                                      " convert km <- 1000; unit mm; }\n");
    std::mutex logMutex;
    std::vector<std::wstring> summaries;
    const QtrLogSink previousLog = QtrSetLogSink([&](const QtrLogEntry& entry) {
        const std::lock_guard lock(logMutex);
        if (entry.line == 108) summaries.push_back(entry.message);
    });
    const QtrTraceSink previousTrace = QtrSetTraceSink({});

    constexpr int kRounds = 20;
    std::atomic<int> goodLoads{0}, faultyFailures{0};
    std::thread goodReader([&] {
        for (int i = 0; i < kRounds; ++i) {
            QtrAdminDscr admin;
            double result = 0.0;
            if (admin.Import_Parse(good.c_str()) && admin.Convert(result, L"mm", 2.5, L"km") &&
                std::abs(result - 2.5e6) < 1e-6)
                ++goodLoads;
        }
    });
    std::thread faultyReader([&] {
        for (int i = 0; i < kRounds; ++i) {
            QtrAdminDscr admin;
            if (!admin.Import_Parse(faulty.c_str()) && admin.Unit(L"mm")) ++faultyFailures;
        }
    });
    goodReader.join();
    faultyReader.join();
    QtrSetLogSink(previousLog);
    QtrSetTraceSink(previousTrace);
    std::filesystem::remove_all(folder);

    EXPECT_EQ(goodLoads, kRounds);
    EXPECT_EQ(faultyFailures, kRounds);
    const std::wstring expected = L"Parse_UnitdescrFile(,\"" + faulty + L"\"): 3 errors\n";
    EXPECT_EQ(summaries, std::vector<std::wstring>(kRounds, expected));
}

}  // namespace
