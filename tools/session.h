// What every subcommand shares: the global options, the catalogue they select
// (the default administration, or the files given with --file), the names a
// person types resolved against it, and the display names of its units.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quantor/quantor.h>

#include "lookup.h"

namespace quantor_cli {

struct GlobalOptions {
    std::optional<int32_t> language;  // --lang
    std::optional<int32_t> region;    // --region
    std::optional<std::string> unitsDir;
    std::vector<std::string> files;   // --file, in order
    bool json = false;
};

class Session {
public:
    // Installs a settings source that answers the options before the
    // environment; call before anything else asks the library.
    explicit Session(GlobalOptions options);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    const GlobalOptions& Options() const { return options_; }
    bool Json() const { return options_.json; }

    // The catalogue, loaded on first use; null (and the reason printed) when
    // it cannot be loaded.
    const QtrAdminStd* Catalogue();
    // Resolves typed names against Catalogue(); null when that cannot load.
    const NameLookup* Names();
    // The name of `unit` in the chosen language, or its own name.
    std::wstring DisplayName(const QtrUnitBase& unit);

private:
    const QtrNameResolver* FileResolverMake();

    GlobalOptions options_;
    bool factoryInstalled_ = false;
    QtrSettingsFactory previousFactory_;
    bool loadTried_ = false;
    const QtrAdminStd* admin_ = nullptr;
    std::unique_ptr<QtrAdminDscr> ownAdmin_;
    std::unique_ptr<QtrNameResolver> ownResolver_;
    std::unique_ptr<NameLookup> lookup_;
    bool dictionaryTried_ = false;
    const XLMTranslDict* dictionary_ = nullptr;
};

}  // namespace quantor_cli
