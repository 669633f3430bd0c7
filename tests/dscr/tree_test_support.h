// Helpers for the expression-tree tests: building trees from leaves and
// operators, printing a tree as infix text, and capturing what reaches the
// debug trace.
#pragma once

#include <string>
#include <vector>

#include "dscr/pars_node.h"
#include "etc/format.h"
#include "quantor/sinks.h"

namespace tree_test {

inline X_ParsNodePtr Leaf(TE_PNodeId id, const std::wstring& text, int line = 1, int column = 1) {
    X_Token token;
    token.line = line;
    token.column = column;
    token.text = text;
    return X_ParsNode::NewLeaf(id, token);
}

inline X_ParsNodePtr Name(const std::wstring& name, int line = 1, int column = 1) {
    return Leaf(ND_NAME, name, line, column);
}

// An ND_FLOAT leaf when the text has a decimal point, ND_INT otherwise.
inline X_ParsNodePtr Number(const std::wstring& text, int line = 1, int column = 1) {
    return Leaf(text.find(L'.') == std::wstring::npos ? ND_INT : ND_FLOAT, text, line, column);
}

inline X_ParsNodePtr Op(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right = nullptr) {
    return X_ParsNode::NewOperator(id, std::move(left), std::move(right));
}

inline const wchar_t* OperatorSymbol(TE_PNodeId id) {
    switch (id) {
        case ND_PLUS: return L"+";
        case ND_MINUS: return L"-";
        case ND_MULT: return L"*";
        case ND_DIV: return L"/";
        case ND_CONVFORM: return L"<-";
        case ND_UNMINUS: return L"u-";
        case ND_UNPLUS: return L"u+";
        default: return nullptr;
    }
}

// Names as they are, constants with "%g", operators fully parenthesised:
// "(x <- ((y / 1.8) - 17.7778))", "(u- a)". Other types print their type name.
inline std::wstring InfixText(const X_ParsNode* node) {
    if (!node) return L"null";
    if (node->IsName()) return node->Name();
    if (node->IsConstant()) return QtrFormat(L"%g", node->Value());
    const wchar_t* symbol = OperatorSymbol(node->Type());
    const std::wstring op = symbol ? symbol : X_ParsNode::NodeTypeName(node->Type());
    if (!node->Right()) return L"(" + op + L" " + InfixText(node->Left()) + L")";
    return L"(" + InfixText(node->Left()) + L" " + op + L" " + InfixText(node->Right()) + L")";
}

// Collects every trace text while it lives, and restores the previous sink.
class TraceCapture {
public:
    TraceCapture() : previous_(QtrSetTraceSink([this](const std::wstring& text) { texts_.push_back(text); })) {}
    ~TraceCapture() { QtrSetTraceSink(std::move(previous_)); }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    const std::vector<std::wstring>& Texts() const { return texts_; }
    void Clear() { texts_.clear(); }

private:
    QtrTraceSink previous_;
    std::vector<std::wstring> texts_;
};

}  // namespace tree_test
