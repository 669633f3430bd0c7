// Small in-test catalogues: a category with named units (and no rules),
// handed to an administration that then owns it.
#pragma once

#include <initializer_list>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/unit.h"

inline QtrCategoryStd* CategoryAdd(QtrAdminStd& admin, const wchar_t* name,
                                   std::initializer_list<const wchar_t*> units) {
    auto* category = new QtrCategoryStd(name, nullptr);
    for (const wchar_t* unit : units) category->UnitAdd(new QtrUnitStd(category, unit));
    admin.Categ_Add(category);
    return category;
}
