// The administration: its name index, where the first name indexed wins every
// clash between categories and units; conversions with the log entries they
// write; and the printed catalogue, with a header only in a file.
#include "quantor/admin.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/unit.h"
#include "support/sink_capture.h"

namespace {

// A category with the given units, built before it is handed to `admin`.
QtrCategoryStd* AddCategory(QtrAdminStd& admin, const wchar_t* name, std::initializer_list<const wchar_t*> units) {
    auto* category = new QtrCategoryStd(name, nullptr);
    for (const wchar_t* unit : units) EXPECT_EQ(category->UnitAdd(new QtrUnitStd(category, unit)), 1);
    EXPECT_TRUE(admin.Categ_Add(category));
    return category;
}

// The category of the unit indexed under `name`, or null.
const QtrCategoryBase* CategoryOfUnit(const QtrAdminStd& admin, const wchar_t* name) {
    const QtrUnitBase* unit = admin.Unit(name);
    return unit ? unit->Category() : nullptr;
}

TEST(FastFind, TellsCategoriesFromUnitsCaseSensitively) {
    QtrAdminStd admin;
    const QtrCategoryStd* lower = AddCategory(admin, L"length", {L"mm"});
    const QtrCategoryStd* upper = AddCategory(admin, L"Length", {L"Mm"});
    const QtrCategoryBase* category = nullptr;
    const QtrUnitBase* unit = nullptr;
    EXPECT_TRUE(admin.FastFind(L"length", category, unit));
    EXPECT_EQ(category, lower);
    EXPECT_EQ(unit, nullptr);
    EXPECT_TRUE(admin.FastFind(L"Mm", category, unit));
    EXPECT_EQ(category, nullptr);
    EXPECT_EQ(CategoryOfUnit(admin, L"Mm"), upper);
    EXPECT_EQ(admin.Category(L"Length"), upper);
    EXPECT_EQ(admin.Category(L"mm"), nullptr);
}

TEST(FastFind, FirstNameIndexedWinsEveryClash) {
    QtrAdminStd admin;
    const QtrCategoryStd* gauge = AddCategory(admin, L"gauge", {L"gauge", L"mil"});
    const QtrCategoryStd* angle = AddCategory(admin, L"angle", {L"min", L"ft"});
    AddCategory(admin, L"time", {L"s", L"min"});
    AddCategory(admin, L"ft", {L"foot"});
    // A unit named like its category.
    EXPECT_EQ(admin.Category(L"gauge"), gauge);
    EXPECT_EQ(admin.Unit(L"gauge"), nullptr);
    EXPECT_EQ(CategoryOfUnit(admin, L"mil"), gauge);
    // One unit name in two categories.
    EXPECT_EQ(CategoryOfUnit(admin, L"min"), angle);
    // A category named like an earlier unit is not indexed, nor are its units.
    EXPECT_EQ(CategoryOfUnit(admin, L"ft"), angle);
    EXPECT_EQ(admin.Category(L"ft"), nullptr);
    EXPECT_EQ(admin.Unit(L"foot"), nullptr);
}

// A complete length category (m, km) and a time category whose one unit is
// not named by an identifier.
class AdminTest : public ::testing::Test {
protected:
    AdminTest() {
        admin_.Categ_Add(length_);
        admin_.Categ_Add(time_);
        length_->UnitAdd(m_);
        length_->UnitAdd(km_);
        time_->UnitAdd(new QtrUnitStd(time_, L"\u00b5s"));
        auto* rule = new QtrConvInfoStd;
        rule->SetUnits(m_, km_);
        rule->SetFormula(1000.0, 0.0);
        rule->SetExplicit(true);
        km_->ConvInfoAdd(rule);
        length_->ConvInfoComplete();
    }

    QtrAdminStd admin_;
    QtrCategoryStd* length_ = new QtrCategoryStd(L"length", &admin_);
    QtrCategoryStd* time_ = new QtrCategoryStd(L"time", &admin_);
    QtrUnitStd* m_ = new QtrUnitStd(length_, L"m");
    QtrUnitStd* km_ = new QtrUnitStd(length_, L"km");
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
    EXPECT_EQ(entries[0].module, L"Quantor");
    EXPECT_EQ(entries[0].file, L"");
    EXPECT_EQ(entries[0].line, 293u);
    EXPECT_EQ(entries[0].message, L"QtrAdminStd::ConvInfo(\u00b5s,m): error in src-unit\n");
    EXPECT_EQ(entries[0].code, static_cast<int32_t>(0x8000FFFF));
    EXPECT_EQ(entries[1].line, 257u);
    EXPECT_EQ(entries[1].message, L"QtrAdminStd::Convert(,\u00b5s,2.5,m): no convinfo\n");
    EXPECT_EQ(entries[2].line, 246u);
}

TEST_F(AdminTest, PrintsTheCatalogueToTheTraceWithoutHeader) {
    TraceCapture trace;
    admin_.PrettyPrint(nullptr, false);
    EXPECT_EQ(trace.Text(),
              L"\ncategory length\n{\n\tunit m;\n\tunit km;\n"
              L"\n\tconvert  m\t<- km / 1000;\t// explicit\n"
              L"\n} // length\n\n"
              L"\ncategory time\n{\n\tunit \"\u00b5s\";\n"
              L"\n} // time\n\n");
}

TEST_F(AdminTest, PrintsTheCatalogueToAFileWithHeaderInUtf8) {
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
