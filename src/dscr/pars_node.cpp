// The expression-tree node: construction from tokens and operands, deep
// copying, the structural queries the simplifier and the semantic actions
// use, operand removal, and printing to the debug trace.
#include "dscr/pars_node.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <new>

#include "etc/diag_log.h"
#include "quantor/numeric.h"

namespace {

constexpr const wchar_t* kTypeNames[] = {
    L"ND_ABBREV", L"ND_CONV", L"ND_CONVFORM", L"ND_DIV",   L"ND_FMTSHFT", L"ND_FLOAT",   L"ND_FLTEXP", L"ND_HEXNUM",
    L"ND_INT",    L"ND_MINUS", L"ND_MULT",    L"ND_NAME",  L"ND_PLUS",    L"ND_UNMINUS", L"ND_UNPLUS",
};
constexpr int32_t kNamedTypes = static_cast<int32_t>(std::size(kTypeNames));

std::atomic<uint32_t> gNextIdentity{1};
thread_local uint64_t tTreeActivity = 0;

bool IsDecimalNumberType(TE_PNodeId id) { return id == ND_FLOAT || id == ND_FLTEXP || id == ND_INT; }

double HexTokenValue(const std::wstring& text) {
    uint32_t value = 0;
    int length = 0;
    HexNumber_Scan(text.c_str(), value, length);
    return static_cast<double>(value);
}

X_ParsNodePtr CopyOf(const X_ParsNodePtr& node) { return node ? std::make_unique<X_ParsNode>(*node) : nullptr; }

}  // namespace

namespace quantor::detail {

uint64_t TreeActivityCount() { return tTreeActivity; }
void TreeActivity_Note() { ++tTreeActivity; }

}  // namespace quantor::detail

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

X_ParsNode::X_ParsNode(const X_ParsNode& other)
    : type_(other.type_),
      left_(CopyOf(other.left_)),
      right_(CopyOf(other.right_)),
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
    left_.reset();
    right_.reset();
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
    const int leftDepth = left_ ? left_->Depth() + 1 : 0;
    const int rightDepth = right_ ? right_->Depth() + 1 : 0;
    return std::max(leftDepth, rightDepth);
}

const X_ParsNode* X_ParsNode::FindName(const wchar_t* name) const {
    if (IsName() && (!name || name_ == name)) return this;
    const X_ParsNode* found = left_ ? left_->FindName(name) : nullptr;
    if (!found && right_) found = right_->FindName(name);
    return found;
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
    return FindNodeBelow(target, equal, parent, found);
}

// Tests both children, then searches the left and the right subtree. Each
// node is tested once: as a child before its own subtree is searched.
int X_ParsNode::FindNodeBelow(const X_ParsNode* target, NodeMatcher equal, X_ParsNode*& parent,
                              X_ParsNode*& found) {
    for (const auto& [child, answer] : {std::pair{left_.get(), 2}, std::pair{right_.get(), 4}}) {
        if (child && equal(child, target)) {
            parent = this;
            found = child;
            return answer;
        }
    }
    int answer = left_ ? left_->FindNodeBelow(target, equal, parent, found) : 0;
    if (answer == 0 && right_) answer = right_->FindNodeBelow(target, equal, parent, found);
    return answer;
}

const X_ParsNode* X_ParsNode::EarliestPosition() const {
    const X_ParsNode* earliest = this;
    EarliestSearch(earliest);
    return earliest;
}

void X_ParsNode::EarliestSearch(const X_ParsNode*& earliest) const {
    if (line_ < earliest->line_ || (line_ == earliest->line_ && column_ < earliest->column_)) earliest = this;
    if (left_) left_->EarliestSearch(earliest);
    if (right_) right_->EarliestSearch(earliest);
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

void X_ParsNode::Print(int indent, const wchar_t* title) const {
    if (title) Trace_Write(L"X_ParsNode::Print: %s :\n", title);
    if (right_) right_->Print(indent + 5, nullptr);
    Trace_Write(L"%s %s\n", std::wstring(static_cast<size_t>(std::max(indent, 0)), L' '), NodeText());
    if (left_) left_->Print(indent + 5, nullptr);
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
