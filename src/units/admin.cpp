// The administration: owns the categories in the order they were added,
// answers every lookup by name through its name index, converts values
// between units named by the host, and prints the whole catalogue back as a
// description file. The dated lookups ignore their date; an administration
// with dated rules could answer them differently.
#include "quantor/admin.h"

#include <ctime>
#include <cwchar>
#include <string>
#include <vector>

#include "etc/diag_log.h"
#include "quantor/category.h"

namespace {

// The current local date and time as the printed header shows it.
std::wstring GeneratedLine() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return QtrFormat(L"//\t\tgenerated %d-%02d-%02d, %02d:%02d:%02d\n", local.tm_year + 1900, local.tm_mon + 1,
                     local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

void WriteHeader(QtrTextFile& file) {
    file.WriteString(L"//\n");
    file.WriteString(QtrFormat(L"//\t\t%s\n", file.FullPath()));
    file.WriteString(GeneratedLine());
    file.WriteString(L"//\n\n");
}

}  // namespace

QtrAdminStd::QtrAdminStd() = default;

QtrAdminStd::~QtrAdminStd() = default;

bool QtrAdminStd::Categ_Add(QtrCategoryBase* category) {
    if (!category || published_ || Category(category->Name().c_str()) || held_.contains(category)) return true;
    auto* own = dynamic_cast<QtrCategoryStd*>(category);
    if (own && own->holder_) return true;
    // Room first, so that once the category counts as held its append cannot
    // throw: a caller that runs out of memory here frees only what is not held.
    if (categories_.size() == categories_.capacity()) categories_.reserve(2 * categories_.size() + 1);
    held_.insert(category);
    categories_.emplace_back(category);
    if (own) own->holder_ = this;
    // Units added while the category was built against this administration
    // claim their names before the category does.
    const bool builtHere = own && own->AdminPtr() == this;
    if (builtHere) IndexUnits(*own);
    if (index_.TryEmplace(category->Name(), IndexEntry{category, nullptr}) && !builtHere)
        IndexUnits(*category);
    return true;
}

bool QtrAdminStd::Categ_Holds(const QtrCategoryBase* category) const { return held_.contains(category); }

void QtrAdminStd::CategNames(std::vector<std::wstring>& names) const {
    names.clear();
    for (const auto& category : categories_) names.push_back(category->Name());
}

void QtrAdminStd::CategPtrs(std::vector<const QtrCategoryBase*>& cats) const {
    cats.clear();
    for (const auto& category : categories_) cats.push_back(category.get());
}

bool QtrAdminStd::IsValid() const { return valid_; }

const QtrCategoryBase* QtrAdminStd::Category(const wchar_t* name) const {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    FastFind(name, category, unit);
    return category;
}

const QtrCategoryBase* QtrAdminStd::Category(const wchar_t* name, const QtrDateTime&) const { return Category(name); }

const QtrUnitBase* QtrAdminStd::Unit(const wchar_t* name) const {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    FastFind(name, category, unit);
    return unit;
}

const QtrUnitBase* QtrAdminStd::Unit(const wchar_t* name, const QtrDateTime&) const { return Unit(name); }

const QtrUnitBase* QtrAdminStd::DefaultInternUnitGet(const wchar_t* categName) const {
    const QtrCategoryBase* category = Category(categName);
    return category ? category->DefaultInternUnitGet() : nullptr;
}

const QtrUnitBase* QtrAdminStd::DefaultSurfaceUnitGet(const wchar_t* categName) const {
    const QtrCategoryBase* category = Category(categName);
    return category ? category->DefaultSurfaceUnitGet() : nullptr;
}

void QtrAdminStd::UnitNames(std::vector<std::wstring>& names, const QtrCategoryBase* category) const {
    if (category) category->UnitNames(names);
}

void QtrAdminStd::UnitPtrs(std::vector<const QtrUnitBase*>& units, const QtrCategoryBase* category) const {
    if (category) category->UnitPtrs(units);
}

const QtrCategoryBase* QtrAdminStd::UnitPtrs(std::vector<const QtrUnitBase*>& units, const wchar_t* categName) const {
    const QtrCategoryBase* category = Category(categName);
    UnitPtrs(units, category);
    return category;
}

const QtrConvInfoBase* QtrAdminStd::ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const {
    const QtrUnitBase* source = Unit(srcUnitName);
    if (!source) {
        Error_Report(kSrcUnitsStd, 286, L"QtrAdminStd::ConvInfo(%s,%s): SrcUnit not found\n", trgUnitName, srcUnitName);
        return nullptr;
    }
    const QtrConvInfoBase* rule = trgUnitName ? source->ConvInfo(trgUnitName) : nullptr;
    if (!rule) {
        Error_Report(kSrcUnitsStd, 293, L"QtrAdminStd::ConvInfo(%s,%s): error in src-unit\n", trgUnitName, srcUnitName);
    }
    return rule;
}

const QtrConvInfoBase* QtrAdminStd::ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName,
                                             const QtrDateTime&) const {
    return ConvInfo(trgUnitName, srcUnitName);
}

bool QtrAdminStd::Convert(double& result, const wchar_t* trgUnitName, double value, const wchar_t* srcUnitName) const {
    if (!trgUnitName || !srcUnitName) {
        // The arguments are those of the "no convinfo" message below, so the
        // "%g" shows the target name.
        Error_Report(kSrcUnitsStd, 246, L"QtrAdminStd::Convert(,NULL,%g,NULL): NULL-parameter\n", trgUnitName, value,
                     srcUnitName);
        return false;
    }
    if (std::wcscmp(trgUnitName, srcUnitName) == 0) {
        result = value;
        return true;
    }
    const QtrConvInfoBase* rule = ConvInfo(trgUnitName, srcUnitName);
    if (!rule) {
        Error_Report(kSrcUnitsStd, 257, L"QtrAdminStd::Convert(,%s,%g,%s): no convinfo\n", trgUnitName, value,
                     srcUnitName);
        return false;
    }
    result = rule->Convert(value);
    return true;
}

void QtrAdminStd::PrettyPrint(QtrTextFile* file, bool allRules) const {
    if (file) WriteHeader(*file);
    for (const auto& category : categories_) {
        if (const auto* own = dynamic_cast<const QtrCategoryStd*>(category.get())) own->PrettyPrint(file, allRules);
    }
}
