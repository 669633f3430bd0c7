// Tree_Opt remembers which subtrees have reached their fixed point. Here it
// is compared with the plain algorithm, which re-runs every subtree in every
// pass, on random trees: the final trees, the returned counts, the messages
// and the error counts must be identical.
#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "dscr/parse_error.h"
#include "dscr/tree_opt.h"
#include "tree_test_support.h"

namespace {

using namespace tree_test;
using namespace quantor::detail;

// A subtree that never reaches its fixed point inside a larger one makes
// the plain algorithm's work explode; such trees are set aside.
struct TooExpensive {};
constexpr long kSubtreeRunBudget = 100000;
long gSubtreeRuns = 0;

// The algorithm as stated, without memory: rounds of the four passes until
// all four return 0, at most depth + 2 rounds.
int PlainTreeOpt(X_ParsNode& node) {
    if (++gSubtreeRuns > kSubtreeRunBudget) throw TooExpensive();
    const int bound = node.Depth() + 1;
    int changes = 0;
    int rounds = 0;
    while (rounds <= bound) {
        const int rules = Tree_OptRules(node, PlainTreeOpt);
        const int constCalc = Tree_ConstCalc(node, PlainTreeOpt);
        const int exprElim = Tree_ExprElim(node, PlainTreeOpt);
        const int reorder = Tree_Reorder(node, PlainTreeOpt);
        changes += rules + constCalc + reorder;
        ++rounds;
        if (rules == 0 && constCalc == 0 && exprElim == 0 && reorder == 0) return changes;
    }
    ParseError_ReportAt(&node, L"X_ParsNode::Tree_Opt: break after %d changes and %d loops\n", changes, rounds);
    return -1;
}

class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : rng_(seed) {}

    // A tree of depth at most `maxDepth`; its root is sometimes a formula.
    X_ParsNodePtr Make(int maxDepth) {
        if (maxDepth > 0 && Chance(4)) return Op(ND_CONVFORM, Subtree(maxDepth - 1), Subtree(maxDepth - 1));
        return Subtree(maxDepth);
    }

private:
    bool Chance(int oneIn) { return Pick(oneIn) == 0; }
    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

    X_ParsNodePtr Subtree(int depth) {
        if (depth == 0 || Chance(3)) return RandomLeaf();
        static constexpr TE_PNodeId kBinary[] = {ND_PLUS, ND_MINUS, ND_MULT, ND_DIV};
        if (Chance(5)) return Op(Chance(3) ? ND_UNPLUS : ND_UNMINUS, Subtree(depth - 1));
        const TE_PNodeId op = kBinary[Pick(4)];
        X_ParsNodePtr left = Subtree(depth - 1);
        return Op(op, std::move(left), Subtree(depth - 1));
    }

    X_ParsNodePtr RandomLeaf() {
        static const wchar_t* const kNames[] = {L"a", L"b", L"x"};
        static const wchar_t* const kNumbers[] = {L"0", L"1", L"-1", L"2", L"0.5", L"1.8", L"32"};
        const int line = 1 + Pick(3);
        const int column = Pick(30);
        switch (Pick(8)) {
            case 0: return Leaf(ND_ABBREV, kNames[Pick(3)], line, column);
            case 1: return Leaf(ND_HEXNUM, Chance(2) ? L"1" : L"2", line, column);
            case 2: return Leaf(ND_FLTEXP, L"1e0", line, column);
            case 3:
            case 4: return Number(kNumbers[Pick(7)], line, column);
            default: return Name(kNames[Pick(3)], line, column);
        }
    }

    std::mt19937 rng_;
};

// Every field of every node, values exact.
std::wstring Dump(const X_ParsNode* node) {
    if (!node) return L"-";
    return QtrFormat(L"%s@%d:%d[%s|%.17g](", X_ParsNode::NodeTypeName(node->Type()), node->Line(), node->Column(),
                     node->Name(), node->Value()) +
           Dump(node->Left()) + L"," + Dump(node->Right()) + L")";
}

// What one simplification of a tree shows: result, tree, messages, errors.
struct Outcome {
    int result = 0;
    std::wstring tree;
    std::vector<std::wstring> messages;
    int32_t errorCount = 0;

    bool operator==(const Outcome&) const = default;
};

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

void PrintTo(const Outcome& outcome, std::ostream* os) {
    *os << "result " << outcome.result << ", errors " << outcome.errorCount << "\n  " << Narrow(outcome.tree);
    for (const std::wstring& message : outcome.messages) *os << "\n  " << Narrow(message);
}

template <class Simplify>
Outcome OutcomeOf(X_ParsNode& tree, Simplify simplify) {
    static const std::wregex kIdentity(L"\\([0-9a-f]{8}\\)");
    X_ParseState state;
    X_ParseStateScope scope(state);
    TraceCapture trace;
    Outcome outcome;
    outcome.result = simplify(tree);
    outcome.tree = Dump(&tree);
    for (const std::wstring& text : trace.Texts()) outcome.messages.push_back(std::regex_replace(text, kIdentity, L"(id)"));
    outcome.errorCount = state.errorCount;
    return outcome;
}

TEST(TreeOptReference, MarkedFixedPointsChangeNothingObservable) {
    RandomTrees trees(20240917u);
    int runsCompared = 0;
    int runsStoppedAtBound = 0;
    int runsWithMessages = 0;
    int treesSetAside = 0;
    for (int i = 0; i < 10000; ++i) {
        const X_ParsNodePtr original = trees.Make(i % 7);
        X_ParsNode plain(*original);
        X_ParsNode fast(*original);
        // Twice each: the second run starts from the first one's result.
        for (int run = 0; run < 2; ++run) {
            Outcome expected;
            try {
                gSubtreeRuns = 0;
                expected = OutcomeOf(plain, PlainTreeOpt);
            } catch (const TooExpensive&) {
                ++treesSetAside;
                break;
            }
            const Outcome actual = OutcomeOf(fast, [](X_ParsNode& node) { return node.Tree_Opt(); });
            ASSERT_EQ(actual, expected) << "tree " << i << " run " << run << ": " << Narrow(InfixText(original.get()));
            runsStoppedAtBound += expected.result == -1;
            runsWithMessages += !expected.messages.empty();
            ++runsCompared;
        }
    }
    // Few trees are set aside, and the others reach the interesting cases.
    EXPECT_LT(treesSetAside, 200);
    EXPECT_GT(runsCompared, 19000);
    EXPECT_GT(runsStoppedAtBound, 100);
    EXPECT_GT(runsWithMessages, 200);
}

}  // namespace
