// The simplifier: the shapes Tree_Opt leaves, constant folding and its
// division messages, cancelling subexpressions, operand order and the stop
// at the bound on the number of rounds.
#include <gtest/gtest.h>

#include <cmath>

#include "dscr/parse_error.h"
#include "dscr/tree_opt.h"
#include "tree_test_support.h"

namespace {

using namespace tree_test;
using namespace quantor::detail;

// A driver for running one pass on its own: children are left as they are.
int ChildrenUntouched(X_ParsNode&) { return 0; }

class SimplifierTest : public ::testing::Test {
protected:
    SimplifierTest() : scope_(state_) { state_.fileName = L"units.dscr"; }

    X_ParseState state_;
    X_ParseStateScope scope_;
    TraceCapture trace_;
};

TEST_F(SimplifierTest, FahrenheitFormulaMovesTermsAcrossTheArrow) {
    // x * 1.8 + 32 <- y: H1 twice gives x <- (y - 32) / 1.8, G2 distributes
    // the division and folding computes 32 / 1.8.
    auto formula = Op(ND_CONVFORM, Op(ND_PLUS, Op(ND_MULT, Name(L"x"), Number(L"1.8")), Number(L"32")), Name(L"y"));
    EXPECT_GT(formula->Tree_Opt(), 0);
    EXPECT_EQ(InfixText(formula.get()), L"(x <- ((y / 1.8) - 17.7778))");
    const X_ParsNode* source = formula->Right();
    EXPECT_EQ(source->Type(), ND_MINUS);
    EXPECT_EQ(source->Left()->Type(), ND_DIV);
    EXPECT_DOUBLE_EQ(source->Left()->Right()->Value(), 1.8);
    EXPECT_EQ(source->Right()->Type(), ND_FLOAT);
    EXPECT_DOUBLE_EQ(source->Right()->Value(), 32 / 1.8);
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, NamesComeFirstAndFactorsAreFoldedTogether) {
    auto scale = Op(ND_CONVFORM, Name(L"km"), Op(ND_MULT, Op(ND_MULT, Number(L"2"), Name(L"m")), Number(L"500")));
    EXPECT_GT(scale->Tree_Opt(), 0);
    EXPECT_EQ(InfixText(scale.get()), L"(km <- (m * 1000))");

    auto settled = Op(ND_CONVFORM, Name(L"m"), Op(ND_DIV, Name(L"km"), Number(L"1000")));
    EXPECT_EQ(settled->Tree_Opt(), 0);
    EXPECT_EQ(InfixText(settled.get()), L"(m <- (km / 1000))");
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, ConstantQuotientsAndTheirZeroTests) {
    // The zero test is on the dividend: 0 / 5 is reported and gives 1.
    auto zeroDividend = Op(ND_DIV, Number(L"0", 2, 4), Number(L"5", 2, 8));
    EXPECT_EQ(zeroDividend->Tree_Opt(), 1);
    EXPECT_EQ(zeroDividend->Type(), ND_FLOAT);
    EXPECT_EQ(zeroDividend->Value(), 1.0);
    ASSERT_EQ(trace_.Texts().size(), 1u);
    EXPECT_EQ(trace_.Texts()[0], L"units.dscr(2,4): ##### parser-error: X_ParsNode::Tree_ConstCalc, div by zero\n");

    // A constant divisor zero is left to the floating-point division.
    auto zeroDivisor = Op(ND_DIV, Number(L"5"), Number(L"0"));
    zeroDivisor->Tree_Opt();
    EXPECT_TRUE(std::isinf(zeroDivisor->Value()));
    EXPECT_EQ(state_.errorCount, 1);

    // A name divided by zero is reported at the divisor and gives 1.
    auto nameByZero = Op(ND_DIV, Name(L"x", 3, 1), Number(L"0", 3, 5));
    EXPECT_EQ(nameByZero->Tree_Opt(), 1);
    EXPECT_EQ(InfixText(nameByZero.get()), L"1");
    ASSERT_EQ(trace_.Texts().size(), 2u);
    EXPECT_EQ(trace_.Texts()[1], L"units.dscr(3,5): ##### parser-error: X_ParsNode::Tree_ConstCalc: div by zero!!!\n");
    EXPECT_EQ(state_.errorCount, 2);
}

TEST_F(SimplifierTest, MinusOneFactorsAndDivisorsBecomeUnaryMinus) {
    for (auto make : {+[] { return Op(ND_MULT, Number(L"-1"), Name(L"x")); },
                      +[] { return Op(ND_MULT, Name(L"x"), Number(L"-1")); },
                      +[] { return Op(ND_DIV, Name(L"x"), Number(L"-1.0")); },
                      +[] { return Op(ND_MULT, Op(ND_UNMINUS, Number(L"1")), Name(L"x")); }}) {
        auto tree = make();
        tree->Tree_Opt();
        EXPECT_EQ(InfixText(tree.get()), L"(u- x)");
    }
}

TEST_F(SimplifierTest, FoldingRulesForOneConstantOperand) {
    struct Case {
        X_ParsNodePtr tree;
        const wchar_t* folded;
    };
    Case cases[] = {
        {Op(ND_UNMINUS, Number(L"2.5")), L"-2.5"},
        {Op(ND_UNPLUS, Number(L"7")), L"7"},
        {Op(ND_MULT, Number(L"1"), Name(L"x")), L"x"},
        {Op(ND_PLUS, Number(L"0"), Name(L"x")), L"x"},
        {Op(ND_MULT, Number(L"0"), Name(L"x")), L"0"},
        {Op(ND_DIV, Number(L"0.0"), Name(L"x")), L"0"},
        {Op(ND_MULT, Name(L"x"), Number(L"1.0")), L"x"},
        {Op(ND_DIV, Name(L"x"), Number(L"1")), L"x"},
        {Op(ND_PLUS, Name(L"x"), Number(L"0")), L"x"},
        {Op(ND_MINUS, Name(L"x"), Number(L"0")), L"x"},
        {Op(ND_MULT, Name(L"x"), Number(L"0")), L"0"},
        // Left as they are.
        {Op(ND_MINUS, Number(L"0"), Name(L"x")), L"(0 - x)"},
        {Op(ND_DIV, Number(L"1"), Name(L"x")), L"(1 / x)"},
        {Op(ND_DIV, Number(L"-1"), Name(L"x")), L"(-1 / x)"},
        {Op(ND_PLUS, Number(L"2"), Name(L"x")), L"(2 + x)"},
    };
    for (Case& c : cases) {
        const std::wstring before = InfixText(c.tree.get());
        const int changes = Tree_ConstCalc(*c.tree, ChildrenUntouched);
        EXPECT_EQ(InfixText(c.tree.get()), c.folded) << before;
        EXPECT_EQ(changes, before == c.folded ? 0 : 1) << before;
    }
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, OperandsThatCancel) {
    auto difference = Op(ND_MINUS, Name(L"a"), Name(L"a"));
    EXPECT_EQ(difference->Tree_Opt(), 0);  // Tree_ExprElim's change is not added up
    EXPECT_EQ(InfixText(difference.get()), L"0");

    auto sum = Op(ND_PLUS, Name(L"a"), Op(ND_UNMINUS, Name(L"a")));
    sum->Tree_Opt();
    EXPECT_EQ(InfixText(sum.get()), L"0");

    // A product of equal operands and a quotient by a reciprocal become 1.
    auto product = Op(ND_MULT, Name(L"a"), Name(L"a"));
    product->Tree_Opt();
    EXPECT_EQ(InfixText(product.get()), L"1");
    auto quotient = Op(ND_DIV, Op(ND_DIV, Number(L"1"), Name(L"b")), Name(L"b"));
    EXPECT_EQ(Tree_ExprElim(*quotient, ChildrenUntouched), 1);
    EXPECT_EQ(InfixText(quotient.get()), L"1");
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, CancellingPartsOfOperands) {
    // b leaves both sides of (a + b) - b; N takes over the sum before a's
    // partner is removed from it.
    auto sumLess = Op(ND_MINUS, Op(ND_PLUS, Name(L"a"), Name(L"b")), Name(L"b"));
    EXPECT_EQ(Tree_ExprElim(*sumLess, ChildrenUntouched), 1);
    EXPECT_EQ(InfixText(sumLess.get()), L"a");

    // Removing the minuend leaves the negated subtrahend: a - (b + a) = -b.
    auto minuend = Op(ND_MINUS, Name(L"a"), Op(ND_PLUS, Name(L"b"), Name(L"a")));
    EXPECT_EQ(Tree_ExprElim(*minuend, ChildrenUntouched), 1);
    EXPECT_EQ(InfixText(minuend.get()), L"(u- b)");

    // Deep on both sides: (x + a) + (y + (u- a)).
    auto deep = Op(ND_PLUS, Op(ND_PLUS, Name(L"x"), Name(L"a")), Op(ND_PLUS, Name(L"y"), Op(ND_UNMINUS, Name(L"a"))));
    EXPECT_EQ(Tree_ExprElim(*deep, ChildrenUntouched), 1);
    EXPECT_EQ(InfixText(deep.get()), L"(x + y)");
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, MatchersCompareStructureNotOperatorTypes) {
    auto a = Name(L"a");
    auto minusA = Op(ND_UNMINUS, Name(L"a"));
    EXPECT_TRUE(IsEqualExpr(nullptr, nullptr));
    EXPECT_FALSE(IsEqualExpr(a.get(), nullptr));
    EXPECT_TRUE(IsNegatedExpr(minusA.get(), a.get()));
    EXPECT_TRUE(IsEqualExpr(minusA.get(), Op(ND_UNMINUS, Name(L"a")).get()));
    // Inner node types are not compared: a + b matches a * b.
    auto sum = Op(ND_PLUS, Name(L"a"), Name(L"b"));
    EXPECT_TRUE(IsEqualExpr(sum.get(), Op(ND_MULT, Name(L"a"), Name(L"b")).get()));
    // A constant leaf is compared by value to 10 digits, whatever the other leaf is.
    EXPECT_TRUE(IsEqualExpr(Number(L"0").get(), a.get()));
    EXPECT_TRUE(IsEqualExpr(Number(L"2").get(), Number(L"2.00000000001").get()));
    EXPECT_FALSE(IsEqualExpr(Number(L"2").get(), Number(L"2.0000001").get()));
    // Negated sums and differences, reciprocals.
    EXPECT_TRUE(IsNegatedExpr(sum.get(), Op(ND_PLUS, Op(ND_UNMINUS, Name(L"b")), Op(ND_UNMINUS, Name(L"a"))).get()));
    EXPECT_TRUE(IsNegatedExpr(Op(ND_MINUS, Name(L"a"), Name(L"b")).get(), Op(ND_MINUS, Name(L"b"), Name(L"a")).get()));
    EXPECT_TRUE(IsReciprocalExpr(a.get(), Op(ND_DIV, Number(L"1"), Name(L"a")).get()));
    EXPECT_TRUE(IsReciprocalExpr(Number(L"0.25").get(), Number(L"4").get()));
    EXPECT_FALSE(IsReciprocalExpr(a.get(), a.get()));
}

TEST_F(SimplifierTest, CancelPairSearchOfADifferenceKeepsTheSubtrahendsAnswer) {
    auto minusA = Op(ND_UNMINUS, Name(L"a"));
    // In a + b the first term's find stands.
    auto sum = Op(ND_PLUS, Name(L"a"), Name(L"b"));
    const auto inSum = FindCancelPair(sum.get(), minusA.get(), IsNegatedExpr);
    ASSERT_TRUE(inSum.has_value());
    EXPECT_EQ(inSum->a, sum->Left());
    EXPECT_EQ(inSum->parentA, sum.get());
    EXPECT_EQ(inSum->b, minusA.get());
    EXPECT_EQ(inSum->parentB, nullptr);
    // In a - b the subtrahend is searched as well and its "none" stands.
    auto difference = Op(ND_MINUS, Name(L"a"), Name(L"b"));
    EXPECT_FALSE(FindCancelPair(difference.get(), minusA.get(), IsNegatedExpr).has_value());
    // Found below the right operand: the parent is recorded.
    auto right = Op(ND_MULT, Name(L"c"), Op(ND_UNMINUS, Name(L"b")));
    const auto below = FindCancelPair(difference.get(), right.get(), IsNegatedExpr);
    ASSERT_TRUE(below.has_value());
    EXPECT_EQ(below->a, difference->Right());
    EXPECT_EQ(below->parentA, difference.get());
    EXPECT_EQ(below->b, right->Right());
    EXPECT_EQ(below->parentB, right.get());
}

TEST_F(SimplifierTest, UnaryMinusIsPushedInwardsAndRemoved) {
    // - - a: B1 gives + a, A1 removes it in the next round.
    auto twice = Op(ND_UNMINUS, Op(ND_UNMINUS, Name(L"a")));
    EXPECT_EQ(twice->Tree_Opt(), 2);
    EXPECT_EQ(InfixText(twice.get()), L"a");

    auto overProduct = Op(ND_UNMINUS, Op(ND_MULT, Name(L"a"), Name(L"b")));
    overProduct->Tree_Opt();
    EXPECT_EQ(InfixText(overProduct.get()), L"(a * (u- b))");

    auto overSum = Op(ND_UNMINUS, Op(ND_PLUS, Name(L"a"), Number(L"2")));
    overSum->Tree_Opt();
    EXPECT_EQ(InfixText(overSum.get()), L"((u- a) + -2)");

    auto subtrahend = Op(ND_MINUS, Name(L"a"), Op(ND_UNMINUS, Name(L"b")));
    subtrahend->Tree_Opt();
    EXPECT_EQ(InfixText(subtrahend.get()), L"(a + b)");
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, ChainsTurnToTheRight) {
    auto sum = Op(ND_PLUS, Op(ND_PLUS, Op(ND_PLUS, Name(L"a"), Name(L"b")), Number(L"2")), Name(L"c"));
    sum->Tree_Opt();
    EXPECT_EQ(InfixText(sum.get()), L"(a + (b + (c + 2)))");

    auto quotient = Op(ND_DIV, Op(ND_DIV, Name(L"a"), Number(L"2")), Number(L"4"));
    quotient->Tree_Opt();
    EXPECT_EQ(InfixText(quotient.get()), L"(a / 8)");

    // A deeper left operand goes to the right; a difference becomes a sum.
    auto deeper = Op(ND_MINUS, Op(ND_MULT, Name(L"a"), Name(L"b")), Name(L"c"));
    EXPECT_EQ(Tree_Reorder(*deeper, ChildrenUntouched), 1);
    EXPECT_EQ(InfixText(deeper.get()), L"((u- c) + (a * b))");
    EXPECT_EQ(state_.errorCount, 0);
}

TEST_F(SimplifierTest, StopsAtTheBoundWhenTheTreeKeepsChanging) {
    // x <- x: the sides cannot be deleted, which is reported every round;
    // depth 1 allows 3 rounds.
    auto formula = Op(ND_CONVFORM, Name(L"x", 4, 9), Name(L"x", 4, 14));
    const std::wstring convformText = formula->NodeText();
    EXPECT_EQ(formula->Tree_Opt(), -1);
    EXPECT_EQ(InfixText(formula.get()), L"(x <- x)");
    const std::wstring cannot = L"units.dscr(4,9): ##### parser-error: Tree_ExprElim: cannot delete subexprs in " +
                                convformText + L"\n";
    const std::vector<std::wstring> expected = {
        cannot, cannot, cannot,
        L"units.dscr(4,9): ##### parser-error: X_ParsNode::Tree_Opt: break after 0 changes and 3 loops\n"};
    EXPECT_EQ(trace_.Texts(), expected);
    EXPECT_EQ(state_.errorCount, 4);
}

TEST_F(SimplifierTest, NegatedNameLessANameCyclesUntilTheBound) {
    // (u- a) - c: E2, B2, C1 and the reordering chase each other for ever;
    // depth 2 allows 4 rounds.
    auto tree = Op(ND_MINUS, Op(ND_UNMINUS, Name(L"a")), Name(L"c"));
    EXPECT_EQ(tree->Tree_Opt(), -1);
    ASSERT_FALSE(trace_.Texts().empty());
    EXPECT_NE(trace_.Texts().back().find(L"X_ParsNode::Tree_Opt: break after"), std::wstring::npos);
    EXPECT_NE(trace_.Texts().back().find(L"and 4 loops\n"), std::wstring::npos);
}

}  // namespace
