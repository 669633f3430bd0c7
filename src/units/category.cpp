// A category: owns its units in the order they were added, finds them by name
// through its administration's name index, holds the default internal and
// surface units and converts values between two of its units by name. Rule
// completion and printing live in their own files.
#include "quantor/category.h"

#include <cstdint>
#include <cwchar>
#include <string_view>

#include "etc/diag_log.h"
#include "quantor/admin.h"

namespace {

// The administration whose name index the category uses, or null when it has
// none of this library's kind.
const QtrAdminStd* IndexOf(const QtrAdminBase* admin) { return dynamic_cast<const QtrAdminStd*>(admin); }

bool NamesEqual(const wchar_t* a, const wchar_t* b) { return std::wcscmp(a, b) == 0; }

// Whether a unit fits the category named `categoryName`, with a report when
// not. Names decide: a unit made for another category object of the same
// name fits.
bool IsCompatible(const std::wstring& categoryName, const QtrUnitBase* unit) {
    if (!unit) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Categ_IsCompatible_Unit(<%s>, NULL ): param err\n", categoryName);
        return false;
    }
    const QtrCategoryBase* unitCategory = unit->Category();
    if (!unitCategory) {
        Error_Report(kSrcUnitsStd, __LINE__, L"Categ_IsCompatible_Unit(<%s>,<%s>): no category in unit\n", categoryName,
                     unit->Name());
        return false;
    }
    if (unitCategory->Name() == categoryName) return true;
    Error_Report(kSrcUnitsStd, __LINE__, L"Categ_IsCompatible_Unit(<%s>,<%s>): unit with inconsistent categ \"%s\"\n",
                 categoryName, unit->Name(), unitCategory->Name());
    return false;
}

}  // namespace

QtrCategoryStd::QtrCategoryStd(const wchar_t* name, const QtrAdminBase* admin)
    : name_(name ? name : L""), admin_(admin), index_(IndexOf(admin)) {}

QtrCategoryStd::~QtrCategoryStd() { Clear(); }

void QtrCategoryStd::Clear() {
    unitIndex_.Clear();
    unitNames_.clear();
    units_.clear();
    defaultIntern_ = nullptr;
    defaultSurface_ = nullptr;
}

const QtrAdminBase* QtrCategoryStd::AdminPtr() const { return admin_; }

const std::wstring& QtrCategoryStd::Name() const {
    if (name_.empty()) Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::Name(): empty!!!\n");
    return name_;
}

const QtrUnitBase* QtrCategoryStd::Unit(const wchar_t* unitName) const {
    if (!index_ || !unitName) return nullptr;
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    if (index_->FastFind(unitName, category, unit) || holder_ == index_)
        return unit && unit->Category() == this ? unit : nullptr;
    return OwnUnit(unitName);
}

const QtrUnitBase* QtrCategoryStd::OwnUnit(std::wstring_view unitName) const {
    const std::uint32_t position =
        unitIndex_.Find(unitName, [this](std::uint32_t at) { return unitNames_[at]; });
    return position == quantor::detail::PositionIndex::kNotFound ? nullptr : units_[position].get();
}

bool QtrCategoryStd::Holds(const QtrUnitBase* unit) const { return unit && OwnUnit(unit->Name()) == unit; }

void QtrCategoryStd::UnitNames(std::vector<std::wstring>& out) const {
    out.clear();
    for (const auto& unit : units_) out.push_back(unit->Name());
}

void QtrCategoryStd::UnitPtrs(std::vector<const QtrUnitBase*>& out) const {
    out.clear();
    for (const auto& unit : units_) out.push_back(unit.get());
}

int QtrCategoryStd::UnitAdd(const QtrUnitBase* unit) {
    const std::wstring_view unitName = unit ? std::wstring_view(unit->Name()) : std::wstring_view();
    if (unit && OwnUnit(unitName)) return 0;
    if (!IsCompatible(name_, unit)) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::UnitAdd(.): incompatible unit\n");
        return -1;
    }
    // Room first: once the name is indexed, nothing may throw before the
    // category holds the unit, or the index would name a unit it does not own.
    if (units_.size() == units_.capacity()) units_.reserve(2 * units_.size() + 1);
    if (unitNames_.size() == unitNames_.capacity()) unitNames_.reserve(units_.capacity());
    // The category takes the unit over and later completes its rules. Units
    // are created non-const by their makers, so the owner may change them.
    unitIndex_.Append(unitName, [this](std::uint32_t at) { return unitNames_[at]; });
    unitNames_.push_back(unitName);
    units_.emplace_back(const_cast<QtrUnitBase*>(unit));
    if (holder_) holder_->IndexUnit(unit);
    return 1;
}

const QtrUnitBase* QtrCategoryStd::DefaultInternUnitGet(std::wstring& name) const {
    if (defaultIntern_) name = defaultIntern_->Name();
    return defaultIntern_;
}

const QtrUnitBase* QtrCategoryStd::DefaultInternUnitGet() const { return defaultIntern_; }

void QtrCategoryStd::DefaultInternUnitSet(const QtrUnitBase* unit) { defaultIntern_ = unit; }

bool QtrCategoryStd::DefaultInternUnitSet(const wchar_t* unitName) {
    const QtrUnitBase* unit = Unit(unitName);
    if (unit) defaultIntern_ = unit;
    return unit != nullptr;
}

const QtrUnitBase* QtrCategoryStd::DefaultSurfaceUnitGet(std::wstring& name) const {
    if (defaultSurface_) name = defaultSurface_->Name();
    return defaultSurface_;
}

const QtrUnitBase* QtrCategoryStd::DefaultSurfaceUnitGet() const { return defaultSurface_; }

void QtrCategoryStd::DefaultSurfaceUnitSet(const QtrUnitBase* unit) { defaultSurface_ = unit; }

bool QtrCategoryStd::DefaultSurfaceUnitSet(const wchar_t* unitName) {
    const QtrUnitBase* unit = Unit(unitName);
    if (unit) defaultSurface_ = unit;
    return unit != nullptr;
}

const QtrConvInfoBase* QtrCategoryStd::ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const {
    const QtrUnitBase* source = Unit(srcUnitName);
    if (!source) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfo(%s,%s): src unit not found\n", trgUnitName,
                     srcUnitName);
        return nullptr;
    }
    const QtrConvInfoBase* rule = trgUnitName ? source->ConvInfo(trgUnitName) : nullptr;
    if (!rule) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::ConvInfo(%s,%s): trgt unit not found\n", trgUnitName,
                     srcUnitName);
    }
    return rule;
}

bool QtrCategoryStd::Convert(double& result, const wchar_t* trgUnitName, double value,
                             const wchar_t* srcUnitName) const {
    if (!trgUnitName || !srcUnitName) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::Convert(,NULL,%g,NULL): NULL-parameter\n", trgUnitName,
                     value, srcUnitName);
        return false;
    }
    if (NamesEqual(trgUnitName, srcUnitName)) {
        result = value;
        return true;
    }
    const QtrConvInfoBase* rule = ConvInfo(trgUnitName, srcUnitName);
    if (!rule) {
        Error_Report(kSrcUnitsStd, __LINE__, L"QtrCategoryStd::Convert(,%s,%g,%s): no convinfo\n", trgUnitName, value,
                     srcUnitName);
        return false;
    }
    result = rule->Convert(value);
    return true;
}
