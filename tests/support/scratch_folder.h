// A new, empty folder under the temporary folder, removed with its contents
// afterwards. Its name holds a '%', which messages that name it must keep.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

struct ScratchFolder {
    std::filesystem::path path;
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quantor%d%sXXXXXX").string();
        if (mkdtemp(pattern.data())) path = std::filesystem::canonical(pattern);
    }
    ~ScratchFolder() { if (!path.empty()) std::filesystem::remove_all(path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
};
