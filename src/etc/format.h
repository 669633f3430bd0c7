// A type-safe printf-style formatter for wide strings. Messages and number
// formats of the whole library go through it: "%s" takes a wide string, an
// argument whose type does not fit its directive is printed by its own type,
// and a directive without an argument is written as it stands.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace quantor::detail {

struct FormatArg {
    enum class Kind { Signed, Unsigned, Floating, String, NullString, Character };
    Kind kind = Kind::Signed;
    long long sval = 0;
    unsigned long long uval = 0;
    double dval = 0.0;
    std::wstring_view text;
    wchar_t ch = 0;
};

inline FormatArg MakeFormatArg(wchar_t c) {
    FormatArg a;
    a.kind = FormatArg::Kind::Character;
    a.ch = c;
    return a;
}

inline FormatArg MakeFormatArg(const wchar_t* s) {
    FormatArg a;
    a.kind = s ? FormatArg::Kind::String : FormatArg::Kind::NullString;
    if (s) a.text = s;
    return a;
}

inline FormatArg MakeFormatArg(std::wstring_view s) {
    FormatArg a;
    a.kind = FormatArg::Kind::String;
    a.text = s;
    return a;
}

inline FormatArg MakeFormatArg(const std::wstring& s) { return MakeFormatArg(std::wstring_view(s)); }

template <class T>
    requires(std::is_arithmetic_v<T> && !std::is_same_v<T, wchar_t> && !std::is_same_v<T, bool>)
FormatArg MakeFormatArg(T value) {
    FormatArg a;
    if constexpr (std::is_floating_point_v<T>) {
        a.kind = FormatArg::Kind::Floating;
        a.dval = static_cast<double>(value);
    } else if constexpr (std::is_signed_v<T>) {
        a.kind = FormatArg::Kind::Signed;
        a.sval = value;
    } else {
        a.kind = FormatArg::Kind::Unsigned;
        a.uval = value;
    }
    return a;
}

inline FormatArg MakeFormatArg(bool value) { return MakeFormatArg(static_cast<int>(value)); }

// Formats `format` with the given arguments; never reads past `args`.
std::wstring FormatArgs(const wchar_t* format, std::span<const FormatArg> args);

}  // namespace quantor::detail

// Formats a wide printf-style format with its arguments.
template <class... Args>
std::wstring QtrFormat(const wchar_t* format, const Args&... args) {
    const quantor::detail::FormatArg list[sizeof...(Args) + 1] = {quantor::detail::MakeFormatArg(args)...};
    return quantor::detail::FormatArgs(format, std::span(list, sizeof...(Args)));
}
