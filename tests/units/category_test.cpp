// The category: taking units over, finding them only through the
// administration's name index, default units, conversions by name with their
// messages, and the printed `category` block in both forms.
#include "quantor/category.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quantor/admin.h"
#include "quantor/convinfo.h"
#include "quantor/sinks.h"
#include "quantor/unit.h"

namespace {

// Collects the log messages written while it lives and restores the sink.
class LogCapture {
public:
    LogCapture() : previous_(QtrSetLogSink([this](const QtrLogEntry& entry) { messages_.push_back(entry.message); })) {}
    ~LogCapture() { QtrSetLogSink(std::move(previous_)); }
    const std::vector<std::wstring>& Messages() const { return messages_; }

private:
    std::vector<std::wstring> messages_;
    QtrLogSink previous_;
};

// Collects the trace text written while it lives, in one string.
class TraceCapture {
public:
    TraceCapture() : previous_(QtrSetTraceSink([this](const std::wstring& text) { text_ += text; })) {}
    ~TraceCapture() { QtrSetTraceSink(std::move(previous_)); }
    const std::wstring& Text() const { return text_; }

private:
    std::wstring text_;
    QtrTraceSink previous_;
};

QtrUnitStd* AddUnit(QtrCategoryStd& category, const wchar_t* name) {
    auto* unit = new QtrUnitStd(&category, name);
    EXPECT_EQ(category.UnitAdd(unit), 1);
    return unit;
}

// An explicit rule by which `source` converts into `target`: x * factor.
void AddRule(QtrUnitStd* source, const QtrUnitStd* target, double factor) {
    auto* rule = new QtrConvInfoStd;
    rule->SetUnits(target, source);
    rule->SetFormula(factor, 0.0);
    rule->SetExplicit(true);
    ASSERT_EQ(source->ConvInfoAdd(rule), 1);
}

// A length category held by an administration: m, km, cm, with explicit
// rules from km and from cm to m.
class LengthCategory : public ::testing::Test {
protected:
    LengthCategory() {
        admin_.Categ_Add(length_);
        m_ = AddUnit(*length_, L"m");
        km_ = AddUnit(*length_, L"km");
        cm_ = AddUnit(*length_, L"cm");
        AddRule(km_, m_, 1000.0);
        AddRule(cm_, m_, 0.01);
    }

    QtrAdminStd admin_;
    QtrCategoryStd* length_ = new QtrCategoryStd(L"length", &admin_);
    QtrUnitStd* m_ = nullptr;
    QtrUnitStd* km_ = nullptr;
    QtrUnitStd* cm_ = nullptr;
};

TEST_F(LengthCategory, UnitAddRefusesDuplicatesAndOtherCategories) {
    LogCapture log;
    QtrUnitStd twin(length_, L"m");
    EXPECT_EQ(length_->UnitAdd(&twin), 0);
    EXPECT_TRUE(log.Messages().empty());

    QtrCategoryStd mass(L"mass", nullptr);
    QtrUnitStd kg(&mass, L"kg");
    EXPECT_EQ(length_->UnitAdd(&kg), -1);
    QtrUnitStd orphan(nullptr, L"ft");
    EXPECT_EQ(length_->UnitAdd(&orphan), -1);
    EXPECT_EQ(length_->UnitAdd(nullptr), -1);
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{
                                  L"Categ_IsCompatible_Unit(<length>,<kg>): unit with inconsistent categ \"mass\"\n",
                                  L"QtrCategoryStd::UnitAdd(.): incompatible unit\n",
                                  L"Categ_IsCompatible_Unit(<length>,<ft>): no category in unit\n",
                                  L"QtrCategoryStd::UnitAdd(.): incompatible unit\n",
                                  L"Categ_IsCompatible_Unit(<length>, NULL ): param err\n",
                                  L"QtrCategoryStd::UnitAdd(.): incompatible unit\n",
                              }));
    std::vector<std::wstring> names;
    length_->UnitNames(names);
    EXPECT_EQ(names.size(), 3u);
}

TEST_F(LengthCategory, UnitAddJudgesTheCategoryByName) {
    QtrCategoryStd namesake(L"length", nullptr);
    auto* mile = new QtrUnitStd(&namesake, L"mi");
    EXPECT_EQ(length_->UnitAdd(mile), 1);
    EXPECT_EQ(admin_.Unit(L"mi"), mile);
    // The index holds it, but it belongs to another category object.
    EXPECT_EQ(length_->Unit(L"mi"), nullptr);
}

TEST_F(LengthCategory, FindsOnlyItsOwnUnitsThroughTheIndex) {
    std::vector<const QtrUnitBase*> units{nullptr};
    length_->UnitPtrs(units);
    EXPECT_EQ(units, (std::vector<const QtrUnitBase*>{m_, km_, cm_}));
    EXPECT_EQ(length_->Unit(L"km"), km_);
    EXPECT_EQ(length_->Unit(L"KM"), nullptr);
    EXPECT_EQ(length_->Unit(L"length"), nullptr);
    EXPECT_EQ(length_->Unit(nullptr), nullptr);

    auto* mass = new QtrCategoryStd(L"mass", &admin_);
    admin_.Categ_Add(mass);
    AddUnit(*mass, L"kg");
    EXPECT_EQ(length_->Unit(L"kg"), nullptr);
}

TEST(Category, WithoutAdministrationFindsNoUnit) {
    QtrCategoryStd length(L"length", nullptr);
    AddUnit(length, L"m");
    EXPECT_EQ(length.Unit(L"m"), nullptr);
    EXPECT_FALSE(length.DefaultInternUnitSet(L"m"));
    std::vector<std::wstring> names;
    length.UnitNames(names);
    EXPECT_EQ(names, std::vector<std::wstring>{L"m"});
}

TEST_F(LengthCategory, DefaultUnitsAreSetOnlyToItsOwnUnits) {
    std::wstring name = L"untouched";
    EXPECT_EQ(length_->DefaultInternUnitGet(name), nullptr);
    EXPECT_EQ(name, L"untouched");
    EXPECT_TRUE(length_->DefaultInternUnitSet(L"m"));
    EXPECT_FALSE(length_->DefaultInternUnitSet(L"mm"));
    EXPECT_FALSE(length_->DefaultSurfaceUnitSet(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(length_->DefaultInternUnitGet(name), m_);
    EXPECT_EQ(name, L"m");
    EXPECT_EQ(length_->DefaultSurfaceUnitGet(), nullptr);
}

TEST_F(LengthCategory, ConvertsTargetFirst) {
    LogCapture log;
    double result = 0.0;
    EXPECT_TRUE(length_->Convert(result, L"m", 2.5, L"km"));
    EXPECT_DOUBLE_EQ(result, 2500.0);
    EXPECT_EQ(length_->ConvInfo(L"m", L"cm"), cm_->ConvInfo(m_));
    // Equal names convert without a lookup, even names no unit bears.
    EXPECT_TRUE(length_->Convert(result, L"furlong", 7.0, L"furlong"));
    EXPECT_EQ(result, 7.0);
    EXPECT_TRUE(log.Messages().empty());
}

TEST_F(LengthCategory, ConversionFailuresAreReported) {
    LogCapture log;
    double result = -1.0;
    EXPECT_FALSE(length_->Convert(result, L"km", 2.0, L"m"));
    EXPECT_FALSE(length_->Convert(result, L"m", 3.0, L"mm"));
    EXPECT_FALSE(length_->Convert(result, nullptr, 4.0, L"m"));
    EXPECT_EQ(result, -1.0);
    EXPECT_EQ(length_->ConvInfo(nullptr, L"km"), nullptr);
    EXPECT_EQ(log.Messages(), (std::vector<std::wstring>{
                                  L"QtrCategoryStd::ConvInfo(km,m): trgt unit not found\n",
                                  L"QtrCategoryStd::Convert(,km,2,m): no convinfo\n",
                                  L"QtrCategoryStd::ConvInfo(m,mm): src unit not found\n",
                                  L"QtrCategoryStd::Convert(,m,3,mm): no convinfo\n",
                                  L"QtrCategoryStd::Convert(,NULL,(null),NULL): NULL-parameter\n",
                                  L"QtrCategoryStd::ConvInfo((null),km): trgt unit not found\n",
                              }));
}

TEST(Category, EmptyNameIsReported) {
    LogCapture log;
    QtrCategoryStd unnamed(nullptr, nullptr);
    EXPECT_EQ(unnamed.Name(), L"");
    EXPECT_EQ(log.Messages(), std::vector<std::wstring>{L"QtrCategoryStd::Name(): empty!!!\n"});
}

constexpr const wchar_t* kLengthHead =
    L"\ncategory length\n{\n\tunit m;\n\tunit km;\n\tunit cm;\n\tdefaultintern m;\n\tdefaultsurface km;\n";

TEST_F(LengthCategory, PrintsEveryRuleOfACompleteCategory) {
    ASSERT_TRUE(length_->ConvInfoComplete());
    length_->DefaultInternUnitSet(m_);
    length_->DefaultSurfaceUnitSet(km_);
    TraceCapture trace;
    length_->PrettyPrint(nullptr, true);
    EXPECT_EQ(trace.Text(), std::wstring(kLengthHead) +
                                L"\n\tconvert  m\t<- km / 1000;\t// explicit\n"
                                L"\n\tconvert  m\t<- cm * 100;\t// explicit\n"
                                L"\n\tconvert  km\t<- m * 1000;\n"
                                L"\n\tconvert  km\t<- cm * 100000;\n"
                                L"\n\tconvert  cm\t<- m / 100;\n"
                                L"\n\tconvert  cm\t<- km / 100000;\n"
                                L"\n} // length\n\n");
}

TEST_F(LengthCategory, PrintsACompactSetLinkingEveryUnitToTheFirst) {
    ASSERT_TRUE(length_->ConvInfoComplete());
    length_->DefaultInternUnitSet(m_);
    length_->DefaultSurfaceUnitSet(km_);
    TraceCapture trace;
    length_->PrettyPrint(nullptr, false);
    EXPECT_EQ(trace.Text(), std::wstring(kLengthHead) +
                                L"\n\tconvert  m\t<- km / 1000;\t// explicit\n"
                                L"\n\tconvert  m\t<- cm * 100;\t// explicit\n"
                                L"\n} // length\n\n");
}

TEST(CategoryPrinter, CompactFormLinksAroundMissingRules) {
    QtrAdminStd admin;
    auto* category = new QtrCategoryStd(L"per cent", &admin);
    admin.Categ_Add(category);
    QtrUnitStd* a = AddUnit(*category, L"a");
    QtrUnitStd* b = AddUnit(*category, L"b");
    QtrUnitStd* c = AddUnit(*category, L"c");
    AddRule(c, b, 2.0);
    TraceCapture trace;
    category->PrettyPrint(nullptr, false);
    EXPECT_EQ(trace.Text(),
              L"\ncategory \"per cent\"\n{\n\tunit a;\n\tunit b;\n\tunit c;\n"
              L"\n\t// convert a <- b : no convinfo\n"
              L"\n\tconvert  b\t<- c / 2;\t// explicit\n"
              L"\n} // \"per cent\"\n\n");

    // c reaches a only through b: the gap is marked and the walk goes on from b.
    AddRule(b, a, 4.0);
    TraceCapture second;
    category->PrettyPrint(nullptr, false);
    EXPECT_NE(second.Text().find(L"\n\tconvert  a\t<- b / 4;\t// explicit\n"
                                 L"\n\t// convert a <- c : no convinfo\n"
                                 L"\n\tconvert  b\t<- c / 2;\t// explicit\n\n}"),
              std::wstring::npos);
}

TEST(CategoryPrinter, BothFormsMarkMissingRules) {
    QtrCategoryStd category(L"x", nullptr);
    QtrUnitStd* p = AddUnit(category, L"p");
    QtrUnitStd* q = AddUnit(category, L"q");
    AddUnit(category, L"r");
    AddRule(q, p, 0.5);
    const std::wstring head = L"\ncategory x\n{\n\tunit p;\n\tunit q;\n\tunit r;\n";
    const std::wstring qToP = L"\n\tconvert  p\t<- q * 2;\t// explicit\n";
    TraceCapture all;
    category.PrettyPrint(nullptr, true);
    EXPECT_EQ(all.Text(), head + qToP +
                              L"\n\t// convert p <- r : no convinfo\n"
                              L"\n\t// convert q <- p : no convinfo\n"
                              L"\n\t// convert q <- r : no convinfo\n"
                              L"\n\t// convert r <- p : no convinfo\n"
                              L"\n\t// convert r <- q : no convinfo\n"
                              L"\n} // x\n\n");
    // No unit links r to p: the walk moves on to q as target.
    TraceCapture compact;
    category.PrettyPrint(nullptr, false);
    EXPECT_EQ(compact.Text(), head + qToP +
                                  L"\n\t// convert p <- r : no convinfo\n"
                                  L"\n\t// convert q <- r : no convinfo\n"
                                  L"\n} // x\n\n");
}

}  // namespace
