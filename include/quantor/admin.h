// The library's administration: owns the categories, indexes every category
// and unit name, answers lookups and conversions by name, and gives access to
// the process-wide defaults and the value-with-unit strings.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "quantor/model.h"
#include "quantor/name_index.h"

class XLMTranslDict;

class QUANTOR_API QtrAdminStd : public QtrAdminBase {
public:
    QtrAdminStd();
    QtrAdminStd(const QtrAdminStd&) = delete;
    QtrAdminStd& operator=(const QtrAdminStd&) = delete;
    ~QtrAdminStd() override;

    void CategNames(std::vector<std::wstring>& names) const override;
    void CategPtrs(std::vector<const QtrCategoryBase*>& cats) const override;
    bool IsValid() const override;
    bool Convert(double& result, const wchar_t* trgUnitName, double value,
                 const wchar_t* srcUnitName) const override;
    const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName,
                                    const QtrDateTime& date) const override;
    const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const override;
    const QtrCategoryBase* Category(const wchar_t* name, const QtrDateTime& date) const override;
    const QtrCategoryBase* Category(const wchar_t* name) const override;
    const QtrUnitBase* DefaultInternUnitGet(const wchar_t* categName) const override;
    const QtrUnitBase* DefaultSurfaceUnitGet(const wchar_t* categName) const override;
    const QtrUnitBase* Unit(const wchar_t* name, const QtrDateTime& date) const override;
    const QtrUnitBase* Unit(const wchar_t* name) const override;
    void UnitNames(std::vector<std::wstring>& names, const QtrCategoryBase* category) const override;
    const QtrCategoryBase* UnitPtrs(std::vector<const QtrUnitBase*>& units,
                                    const wchar_t* categName) const override;
    void UnitPtrs(std::vector<const QtrUnitBase*>& units, const QtrCategoryBase* category) const override;

    // Takes `category` over unless a category of that name is indexed, the
    // category is held already (here or by another administration) or this
    // administration is the published default; then the caller keeps it.
    // Always true. A category built against this administration has its
    // units indexed first, as they were added, then its name.
    bool Categ_Add(QtrCategoryBase* category);
    // Whether this administration holds `category`.
    bool Categ_Holds(const QtrCategoryBase* category) const;
    // The name index: the first name indexed wins, silently. Only categories
    // that this administration holds, and their units, are ever indexed, so
    // no entry outlives what it names; the published default takes none.
    bool FastFind(const wchar_t* name, const QtrCategoryBase*& category, const QtrUnitBase*& unit) const;
    void FastfindUnitAdd(const QtrUnitBase* unit);
    void FastfindCategAdd(const QtrCategoryBase* category);

    // Writes the catalogue in the description language, with a header naming
    // the file and the time; to the trace without a header when `file` is null.
    void PrettyPrint(QtrTextFile* file, bool allRules) const;

    // The process-wide administration loaded from the settings' description
    // files on first use, or null when a file failed to parse.
    static const QtrAdminStd* QtrAdminDefault();
    // The process-wide translation dictionary of the settings' language, or
    // null while its file cannot be read.
    static const XLMTranslDict* QtrTranslDictDefault();

    // "u:<name> i:<IEEE image> n:<%g>"; false for a name shorter than four
    // characters. A name holding a blank, "u:" or "i:" is written, but its text
    // does not read back, since reading takes the first markers it finds.
    static bool UnitAndValueStringGen(const wchar_t* unitName, double value, std::wstring& text);
    static bool UnitAndValueStringGen(const QtrUnitBase* unit, double value, std::wstring& text);
    // Reads a string written by UnitAndValueStringGen; outputs are written only on success.
    static bool UnitAndValueGetFromString(std::wstring& unitName, double& value, const wchar_t* text);
    static bool UnitAndValueGetFromString(const QtrUnitBase*& unit, double& value, const wchar_t* text);

protected:
    void SetValid(bool valid) { valid_ = valid; }

private:
    friend class QtrCategoryStd;

    // Indexes a unit of a category held here, unless this administration is
    // published.
    void IndexUnit(const QtrUnitBase* unit);
    // Indexes every unit of a category held here, in the category's order.
    void IndexUnits(const QtrCategoryBase& category);

    using IndexEntry = quantor::detail::NameIndex::Entry;
    std::vector<std::unique_ptr<QtrCategoryBase>> categories_;
    // Keyed by views of the names that the held categories and units keep,
    // which live exactly as long as the entries.
    quantor::detail::NameIndex index_;
    std::unordered_set<const QtrCategoryBase*> held_;
    bool valid_ = false;
    // Set once the administration is handed out as the process-wide default:
    // from then on nothing changes it, so threads read it without locks.
    bool published_ = false;
};
