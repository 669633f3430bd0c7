// The administration read from description files: each import locates its
// file with the file search and adds the file's catalogue to what earlier
// imports left, optionally handing back the findings of the read.
#include "quantor/admin_dscr.h"

#include "dscr/parser_driver.h"
#include "etc/diag_log.h"
#include "etc/file_search.h"

bool QtrAdminDscr::Import_Parse(const wchar_t* path) { return Import(path, nullptr); }

bool QtrAdminDscr::Import_Parse(const wchar_t* path, QtrDiagnostics& findings) { return Import(path, &findings); }

bool QtrAdminDscr::Import(const wchar_t* path, QtrDiagnostics* findings) {
    const std::wstring given = path ? path : L"";
    const std::wstring found = UnitFilePathSearch(given);
    if (found.empty()) {
        const std::wstring message = QtrFormat(L"QtrAdminDscr::Import_Parse(\"%s\"): file not found\n", path);
        Error_Report(kSrcUnitsDscr, 37, L"%s", message);
        if (findings)
            findings->push_back(QtrDiagnostic{given, 0, 0, QtrSeverity::Error,
                                              L"The file was not found: neither as given nor in the folders searched "
                                              L"for description files. Check its name and location.",
                                              message});
        return false;
    }
    const bool parsed = Parse_UnitdescrFile(this, found, findings);
    SetValid(parsed);
    return parsed;
}
