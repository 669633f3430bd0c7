// The administration: its name index, where the first name indexed wins every
// clash between categories and units; conversions with the log entries they
// write; and the printed catalogue with its header.
#include "quantor/admin.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "quantor/category.h"
#include "quantor/unit.h"
#include "support/catalogue.h"
#include "support/rules.h"
#include "support/sink_capture.h"

namespace {

// Names of both cases, a unit named like its category, one unit name in two
// categories, and a category named like an earlier unit, which is not
// indexed, nor are its units.
TEST(FastFind, TellsCategoriesFromUnitsCaseSensitivelyAndTheFirstNameWinsEveryClash) {
    QtrAdminStd admin;
    const QtrCategoryStd* lower = CategoryAdd(admin, L"length", {L"mm"});
    const QtrCategoryStd* upper = CategoryAdd(admin, L"Length", {L"Mm"});
    const QtrCategoryStd* gauge = CategoryAdd(admin, L"gauge", {L"gauge", L"mil"});
    const QtrCategoryStd* angle = CategoryAdd(admin, L"angle", {L"min", L"ft"});
    CategoryAdd(admin, L"time", {L"s", L"min"});
    CategoryAdd(admin, L"ft", {L"foot"});
    // The name, the category indexed under it, and the category of the unit indexed under it.
    const std::tuple<const wchar_t*, const QtrCategoryBase*, const QtrCategoryBase*> cases[] = {
        {L"length", lower, nullptr}, {L"Length", upper, nullptr}, {L"mm", nullptr, lower}, {L"Mm", nullptr, upper},
        {L"gauge", gauge, nullptr},  {L"mil", nullptr, gauge},    {L"min", nullptr, angle}, {L"ft", nullptr, angle},
        {L"foot", nullptr, nullptr}};
    for (const auto& [name, category, unitsCategory] : cases) {
        const QtrCategoryBase* foundCategory = nullptr;
        const QtrUnitBase* foundUnit = nullptr;
        EXPECT_EQ(admin.FastFind(name, foundCategory, foundUnit), category || unitsCategory) << name;
        EXPECT_EQ(foundCategory, category) << name;
        EXPECT_EQ(foundUnit ? foundUnit->Category() : nullptr, unitsCategory) << name;
        EXPECT_EQ(admin.Category(name), category) << name;
        EXPECT_EQ(admin.Unit(name), foundUnit) << name;
    }
}

// A complete length category (m, km) and a time category whose one unit is
// not named by an identifier.
class AdminTest : public ::testing::Test {
protected:
    AdminTest() {
        auto *length = new QtrCategoryStd(L"length", &admin_), *time = new QtrCategoryStd(L"time", &admin_);
        auto *m = new QtrUnitStd(length, L"m"), *km = new QtrUnitStd(length, L"km");
        admin_.Categ_Add(length);
        admin_.Categ_Add(time);
        length->UnitAdd(m);
        length->UnitAdd(km);
        time->UnitAdd(new QtrUnitStd(time, L"\u00b5s"));
        km->ConvInfoAdd(NewRule(m, km, 1000.0));
        length->ConvInfoComplete();
    }

    QtrAdminStd admin_;
    LogCapture log_;
};

TEST_F(AdminTest, ConvertsWithinACategoryAndLogsTwoEntriesOtherwise) {
    double result = 0.0;
    EXPECT_TRUE(admin_.Convert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_TRUE(admin_.Convert(result, L"parsec", 5.0, L"parsec")) << "equal names need no lookup";
    EXPECT_EQ(result, 5.0);

    EXPECT_FALSE(admin_.Convert(result, L"\u00b5s", 2.5, L"m"));
    EXPECT_FALSE(admin_.Convert(result, nullptr, 1.0, L"m"));
    EXPECT_EQ(result, 5.0);
    const auto& entries = log_.Entries();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].line, 293u);
    EXPECT_EQ(entries[0].message, L"QtrAdminStd::ConvInfo(\u00b5s,m): error in src-unit\n");
    EXPECT_EQ(entries[1].line, 257u);
    EXPECT_EQ(entries[1].message, L"QtrAdminStd::Convert(,\u00b5s,2.5,m): no convinfo\n");
    EXPECT_EQ(entries[2].line, 246u);
}

TEST_F(AdminTest, PrintsTheCatalogueToAUtf8FileWithAHeader) {
    const std::string path = ::testing::TempDir() + "admin_test_print.txt";
    {
        QtrTextFile file;
        ASSERT_TRUE(file.Open(std::wstring(path.begin(), path.end()).c_str()));
        file.WriteString(std::wstring(2000, L'x'));
        ASSERT_TRUE(file.Open(std::wstring(path.begin(), path.end()).c_str())) << "reopening truncates";
        admin_.PrettyPrint(&file, true);
    }
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::regex expected(
        "//\n//\t\t/[^\n]*admin_test_print\\.txt\n"
        "//\t\tgenerated [0-9]{4}-[0-9]{2}-[0-9]{2}, [0-9]{2}:[0-9]{2}:[0-9]{2}\n//\n\n"
        "\ncategory length\n[^}]*\n\tconvert  km\t<- m \\* 1000;\n"
        "\n\\} // length\n\n\ncategory time\n\\{\n\tunit \"\xC2\xB5s\";\n\n\\} // time\n\n");
    EXPECT_TRUE(std::regex_match(text, expected)) << text;
    std::remove(path.c_str());
}

}  // namespace
