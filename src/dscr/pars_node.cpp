// The expression-tree node: construction from tokens and operands, deep
// copying, the structural queries the simplifier and the semantic actions
// use, operand removal, and printing to the debug trace. Every walk over a
// tree here keeps its pending nodes in a list of its own instead of
// recursing, so a tree of any depth is copied, searched, printed and freed on
// a small thread stack. Walks charge the nodes they visit to the work
// allowance (tree_limits.h).
#include "dscr/pars_node.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <iterator>
#include <new>
#include <utility>
#include <vector>

#include "dscr/tree_limits.h"
#include "etc/diag_log.h"
#include "quantor/numeric.h"

namespace {

constexpr const wchar_t* kTypeNames[] = {
    L"ND_ABBREV", L"ND_CONV", L"ND_CONVFORM", L"ND_DIV",   L"ND_FMTSHFT", L"ND_FLOAT",   L"ND_FLTEXP", L"ND_HEXNUM",
    L"ND_INT",    L"ND_MINUS", L"ND_MULT",    L"ND_NAME",  L"ND_PLUS",    L"ND_UNMINUS", L"ND_UNPLUS",
};
constexpr int32_t kNamedTypes = static_cast<int32_t>(std::size(kTypeNames));

constexpr int kMaxPrintIndent = 1000;

std::atomic<uint32_t> gNextIdentity{1};

bool IsDecimalNumberType(TE_PNodeId id) { return id == ND_FLOAT || id == ND_FLTEXP || id == ND_INT; }

double HexTokenValue(const std::wstring& text) {
    uint32_t value = 0;
    int length = 0;
    HexNumber_Scan(text.c_str(), value, length);
    return static_cast<double>(value);
}

X_ParsNodePtr CopyOf(const X_ParsNodePtr& node) { return node ? std::make_unique<X_ParsNode>(*node) : nullptr; }

// The nodes a walk has still to visit, last in first out. The first few are
// kept in the walk's own frame, so that walks over small trees, the common
// case, allocate nothing.
template <class T>
class PendingStack {
public:
    explicit PendingStack(T first) { Push(first); }
    void Push(T item) {
        if (inlineCount_ < kInline)
            inline_[inlineCount_++] = item;
        else
            overflow_.push_back(item);
    }
    T Pop() {
        if (overflow_.empty()) return inline_[--inlineCount_];
        T item = overflow_.back();
        overflow_.pop_back();
        return item;
    }
    bool Empty() const { return inlineCount_ == 0 && overflow_.empty(); }

private:
    static constexpr size_t kInline = 32;
    // Left uninitialised: only the entries below inlineCount_ are read.
    std::array<T, kInline> inline_;
    size_t inlineCount_ = 0;
    std::vector<T> overflow_;
};

// Visits the nodes of a tree in pre-order (node, left subtree, right
// subtree) until `visit` answers true; the node it stopped at, or null.
template <class Node, class Visit>
Node* PreOrderFind(Node* root, Visit visit) {
    PendingStack<Node*> pending(root);
    uint64_t visited = 0;
    Node* found = nullptr;
    while (!pending.Empty() && !found) {
        Node* node = pending.Pop();
        ++visited;
        if (visit(*node)) found = node;
        if (node->Right()) pending.Push(node->Right());
        if (node->Left()) pending.Push(node->Left());
    }
    quantor::detail::TreeWork_Charge(visited);
    return found;
}

}  // namespace

X_ParsNode::X_ParsNode() : identity_(gNextIdentity++) {}

X_ParsNode::X_ParsNode(TE_PNodeId id, const X_Token& token) : X_ParsNode() {
    type_ = id;
    line_ = token.line;
    column_ = token.column;
    if (IsNameType(id)) {
        name_ = token.text;
    } else if (IsDecimalNumberType(id)) {
        int status = 0;
        FloatScan(value_, status, token.text.c_str(), L'\0');
    } else if (id == ND_HEXNUM) {
        name_ = token.text;
        value_ = HexTokenValue(token.text);
    } else {
        TreeError_Report(this, L"X_ParsNode::X_ParsNode(%s,(token)): error\n", NodeTypeName(id));
    }
}

X_ParsNode::X_ParsNode(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right)
    : type_(id), left_(std::move(left)), right_(std::move(right)), identity_(gNextIdentity++) {
    if (left_) {
        line_ = left_->line_;
        column_ = left_->column_;
    }
}

// Copies the fields first, then the children level by level from a list of
// (source, copy) pairs still to be filled in.
X_ParsNode::X_ParsNode(const X_ParsNode& other) : X_ParsNode(FieldsOnly{}, other) {
    PendingStack<std::pair<const X_ParsNode*, X_ParsNode*>> pending({&other, this});
    uint64_t copied = 1;
    while (!pending.Empty()) {
        const auto [from, to] = pending.Pop();
        for (auto [source, copy] : {std::pair{&from->left_, &to->left_}, std::pair{&from->right_, &to->right_}}) {
            if (!*source) continue;
            *copy = std::unique_ptr<X_ParsNode>(new X_ParsNode(FieldsOnly{}, **source));
            pending.Push({source->get(), copy->get()});
            ++copied;
        }
    }
    quantor::detail::TreeWork_Charge(copied * quantor::detail::kNodeCopyWork);
}

X_ParsNode::X_ParsNode(FieldsOnly, const X_ParsNode& other)
    : type_(other.type_),
      line_(other.line_),
      column_(other.column_),
      name_(other.name_),
      value_(other.value_),
      identity_(gNextIdentity++) {}

// The source's children are copied before this node's own subtrees go, so
// assigning a node from inside its own subtree is safe too.
X_ParsNode& X_ParsNode::operator=(const X_ParsNode& other) {
    if (this == &other) return *this;
    X_ParsNodePtr left = CopyOf(other.left_);
    X_ParsNodePtr right = CopyOf(other.right_);
    FieldsTake(other);
    right_ = std::move(right);
    left_ = std::move(left);
    return *this;
}

X_ParsNode::~X_ParsNode() {
    SubtreeFree(std::move(left_));
    SubtreeFree(std::move(right_));
}

// Frees a tree without recursion and without allocating: a node with a left
// child is rotated right until the node at the top has none; then it goes,
// and its right child takes its place. Each node so freed has no children.
void X_ParsNode::SubtreeFree(X_ParsNodePtr root) {
    while (root) {
        if (root->left_) {
            X_ParsNodePtr left = std::move(root->left_);
            root->left_ = std::move(left->right_);
            left->right_ = std::move(root);
            root = std::move(left);
        } else {
            root = std::move(root->right_);
        }
    }
}

X_ParsNodePtr X_ParsNode::NewLeaf(TE_PNodeId id, const X_Token& token) {
    try {
        return std::make_unique<X_ParsNode>(id, token);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

X_ParsNodePtr X_ParsNode::NewOperator(TE_PNodeId id, X_ParsNodePtr left, X_ParsNodePtr right) {
    try {
        return std::make_unique<X_ParsNode>(id, std::move(left), std::move(right));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::wstring X_ParsNode::NodeTypeName(int32_t id) {
    if (id >= 0 && id < kNamedTypes) return kTypeNames[id];
    return QtrFormat(L"TE_PNodeId %d ??", id);
}

void X_ParsNode::Touch() {
    fixedPointMark_ = 0;
    quantor::detail::TreeActivity_Note();
}

void X_ParsNode::FieldsTake(const X_ParsNode& other) {
    Touch();
    type_ = other.type_;
    line_ = other.line_;
    column_ = other.column_;
    name_ = other.name_;
    value_ = other.value_;
}

X_ParsNodePtr X_ParsNode::ChildRelease(const X_ParsNode* child) {
    if (!child) return nullptr;
    if (child == left_.get()) return TakeLeft();
    if (child == right_.get()) return TakeRight();
    return nullptr;
}

void X_ParsNode::Reset() {
    Touch();
    type_ = ND_NOTYPE;
    left_.reset();
    right_.reset();
    line_ = 0;
    column_ = 0;
    name_.clear();
    value_ = 0.0;
}

void X_ParsNode::CopyFrom(const X_ParsNode& other) {
    if (this != &other) FieldsTake(other);
}

void X_ParsNode::ReplaceBy(X_ParsNode* child) {
    X_ParsNodePtr taken = ChildRelease(child);
    if (!taken) return;
    X_ParsNodePtr oldLeft = std::move(left_);
    X_ParsNodePtr oldRight = std::move(right_);
    FieldsTake(*taken);
    left_ = std::move(taken->left_);
    right_ = std::move(taken->right_);
}

void X_ParsNode::SetFloat(double value) {
    Touch();
    type_ = ND_FLOAT;
    left_.reset();
    right_.reset();
    name_.clear();
    value_ = value;
}

void X_ParsNode::SetInt(int32_t value) {
    SetFloat(static_cast<double>(value));
    type_ = ND_INT;
}

TE_PNodeId X_ParsNode::Inv_NodeId() const {
    switch (type_) {
        case ND_DIV: return ND_MULT;
        case ND_MINUS: return ND_PLUS;
        case ND_MULT: return ND_DIV;
        case ND_PLUS: return ND_MINUS;
        case ND_UNMINUS: return ND_UNPLUS;
        case ND_UNPLUS: return ND_UNMINUS;
        default:
            TreeError_Report(this, L"X_ParsNode::Inv_NodeId(): no inverting operation for %s\n", NodeTypeName(type_));
            return ND_NOTYPE;
    }
}

int X_ParsNode::Depth() const {
    PendingStack<std::pair<const X_ParsNode*, int>> pending({this, 0});
    int depth = 0;
    uint64_t visited = 0;
    while (!pending.Empty()) {
        const auto [node, level] = pending.Pop();
        ++visited;
        depth = std::max(depth, level);
        if (node->left_) pending.Push({node->left_.get(), level + 1});
        if (node->right_) pending.Push({node->right_.get(), level + 1});
    }
    quantor::detail::TreeWork_Charge(visited);
    return depth;
}

int X_ParsNode::NodeCount() const {
    int count = 0;
    PreOrderFind(this, [&count](const X_ParsNode&) { return ++count, false; });
    return count;
}

const X_ParsNode* X_ParsNode::FindName(const wchar_t* name) const {
    return PreOrderFind(this, [name](const X_ParsNode& node) { return node.IsName() && (!name || node.name_ == name); });
}

X_ParsNode* X_ParsNode::FindName(const wchar_t* name) {
    return const_cast<X_ParsNode*>(static_cast<const X_ParsNode*>(this)->FindName(name));
}

int X_ParsNode::FindNode(const X_ParsNode* target, NodeMatcher equal, X_ParsNode*& parent, X_ParsNode*& found) {
    if (!target) return 0;
    if (equal(this, target)) {
        parent = nullptr;
        found = this;
        return 1;
    }
    int answer = 0;
    PreOrderFind(this, [&](X_ParsNode& node) { return (answer = node.ChildFind(target, equal, parent, found)) != 0; });
    return answer;
}

// Tests the left child (answer 2) and the right child (answer 4). Visited in
// pre-order, every node below the root is tested once, as a child, before its
// own subtree is searched.
int X_ParsNode::ChildFind(const X_ParsNode* target, NodeMatcher equal, X_ParsNode*& parent, X_ParsNode*& found) {
    for (const auto& [child, answer] : {std::pair{left_.get(), 2}, std::pair{right_.get(), 4}}) {
        if (child && equal(child, target)) {
            parent = this;
            found = child;
            return answer;
        }
    }
    return 0;
}

const X_ParsNode* X_ParsNode::EarliestPosition() const {
    const X_ParsNode* earliest = this;
    PreOrderFind(this, [&earliest](const X_ParsNode& node) {
        if (node.line_ < earliest->line_ || (node.line_ == earliest->line_ && node.column_ < earliest->column_))
            earliest = &node;
        return false;
    });
    return earliest;
}

void X_ParsNode::SubExpr_Del(X_ParsNode* child) {
    const bool isLeft = child && child == left_.get();
    const bool isRight = child && child == right_.get();
    if (!isLeft && !isRight) {
        TreeError_Report(this, L"X_ParsNode::SubExpr_Del(.): param is no subexpr\n");
        return;
    }
    X_ParsNode* other = isLeft ? right_.get() : left_.get();
    if (!other) {
        ChildRelease(child);
    } else if (type_ == ND_MINUS && isLeft) {
        // Removing the minuend of a - b leaves -b, so that the sign survives.
        SetType(ND_UNMINUS);
        SetLeft(TakeRight());
    } else {
        ReplaceBy(other);
    }
}

// Right subtree, node, left subtree: a list of nodes still to print, each
// either to be expanded into its three parts or, once expanded, to be written.
// The indentation stops growing at kMaxPrintIndent blanks, so that the text
// of a degenerate tree grows with its size, not with the square of its depth.
void X_ParsNode::Print(int indent, const wchar_t* title) const {
    if (title) Trace_Write(L"X_ParsNode::Print: %s :\n", title);
    if (!Trace_IsActive()) return;
    struct Pending {
        const X_ParsNode* node;
        int indent;
        bool expanded;
    };
    PendingStack<Pending> pending({this, indent, false});
    while (!pending.Empty()) {
        const Pending item = pending.Pop();
        if (item.expanded) {
            const size_t blanks = static_cast<size_t>(std::clamp(item.indent, 0, kMaxPrintIndent));
            Trace_Write(L"%s %s\n", std::wstring(blanks, L' '), item.node->NodeText());
            continue;
        }
        if (item.node->left_) pending.Push({item.node->left_.get(), item.indent + 5, false});
        pending.Push({item.node, item.indent, true});
        if (item.node->right_) pending.Push({item.node->right_.get(), item.indent + 5, false});
    }
}

std::wstring X_ParsNode::NodeText() const {
    const std::wstring typeName = NodeTypeName(type_);
    std::wstring text;
    switch (type_) {
        case ND_ABBREV: text = QtrFormat(L"%s: [%s]", typeName, name_); break;
        case ND_FLOAT: text = QtrFormat(L"%s: %f", typeName, value_); break;
        case ND_FLTEXP: text = QtrFormat(L"%s: %e", typeName, value_); break;
        case ND_INT: text = QtrFormat(L"%s: %.0f", typeName, value_); break;
        case ND_NAME: text = QtrFormat(L"%s: \"%s\"", typeName, name_); break;
        default: text = typeName; break;
    }
    return text + QtrFormat(L"     (%08x)", identity_);
}

void X_ParsNode::SetType(TE_PNodeId id) {
    Touch();
    type_ = id;
}

void X_ParsNode::SetLeft(X_ParsNodePtr left) {
    Touch();
    left_ = std::move(left);
}

void X_ParsNode::SetRight(X_ParsNodePtr right) {
    Touch();
    right_ = std::move(right);
}

X_ParsNodePtr X_ParsNode::TakeLeft() {
    Touch();
    return std::move(left_);
}

X_ParsNodePtr X_ParsNode::TakeRight() {
    Touch();
    return std::move(right_);
}
