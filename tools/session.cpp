// The session: global options turned into settings, the catalogue loaded
// once, and the translation dictionary read once (so a missing language file
// is reported once, not once per unit name).
#include "session.h"

#include <cstdlib>

#include "output.h"
#include "text.h"

namespace quantor_cli {

namespace {

// Answers the keys that options set and hands every other question to the
// settings the library would have used.
class OptionSettings : public QtrSettings {
public:
    OptionSettings(const GlobalOptions& options, std::unique_ptr<QtrSettings> base)
        : options_(options), base_(std::move(base)) {}

    int32_t SettingsGetValue(const std::wstring& section, const std::wstring& key, uint16_t expectedType,
                             QtrVariant& value, int32_t flags) override {
        if (section == L"unitsandcurrencies" && key == L"curr_dscr_filepath" && options_.unitsDir) {
            value = {QTR_VT_BSTR, Wide(*options_.unitsDir), 0};
            return 0;
        }
        if (section == L"unitsandcurrencies" && key == L"mode" && options_.region) return Answer(*options_.region, value);
        if (section == L"common" && key == L"languageid" && options_.language) return Answer(*options_.language, value);
        return base_ ? base_->SettingsGetValue(section, key, expectedType, value, flags) : 1;
    }
    int32_t SettingsPrepare(int32_t level) override { return base_ ? base_->SettingsPrepare(level) : 0; }

private:
    static int32_t Answer(int32_t number, QtrVariant& value) {
        value = {QTR_VT_I4, L"", number};
        return 0;
    }
    const GlobalOptions& options_;
    std::unique_ptr<QtrSettings> base_;
};

}  // namespace

Session::Session(GlobalOptions options) : options_(std::move(options)) {
    if (!options_.language && !options_.region && !options_.unitsDir) return;
    factoryInstalled_ = true;
    previousFactory_ = QtrSetSettingsFactory(nullptr);
    QtrSetSettingsFactory([this] {
        return std::make_unique<OptionSettings>(options_, previousFactory_ ? previousFactory_() : nullptr);
    });
}

Session::~Session() {
    if (factoryInstalled_) QtrSetSettingsFactory(std::move(previousFactory_));
}

const QtrAdminStd* Session::Catalogue() {
    if (loadTried_) return admin_;
    loadTried_ = true;
    if (options_.files.empty()) {
        admin_ = QtrAdminStd::QtrAdminDefault();
        if (!admin_) ErrorLine("the catalogue could not be loaded (run quantor check to see why)");
        return admin_;
    }
    ownAdmin_ = std::make_unique<QtrAdminDscr>();
    for (const std::string& file : options_.files) {
        if (ownAdmin_->Import_Parse(Wide(file).c_str())) continue;
        ErrorLine("cannot load " + file + " (run quantor check " + file + " to see why)");
        return nullptr;
    }
    admin_ = ownAdmin_.get();
    return admin_;
}

const NameLookup* Session::Names() {
    if (lookup_ || !Catalogue()) return lookup_.get();
    // The default resolver exists only for a valid default catalogue.
    if (!ownAdmin_ && !admin_->IsValid()) return nullptr;
    lookup_ = std::make_unique<NameLookup>(
        *admin_, [this] { return ownAdmin_ ? FileResolverMake() : QtrNameResolverDefault(); });
    return lookup_.get();
}

// The resolver of the --file catalogue, with the language of --lang, else
// of QUANTOR_LANGUAGE_ID, else English.
const QtrNameResolver* Session::FileResolverMake() {
    int32_t language = 0x0409;
    const char* setting = std::getenv("QUANTOR_LANGUAGE_ID");
    if (options_.language) language = *options_.language;
    else if (setting) QtrLanguageIdRead(Wide(setting).c_str(), language);
    ownResolver_ = std::make_unique<QtrNameResolver>(*ownAdmin_);
    ownResolver_->LanguageLoad(static_cast<uint16_t>(language));
    return ownResolver_.get();
}

std::wstring Session::DisplayName(const QtrUnitBase& unit) {
    if (!dictionaryTried_) {
        dictionaryTried_ = true;
        dictionary_ = QtrAdminStd::QtrTranslDictDefault();
    }
    return dictionary_ ? dictionary_->StringTranslate(unit.Name().c_str()) : unit.Name();
}

}  // namespace quantor_cli
