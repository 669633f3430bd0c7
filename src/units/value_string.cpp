// Value-with-unit strings: "u:<unit name> i:<IEEE image> n:<%g>". The "i:"
// image holds the exact bits of the value, so reading a string back gives the
// identical double; the "n:" rendering is for people and is never read.
#include <cwchar>
#include <string_view>

#include "etc/format.h"
#include "quantor/admin.h"
#include "quantor/functions.h"
#include "quantor/numeric.h"

namespace {

constexpr size_t kShortestUnitName = 4;
// "u:" and a name of the shortest length.
constexpr size_t kShortestUnitPart = 2 + kShortestUnitName;

// The unit name after the first "u:", up to the first blank; empty when
// there is no "u:" or too little text follows it.
std::wstring_view UnitNamePart(std::wstring_view text) {
    const size_t marker = text.find(L"u:");
    if (marker == std::wstring_view::npos || text.size() - marker < kShortestUnitPart) return {};
    const std::wstring_view rest = text.substr(marker + 2);
    return rest.substr(0, rest.find(L' '));
}

}  // namespace

bool QtrAdminStd::UnitAndValueStringGen(const wchar_t* unitName, double value, std::wstring& text) {
    if (!unitName || std::wcslen(unitName) < kShortestUnitName) return false;
    std::wstring image;
    Cnvrt_Dbl2IEEE(value, image);
    std::wstring written = L"u:";
    written.append(unitName).append(L" i:").append(image).append(L" n:").append(QtrFormat(L"%g", value));
    text = std::move(written);
    return true;
}

bool QtrAdminStd::UnitAndValueStringGen(const QtrUnitBase* unit, double value, std::wstring& text) {
    return unit && UnitAndValueStringGen(unit->Name().c_str(), value, text);
}

bool QtrAdminStd::UnitAndValueGetFromString(std::wstring& unitName, double& value, const wchar_t* text) {
    if (!text) return false;
    const std::wstring_view view(text);
    const size_t image = view.find(L"i:");
    double read = 0.0;
    if (image == std::wstring_view::npos || !Cnvrt_IEEE2Dbl(text + image, read)) return false;
    const std::wstring_view name = UnitNamePart(view);
    if (name.size() < kShortestUnitName) return false;
    unitName = name;
    value = read;
    return true;
}

bool QtrAdminStd::UnitAndValueGetFromString(const QtrUnitBase*& unit, double& value, const wchar_t* text) {
    std::wstring name;
    double read = 0.0;
    if (!UnitAndValueGetFromString(name, read, text)) return false;
    const QtrUnitBase* found = UnitSearch(name.c_str());
    if (!found) return false;
    unit = found;
    value = read;
    return true;
}
