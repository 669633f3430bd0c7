// Free functions over the process-wide defaults: finding categories and
// units by name, their default units, converting values and translating unit
// names. A missing default administration or an unknown or null name gives
// null, an empty string or false; nothing here reports.
#include "quantor/functions.h"

#include <cwchar>

#include "quantor/admin.h"
#include "quantor/translation.h"

namespace {

const QtrCategoryBase* CategoryOfUnit(const wchar_t* unitName) {
    const QtrUnitBase* unit = UnitSearch(unitName);
    return unit ? unit->Category() : nullptr;
}

std::wstring NameOf(const QtrUnitBase* unit) { return unit ? unit->Name() : std::wstring(); }

bool HasQtPrefix(const wchar_t* name) { return name && std::wcsncmp(name, L"QT_", 3) == 0; }

// What a name is indexed as: the administration's Category(name) and
// Unit(name) at once, from one lookup in its name index.
struct IndexedName {
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
};

IndexedName Lookup(const QtrAdminStd& admin, const wchar_t* name) {
    IndexedName found;
    admin.FastFind(name, found.category, found.unit);
    return found;
}

}  // namespace

const QtrCategoryBase* CategorySearch(const wchar_t* categName) {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    return admin && categName ? admin->Category(categName) : nullptr;
}

const QtrUnitBase* UnitSearch(const wchar_t* unitName) {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    return admin && unitName ? admin->Unit(unitName) : nullptr;
}

const QtrUnitBase* DefaultInternUnitGet(const wchar_t* categName) {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    return admin && categName ? admin->DefaultInternUnitGet(categName) : nullptr;
}

const QtrUnitBase* DefaultSurfaceUnitGet(const wchar_t* categName) {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    return admin && categName ? admin->DefaultSurfaceUnitGet(categName) : nullptr;
}

const QtrUnitBase* DefaultInternUnitFromUnit(const wchar_t* unitName) {
    const QtrCategoryBase* category = CategoryOfUnit(unitName);
    return category ? category->DefaultInternUnitGet() : nullptr;
}

const QtrUnitBase* DefaultSurfaceUnitFromUnit(const wchar_t* unitName) {
    const QtrCategoryBase* category = CategoryOfUnit(unitName);
    return category ? category->DefaultSurfaceUnitGet() : nullptr;
}

std::wstring DefaultInternUnitNameFromUnit(const wchar_t* unitName) {
    return NameOf(DefaultInternUnitFromUnit(unitName));
}

std::wstring DefaultSurfaceUnitNameFromUnit(const wchar_t* unitName) {
    return NameOf(DefaultSurfaceUnitFromUnit(unitName));
}

// The source is a unit, or a category standing for its default internal
// unit; the target is looked up only among the source's category's units.
// Both names are looked up first, so that neither lookup waits for the
// other; the target the index names is the category's own unless the
// category disowns it.
bool UnitConvert(double& result, const wchar_t* trgUnitName, double value, const wchar_t* srcName) {
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    if (!admin || !trgUnitName || !srcName) return false;
    const IndexedName named = Lookup(*admin, srcName);
    const QtrUnitBase* target = Lookup(*admin, trgUnitName).unit;
    const QtrCategoryBase* category = named.category;
    const QtrUnitBase* source = category ? category->DefaultInternUnitGet() : named.unit;
    if (!category && source) category = source->Category();
    if (!source || !category) return false;
    if (!target || target->Category() != category) target = category->Unit(trgUnitName);
    return target && source->Convert(result, target, value);
}

// The source is a category's default internal unit, or a unit of the
// target's category.
bool UnitConvert(double& result, const QtrUnitBase* trgUnit, double value, const wchar_t* srcName) {
    if (!trgUnit || !srcName) return false;
    const QtrAdminStd* admin = QtrAdminStd::QtrAdminDefault();
    if (!admin) return false;
    const QtrCategoryBase* category = admin->Category(srcName);
    const QtrCategoryBase* targetCategory = trgUnit->Category();
    const QtrUnitBase* source = category         ? category->DefaultInternUnitGet()
                                : targetCategory ? targetCategory->Unit(srcName)
                                                 : nullptr;
    return source && source->Convert(result, trgUnit, value);
}

void UnitTranslateDefault(std::wstring& text, const wchar_t* unitName) {
    if (!unitName) return;
    const XLMTranslDict* dictionary = QtrAdminStd::QtrTranslDictDefault();
    text = dictionary ? dictionary->StringTranslate(unitName) : std::wstring(unitName);
}

bool QT_IsCategorynameValid(const wchar_t* name) { return HasQtPrefix(name); }

bool QT_IsUnitnameValid(const wchar_t* name) { return HasQtPrefix(name); }
