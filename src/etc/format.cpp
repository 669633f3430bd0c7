// The printf-style formatter. Each directive is parsed here; numbers are
// rendered by the C library's snprintf in the "C" locale (so a host's locale
// never changes a decimal point), strings and characters are padded here.
#include "etc/format.h"

#include <algorithm>
#include <clocale>
#include <climits>
#include <cstdio>
#include <string_view>

#include "etc/classic_locale.h"

namespace quantor::detail {
namespace {

// Widths and precisions beyond this are clamped so no format can demand a
// huge allocation.
constexpr int kMaxWidth = 4096;

struct Directive {
    std::string flags;
    int width = -1;
    int precision = -1;
};

bool IsFlag(wchar_t c) { return c == L'-' || c == L'+' || c == L' ' || c == L'#' || c == L'0'; }
bool IsLengthModifier(wchar_t c) {
    return c == L'h' || c == L'l' || c == L'L' || c == L'q' || c == L'j' || c == L'z' || c == L't';
}
bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

class ArgCursor {
public:
    explicit ArgCursor(std::span<const FormatArg> args) : args_(args) {}
    const FormatArg* Take() { return next_ < args_.size() ? &args_[next_++] : nullptr; }

private:
    std::span<const FormatArg> args_;
    size_t next_ = 0;
};

std::wstring Pad(std::wstring body, const Directive& d) {
    if (d.width <= static_cast<int>(body.size())) return body;
    const std::wstring fill(static_cast<size_t>(d.width) - body.size(), L' ');
    return d.flags.find('-') != std::string::npos ? body + fill : fill + body;
}

// Renders one number through snprintf with the directive's flags, width and
// precision and the given conversion letter and length prefix.
template <class T>
std::wstring RenderNumber(const Directive& d, const char* length, char conv, T value) {
    std::string printfFormat = "%";
    printfFormat += d.flags;
    if (d.width >= 0) printfFormat += std::to_string(d.width);
    if (d.precision >= 0) printfFormat += '.' + std::to_string(d.precision);
    printfFormat += length;
    printfFormat += conv;
    const locale_t previous = uselocale(ClassicLocale());
    char small[64];
    const int needed = std::snprintf(small, sizeof small, printfFormat.c_str(), value);
    std::string out;
    if (needed >= 0 && static_cast<size_t>(needed) < sizeof small) {
        out.assign(small, static_cast<size_t>(needed));
    } else if (needed >= 0) {
        out.resize(static_cast<size_t>(needed) + 1);
        std::snprintf(out.data(), out.size(), printfFormat.c_str(), value);
        out.resize(static_cast<size_t>(needed));
    }
    uselocale(previous);
    return std::wstring(out.begin(), out.end());
}

std::wstring RenderText(const Directive& d, std::wstring_view text) {
    if (d.precision >= 0 && static_cast<size_t>(d.precision) < text.size()) text = text.substr(0, d.precision);
    return Pad(std::wstring(text), d);
}

// An unsigned directive given a signed int prints its 32-bit pattern, as printf does.
unsigned long long AsUnsigned(const FormatArg& arg) {
    if (arg.kind == FormatArg::Kind::Unsigned) return arg.uval;
    if (arg.sval >= INT_MIN && arg.sval <= INT_MAX) return static_cast<unsigned>(static_cast<int>(arg.sval));
    return static_cast<unsigned long long>(arg.sval);
}

// Prints an argument by its own type, for directives it does not fit.
std::wstring RenderOwnType(Directive d, const FormatArg& arg) {
    switch (arg.kind) {
        case FormatArg::Kind::Signed: d.precision = -1; return RenderNumber(d, "ll", 'd', arg.sval);
        case FormatArg::Kind::Unsigned: d.precision = -1; return RenderNumber(d, "ll", 'u', arg.uval);
        case FormatArg::Kind::Floating: d.precision = -1; return RenderNumber(d, "", 'g', arg.dval);
        case FormatArg::Kind::String: return RenderText(d, arg.text);
        case FormatArg::Kind::NullString: return RenderText(d, L"(null)");
        case FormatArg::Kind::Character: return Pad(std::wstring(1, arg.ch), d);
    }
    return {};
}

bool IsInteger(const FormatArg& arg) {
    return arg.kind == FormatArg::Kind::Signed || arg.kind == FormatArg::Kind::Unsigned ||
           arg.kind == FormatArg::Kind::Character;
}

long long IntegerValue(const FormatArg& arg) {
    if (arg.kind == FormatArg::Kind::Character) return static_cast<long long>(arg.ch);
    if (arg.kind == FormatArg::Kind::Unsigned) return static_cast<long long>(arg.uval);
    return arg.sval;
}

std::wstring RenderConversion(const Directive& d, wchar_t conv, const FormatArg& arg) {
    switch (conv) {
        case L'd':
        case L'i':
            if (!IsInteger(arg)) return RenderOwnType(d, arg);
            if (arg.kind == FormatArg::Kind::Unsigned) return RenderNumber(d, "ll", 'u', arg.uval);
            return RenderNumber(d, "ll", 'd', IntegerValue(arg));
        case L'u':
        case L'x':
        case L'X':
        case L'o': {
            if (!IsInteger(arg)) return RenderOwnType(d, arg);
            FormatArg asUnsigned = arg;
            if (arg.kind == FormatArg::Kind::Character) {
                asUnsigned.kind = FormatArg::Kind::Unsigned;
                asUnsigned.uval = static_cast<unsigned long long>(arg.ch);
            }
            return RenderNumber(d, "ll", static_cast<char>(conv), AsUnsigned(asUnsigned));
        }
        case L'c':
            if (!IsInteger(arg)) return RenderOwnType(d, arg);
            return Pad(std::wstring(1, static_cast<wchar_t>(IntegerValue(arg))), d);
        case L's':
        case L'S':
            return RenderOwnType(d, arg);
        default:  // f F e E g G a A
            if (arg.kind != FormatArg::Kind::Floating) return RenderOwnType(d, arg);
            return RenderNumber(d, "", static_cast<char>(conv), arg.dval);
    }
}

// The size of an integer argument, at most kMaxWidth, and its sign; no
// value, not even the most negative one, is negated.
int ClampedMagnitude(const FormatArg& arg, bool& negative) {
    unsigned long long magnitude = 0;
    if (arg.kind == FormatArg::Kind::Unsigned) {
        magnitude = arg.uval;
    } else {
        const long long v = IntegerValue(arg);
        negative = v < 0;
        magnitude = negative ? 0ULL - static_cast<unsigned long long>(v) : static_cast<unsigned long long>(v);
    }
    return static_cast<int>(std::min<unsigned long long>(magnitude, kMaxWidth));
}

bool IsConversion(wchar_t c) { return c != 0 && std::wstring_view(L"diuxXocsSfFeEgGaA").find(c) != std::wstring_view::npos; }

// Reads a width or precision: digits, or '*' taking an int argument. Answers
// false when '*' finds no integer argument.
bool ReadNumberField(const wchar_t*& p, ArgCursor& cursor, int& value, bool& negative) {
    negative = false;
    if (*p == L'*') {
        ++p;
        const FormatArg* arg = cursor.Take();
        if (!arg || !IsInteger(*arg)) return false;
        value = ClampedMagnitude(*arg, negative);
        return true;
    }
    long long v = 0;
    while (IsDigit(*p)) {
        if (v <= kMaxWidth) v = v * 10 + (*p - L'0');
        ++p;
    }
    value = static_cast<int>(v > kMaxWidth ? kMaxWidth : v);
    return true;
}

// Parses and renders the directive starting at `p` (just after '%'). On
// return `p` is past what was read of the directive. Answers false when the directive must be
// written as it stands.
bool RenderDirective(const wchar_t*& p, ArgCursor& cursor, std::wstring& out) {
    Directive d;
    while (IsFlag(*p)) d.flags += static_cast<char>(*p++);
    if (IsDigit(*p) || *p == L'*') {
        bool negative = false;
        if (!ReadNumberField(p, cursor, d.width, negative)) return false;
        if (negative) d.flags += '-';
    }
    if (*p == L'.') {
        ++p;
        bool negative = false;
        if (!ReadNumberField(p, cursor, d.precision, negative)) return false;
        if (negative) d.precision = -1;
    }
    while (IsLengthModifier(*p)) ++p;
    const wchar_t conv = *p;
    if (conv) ++p;
    if (!IsConversion(conv)) return false;
    const FormatArg* arg = cursor.Take();
    if (!arg) return false;
    out += RenderConversion(d, conv, *arg);
    return true;
}

}  // namespace

std::wstring FormatArgs(const wchar_t* format, std::span<const FormatArg> args) {
    std::wstring out;
    if (!format) return out;
    ArgCursor cursor(args);
    const wchar_t* p = format;
    while (*p) {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        const wchar_t* start = p++;
        if (*p == L'%') {
            out += L'%';
            ++p;
            continue;
        }
        if (!RenderDirective(p, cursor, out)) {
            // Written as it stands, up to where parsing stopped.
            out.append(start, p);
        }
    }
    return out;
}

}  // namespace quantor::detail
