// The four abstract interfaces through which hosts read the unit model: a
// conversion rule, a unit, a category and an administration. Hosts receive
// pointers to constant objects and never delete them.
#pragma once

#include <string>
#include <vector>

#include "quantor/export.h"
#include "quantor/types.h"

class QtrUnitBase;
class QtrCategoryBase;
class QtrAdminBase;

// A linear rule from a source unit to a target unit of one category:
// target value = source value * Factor() + Addend().
class QUANTOR_API QtrConvInfoBase {
public:
    virtual double Addend() const = 0;
    virtual double Factor() const = 0;
    virtual void FormatDeltas(int& pre, int& post) const = 0;
    virtual int FmtPostDecpnt() const = 0;
    virtual int FmtPreDecpnt() const = 0;
    virtual std::wstring FormatStringGen(int preDigits, int postDigits) const = 0;
    virtual bool Is_Explicit() const = 0;
    virtual const QtrUnitBase* SrcUnit() const = 0;
    virtual const QtrUnitBase* TrgtUnit() const = 0;
    virtual double Convert(double value) const = 0;
    virtual ~QtrConvInfoBase() = default;
};

// A unit of one category; it converts its values into the other units of that
// category. In every operation the unit given as argument is the target.
class QUANTOR_API QtrUnitBase {
public:
    virtual const QtrCategoryBase* Category() const = 0;
    virtual const std::wstring& Name() const = 0;
    virtual bool Convert(double& result, const QtrUnitBase* unit, double value) const = 0;
    virtual bool Convert(double& result, const wchar_t* unitName, double value) const = 0;
    virtual std::wstring ConvertOutputGen(const QtrUnitBase* unit, double value, int preDigits,
                                          int postDigits) const = 0;
    virtual std::wstring ConvertOutputGen(const wchar_t* unitName, double value, int preDigits,
                                          int postDigits) const = 0;
    virtual const QtrConvInfoBase* ConvInfo(const QtrUnitBase* unit) const = 0;
    virtual const QtrConvInfoBase* ConvInfo(const wchar_t* unitName) const = 0;
    virtual bool FmtPreDecpnt(int& shift, const QtrUnitBase* unit) const = 0;
    virtual bool FmtPostDecpnt(int& shift, const QtrUnitBase* unit) const = 0;
    virtual std::wstring FormatStringGen(const QtrUnitBase* unit, int preDigits, int postDigits) const = 0;
    virtual std::wstring FormatStringGen(const wchar_t* unitName, int preDigits, int postDigits) const = 0;
    virtual ~QtrUnitBase() = default;
};

// A category (length, mass, currency ...) that groups convertible units and
// names a default internal unit (for storage) and surface unit (for display).
class QUANTOR_API QtrCategoryBase {
public:
    virtual const QtrAdminBase* AdminPtr() const = 0;
    // Converts `value`, given in the unit named last, into the unit named first.
    virtual bool Convert(double& result, const wchar_t* trgUnitName, double value,
                         const wchar_t* srcUnitName) const = 0;
    virtual const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const = 0;
    virtual const QtrUnitBase* DefaultInternUnitGet(std::wstring& name) const = 0;
    virtual const QtrUnitBase* DefaultInternUnitGet() const = 0;
    virtual void DefaultInternUnitSet(const QtrUnitBase* unit) = 0;
    virtual bool DefaultInternUnitSet(const wchar_t* unitName) = 0;
    virtual const QtrUnitBase* DefaultSurfaceUnitGet(std::wstring& name) const = 0;
    virtual const QtrUnitBase* DefaultSurfaceUnitGet() const = 0;
    virtual void DefaultSurfaceUnitSet(const QtrUnitBase* unit) = 0;
    virtual bool DefaultSurfaceUnitSet(const wchar_t* unitName) = 0;
    virtual const std::wstring& Name() const = 0;
    virtual void UnitNames(std::vector<std::wstring>& out) const = 0;
    virtual void UnitPtrs(std::vector<const QtrUnitBase*>& out) const = 0;
    virtual const QtrUnitBase* Unit(const wchar_t* unitName) const = 0;
    virtual ~QtrCategoryBase() = default;
};

// The root of a catalogue: answers every question by category or unit name.
class QUANTOR_API QtrAdminBase {
public:
    virtual void CategNames(std::vector<std::wstring>& names) const = 0;
    virtual void CategPtrs(std::vector<const QtrCategoryBase*>& cats) const = 0;
    virtual bool IsValid() const = 0;
    virtual bool Convert(double& result, const wchar_t* trgUnitName, double value,
                         const wchar_t* srcUnitName) const = 0;
    virtual const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName,
                                            const QtrDateTime& date) const = 0;
    virtual const QtrConvInfoBase* ConvInfo(const wchar_t* trgUnitName, const wchar_t* srcUnitName) const = 0;
    virtual const QtrCategoryBase* Category(const wchar_t* name, const QtrDateTime& date) const = 0;
    virtual const QtrCategoryBase* Category(const wchar_t* name) const = 0;
    virtual const QtrUnitBase* DefaultInternUnitGet(const wchar_t* categName) const = 0;
    virtual const QtrUnitBase* DefaultSurfaceUnitGet(const wchar_t* categName) const = 0;
    virtual const QtrUnitBase* Unit(const wchar_t* name, const QtrDateTime& date) const = 0;
    virtual const QtrUnitBase* Unit(const wchar_t* name) const = 0;
    virtual void UnitNames(std::vector<std::wstring>& names, const QtrCategoryBase* category) const = 0;
    virtual const QtrCategoryBase* UnitPtrs(std::vector<const QtrUnitBase*>& units,
                                            const wchar_t* categName) const = 0;
    virtual void UnitPtrs(std::vector<const QtrUnitBase*>& units, const QtrCategoryBase* category) const = 0;
    virtual ~QtrAdminBase() = default;
};
