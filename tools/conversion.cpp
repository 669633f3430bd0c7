// Preparing and applying a conversion, and reading the --digits value.
#include "conversion.h"

#include <charconv>

#include "text.h"

namespace quantor_cli {

namespace {

bool SmallIntRead(std::string_view text, int& value) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc() && stop == end && value >= -99 && value <= 99;
}

}  // namespace

bool DigitsRead(std::string_view text, Digits& digits) {
    const size_t comma = text.find(',');
    if (comma == std::string_view::npos) return false;
    return SmallIntRead(text.substr(0, comma), digits.pre) && SmallIntRead(text.substr(comma + 1), digits.post);
}

bool Conversion::Prepare(const NameLookup& names, const std::string& from, const std::string& to, std::string& error) {
    if (!names.PairFind(from, to, pair_, error)) return false;
    rule_ = pair_.source == pair_.target ? nullptr : pair_.source->ConvInfo(pair_.target);
    if (rule_ || pair_.source == pair_.target) return true;
    error = "no rule converts " + Utf8(pair_.source->Name()) + " into " + Utf8(pair_.target->Name()) +
            " (the catalogue's category is incomplete; run quantor check)";
    return false;
}

void Conversion::ResultAppend(std::string& out, double value, const std::optional<Digits>& digits) const {
    if (!digits) {
        NumberAppend(out, Apply(value));
        return;
    }
    out += Utf8(pair_.source->ConvertOutputGen(pair_.target, value, digits->pre, digits->post));
}

}  // namespace quantor_cli
