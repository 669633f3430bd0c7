// The grammar and the parser driver: what the grammar accepts, where the first
// syntax error stands, how deep expressions are refused, and parses on two threads.
#include <atomic>
#include <thread>

#include "dscr/parse_test_support.h"

namespace {

using Grammar = ParseTest;

TEST_F(Grammar, OutcomeTable) {
    const struct { std::string text; bool accepted; Messages errors; } rows[] = {
        {"category Length { }", true, {}},
        {"category Length: 3 { unit m, km: 1000; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2, 0; }", true, {}},
        {"category Length { unit m, km; convert km <- m / 1000 format 2; }", false, {L"parse error\n"}},
        {"category Length { unit m; } category Mass { unit kg; }", true, {}},
        {"category A { unit \"metre\"; }", true, {}},
        {"category A { unit m: (1 + (2 * 3", false, {L"parse error\n"}},
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
