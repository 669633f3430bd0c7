// Locale-independent number helpers: reading decimal numbers, comparing
// doubles to a number of significant digits, and the exact hexadecimal image
// of a double's IEEE 754 bits.
#pragma once

#include <string>

#include "quantor/export.h"

// Reads a decimal number (digits, optional point and fraction, optional
// exponent) from the start of `text`, whatever the process locale. `status`
// is 0 when a number was read, non-zero otherwise; `separator` is accepted
// for compatibility and ignored. Answers whether a number was read.
QUANTOR_API bool FloatScan(double& value, int& status, const wchar_t* text, wchar_t separator = 0);

// True when a == b or |a - b| <= 10^-digits * max(|a|, |b|).
QUANTOR_API bool IsDblEqual(double a, double b, int digits);

// The 64-bit pattern of `value` as exactly 16 upper-case hexadecimal digits.
QUANTOR_API void Cnvrt_Dbl2IEEE(double value, std::wstring& text);

// Reads an image written by Cnvrt_Dbl2IEEE, optionally preceded by "i:" and
// followed by the end of the text or a blank. `value` is written only on success.
QUANTOR_API bool Cnvrt_IEEE2Dbl(const wchar_t* text, double& value);
