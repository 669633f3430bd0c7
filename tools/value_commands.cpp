// The subcommands for single values and names: value (write a
// value-with-unit text), read (read one back) and translate (a unit's
// display name).
#include "command.h"
#include "output.h"
#include "session.h"
#include "text.h"

namespace quantor_cli {

namespace {

// The unit `typed` names, or null after reporting why there is none.
const QtrUnitBase* UnitGet(Session& session, const std::string& typed) {
    const NameLookup* names = session.Names();
    if (!names) return nullptr;
    const QtrUnitBase* unit = nullptr;
    std::string error;
    if (!names->UnitFind(typed, unit, error)) ErrorLine(error);
    return unit;
}

void TextPrint(Session& session, const std::string& key, const std::string& text) {
    if (!session.Json()) {
        Out().Line(text);
        return;
    }
    std::string out;
    JsonWriter(out).BeginObject().Field(key, text).EndObject();
    Out().Line(out);
}

}  // namespace

int ValueRun(Session& session, const Invocation& invocation) {
    double value = 0.0;
    if (!NumberRead(invocation.args[1], value))
        return UsageError(invocation, "not a number: " + invocation.args[1] + " (write a decimal number such as 2.5)");
    const QtrUnitBase* unit = UnitGet(session, invocation.args[0]);
    if (!unit) return kExitFailed;
    std::wstring text;
    if (!QtrAdminStd::UnitAndValueStringGen(unit, value, text)) {
        ErrorLine("the unit name " + Utf8(unit->Name()) + " is too short: value-with-unit texts need four characters or more");
        return kExitFailed;
    }
    TextPrint(session, "text", Utf8(text));
    return kExitOk;
}

int ReadRun(Session& session, const Invocation& invocation) {
    std::wstring unit;
    double value = 0.0;
    if (!QtrAdminStd::UnitAndValueGetFromString(unit, value, Wide(invocation.args[0]).c_str())) {
        ErrorLine("not a value-with-unit text: " + invocation.args[0] + " (expected u:NAME i:IMAGE n:VALUE)");
        return kExitFailed;
    }
    if (!session.Json()) {
        Out().Line(NumberText(value) + " " + Utf8(unit));
        return kExitOk;
    }
    std::string out;
    JsonWriter(out).BeginObject().Field("value", value).Field("unit", Utf8(unit)).EndObject();
    Out().Line(out);
    return kExitOk;
}

int TranslateRun(Session& session, const Invocation& invocation) {
    const QtrUnitBase* unit = UnitGet(session, invocation.args[0]);
    if (!unit) return kExitFailed;
    TextPrint(session, "display", Utf8(session.DisplayName(*unit)));
    return kExitOk;
}

}  // namespace quantor_cli
