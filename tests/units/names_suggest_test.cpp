// "Did you mean" suggestions and the edit distance behind them: typos up to
// three edits away, nothing beyond, closest first, one name per unit, and
// the case of the typed name ignored.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "quantor/names.h"
#include "support/catalogue.h"
#include "support/scratch_folder.h"
#include "units/name_edit_distance.h"

namespace {

using Names = std::vector<std::wstring>;

TEST(EditDistance, CountsInsertionsDeletionsSubstitutionsAndSwapsUpToTheBound) {
    const struct {
        const wchar_t* a;
        const wchar_t* b;
        std::size_t bound;
        std::size_t distance;
    } cases[] = {
        {L"metre", L"metre", 3, 0}, {L"metre", L"meter", 3, 1},  // a swap of neighbours is one edit
        {L"metre", L"metr", 3, 1},  {L"metre", L"mettre", 3, 1}, {L"metre", L"mitre", 3, 1},
        {L"kilometre", L"klometr", 3, 2}, {L"kilometre", L"klomtr", 3, 3}, {L"kilometre", L"kmtr", 3, 4},
        {L"ca", L"abc", 3, 3},       // swapped neighbours are not edited again
        {L"", L"abc", 3, 3},         {L"abc", L"", 2, 3},        {L"abcdef", L"uvwxyz", 3, 4},
    };
    quantor::detail::EditDistance measure;
    for (const auto& [a, b, bound, distance] : cases) {
        EXPECT_EQ(measure.Within(a, b, bound), distance) << a << " " << b;
        EXPECT_EQ(measure.Within(b, a, bound), distance) << b << " " << a;
    }
}

// Exact names abcd, abce, abxy, wxyz and qqqqqq, and abcf, a synonym of abxy.
class NameSuggestions : public ::testing::Test {
protected:
    void SetUp() override {
        CategoryAdd(admin, L"Letters", {L"abcd", L"abce", L"abxy", L"wxyz", L"qqqqqq"});
        const std::filesystem::path synonyms = scratch.path / "synonyms.rlg";
        std::ofstream(synonyms) << "abcf\tabxy\n";
        ASSERT_TRUE(resolver.emplace(admin).SynonymFileRead(synonyms.wstring().c_str()));
    }
    ScratchFolder scratch;
    QtrAdminStd admin;
    std::optional<QtrNameResolver> resolver;
};

// abcf (one edit, a synonym) stands for abxy (two edits); wxyz, three edits
// away, is not among the closest. A name of n characters allows n / 2 edits,
// so a single letter suggests nothing.
TEST_F(NameSuggestions, ClosestFirstExactNamesBeforeSynonymsEachUnitOnce) {
    EXPECT_EQ(resolver->Suggest(L"abcz"), (Names{L"abcd", L"abce", L"abcf"}));  // only the closest
    EXPECT_EQ(resolver->Suggest(L"ABCZ"), resolver->Suggest(L"abcz"));
    EXPECT_EQ(resolver->Suggest(L"abcz", 2), (Names{L"abcd", L"abce"}));
    EXPECT_EQ(resolver->Suggest(L"bacd", 1), (Names{L"abcd"}));
    EXPECT_EQ(resolver->Suggest(L"qqqq"), (Names{L"qqqqqq"}));
    EXPECT_EQ(resolver->Suggest(L"zzzzzzzz"), Names{});
    EXPECT_EQ(resolver->Suggest(L"a"), Names{});
    EXPECT_EQ(resolver->Suggest(L"qqq"), Names{});
    EXPECT_EQ(resolver->Suggest(L""), Names{});
    EXPECT_EQ(resolver->Suggest(nullptr), Names{});
}

// A name that is ambiguous only in case suggests every name it could mean.
TEST(NameSuggestionsByCase, SuggestEachNameThatDiffersOnlyInCase) {
    QtrAdminStd admin;
    CategoryAdd(admin, L"Power", {L"W", L"mW", L"MW"});
    const QtrNameResolver resolver(admin);
    EXPECT_EQ(resolver.Resolve(L"mw").match, QtrNameMatch::None);
    EXPECT_EQ(resolver.Suggest(L"mw", 2), (Names{L"MW", L"mW"}));
}

}  // namespace
