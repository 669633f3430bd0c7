// Locale-independent case folding of typed names: each character maps to
// one character, so a folded name keeps its length. Covers ASCII, Latin-1,
// Latin Extended-A, Greek and the letter-like unit signs (Ohm, Kelvin,
// Angstrom); every other character stays as it is. It never consults the
// process locale, so a Turkish locale still folds 'I' to 'i'.
#pragma once

#include <string>
#include <string_view>

namespace quantor::detail {

// The simple case folding of one character (capitals to small letters, the
// micro sign to Greek mu, final sigma to sigma, the unit signs to letters).
wchar_t CaseFold(wchar_t c);

// Writes the folding of `name` to `out`, which holds at least name.size()
// characters.
void CaseFoldInto(std::wstring_view name, wchar_t* out);

std::wstring CaseFolded(std::wstring_view name);

}  // namespace quantor::detail
