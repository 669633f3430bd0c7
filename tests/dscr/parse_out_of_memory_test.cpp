// Reading a description file while memory runs out: this test executable
// replaces operator new so that the n-th allocation inside a parse fails, for
// every n up to the parse's last allocation. Each parse must end with the
// parser error "out of memory" or succeed, and leave nothing behind (the
// sanitizer build checks for leaks at exit).
#include <cstdlib>
#include <new>

#include "dscr/parse_test_support.h"

namespace {

// Allocations left before one fails; negative: none fails.
thread_local long tAllocationsBeforeFailure = -1;

void* Allocate(std::size_t size) {
    if (tAllocationsBeforeFailure == 0) {
        tAllocationsBeforeFailure = -1;
        throw std::bad_alloc();
    }
    if (tAllocationsBeforeFailure > 0) --tAllocationsBeforeFailure;
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using ParseOutOfMemory = ParseTest;

TEST_F(ParseOutOfMemory, EveryFailedAllocationEndsTheParseAsAnError) {
    const std::wstring path = WriteFile(
        "oom.dscr",
        "category Length: 1 + 2 {\n unit m, km: 3, mm;\n defaultintern m;\n"
        " convert km <- m / 1000 format 2 * 1, 0;\n convert mm <- (m + 0) * 1000 * *;\n"
        " convert x <- 2 * - m + 3;\n}\ncategory Temperature { unit degC, degF; convert degC <- degF * 1.8 - 32; }\n");
    int failures = 0;
    for (long allowed = 0;; ++allowed) {
        QtrAdminDscr admin;
        trace_.Clear();
        tAllocationsBeforeFailure = allowed;
        const bool read = Parse_UnitdescrFile(&admin, path);
        const bool failed = tAllocationsBeforeFailure < 0;
        tAllocationsBeforeFailure = -1;
        if (!failed) {
            EXPECT_FALSE(read);  // the file has one error of its own
            break;
        }
        ++failures;
        if (read) continue;  // the failed allocation was not inside the parser
        const Messages errors = ParseErrors();
        if (std::ranges::find(errors, L"out of memory\n") == errors.end()) {
            // Reported by the file's own error or by the scanner opening.
            EXPECT_TRUE(errors.empty() || errors.back() == L"Conv_GetFromRight(): error in formula\n") << allowed;
        }
    }
    EXPECT_GT(failures, 100);
}

}  // namespace
