// The administration read from description files: each import locates its
// file with the file search and adds the file's catalogue to what earlier
// imports left.
#include "dscr/parser_driver.h"
#include "etc/diag_log.h"
#include "etc/file_search.h"
#include "quantor/admin.h"

bool QtrAdminDscr::Import_Parse(const wchar_t* path) {
    const std::wstring found = UnitFilePathSearch(path ? path : L"");
    if (found.empty()) {
        Error_Report(kSrcUnitsDscr, 37, L"QtrAdminDscr::Import_Parse(\"%s\"): file not found\n", path);
        return false;
    }
    const bool parsed = Parse_UnitdescrFile(this, found);
    SetValid(parsed);
    return parsed;
}
