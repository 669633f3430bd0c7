// The parser error report: the position prefix, the two forms, the count,
// and parse states that belong to one parse and one thread.
#include "dscr/parse_error.h"

#include <gtest/gtest.h>

#include <thread>

#include "dscr/pars_node.h"
#include "tree_test_support.h"

namespace {

using namespace tree_test;

X_ParseState StateAt(const std::wstring& file, int line, int column) {
    X_ParseState state;
    state.fileName = file;
    state.lastToken.line = line;
    state.lastToken.column = column;
    return state;
}

TEST(ParseError, PlainFormIsPlacedAtTheLastToken) {
    TraceCapture trace;
    X_ParseState state = StateAt(L"/data/units.dscr", 3, 7);
    X_ParseStateScope scope(state);
    ParseError_Report(L"parse error\n");
    ParseError_Report(L"unit %s: %d\n", L"km", 2);
    const std::vector<std::wstring> expected = {L"/data/units.dscr(3,7): ##### parser-error: parse error\n",
                                                L"/data/units.dscr(3,7): ##### parser-error: unit km: 2\n"};
    EXPECT_EQ(trace.Texts(), expected);
    EXPECT_EQ(state.errorCount, 2);
}

TEST(ParseError, NodeFormIsPlacedAtTheEarliestTokenOfTheNode) {
    TraceCapture trace;
    X_ParseState state = StateAt(L"u.dscr", 9, 1);
    X_ParseStateScope scope(state);
    auto formula = Op(ND_CONVFORM, Name(L"km", 4, 8), Op(ND_DIV, Name(L"m", 4, 14), Number(L"1000", 4, 18)));
    ParseError_ReportAt(formula->Right(), L"bad\n");
    ParseError_ReportAt(nullptr, L"none\n");
    const std::vector<std::wstring> expected = {L"u.dscr(4,14): ##### parser-error: bad\n",
                                                L"u.dscr(9,1): ##### parser-error: none\n"};
    EXPECT_EQ(trace.Texts(), expected);
    EXPECT_EQ(state.errorCount, 2);
}

TEST(ParseError, ScopesNestAndRestore) {
    const int32_t fallbackBefore = ParseState_Current().errorCount;
    X_ParseState outer;
    X_ParseState inner;
    {
        X_ParseStateScope outerScope(outer);
        ParseError_Report(L"one\n");
        {
            X_ParseStateScope innerScope(inner);
            EXPECT_EQ(&ParseState_Current(), &inner);
            ParseError_Report(L"two\n");
            ParseError_Report(L"three\n");
        }
        EXPECT_EQ(&ParseState_Current(), &outer);
        ParseError_Report(L"four\n");
    }
    EXPECT_EQ(outer.errorCount, 2);
    EXPECT_EQ(inner.errorCount, 2);
    // Without an installed state reports still count, in the thread's fallback.
    ParseError_Report(L"stray\n");
    EXPECT_EQ(ParseState_Current().errorCount, fallbackBefore + 1);
}

TEST(ParseError, EachThreadCountsItsOwnParse) {
    auto parse = [](int reports, int32_t& count, int32_t& fallbackCount) {
        X_ParseState state;
        {
            X_ParseStateScope scope(state);
            for (int i = 0; i < reports; ++i) ParseError_ReportAt(nullptr, L"error %d\n", i);
        }
        ParseError_Report(L"after the parse\n");
        count = state.errorCount;
        fallbackCount = ParseState_Current().errorCount;
    };
    int32_t countA = 0, countB = 0, fallbackA = 0, fallbackB = 0;
    std::thread a(parse, 1000, std::ref(countA), std::ref(fallbackA));
    std::thread b(parse, 3, std::ref(countB), std::ref(fallbackB));
    a.join();
    b.join();
    EXPECT_EQ(countA, 1000);
    EXPECT_EQ(countB, 3);
    EXPECT_EQ(fallbackA, 1);
    EXPECT_EQ(fallbackB, 1);
}

}  // namespace
