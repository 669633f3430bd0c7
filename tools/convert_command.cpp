// quantor convert: one value from the command line, or many from a file or
// standard input (see batch.cpp).
#include <cstdio>
#include <memory>

#include "batch.h"
#include "command.h"
#include "output.h"
#include "text.h"

namespace quantor_cli {

namespace {

int BatchRun(Session& session, const Invocation& invocation, const std::optional<Digits>& digits) {
    const bool fromFile = invocation.Has("--file") && invocation.Value("--file") != "-";
    if (!fromFile) return BatchConvert(session, stdin, "<stdin>", digits);
    const std::string& path = invocation.Value("--file");
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> input(std::fopen(path.c_str(), "r"), std::fclose);
    if (!input) {
        ErrorLine("cannot open " + path + " for reading");
        return kExitFailed;
    }
    return BatchConvert(session, input.get(), path, digits);
}

void ResultPrint(Session& session, const Conversion& conversion, double value, const std::optional<Digits>& digits) {
    std::string text;
    conversion.ResultAppend(text, value, digits);
    if (!session.Json()) {
        Out().Line(text);
        return;
    }
    std::string json;
    JsonWriter(json)
        .BeginObject()
        .Field("value", value)
        .Field("from", Utf8(conversion.Source().Name()))
        .Field("to", Utf8(conversion.Target().Name()))
        .Field("result", conversion.Apply(value))
        .Field("text", text)
        .EndObject();
    Out().Line(json);
}

}  // namespace

int ConvertRun(Session& session, const Invocation& invocation) {
    const std::vector<std::string>& args = invocation.args;
    std::optional<Digits> digits;
    if (invocation.Has("--digits")) {
        Digits read;
        if (!DigitsRead(invocation.Value("--digits"), read))
            return UsageError(invocation, "--digits takes two whole numbers P,Q, as in --digits 4,2");
        digits = read;
    }
    const bool batch = invocation.Has("--file") || (!args.empty() && args[0] == "-");
    if (batch && args.size() > (invocation.Has("--file") ? 0u : 1u))
        return UsageError(invocation, "a batch conversion takes no VALUE FROM TO on the command line");
    if (batch) return BatchRun(session, invocation, digits);
    if (args.size() < 2) return UsageError(invocation, "quantor convert needs VALUE FROM [TO] (or - to read lines)");
    double value = 0.0;
    if (!NumberRead(args[0], value))
        return UsageError(invocation, "not a number: " + args[0] + " (write a finite decimal number such as 2.5, -40 or 1e-3)");
    const NameLookup* names = session.Names();
    if (!names) return kExitFailed;
    Conversion conversion;
    std::string error;
    if (!conversion.Prepare(*names, args[1], args.size() == 3 ? args[2] : std::string(), error)) {
        ErrorLine(error);
        return kExitFailed;
    }
    ResultPrint(session, conversion, value, digits);
    return kExitOk;
}

}  // namespace quantor_cli
