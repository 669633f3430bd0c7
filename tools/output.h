// Output of the command: text lines and JSON documents written through one
// buffer to standard output, and error lines on standard error. Nothing is
// flushed per line; the buffer goes out when it is full and at the end.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace quantor_cli {

// A buffered writer over a stdio stream; flushes when full and when destroyed.
class Output {
public:
    explicit Output(std::FILE* stream) : stream_(stream) { buffer_.reserve(kCapacity); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() { Flush(); }

    // The buffer to append to; call Written() after appending.
    std::string& Buffer() { return buffer_; }
    void Written() {
        if (buffer_.size() >= kCapacity) Flush();
    }
    void Write(std::string_view text) {
        buffer_.append(text);
        Written();
    }
    void Line(std::string_view text) {
        buffer_.append(text);
        buffer_.push_back('\n');
        Written();
    }
    void Flush();

private:
    static constexpr size_t kCapacity = 1 << 16;
    std::FILE* stream_;
    std::string buffer_;
};

// Standard output of this process.
Output& Out();

// "quantor: " and `message` on standard error, after what standard output
// holds so far, so the two streams read in order on a terminal.
void ErrorLine(std::string_view message);

// Writes one JSON value into a string: objects and arrays nest, commas and
// string escapes are taken care of. Non-finite numbers are written as null.
class JsonWriter {
public:
    explicit JsonWriter(std::string& out) : out_(out) {}
    JsonWriter& BeginObject();
    JsonWriter& EndObject();
    JsonWriter& BeginArray();
    JsonWriter& EndArray();
    JsonWriter& Key(std::string_view key);
    JsonWriter& String(std::string_view text);
    JsonWriter& Number(double value);
    JsonWriter& Bool(bool value);
    JsonWriter& Null();
    // Key(key) followed by the value.
    JsonWriter& Field(std::string_view key, std::string_view text) { return Key(key).String(text); }
    JsonWriter& Field(std::string_view key, const char* text) { return Key(key).String(text); }
    JsonWriter& Field(std::string_view key, double value) { return Key(key).Number(value); }
    JsonWriter& Field(std::string_view key, bool value) { return Key(key).Bool(value); }
    JsonWriter& StringArray(std::string_view key, const std::vector<std::string>& items);

private:
    void ValueStart();
    std::string& out_;
    std::vector<bool> hasItems_;  // per open object or array: a value was written
    bool afterKey_ = false;
};

}  // namespace quantor_cli
