// Fuzz target for value-with-unit strings and the IEEE image: any text that
// reads as a value with a unit must be written again and read back to the
// same name and the same bits, unless the name holds a marker ("u:", "i:"),
// which the reader finds first by its rules; an image that reads must come
// back the same.
#include <bit>
#include <cmath>
#include <cstring>
#include <string>

#include "fuzz_support.h"
#include "quantor/admin.h"
#include "quantor/numeric.h"

namespace {

bool SameBits(double a, double b) { return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b); }

void ValueStringRoundTrip(const std::wstring& text) {
    std::wstring unitName;
    double value = 0.0;
    if (!QtrAdminStd::UnitAndValueGetFromString(unitName, value, text.c_str())) return;
    if (unitName.find(L"u:") != std::wstring::npos || unitName.find(L"i:") != std::wstring::npos) return;
    std::wstring written;
    if (!QtrAdminStd::UnitAndValueStringGen(unitName.c_str(), value, written)) return;
    std::wstring nameBack;
    double valueBack = 0.0;
    fuzz::Require(QtrAdminStd::UnitAndValueGetFromString(nameBack, valueBack, written.c_str()),
                  "a written value string does not read back");
    fuzz::Require(nameBack == unitName && SameBits(valueBack, value), "a value string changes on its way back");
}

void ImageRoundTrip(const std::wstring& text) {
    double value = 0.0;
    if (!Cnvrt_IEEE2Dbl(text.c_str(), value)) return;
    std::wstring image;
    Cnvrt_Dbl2IEEE(value, image);
    double back = 0.0;
    fuzz::Require(Cnvrt_IEEE2Dbl(image.c_str(), back) && SameBits(back, value), "an IEEE image changes on its way back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::DiagnosticsSilence();
    const std::wstring text = quantor::detail::FromUtf8(std::string(reinterpret_cast<const char*>(data), size));
    const std::wstring terminated = text.substr(0, text.find(L'\0'));
    ValueStringRoundTrip(terminated);
    ImageRoundTrip(terminated);
    return 0;
}
