// The library's category: owns its units in insertion order, holds the two
// default units and completes the conversion rules between its units.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quantor/model.h"
#include "quantor/position_index.h"

class QtrAdminStd;

class QUANTOR_API QtrCategoryStd : public QtrCategoryBase {
public:
    QtrCategoryStd(const wchar_t* name, const QtrAdminBase* admin);
    QtrCategoryStd(const QtrCategoryStd&) = delete;
    QtrCategoryStd& operator=(const QtrCategoryStd&) = delete;
    ~QtrCategoryStd() override;

    const QtrAdminBase* AdminPtr() const override;
    bool Convert(double& result, const wchar_t* trgUnitName, double value,
                 const wchar_t* srcUnitName) const override;
    const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const override;
    const QtrUnitBase* DefaultInternUnitGet(std::wstring& name) const override;
    const QtrUnitBase* DefaultInternUnitGet() const override;
    void DefaultInternUnitSet(const QtrUnitBase* unit) override;
    bool DefaultInternUnitSet(const wchar_t* unitName) override;
    const QtrUnitBase* DefaultSurfaceUnitGet(std::wstring& name) const override;
    const QtrUnitBase* DefaultSurfaceUnitGet() const override;
    void DefaultSurfaceUnitSet(const QtrUnitBase* unit) override;
    bool DefaultSurfaceUnitSet(const wchar_t* unitName) override;
    const std::wstring& Name() const override;
    void UnitNames(std::vector<std::wstring>& out) const override;
    void UnitPtrs(std::vector<const QtrUnitBase*>& out) const override;
    // Finds a unit of this category through the administration's name index;
    // a category without an administration finds none. Until the
    // administration holds the category, its units are not in that index but
    // are found as if they were: each name that the index does not hold.
    const QtrUnitBase* Unit(const wchar_t* unitName) const override;

    // 1: taken over; 0: a unit of that name is present, caller keeps `unit`;
    // -1: incompatible, reported, caller keeps `unit`. The administration
    // that holds the category indexes the unit at once; one that does not
    // hold it yet indexes it when it takes the category over.
    int UnitAdd(const QtrUnitBase* unit);
    // Derives identity, inverse and chained rules until every unit converts
    // into every other; false (with what was added kept) when that fails.
    bool ConvInfoComplete();
    // Writes the category as a `category` block with all rules or a compact
    // set; to the trace when `file` is null.
    void PrettyPrint(QtrTextFile* file, bool allRules) const;

    const QtrDateTime& DateStamp() const { return date_; }

private:
    friend class QtrAdminStd;

    // Whether `unit` is one of this category's units.
    bool Holds(const QtrUnitBase* unit) const;
    // The unit of that name, or null.
    const QtrUnitBase* OwnUnit(std::wstring_view unitName) const;
    void Clear();

    std::wstring name_;
    // Owned and changeable: the category completes its units' rules.
    std::vector<std::unique_ptr<QtrUnitBase>> units_;
    // The names the units keep, by position in units_, and their index.
    std::vector<std::wstring_view> unitNames_;
    quantor::detail::PositionIndex unitIndex_;
    const QtrUnitBase* defaultIntern_ = nullptr;
    const QtrUnitBase* defaultSurface_ = nullptr;
    const QtrAdminBase* admin_;
    // The administration's name index when it is of this library's kind,
    // resolved once: finding a unit by name is a hot path.
    const QtrAdminStd* index_;
    QtrDateTime date_;
    // The administration that took the category over and owns it; null until then.
    QtrAdminStd* holder_ = nullptr;
};
