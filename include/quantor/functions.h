// Free functions over the process-wide default administration and
// translation dictionary, for hosts that need no object of their own. A null
// or unknown name, or a default administration that failed to load, gives
// null, an empty string or false.
#pragma once

#include <string>
#include <vector>

#include "quantor/model.h"

QUANTOR_API const QtrCategoryBase* CategorySearch(const wchar_t* categName);
QUANTOR_API const QtrUnitBase* UnitSearch(const wchar_t* unitName);
QUANTOR_API const QtrUnitBase* DefaultInternUnitGet(const wchar_t* categName);
QUANTOR_API const QtrUnitBase* DefaultSurfaceUnitGet(const wchar_t* categName);
QUANTOR_API const QtrUnitBase* DefaultInternUnitFromUnit(const wchar_t* unitName);
QUANTOR_API const QtrUnitBase* DefaultSurfaceUnitFromUnit(const wchar_t* unitName);
QUANTOR_API std::wstring DefaultInternUnitNameFromUnit(const wchar_t* unitName);
QUANTOR_API std::wstring DefaultSurfaceUnitNameFromUnit(const wchar_t* unitName);
// Converts `value` from the unit (or category's default internal unit) named
// `srcName` into the unit named `trgUnitName` of the same category.
QUANTOR_API bool UnitConvert(double& result, const wchar_t* trgUnitName, double value, const wchar_t* srcName);
QUANTOR_API bool UnitConvert(double& result, const QtrUnitBase* trgUnit, double value, const wchar_t* srcName);
// Sets `text` to the default dictionary's translation of `unitName`, or to the
// name itself without a dictionary; a null name leaves `text` as it is.
QUANTOR_API void UnitTranslateDefault(std::wstring& text, const wchar_t* unitName);
// The description files that the default administration reads, in the order
// it reads them: the unit file, the common currency file and the region file
// of the currency mode, as the settings give them now; empty when the
// settings cannot be created.
QUANTOR_API std::vector<std::wstring> QtrDefaultDescriptionFiles();
// True when `name` begins with "QT_".
QUANTOR_API bool QT_IsCategorynameValid(const wchar_t* name);
QUANTOR_API bool QT_IsUnitnameValid(const wchar_t* name);
