// The expression-tree node: leaves from tokens, operators, copying, the
// structural queries, operand removal and printing.
#include "dscr/pars_node.h"

#include <gtest/gtest.h>

#include "dscr/parse_error.h"
#include "tree_test_support.h"

namespace {

using namespace tree_test;

class ParsNodeTest : public ::testing::Test {
protected:
    ParsNodeTest() : scope_(state_) { state_.fileName = L"f.dscr"; }

    X_ParseState state_;
    X_ParseStateScope scope_;
    TraceCapture trace_;
};

std::wstring Identity(const X_ParsNode& node) { return QtrFormat(L"     (%08x)", node.IdentityNumber()); }

TEST_F(ParsNodeTest, LeavesTakeTheirTokens) {
    auto hex = Leaf(ND_HEXNUM, L"1F", 3, 7);
    EXPECT_EQ(hex->Value(), 31.0);
    EXPECT_EQ(hex->Name(), L"1F");
    EXPECT_EQ(hex->Line(), 3);
    EXPECT_EQ(hex->Column(), 7);
    EXPECT_EQ(hex->NodeText(), L"ND_HEXNUM" + Identity(*hex));

    auto number = Number(L"2.5");
    EXPECT_EQ(number->Type(), ND_FLOAT);
    EXPECT_EQ(number->Value(), 2.5);
    EXPECT_TRUE(number->Name().empty());
    EXPECT_EQ(number->NodeText(), L"ND_FLOAT: 2.500000" + Identity(*number));
    auto integer = Number(L"1000");
    EXPECT_EQ(integer->NodeText(), L"ND_INT: 1000" + Identity(*integer));
    auto exponent = Leaf(ND_FLTEXP, L"1.5e3");
    EXPECT_EQ(exponent->NodeText(), L"ND_FLTEXP: 1.500000e+03" + Identity(*exponent));
    auto name = Name(L"km");
    EXPECT_EQ(name->NodeText(), L"ND_NAME: \"km\"" + Identity(*name));
    auto abbrev = Leaf(ND_ABBREV, L"m");
    EXPECT_TRUE(abbrev->IsName());
    EXPECT_EQ(abbrev->NodeText(), L"ND_ABBREV: [m]" + Identity(*abbrev));
    EXPECT_NE(name->IdentityNumber(), abbrev->IdentityNumber());
    EXPECT_EQ(state_.errorCount, 0);

    // An operator type cannot come from a token: reported, type kept.
    auto wrong = Leaf(ND_PLUS, L"+", 2, 5);
    EXPECT_EQ(wrong->Type(), ND_PLUS);
    EXPECT_TRUE(wrong->Name().empty());
    EXPECT_EQ(state_.errorCount, 1);
    ASSERT_EQ(trace_.Texts().size(), 1u);
    EXPECT_EQ(trace_.Texts()[0], L"f.dscr(2,5): ##### parser-error: X_ParsNode::X_ParsNode(ND_PLUS,(token)): error\n");
}

TEST_F(ParsNodeTest, TypeNames) {
    EXPECT_EQ(X_ParsNode::NodeTypeName(ND_ABBREV), L"ND_ABBREV");
    EXPECT_EQ(X_ParsNode::NodeTypeName(ND_UNPLUS), L"ND_UNPLUS");
    EXPECT_EQ(X_ParsNode::NodeTypeName(15), L"TE_PNodeId 15 ??");
    EXPECT_EQ(X_ParsNode::NodeTypeName(-3), L"TE_PNodeId -3 ??");
    X_ParsNode reset;
    EXPECT_EQ(reset.NodeText(), L"TE_PNodeId 15 ??" + Identity(reset));
}

TEST_F(ParsNodeTest, OperatorsCarryTheirLeftOperandsPosition) {
    auto sum = Op(ND_PLUS, Name(L"a", 2, 3), Name(L"b", 1, 9));
    EXPECT_EQ(sum->Line(), 2);
    EXPECT_EQ(sum->Column(), 3);
    EXPECT_TRUE(sum->Name().empty());
    EXPECT_EQ(sum->Value(), 0.0);
    // Without a left operand the node sits at 0/0, like a reset node.
    auto lonely = Op(ND_UNMINUS, nullptr, Name(L"b", 4, 4));
    EXPECT_EQ(lonely->Line(), 0);
    EXPECT_EQ(lonely->Column(), 0);
}

TEST_F(ParsNodeTest, InverseOperations) {
    const std::pair<TE_PNodeId, TE_PNodeId> inverses[] = {{ND_DIV, ND_MULT},    {ND_MINUS, ND_PLUS},
                                                          {ND_MULT, ND_DIV},    {ND_PLUS, ND_MINUS},
                                                          {ND_UNMINUS, ND_UNPLUS}, {ND_UNPLUS, ND_UNMINUS}};
    for (const auto& [type, inverse] : inverses) EXPECT_EQ(Op(type, Name(L"a"))->Inv_NodeId(), inverse);
    auto product = Op(ND_MULT, Name(L"a"), Name(L"b"));
    product->SetType(product->Inv_NodeId());
    EXPECT_EQ(product->Inv_NodeId(), ND_MULT);
    EXPECT_EQ(state_.errorCount, 0);

    auto formula = Op(ND_CONVFORM, Name(L"x", 5, 2), Name(L"y", 5, 7));
    EXPECT_EQ(formula->Inv_NodeId(), ND_NOTYPE);
    EXPECT_EQ(state_.errorCount, 1);
    ASSERT_EQ(trace_.Texts().size(), 1u);
    EXPECT_EQ(trace_.Texts()[0],
              L"f.dscr(5,2): ##### parser-error: X_ParsNode::Inv_NodeId(): no inverting operation for ND_CONVFORM\n");
}

TEST_F(ParsNodeTest, StructuralQueries) {
    EXPECT_EQ(Name(L"a")->Depth(), 0);
    auto tree = Op(ND_MULT, Name(L"a"), Op(ND_PLUS, Leaf(ND_ABBREV, L"b"), Name(L"b")));
    EXPECT_EQ(tree->Depth(), 2);

    // Pre-order; a null name finds any name, abbreviations count as names.
    EXPECT_EQ(tree->FindName(nullptr), tree->Left());
    EXPECT_EQ(tree->FindName(L"b"), tree->Right()->Left());
    EXPECT_EQ(tree->FindName(L"B"), nullptr);
    EXPECT_EQ(Number(L"2")->FindName(nullptr), nullptr);

    auto sameName = [](const X_ParsNode* candidate, const X_ParsNode* target) {
        return candidate->IsName() && candidate->Name() == target->Name();
    };
    X_ParsNode* parent = nullptr;
    X_ParsNode* found = nullptr;
    // Found below the root's children: the answer is the one of that level.
    EXPECT_EQ(tree->FindNode(Name(L"b").get(), sameName, parent, found), 2);
    EXPECT_EQ(parent, tree->Right());
    EXPECT_EQ(found, tree->Right()->Left());
    EXPECT_EQ(tree->Left()->FindNode(Name(L"a").get(), sameName, parent, found), 1);
    EXPECT_EQ(parent, nullptr);
    EXPECT_EQ(found, tree->Left());
    EXPECT_EQ(Op(ND_MINUS, Number(L"1"), Name(L"c"))->FindNode(Name(L"c").get(), sameName, parent, found), 4);
    EXPECT_EQ(tree->FindNode(Name(L"zz").get(), sameName, parent, found), 0);
    EXPECT_EQ(tree->FindNode(nullptr, sameName, parent, found), 0);
}

TEST_F(ParsNodeTest, EarliestPosition) {
    // A formula points at its first token...
    auto formula = Op(ND_CONVFORM, Op(ND_MULT, Name(L"x", 2, 9), Number(L"1.8", 2, 13)), Name(L"y", 2, 20));
    EXPECT_EQ(formula->EarliestPosition(), formula.get());
    // ...unless an operand further right comes earlier in the file.
    auto later = Op(ND_PLUS, Name(L"a", 3, 1), Name(L"b", 2, 40));
    EXPECT_EQ(later->EarliestPosition(), later->Right());
    // On equal positions the first in pre-order stays.
    auto tie = Op(ND_PLUS, Name(L"a", 3, 1), Name(L"b", 3, 1));
    EXPECT_EQ(tie->EarliestPosition(), tie.get());
}

TEST_F(ParsNodeTest, SubExprDelKeepsTheOtherOperand) {
    auto difference = Op(ND_MINUS, Name(L"a"), Name(L"b"));
    difference->SubExpr_Del(difference->Left());
    EXPECT_EQ(InfixText(difference.get()), L"(u- b)");

    auto subtrahend = Op(ND_MINUS, Name(L"a"), Name(L"b"));
    subtrahend->SubExpr_Del(subtrahend->Right());
    EXPECT_EQ(InfixText(subtrahend.get()), L"a");

    auto sum = Op(ND_PLUS, Name(L"a"), Op(ND_MULT, Name(L"b", 4, 2), Name(L"c")));
    sum->SubExpr_Del(sum->Left());
    EXPECT_EQ(InfixText(sum.get()), L"(b * c)");
    EXPECT_EQ(sum->Type(), ND_MULT);
    EXPECT_EQ(sum->Line(), 4);

    // Without another operand the child goes and its pointer is cleared.
    auto negation = Op(ND_UNMINUS, Name(L"a"));
    negation->SubExpr_Del(negation->Left());
    EXPECT_EQ(negation->Type(), ND_UNMINUS);
    EXPECT_EQ(negation->Left(), nullptr);
    EXPECT_EQ(state_.errorCount, 0);

    auto stranger = Name(L"s");
    auto tree = Op(ND_PLUS, Name(L"a", 6, 6), Name(L"b", 6, 10));
    tree->SubExpr_Del(stranger.get());
    tree->SubExpr_Del(nullptr);
    EXPECT_EQ(InfixText(tree.get()), L"(a + b)");
    EXPECT_EQ(state_.errorCount, 2);
    ASSERT_EQ(trace_.Texts().size(), 2u);
    EXPECT_EQ(trace_.Texts()[0], L"f.dscr(6,6): ##### parser-error: X_ParsNode::SubExpr_Del(.): param is no subexpr\n");
}

TEST_F(ParsNodeTest, CopiesAreDeepAndIndependent) {
    auto source = Op(ND_PLUS, Name(L"a", 1, 2), Op(ND_MULT, Name(L"b"), Number(L"2")));
    X_ParsNode copy(*source);
    EXPECT_EQ(InfixText(&copy), L"(a + (b * 2))");
    EXPECT_EQ(copy.Line(), 1);
    EXPECT_EQ(copy.Column(), 2);
    EXPECT_NE(copy.IdentityNumber(), source->IdentityNumber());
    EXPECT_NE(copy.Right(), source->Right());
    copy.Right()->Right()->SetFloat(7.0);
    copy.Left()->SetInt(3);
    EXPECT_EQ(InfixText(&copy), L"(3 + (b * 7))");
    EXPECT_EQ(InfixText(source.get()), L"(a + (b * 2))");

    X_ParsNode assigned;
    assigned = *source;
    source->Right()->SubExpr_Del(source->Right()->Right());
    EXPECT_EQ(InfixText(&assigned), L"(a + (b * 2))");
    EXPECT_EQ(InfixText(source.get()), L"(a + b)");

    const uint32_t identity = assigned.IdentityNumber();
    const X_ParsNode& self = assigned;
    assigned = self;
    EXPECT_EQ(InfixText(&assigned), L"(a + (b * 2))");
    EXPECT_EQ(assigned.IdentityNumber(), identity);

    // Assigning a node from inside its own subtree is safe.
    assigned = *assigned.Right();
    EXPECT_EQ(InfixText(&assigned), L"(b * 2)");
}

TEST_F(ParsNodeTest, NodeEdits) {
    auto tree = Op(ND_MINUS, Op(ND_MULT, Name(L"a", 2, 2), Name(L"b")), Name(L"c", 1, 1));
    tree->ReplaceBy(tree->Left());
    EXPECT_EQ(InfixText(tree.get()), L"(a * b)");
    EXPECT_EQ(tree->Line(), 2);
    tree->ReplaceBy(Name(L"stranger").get());
    EXPECT_EQ(InfixText(tree.get()), L"(a * b)");

    tree->CopyFrom(*Number(L"2.5", 7, 3));
    EXPECT_EQ(tree->Type(), ND_FLOAT);
    EXPECT_EQ(tree->Value(), 2.5);
    EXPECT_EQ(tree->Line(), 7);
    EXPECT_NE(tree->Left(), nullptr);  // the children stay

    tree->SetInt(4);
    EXPECT_EQ(tree->Type(), ND_INT);
    EXPECT_EQ(tree->Value(), 4.0);
    EXPECT_EQ(tree->Left(), nullptr);
    EXPECT_TRUE(tree->IsConstantTree());

    tree->Reset();
    EXPECT_EQ(tree->Type(), ND_NOTYPE);
    EXPECT_EQ(tree->Line(), 0);
    EXPECT_EQ(tree->Value(), 0.0);
    EXPECT_FALSE(tree->IsConstantTree());
}

TEST_F(ParsNodeTest, PrintWritesTheTreeSideways) {
    auto tree = Op(ND_PLUS, Name(L"a"), Number(L"2"));
    tree->Print(2, L"sum");
    const std::vector<std::wstring> expected = {
        L"X_ParsNode::Print: sum :\n",
        L"        ND_INT: 2" + Identity(*tree->Right()) + L"\n",
        L"   ND_PLUS" + Identity(*tree) + L"\n",
        L"        ND_NAME: \"a\"" + Identity(*tree->Left()) + L"\n",
    };
    EXPECT_EQ(trace_.Texts(), expected);
}

}  // namespace
