// The buffered standard output, error lines, and the JSON writer.
#include "output.h"

#include <cmath>

#include "text.h"

namespace quantor_cli {

void Output::Flush() {
    if (buffer_.empty()) return;
    std::fwrite(buffer_.data(), 1, buffer_.size(), stream_);
    std::fflush(stream_);
    buffer_.clear();
}

Output& Out() {
    static Output out(stdout);
    return out;
}

void ErrorLine(std::string_view message) {
    Out().Flush();
    std::string line = "quantor: ";
    line.append(message);
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void JsonWriter::ValueStart() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (hasItems_.empty()) return;
    if (hasItems_.back()) out_.push_back(',');
    hasItems_.back() = true;
}

JsonWriter& JsonWriter::BeginObject() {
    ValueStart();
    out_.push_back('{');
    hasItems_.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::EndObject() {
    out_.push_back('}');
    hasItems_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::BeginArray() {
    ValueStart();
    out_.push_back('[');
    hasItems_.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::EndArray() {
    out_.push_back(']');
    hasItems_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::Key(std::string_view key) {
    String(key);
    out_.push_back(':');
    afterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::String(std::string_view text) {
    ValueStart();
    static constexpr char kHex[] = "0123456789abcdef";
    out_.push_back('"');
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out_.push_back('\\');
            out_.push_back(c);
        } else if (c == '\n') {
            out_.append("\\n");
        } else if (c == '\t') {
            out_.append("\\t");
        } else if (byte < 0x20) {
            out_.append("\\u00");
            out_.push_back(kHex[byte >> 4]);
            out_.push_back(kHex[byte & 0xf]);
        } else {
            out_.push_back(c);
        }
    }
    out_.push_back('"');
    return *this;
}

JsonWriter& JsonWriter::Number(double value) {
    if (!std::isfinite(value)) return Null();
    ValueStart();
    NumberAppendExact(out_, value);
    return *this;
}

JsonWriter& JsonWriter::Bool(bool value) {
    ValueStart();
    out_.append(value ? "true" : "false");
    return *this;
}

JsonWriter& JsonWriter::Null() {
    ValueStart();
    out_.append("null");
    return *this;
}

JsonWriter& JsonWriter::StringArray(std::string_view key, const std::vector<std::string>& items) {
    Key(key).BeginArray();
    for (const std::string& item : items) String(item);
    return EndArray();
}

}  // namespace quantor_cli
