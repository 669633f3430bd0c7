// The name index never points at a category or unit that the administration
// does not own: categories that it refuses or never receives, and units that
// a host offers directly, stay out of it, while a category under
// construction still finds its own units by name. Run under
// AddressSanitizer, a dangling entry fails these tests.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/unit.h"

namespace {

std::unique_ptr<QtrCategoryStd> Built(const QtrAdminStd* admin, const wchar_t* name,
                                      std::initializer_list<const wchar_t*> units) {
    auto category = std::make_unique<QtrCategoryStd>(name, admin);
    for (const wchar_t* unit : units) EXPECT_EQ(category->UnitAdd(new QtrUnitStd(category.get(), unit)), 1);
    return category;
}

std::vector<std::wstring> Names(const QtrAdminStd& admin) {
    std::vector<std::wstring> names;
    admin.CategNames(names);
    return names;
}

TEST(IndexLifetime, RefusedAndNeverOfferedCategoriesLeaveNothingBehind) {
    QtrAdminStd admin;
    auto length = Built(&admin, L"length", {L"m"});
    // While it is built, the category finds its units, the administration does not.
    EXPECT_NE(length->Unit(L"m"), nullptr);
    EXPECT_EQ(admin.Unit(L"m"), nullptr);
    ASSERT_TRUE(admin.Categ_Add(length.get()));
    const QtrCategoryStd* held = length.release();
    EXPECT_EQ(admin.Unit(L"m")->Category(), held);

    auto twin = Built(&admin, L"length", {L"km", L"m"});
    auto stray = Built(&admin, L"stray", {L"ft"});
    EXPECT_EQ(twin->Unit(L"km")->Name(), L"km");
    EXPECT_EQ(twin->Unit(L"m"), nullptr);  // the name is the held category's
    ASSERT_TRUE(admin.Categ_Add(twin.get()));
    EXPECT_FALSE(admin.Categ_Holds(twin.get()));
    twin.reset();
    stray.reset();
    for (const wchar_t* name : {L"km", L"ft", L"stray"}) {
        EXPECT_EQ(admin.Unit(name), nullptr) << name;
        EXPECT_EQ(admin.Category(name), nullptr) << name;
    }
    EXPECT_EQ(Names(admin), std::vector<std::wstring>{L"length"});
}

// A unit offered directly is indexed only as a unit of a held category, and a
// category held by one administration is not taken by another.
TEST(IndexLifetime, OnlyWhatTheAdministrationOwnsIsIndexed) {
    QtrAdminStd first, second;
    auto loose = Built(nullptr, L"loose", {L"inch"});
    first.FastfindCategAdd(loose.get());
    std::vector<const QtrUnitBase*> units;
    loose->UnitPtrs(units);
    first.FastfindUnitAdd(units[0]);
    EXPECT_EQ(first.Category(L"loose"), nullptr);
    EXPECT_EQ(first.Unit(L"inch"), nullptr);

    ASSERT_TRUE(first.Categ_Add(loose.get()));
    QtrCategoryStd* held = loose.release();
    EXPECT_EQ(first.Unit(L"inch"), units[0]);
    second.Categ_Add(held);
    EXPECT_FALSE(second.Categ_Holds(held));
    // A unit added to a held category is indexed by its holder at once.
    auto* yard = new QtrUnitStd(held, L"yd");
    ASSERT_EQ(held->UnitAdd(yard), 1);
    EXPECT_EQ(first.Unit(L"yd"), yard);
    EXPECT_EQ(second.Unit(L"yd"), nullptr);
}

// Units of a category built against the administration claim their names
// before the category, so one named like its category keeps the name.
TEST(IndexLifetime, UnitsOfACategoryBuiltHereAreIndexedBeforeItsName) {
    QtrAdminStd admin;
    auto gauge = Built(&admin, L"gauge", {L"gauge", L"mil"});
    ASSERT_TRUE(admin.Categ_Add(gauge.get()));
    const QtrCategoryStd* held = gauge.release();
    EXPECT_EQ(admin.Category(L"gauge"), nullptr);
    EXPECT_EQ(admin.Unit(L"gauge")->Category(), held);
    EXPECT_EQ(Names(admin), std::vector<std::wstring>{L"gauge"});
}

}  // namespace
