// Helpers shared by the fuzz targets: a scratch file per process for inputs
// that the library reads from disk, silenced diagnostics, and a check that
// stops the run on a finding.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "etc/utf8.h"
#include "quantor/sinks.h"

namespace fuzz {

// A file of this process in /tmp, removed at exit.
class ScratchFile {
public:
    explicit ScratchFile(const char* stem) {
        path_ = std::string("/tmp/") + stem + "-" + std::to_string(getpid()) + ".txt";
    }
    ~ScratchFile() { std::remove(path_.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

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

// Drops the log and the trace for the whole run.
inline void DiagnosticsSilence() {
    static const bool silenced = [] {
        QtrSetLogSink({});
        QtrSetTraceSink({});
        return true;
    }();
    (void)silenced;
}

// A finding: the run stops with the message, and libFuzzer keeps the input.
inline void Require(bool condition, const char* finding) {
    if (condition) return;
    std::fprintf(stderr, "fuzz finding: %s\n", finding);
    std::abort();
}

}  // namespace fuzz
