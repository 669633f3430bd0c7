// Fuzz target for the simplifier: the input describes a small expression
// tree (a formula at its root when the first byte is odd), and Tree_Opt must
// give exactly the outcome of the plain algorithm: result, error count, tree
// and messages. Trees that the plain algorithm cannot finish in time, and
// runs that Tree_Opt stops at its limits, are not compared.
#include <string>
#include <utility>

#include "fuzz_support.h"
#include "support/tree_reference.h"

namespace {

// Hands out the input's bytes one at a time, then zeros.
class ByteSource {
public:
    ByteSource(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    unsigned Next() { return next_ < size_ ? data_[next_++] : 0u; }

private:
    const uint8_t* data_;
    size_t size_;
    size_t next_ = 0;
};

X_ParsNodePtr RandomLeaf(ByteSource& bytes) {
    static const std::pair<TE_PNodeId, const wchar_t*> kLeaves[] = {
        {ND_NAME, L"a"},   {ND_NAME, L"b"},   {ND_NAME, L"x"},     {ND_ABBREV, L"a"},  {ND_HEXNUM, L"1"},
        {ND_HEXNUM, L"2"}, {ND_FLTEXP, L"1e0"}, {ND_INT, L"0"},    {ND_INT, L"1"},     {ND_INT, L"-1"},
        {ND_INT, L"2"},    {ND_FLOAT, L"0.5"}, {ND_FLOAT, L"1.8"}, {ND_INT, L"32"},    {ND_FLTEXP, L"1e308"}};
    const auto& [type, text] = kLeaves[bytes.Next() % std::size(kLeaves)];
    const int line = 1 + static_cast<int>(bytes.Next() % 3);
    return X_ParsNode::NewLeaf(type, X_Token{line, static_cast<int>(bytes.Next() % 30), TOKID_ERROR, text});
}

X_ParsNodePtr RandomTree(ByteSource& bytes, int depth) {
    static constexpr TE_PNodeId kOperators[] = {ND_PLUS, ND_MINUS, ND_MULT, ND_DIV, ND_UNMINUS, ND_UNPLUS};
    const unsigned choice = bytes.Next();
    if (depth == 0 || choice % 3 == 0) return RandomLeaf(bytes);
    const TE_PNodeId op = kOperators[(choice / 3) % std::size(kOperators)];
    X_ParsNodePtr left = RandomTree(bytes, depth - 1);
    const bool unary = op == ND_UNMINUS || op == ND_UNPLUS;
    return X_ParsNode::NewOperator(op, std::move(left), unary ? nullptr : RandomTree(bytes, depth - 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    ByteSource bytes(data, size);
    const bool formula = bytes.Next() % 2 == 1;
    const X_ParsNodePtr original =
        formula ? X_ParsNode::NewOperator(ND_CONVFORM, RandomTree(bytes, 5), RandomTree(bytes, 5))
                : RandomTree(bytes, 6);
    X_ParsNode plain(*original), fast(*original);
    std::wstring expected;
    try {
        expected = OutcomeOf(plain, PlainTreeOptBounded);
    } catch (const TooExpensive&) {
        return 0;
    }
    const std::wstring actual = OutcomeOf(fast, [](X_ParsNode& node) { return node.Tree_Opt(); });
    if (actual.find(L"formula too complex") != std::wstring::npos) return 0;
    fuzz::Require(actual == expected, "Tree_Opt and the plain algorithm disagree");
    return 0;
}
