// The batch loop. Each distinct FROM/TO pair is resolved once and kept with
// its rule (or its error), so a line costs a split, a number read, a hash
// lookup and one rule application; results go out through the output
// buffer without a flush per line.
#include "batch.h"

#include <stdio.h>

#include <array>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

#include "command.h"
#include "output.h"
#include "text.h"

namespace quantor_cli {

namespace {

// A resolved FROM/TO pair, or why it cannot be converted.
struct CachedConversion {
    Conversion conversion;
    std::string error;
};

struct Fields {
    std::array<std::string_view, 3> items;
    size_t count = 0;
};

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Splits at blanks; answers false for more than three fields.
bool FieldsSplit(std::string_view line, Fields& fields) {
    size_t at = 0;
    while (true) {
        while (at < line.size() && IsBlank(line[at])) ++at;
        if (at == line.size()) return true;
        const size_t start = at;
        while (at < line.size() && !IsBlank(line[at])) ++at;
        if (fields.count == fields.items.size()) return false;
        fields.items[fields.count++] = line.substr(start, at - start);
    }
}

class BatchConverter {
public:
    BatchConverter(Session& session, const NameLookup& names, const std::string& inputName,
                   const std::optional<Digits>& digits)
        : names_(names), inputName_(inputName), digits_(digits), json_(session.Json()) {}

    // Converts one line; false when it failed.
    bool LineConvert(std::string_view line, size_t number) {
        Fields fields;
        if (!FieldsSplit(line, fields)) return Fail(number, "expected VALUE FROM [TO], found more than three words");
        if (fields.count == 0) return true;
        if (fields.count == 1) return Fail(number, "expected VALUE FROM [TO], found one word");
        double value = 0.0;
        if (!NumberRead(fields.items[0], value))
            return Fail(number, "not a number: " + std::string(fields.items[0]));
        const CachedConversion& cached = Lookup(fields.items[1], fields.count == 3 ? fields.items[2] : std::string_view());
        if (!cached.error.empty()) return Fail(number, cached.error);
        ResultWrite(cached.conversion, value, number);
        return true;
    }

private:
    const CachedConversion& Lookup(std::string_view from, std::string_view to) {
        key_.assign(from).push_back('\0');
        key_.append(to);
        auto found = cache_.find(key_);
        if (found != cache_.end()) return found->second;
        CachedConversion& entry = cache_[key_];
        entry.conversion.Prepare(names_, std::string(from), std::string(to), entry.error);
        return entry;
    }

    void ResultWrite(const Conversion& conversion, double value, size_t number) {
        std::string& out = Out().Buffer();
        if (!json_) {
            conversion.ResultAppend(out, value, digits_);
            out.push_back('\n');
            Out().Written();
            return;
        }
        JsonWriter json(out);
        json.BeginObject().Key("line").Number(static_cast<double>(number)).Field("value", value);
        json.Field("from", Utf8(conversion.Source().Name())).Field("to", Utf8(conversion.Target().Name()));
        json.Field("result", conversion.Apply(value));
        if (digits_) {
            std::string text;
            conversion.ResultAppend(text, value, digits_);
            json.Field("text", text);
        }
        json.EndObject();
        out.push_back('\n');
        Out().Written();
    }

    bool Fail(size_t number, const std::string& message) {
        ErrorLine(inputName_ + ":" + std::to_string(number) + ": " + message);
        if (json_) {
            JsonWriter(Out().Buffer()).BeginObject().Key("line").Number(static_cast<double>(number)).Field("error", message).EndObject();
        }
        Out().Line("");
        return false;
    }

    const NameLookup& names_;
    const std::string& inputName_;
    const std::optional<Digits>& digits_;
    const bool json_;
    std::string key_;
    std::unordered_map<std::string, CachedConversion> cache_;
};

}  // namespace

int BatchConvert(Session& session, std::FILE* input, const std::string& inputName, const std::optional<Digits>& digits) {
    const NameLookup* names = session.Names();
    if (!names) return kExitFailed;
    BatchConverter converter(session, *names, inputName, digits);
    char* line = nullptr;
    size_t capacity = 0;
    bool allConverted = true;
    size_t number = 0;
    for (ssize_t length; (length = getline(&line, &capacity, input)) >= 0;)
        allConverted = converter.LineConvert(std::string_view(line, static_cast<size_t>(length)), ++number) && allConverted;
    std::free(line);
    return allConverted ? kExitOk : kExitFailed;
}

}  // namespace quantor_cli
