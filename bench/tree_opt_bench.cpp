// Tree_Opt on the formula shapes the parser builds from long expressions:
// left-deep sums and products of unit names and numbers, and a conversion
// formula whose source side is such a sum.
#include <benchmark/benchmark.h>

#include <string>

#include "dscr/parse_error.h"
#include "dscr/pars_node.h"

namespace {

// Term i: a unit name for even i, a number otherwise.
X_ParsNodePtr Term(int i) {
    X_Token token;
    token.line = 1;
    token.column = 4 * i;
    token.text = i % 2 == 0 ? L"u" + std::to_wstring(i) : std::to_wstring(i + 2);
    return X_ParsNode::NewLeaf(i % 2 == 0 ? ND_NAME : ND_INT, token);
}

// ((t0 op t1) op t2) op ..., as the grammar builds a chain.
X_ParsNodePtr Chain(TE_PNodeId op, int terms) {
    X_ParsNodePtr tree = Term(0);
    for (int i = 1; i < terms; ++i) tree = X_ParsNode::NewOperator(op, std::move(tree), Term(i));
    return tree;
}

X_ParsNodePtr ConversionOfSum(int terms) {
    X_Token target;
    target.text = L"x";
    return X_ParsNode::NewOperator(ND_CONVFORM, X_ParsNode::NewLeaf(ND_NAME, target), Chain(ND_PLUS, terms));
}

void SimplifyCopies(benchmark::State& state, const X_ParsNode& formula) {
    X_ParseState parse;
    X_ParseStateScope scope(parse);
    int result = 0;
    for (auto _ : state) {
        X_ParsNode tree(formula);
        result = tree.Tree_Opt();
        benchmark::DoNotOptimize(tree);
    }
    state.counters["changes"] = result;
    state.counters["errors"] = parse.errorCount;
}

void BM_SumChain(benchmark::State& state) {
    SimplifyCopies(state, *Chain(ND_PLUS, static_cast<int>(state.range(0))));
}

void BM_ProductChain(benchmark::State& state) {
    SimplifyCopies(state, *Chain(ND_MULT, static_cast<int>(state.range(0))));
}

void BM_ConversionOfSum(benchmark::State& state) {
    SimplifyCopies(state, *ConversionOfSum(static_cast<int>(state.range(0))));
}

BENCHMARK(BM_SumChain)->RangeMultiplier(2)->Range(8, 64)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ProductChain)->RangeMultiplier(2)->Range(8, 64)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ConversionOfSum)->RangeMultiplier(2)->Range(8, 64)->Unit(benchmark::kMicrosecond);

}  // namespace
