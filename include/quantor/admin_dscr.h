// An administration read from unit description files. Each import locates
// its file with the file search and adds the file's catalogue to what
// earlier imports left; an import can also hand back every finding about the
// file (errors and warnings, positioned and explained for its author).
#pragma once

#include "quantor/admin.h"
#include "quantor/diagnostics.h"

class QUANTOR_API QtrAdminDscr : public QtrAdminStd {
public:
    QtrAdminDscr() = default;
    // Locates `path` with the file search and adds its catalogue to this
    // administration; the result also becomes IsValid().
    bool Import_Parse(const wchar_t* path);
    // The same import, appending every finding of this read to `findings`.
    // The result is that of Import_Parse(path): errors that the log reports
    // without failing the read (an unknown unit in a convert statement, rules
    // that completion misses) and all warnings leave it true.
    bool Import_Parse(const wchar_t* path, QtrDiagnostics& findings);

private:
    bool Import(const wchar_t* path, QtrDiagnostics* findings);
};
