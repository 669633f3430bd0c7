// Guards against work that grows faster than the file: a category whose one
// `unit` statement declares a very large number of units is read, completed,
// indexed and freed, with and without findings collected. Nothing here is
// timed; a step that walks every pair of units would make these tests hang.
#include <string>

#include "dscr/parse_test_support.h"

namespace {

std::string OneUnitStatement(int count, const std::string& rules = {}) {
    std::string text = "category many\n{\n\tunit u0";
    for (int i = 1; i < count; ++i) text += ", u" + std::to_string(i);
    return text + ";\n" + rules + "}\n";
}

class LargeStatement : public ParseTest {};

TEST_F(LargeStatement, EveryUnitIsFoundAndTheMissingRulesAreLogged) {
    constexpr int kUnits = 200000;
    QtrAdminDscr admin;
    EXPECT_TRUE(Parse(admin, OneUnitStatement(kUnits)));
    for (const wchar_t* name : {L"u0", L"u1", L"u99999", L"u199999"}) {
        const QtrUnitBase* unit = admin.Unit(name);
        ASSERT_NE(unit, nullptr) << name;
        EXPECT_EQ(unit->Name(), name);
    }
    std::vector<const QtrUnitBase*> units;
    admin.UnitPtrs(units, admin.Category(L"many"));
    ASSERT_EQ(units.size(), static_cast<size_t>(kUnits));
    EXPECT_EQ(units.back()->Name(), L"u199999");
    EXPECT_THAT(log_.Messages(),
                testing::Contains(L"Cat_Finish: ConvInfoComplete misses some conversion rules\n").Times(1));
}

// Every group of units that no rule links with the first unit is one error,
// at the group's earliest unit.
TEST_F(LargeStatement, UnlinkedGroupsAreFoundInProportionToTheRules) {
    constexpr int kUnits = 30000;
    const std::wstring path =
        WriteFile("many.dscr", OneUnitStatement(kUnits, "\tconvert u2 <- u1 * 2;\n\tconvert u4 <- u3 * 2;\n"
                                                        "\tconvert u1 <- u0 * 2;\n\tdefaultintern u0;\n"));
    QtrDiagnostics records;
    QtrAdminDscr admin;
    EXPECT_TRUE(admin.Import_Parse(path.c_str(), records));
    ASSERT_EQ(records.size(), static_cast<size_t>(kUnits - 4));
    EXPECT_THAT(records[0].message, testing::StartsWith(L"No rule links the unit 'u3' with 'u0' "));
    EXPECT_THAT(records[1].message, testing::StartsWith(L"No rule links the unit 'u5' with 'u0' "));
    EXPECT_THAT(records.back().message, testing::StartsWith(L"No rule links the unit 'u29999' with 'u0' "));
}

}  // namespace
