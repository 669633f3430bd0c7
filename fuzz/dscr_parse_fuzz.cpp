// Fuzz target for reading description files: any bytes are parsed into an
// administration, and a catalogue that parsed is printed with all its rules
// and must parse again, so the printer and the reader stay in step.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "etc/utf8.h"
#include "quantor/admin_dscr.h"
#include "quantor/sinks.h"
#include "quantor/types.h"

namespace {

// A scratch file of this process, removed at exit.
class ScratchFile {
public:
    explicit ScratchFile(const char* stem) {
        path_ = std::string("/tmp/") + stem + "-" + std::to_string(getpid()) + ".txt";
    }
    ~ScratchFile() { std::remove(path_.c_str()); }
    const std::string& Path() const { return path_; }
    std::wstring WidePath() const { return quantor::detail::FromUtf8(path_); }

    void Write(const uint8_t* data, size_t size) const {
        std::FILE* file = std::fopen(path_.c_str(), "wb");
        if (!file) std::abort();
        if (size) std::fwrite(data, 1, size, file);
        std::fclose(file);
    }

private:
    std::string path_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool silenced = [] {
        QtrSetLogSink({});
        return true;
    }();
    (void)silenced;
    static const ScratchFile input("quantor-fuzz-input");
    static const ScratchFile printed("quantor-fuzz-printed");

    input.Write(data, size);
    QtrAdminDscr admin;
    if (!admin.Import_Parse(input.WidePath().c_str())) return 0;

    QtrTextFile out;
    if (!out.Open(printed.WidePath().c_str())) std::abort();
    admin.PrettyPrint(&out, true);
    out.Close();
    QtrAdminDscr reread;
    if (!reread.Import_Parse(printed.WidePath().c_str())) std::abort();
    return 0;
}
