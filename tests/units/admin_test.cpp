// The administration: lookups by name and their date overloads, conversions
// with the log entries they write, lists of categories and units, and the
// printed catalogue with and without a header.
#include "quantor/admin.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "quantor/category.h"
#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// Collects the log entries written while it lives and restores the sink.
class LogCapture {
public:
    LogCapture() : previous_(QtrSetLogSink([this](const QtrLogEntry& entry) { entries_.push_back(entry); })) {}
    ~LogCapture() { QtrSetLogSink(std::move(previous_)); }
    const std::vector<QtrLogEntry>& Entries() const { return entries_; }

private:
    std::vector<QtrLogEntry> entries_;
    QtrLogSink previous_;
};

// An administration with a complete length category (m, km; default units
// m and km) and a time category (s) that has no defaults.
class AdminTest : public ::testing::Test {
protected:
    AdminTest() {
        admin_.Categ_Add(length_);
        m_ = AddUnit(length_, L"m");
        km_ = AddUnit(length_, L"km");
        auto* rule = new QtrConvInfoStd;
        rule->SetUnits(m_, km_);
        rule->SetFormula(1000.0, 0.0);
        rule->SetExplicit(true);
        km_->ConvInfoAdd(rule);
        length_->ConvInfoComplete();
        length_->DefaultInternUnitSet(m_);
        length_->DefaultSurfaceUnitSet(km_);
        admin_.Categ_Add(time_);
        s_ = AddUnit(time_, L"s");
    }

    static QtrUnitStd* AddUnit(QtrCategoryStd* category, const wchar_t* name) {
        auto* unit = new QtrUnitStd(category, name);
        category->UnitAdd(unit);
        return unit;
    }

    QtrAdminStd admin_;
    QtrCategoryStd* length_ = new QtrCategoryStd(L"length", &admin_);
    QtrCategoryStd* time_ = new QtrCategoryStd(L"time", &admin_);
    QtrUnitStd* m_ = nullptr;
    QtrUnitStd* km_ = nullptr;
    QtrUnitStd* s_ = nullptr;
};

TEST_F(AdminTest, LookupsIgnoreTheDateAndTellCategoriesFromUnits) {
    const QtrDateTime invalid{45000.5, false};
    EXPECT_EQ(admin_.Category(L"length", invalid), length_);
    EXPECT_EQ(admin_.Category(L"m", QtrDateTime{}), nullptr);
    EXPECT_EQ(admin_.Unit(L"km", invalid), km_);
    EXPECT_EQ(admin_.Unit(L"time"), nullptr);
    EXPECT_EQ(admin_.ConvInfo(L"m", L"km", invalid), km_->ConvInfo(m_));
    EXPECT_EQ(admin_.DefaultInternUnitGet(L"length"), m_);
    EXPECT_EQ(admin_.DefaultSurfaceUnitGet(L"length"), km_);
    EXPECT_EQ(admin_.DefaultSurfaceUnitGet(L"m"), nullptr);
    EXPECT_FALSE(admin_.IsValid());
}

TEST_F(AdminTest, ListsReplaceTheirOutputUnlessTheCategoryIsUnknown) {
    std::vector<std::wstring> names{L"stale"};
    admin_.CategNames(names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"length", L"time"}));
    std::vector<const QtrCategoryBase*> cats{nullptr};
    admin_.CategPtrs(cats);
    EXPECT_EQ(cats, (std::vector<const QtrCategoryBase*>{length_, time_}));

    std::vector<const QtrUnitBase*> units{nullptr};
    EXPECT_EQ(admin_.UnitPtrs(units, L"length"), length_);
    EXPECT_EQ(units, (std::vector<const QtrUnitBase*>{m_, km_}));
    EXPECT_EQ(admin_.UnitPtrs(units, L"Length"), nullptr);
    EXPECT_EQ(admin_.UnitPtrs(units, static_cast<const wchar_t*>(nullptr)), nullptr);
    EXPECT_EQ(units, (std::vector<const QtrUnitBase*>{m_, km_}));
}

TEST_F(AdminTest, ConvertsBetweenUnitsOfOneCategory) {
    LogCapture log;
    double result = 0.0;
    EXPECT_TRUE(admin_.Convert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    // Equal names need no unit at all.
    EXPECT_TRUE(admin_.Convert(result, L"parsec", 5.0, L"parsec"));
    EXPECT_EQ(result, 5.0);
    EXPECT_TRUE(log.Entries().empty());
}

TEST_F(AdminTest, FailedConversionsWriteTwoEntries) {
    LogCapture log;
    double result = -1.0;
    EXPECT_FALSE(admin_.Convert(result, L"s", 2.5, L"m"));
    EXPECT_FALSE(admin_.Convert(result, L"m", 1.0, L"mile"));
    EXPECT_EQ(result, -1.0);
    ASSERT_EQ(log.Entries().size(), 4u);
    const auto& entries = log.Entries();
    EXPECT_EQ(entries[0].message, L"QtrAdminStd::ConvInfo(s,m): error in src-unit\n");
    EXPECT_EQ(entries[0].line, 293u);
    EXPECT_EQ(entries[1].message, L"QtrAdminStd::Convert(,s,2.5,m): no convinfo\n");
    EXPECT_EQ(entries[1].line, 257u);
    EXPECT_EQ(entries[2].message, L"QtrAdminStd::ConvInfo(m,mile): SrcUnit not found\n");
    EXPECT_EQ(entries[2].line, 286u);
    EXPECT_EQ(entries[3].line, 257u);
}

TEST_F(AdminTest, NullNamesFailWithoutCrashing) {
    LogCapture log;
    double result = -1.0;
    EXPECT_FALSE(admin_.Convert(result, nullptr, 1.0, L"m"));
    EXPECT_FALSE(admin_.Convert(result, L"km", 1.0, nullptr));
    EXPECT_EQ(result, -1.0);
    EXPECT_EQ(admin_.ConvInfo(nullptr, L"km"), nullptr);
    EXPECT_EQ(admin_.Category(nullptr), nullptr);
    EXPECT_EQ(admin_.Unit(nullptr), nullptr);
    ASSERT_EQ(log.Entries().size(), 3u);
    EXPECT_EQ(log.Entries()[0].message, L"QtrAdminStd::Convert(,NULL,(null),NULL): NULL-parameter\n");
    EXPECT_EQ(log.Entries()[0].line, 246u);
    // The "%g" shows the target name, as the arguments of both messages agree.
    EXPECT_EQ(log.Entries()[1].message, L"QtrAdminStd::Convert(,NULL,km,NULL): NULL-parameter\n");
    EXPECT_EQ(log.Entries()[2].message, L"QtrAdminStd::ConvInfo((null),km): error in src-unit\n");
}

TEST_F(AdminTest, PrintsToTheTraceWithoutHeader) {
    std::wstring trace;
    QtrTraceSink previous = QtrSetTraceSink([&trace](const std::wstring& text) { trace += text; });
    admin_.PrettyPrint(nullptr, false);
    QtrSetTraceSink(std::move(previous));
    EXPECT_EQ(trace,
              L"\ncategory length\n{\n\tunit m;\n\tunit km;\n\tdefaultintern m;\n\tdefaultsurface km;\n"
              L"\n\tconvert  m\t<- km / 1000;\t// explicit\n"
              L"\n} // length\n\n"
              L"\ncategory time\n{\n\tunit s;\n"
              L"\n} // time\n\n");
}

TEST_F(AdminTest, PrintsToAFileWithHeader) {
    const std::string path = ::testing::TempDir() + "admin_test_print.txt";
    {
        QtrTextFile file;
        ASSERT_TRUE(file.Open(std::wstring(path.begin(), path.end()).c_str()));
        admin_.PrettyPrint(&file, true);
    }
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::regex header(
        "//\n//\t\t/.*admin_test_print\\.txt\n"
        "//\t\tgenerated [0-9]{4}-[0-9]{2}-[0-9]{2}, [0-9]{2}:[0-9]{2}:[0-9]{2}\n//\n\n"
        "\ncategory length\n(.|\n)*"
        "\n\tconvert  km\t<- m \\* 1000;\n"
        "\n\\} // length\n\n\ncategory time\n(.|\n)*");
    EXPECT_TRUE(std::regex_match(text, header)) << text;
    std::remove(path.c_str());
}

}  // namespace
