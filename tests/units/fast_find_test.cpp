// The administration's name index: exact, case-sensitive lookups and the
// rule that the first name indexed wins every clash between categories and
// units.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/category.h"
#include "quantor/unit.h"

namespace {

class FastFindTest : public ::testing::Test {
protected:
    // A category with the given units, handed to the administration whole, as
    // the index sees a category that was built before it was added.
    QtrCategoryStd* AddCategory(const wchar_t* name, std::initializer_list<const wchar_t*> unitNames) {
        auto* category = new QtrCategoryStd(name, nullptr);
        for (const wchar_t* unitName : unitNames) EXPECT_EQ(category->UnitAdd(new QtrUnitStd(category, unitName)), 1);
        EXPECT_TRUE(admin_.Categ_Add(category));
        return category;
    }

    static const QtrUnitBase* UnitOf(const QtrCategoryBase* category, std::size_t index) {
        std::vector<const QtrUnitBase*> units;
        category->UnitPtrs(units);
        return units.at(index);
    }

    QtrAdminStd admin_;
};

TEST_F(FastFindTest, ResolvesCategoryAndUnitNames) {
    const QtrCategoryStd* length = AddCategory(L"length", {L"m", L"km"});
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    EXPECT_TRUE(admin_.FastFind(L"length", category, unit));
    EXPECT_EQ(category, length);
    EXPECT_EQ(unit, nullptr);

    category = length;
    EXPECT_TRUE(admin_.FastFind(L"km", category, unit));
    EXPECT_EQ(category, nullptr);
    EXPECT_EQ(unit, UnitOf(length, 1));
    EXPECT_EQ(admin_.Unit(L"km"), unit);
    EXPECT_EQ(admin_.Category(L"km"), nullptr);
    EXPECT_EQ(admin_.Unit(L"length"), nullptr);
}

TEST_F(FastFindTest, UnknownAndNullNamesLeaveTheOutputs) {
    AddCategory(L"length", {L"m"});
    const QtrCategoryStd sentinelCategory(L"sentinel", nullptr);
    const QtrUnitStd sentinelUnit(nullptr, L"sentinel");
    const QtrCategoryBase* category = &sentinelCategory;
    const QtrUnitBase* unit = &sentinelUnit;
    EXPECT_FALSE(admin_.FastFind(L"mm", category, unit));
    EXPECT_FALSE(admin_.FastFind(L"", category, unit));
    EXPECT_FALSE(admin_.FastFind(nullptr, category, unit));
    EXPECT_EQ(category, &sentinelCategory);
    EXPECT_EQ(unit, &sentinelUnit);
}

TEST_F(FastFindTest, NamesAreCaseSensitive) {
    const QtrCategoryStd* lower = AddCategory(L"length", {L"mm"});
    const QtrCategoryStd* upper = AddCategory(L"Length", {L"Mm"});
    EXPECT_EQ(admin_.Category(L"length"), lower);
    EXPECT_EQ(admin_.Category(L"Length"), upper);
    EXPECT_EQ(admin_.Category(L"LENGTH"), nullptr);
    EXPECT_EQ(admin_.Unit(L"Mm"), UnitOf(upper, 0));
    EXPECT_EQ(admin_.Unit(L"mM"), nullptr);
}

TEST_F(FastFindTest, UnitNamedLikeItsCategoryIsNotIndexed) {
    const QtrCategoryStd* gauge = AddCategory(L"gauge", {L"gauge", L"mil"});
    EXPECT_EQ(admin_.Category(L"gauge"), gauge);
    EXPECT_EQ(admin_.Unit(L"gauge"), nullptr);
    EXPECT_EQ(admin_.Unit(L"mil"), UnitOf(gauge, 1));
}

TEST_F(FastFindTest, SameUnitNameInTwoCategoriesFindsTheFirst) {
    const QtrCategoryStd* angle = AddCategory(L"angle", {L"min", L"deg"});
    AddCategory(L"time", {L"s", L"min"});
    EXPECT_EQ(admin_.Unit(L"min"), UnitOf(angle, 0));
}

TEST_F(FastFindTest, CategoryNamedLikeAnEarlierUnitIsListedButNotIndexed) {
    const QtrCategoryStd* length = AddCategory(L"length", {L"m", L"ft"});
    QtrCategoryStd* clash = AddCategory(L"ft", {L"foot_a", L"foot_b"});
    EXPECT_EQ(admin_.Unit(L"ft"), UnitOf(length, 1));
    EXPECT_EQ(admin_.Category(L"ft"), nullptr);
    EXPECT_EQ(admin_.Unit(L"foot_a"), nullptr);
    EXPECT_EQ(admin_.Unit(L"foot_b"), nullptr);
    // Added again, it is still held once.
    EXPECT_TRUE(admin_.Categ_Add(clash));
    std::vector<const QtrCategoryBase*> cats;
    admin_.CategPtrs(cats);
    EXPECT_EQ(cats, (std::vector<const QtrCategoryBase*>{length, clash}));
}

TEST_F(FastFindTest, SecondCategoryOfATakenNameStaysWithTheCaller) {
    const QtrCategoryStd* first = AddCategory(L"length", {L"m"});
    QtrCategoryStd second(L"length", nullptr);
    second.UnitAdd(new QtrUnitStd(&second, L"yd"));
    EXPECT_TRUE(admin_.Categ_Add(&second));
    std::vector<std::wstring> names;
    admin_.CategNames(names);
    EXPECT_EQ(names, std::vector<std::wstring>{L"length"});
    EXPECT_EQ(admin_.Category(L"length"), first);
    EXPECT_EQ(admin_.Unit(L"yd"), nullptr);
}

TEST_F(FastFindTest, UnitsAddedLaterAreIndexedThroughTheirCategory) {
    auto* length = new QtrCategoryStd(L"length", &admin_);
    admin_.Categ_Add(length);
    auto* yard = new QtrUnitStd(length, L"yd");
    EXPECT_EQ(length->UnitAdd(yard), 1);
    EXPECT_EQ(admin_.Unit(L"yd"), yard);
    EXPECT_EQ(length->Unit(L"yd"), yard);
    // A unit named like its category arrives after the category: the
    // category keeps the name.
    EXPECT_EQ(length->UnitAdd(new QtrUnitStd(length, L"length")), 1);
    EXPECT_EQ(admin_.Category(L"length"), length);
    EXPECT_EQ(length->Unit(L"length"), nullptr);
}

}  // namespace
