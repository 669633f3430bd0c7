// The grammar and the parser driver: what the grammar accepts, where the first
// syntax error stands, how deep expressions are refused, and parses on two threads.
#include <atomic>
#include <thread>

#include "dscr/parse_test_support.h"

namespace {

std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

using Grammar = ParseTest;

TEST_F(Grammar, OutcomeTable) {
    const struct { std::string text; bool accepted; Messages errors; } rows[] = {
        {"", false, {L"parse error\n"}},
        {"category Length { }", true, {}},
        {"category Length: 3 { unit m, km: 1000; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2, 0; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2; }", false, {L"parse error\n"}},
        {"category Length { unit m; } category Mass { unit kg; }", true, {}},
        {"category A { unit [m]; }", false, {L"parse error\n"}},
        {"category A { unit \"metre\"; }", true, {}},
        {"category A { unit m: (1 + (2 * 3", false, {L"parse error\n"}},
        {"category A { unit m: " + std::string(10000, '(') + " }", false, {L"parser stack overflow\n"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 80));
        QtrAdminDscr admin;
        ExpectOutcome(admin, row.text, row.accepted, row.errors);
    }
}

TEST_F(Grammar, FirstSyntaxErrorIsReportedAtItsTokenAndEndsTheParse) {
    QtrAdminDscr admin;
    ExpectOutcome(admin, "category A { unit m = 1; }\ncategory B { unit kg; }", false, {L"parse error\n"});
    EXPECT_EQ(ParseErrors(true), Messages{L"1,20 parse error\n"});
    EXPECT_EQ(admin.Category(L"B"), nullptr);
}

TEST_F(Grammar, ExpressionsDeeperThanTwoHundredLevelsAreRefusedAtTheirFirstToken) {
    QtrAdminDscr admin;
    const std::string head = "category A { unit m, k;\n convert k <- ";
    ExpectOutcome(admin, head + "m format 1" + Repeated(" + 1", 200) + ", 0; }", true, {});
    ExpectOutcome(admin, head + "1" + Repeated(" + 1", 201) + "; }", false, {L"expression too deep\n"});
    EXPECT_EQ(ParseErrors(true), Messages{L"2,14 expression too deep\n"});
    ExpectOutcome(admin, head + "m / (2" + Repeated(" * 2", 100000) + "); }", false, {L"expression too deep\n"});
    EXPECT_EQ(ParseErrors(true), Messages{L"2,19 expression too deep\n"});
}

// Runs of signs copy the operand before them, giving trees whose rewrites
// never settle; the simplifier gives up on them instead of running for hours,
// and of the many errors counted in the statement only the first is written.
TEST_F(Grammar, FormulasThatNeverSettleAreRefusedAsTooComplex) {
    QtrAdminDscr admin;
    EXPECT_FALSE(Parse(admin, "category A { unit m, k;\n convert k <- m format " + Repeated("-", 10) + "3, 0; }"));
    EXPECT_THAT(ParseErrors(), testing::ElementsAre(testing::StartsWith(L"X_ParsNode::Tree_Opt: ")));
}

using ParseThreads = ParseTest;

TEST_F(ParseThreads, ParsesOnTwoThreadsKeepTheirOwnState) {
    const std::wstring good = WriteFile("good.dscr", "category L { unit m, km, mm; convert km <- m * 1000; }");
    const std::wstring faulty =
        WriteFile("faulty.dscr", "category L { unit m; defaultintern x; defaultsurface y; convert k <- 1; unit mm; }");
    const std::wstring summary = L"Parse_UnitdescrFile(,\"" + faulty + L"\"): 3 errors\n";
    std::atomic<int> summed{0}, asExpected{0};
    const QtrLogSink previousLog = QtrSetLogSink([&](const QtrLogEntry& entry) { summed += entry.message == summary; });
    const QtrTraceSink previousTrace = QtrSetTraceSink({});
    const auto read = [&asExpected](const std::wstring& file, bool valid) {
        for (int i = 0; i < 20; ++i) {
            QtrAdminDscr admin;
            if (admin.Import_Parse(file.c_str()) == valid && admin.Unit(L"mm")) ++asExpected;
        }
    };
    std::thread goodReader(read, good, true), faultyReader(read, faulty, false);
    goodReader.join();
    faultyReader.join();
    QtrSetLogSink(previousLog);
    QtrSetTraceSink(previousTrace);
    EXPECT_EQ(asExpected, 40);
    EXPECT_EQ(summed, 20);
}

}  // namespace
