// The expression tree of the unit description language. The parser builds a
// tree of X_ParsNode for every formula from scanner tokens, the simplifier
// rewrites it in place and the semantic actions read factor, addend and unit
// names out of it. A node owns its two children; there is no parent pointer,
// a parent is found by searching from the root (FindNode).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "dscr/parse_error.h"
#include "dscr/tree_limits.h"
#include "dscr/token.h"

// The node types; the enumerator names are the printed type names.
enum TE_PNodeId : int32_t {
    ND_ABBREV = 0,  // leaf with a name, treated as a name
    ND_CONV,
    ND_CONVFORM,    // target <- source; left is the target side
    ND_DIV,
    ND_FMTSHFT,
    ND_FLOAT,       // leaf with a value
    ND_FLTEXP,      // leaf with a value
    ND_HEXNUM,      // leaf with a value and its digits as name
    ND_INT,         // leaf with a value
    ND_MINUS,
    ND_MULT,
    ND_NAME,        // unit name
    ND_PLUS,
    ND_UNMINUS,     // operand in the left child
    ND_UNPLUS,      // operand in the left child
    ND_NOTYPE = 15, // a reset node, and the answer of failed queries
};

class X_ParsNode;
using X_ParsNodePtr = std::unique_ptr<X_ParsNode>;

class X_ParsNode {
public:
    // Accepts a candidate node when it matches the target (FindNode).
    using NodeMatcher = bool (*)(const X_ParsNode* candidate, const X_ParsNode* target);

    // A reset node: type ND_NOTYPE, no children, position 0/0.
    X_ParsNode();
    // A leaf from a scanner token: names take the token's text, numbers its
    // value, hexadecimal numbers both. Any other type is reported and the node
    // keeps only the type and the position.
    X_ParsNode(TE_PNodeId id, const X_Token& token);
    // An operator over its operands, positioned at its left operand. Without a
    // left operand the position is that of a reset node, 0/0.
    X_ParsNode(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right);
    // Deep copy; the copy has its own identity number.
    X_ParsNode(const X_ParsNode& other);
    // Deep assignment; assigning a node to itself does nothing.
    X_ParsNode& operator=(const X_ParsNode& other);
    // Deletes the left subtree, then the right one.
    ~X_ParsNode();

    // Heap factories; null when memory runs out. The grammar keeps raw
    // pointers: release() hands one out and X_ParsNodePtr(raw) takes it back.
    // The operator factory owns its operands from the call on, also on failure.
    static X_ParsNodePtr NewLeaf(TE_PNodeId id, const X_Token& token);
    static X_ParsNodePtr NewOperator(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right);

    // Type classes.
    static bool IsConstantType(int32_t id) { return id == ND_FLOAT || id == ND_FLTEXP || id == ND_HEXNUM || id == ND_INT; }
    static bool IsNameType(int32_t id) { return id == ND_NAME || id == ND_ABBREV; }
    static bool IsLeafType(int32_t id) { return IsConstantType(id) || IsNameType(id); }

    // The printed name of a type; "TE_PNodeId <id> ??" outside 0 to 14.
    static std::wstring NodeTypeName(int32_t id);

    TE_PNodeId Type() const { return type_; }
    X_ParsNode* Left() { return left_.get(); }
    const X_ParsNode* Left() const { return left_.get(); }
    X_ParsNode* Right() { return right_.get(); }
    const X_ParsNode* Right() const { return right_.get(); }
    int32_t Line() const { return line_; }
    int32_t Column() const { return column_; }
    const std::wstring& Name() const { return name_; }
    double Value() const { return value_; }
    bool IsConstant() const { return IsConstantType(type_); }
    bool IsName() const { return IsNameType(type_); }
    bool IsLeaf() const { return IsLeafType(type_); }
    // Whether the tree is a constant: a single constant leaf, which is what
    // Tree_Opt makes of an arithmetic expression without unit names.
    bool IsConstantTree() const { return IsConstant(); }
    // A number that stays the same for this node object, printed by NodeText.
    uint32_t IdentityNumber() const { return identity_; }

    // Type ND_NOTYPE, children deleted, position 0/0, name empty, value 0.
    void Reset();
    // Takes type, position, name and value of `other`; the children stay.
    void CopyFrom(const X_ParsNode& other);
    // Takes over the contents of `child`, one of this node's children: its
    // fields and its subtree. The other child is deleted. A pointer that is
    // no child of this node changes nothing.
    void ReplaceBy(X_ParsNode* child);
    // The node becomes an ND_FLOAT (ND_INT) constant; children are deleted.
    void SetFloat(double value);
    void SetInt(int32_t value);

    // The inverse operation of this node's type (ND_PLUS <-> ND_MINUS,
    // ND_MULT <-> ND_DIV, ND_UNMINUS <-> ND_UNPLUS); other types are
    // reported and answer ND_NOTYPE.
    TE_PNodeId Inv_NodeId() const;
    // Height of the subtree: 0 for a node without children.
    int Depth() const;
    // Nodes in the subtree, this one included.
    int NodeCount() const;
    // Pre-order search for a name-class node with this exact name; with a
    // null name any name-class node matches. Null when none.
    X_ParsNode* FindName(const wchar_t* name);
    const X_ParsNode* FindName(const wchar_t* name) const;
    // Searches the subtree for a node that `equal(candidate, target)` accepts:
    // this node (answer 1, parent null), then its left child (2) and right
    // child (4), then the left subtree and the right subtree. Answers 0, and
    // leaves `parent` and `found` alone, when nothing matches or target is null.
    int FindNode(const X_ParsNode* target, NodeMatcher equal, X_ParsNode*& parent, X_ParsNode*& found);
    // The node of the subtree with the smallest (line, column); on a tie the
    // first in pre-order.
    const X_ParsNode* EarliestPosition() const;

    // Removes the operand `child` and keeps the other: the node is replaced by
    // the other operand, except that removing the minuend of a - b leaves the
    // unary minus of b. Without another operand the child is deleted and its
    // pointer cleared. A pointer that is no child of this node is reported.
    void SubExpr_Del(X_ParsNode* child);

    // Writes the tree sideways to the trace: right subtree, this node
    // indented by `indent` blanks, left subtree, each level 5 blanks deeper.
    // A non-null title is written first.
    void Print(int indent, const wchar_t* title) const;
    // The node's line in Print: type name, name or value as the type has
    // them, and the identity number.
    std::wstring NodeText() const;

    // Simplifies the tree in place until nothing changes; the number of
    // changes, or -1 when it stopped at the bound on the number of rounds or
    // at the simplifier's limits (tree_limits.h, "formula too complex").
    int Tree_Opt();

    // Tree surgery for the simplifier. Every edit of a node clears its
    // fixed-point mark and counts as tree activity.
    void SetType(TE_PNodeId id);
    void SetLeft(X_ParsNodePtr left);
    void SetRight(X_ParsNodePtr right);
    X_ParsNodePtr TakeLeft();
    X_ParsNodePtr TakeRight();

    // The simplifier's record that this subtree is at its fixed point (see
    // tree_opt.cpp); 0 when it is not known to be.
    uint64_t FixedPointMark() const { return fixedPointMark_; }
    void SetFixedPointMark(uint64_t mark) { fixedPointMark_ = mark; }

private:
    void Touch();
    void FieldsTake(const X_ParsNode& other);
    X_ParsNodePtr ChildRelease(const X_ParsNode* child);
    int ChildFind(const X_ParsNode* target, NodeMatcher equal, X_ParsNode*& parent, X_ParsNode*& found);
    // A copy of `other` without its children.
    struct FieldsOnly {};
    X_ParsNode(FieldsOnly, const X_ParsNode& other);
    static void SubtreeFree(X_ParsNodePtr root);

    TE_PNodeId type_ = ND_NOTYPE;
    X_ParsNodePtr left_;
    X_ParsNodePtr right_;
    int32_t line_ = 0;
    int32_t column_ = 0;
    std::wstring name_;
    double value_ = 0.0;
    uint32_t identity_;
    uint64_t fixedPointMark_ = 0;
};

namespace quantor::detail {

// Edits of nodes and error reports about nodes made on this thread so far;
// the simplifier compares it around a round to see whether the round did
// anything.
inline uint64_t TreeActivityCount() { return TreeThread().activity; }
inline void TreeActivity_Note() { ++TreeThread().activity; }

}  // namespace quantor::detail

// Node-form error report from the tree code, counted as tree activity and
// charged as work.
template <class... Args>
void TreeError_Report(const X_ParsNode* node, const wchar_t* format, const Args&... args) {
    quantor::detail::TreeActivity_Note();
    quantor::detail::TreeWork_Charge(quantor::detail::kReportWork);
    ParseError_ReportAt(node, format, args...);
}
