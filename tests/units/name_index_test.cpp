// The administration's name table: every name entered is found with its own
// entry through every growth of the table, the first entry of a name stays,
// and names that differ only in case, length or a final character are told
// apart.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quantor/name_index.h"

namespace {

using quantor::detail::NameIndex;

// Stand-ins for units: only their addresses are stored.
const QtrUnitBase* UnitAt(std::size_t index) { return reinterpret_cast<const QtrUnitBase*>(0x1000 + 16 * index); }

TEST(NameIndex, FindsEveryNameThroughGrowthAndKeepsTheFirstEntry) {
    std::vector<std::wstring> names{L"", L"m", L"M", L"mm", L"m2", L"2m"};
    for (int i = 0; i < 3000; ++i) names.push_back(L"unit" + std::to_wstring(i));
    NameIndex index;
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_TRUE(index.TryEmplace(names[i], {nullptr, UnitAt(i)}));
    EXPECT_EQ(index.Size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const NameIndex::Entry* entry = index.Find(names[i]);
        ASSERT_NE(entry, nullptr) << names[i];
        EXPECT_EQ(entry->unit, UnitAt(i)) << names[i];
    }
    const std::wstring again = L"m";
    EXPECT_FALSE(index.TryEmplace(again, {nullptr, UnitAt(99999)}));
    EXPECT_EQ(index.Find(L"m")->unit, UnitAt(1));
    EXPECT_EQ(index.Find(L"unit3000"), nullptr);
    EXPECT_EQ(index.Find(L"Unit1"), nullptr);
    EXPECT_EQ(index.Find(L"unit1 "), nullptr);
}

TEST(NameIndex, AnEmptyTableFindsNothing) {
    NameIndex index;
    EXPECT_EQ(index.Find(L""), nullptr);
    EXPECT_EQ(index.Find(L"m"), nullptr);
    index.Reserve(100);
    EXPECT_EQ(index.Find(L"m"), nullptr);
    EXPECT_EQ(index.Size(), 0u);
}

}  // namespace
