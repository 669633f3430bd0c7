// Batch conversion: "VALUE FROM [TO]" lines in, one result line out per
// line, for `quantor convert -` and `quantor convert --file F`.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "conversion.h"
#include "session.h"

namespace quantor_cli {

// Converts every non-blank line of `input`. A line that fails is reported on
// stderr as "NAME:LINE: message" and leaves an empty output line (an object
// with "error" in JSON); the answer is kExitFailed if any line failed.
int BatchConvert(Session& session, std::FILE* input, const std::string& inputName, const std::optional<Digits>& digits);

}  // namespace quantor_cli
