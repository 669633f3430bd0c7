// The position index answers like a map from names to positions whether it
// scans a few names or probes its table, across every growth of the table and
// with room reserved ahead.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "quantor/position_index.h"

namespace {

using quantor::detail::PositionIndex;

class PositionIndexModel {
public:
    PositionIndexModel() { names_.reserve(5000); }

    // Adds `name` as the next position unless it is held; checks the answer
    // against a plain map first.
    void Offer(const std::wstring& name) {
        const auto expected = positions_.find(name);
        const std::uint32_t found = index_.Find(name, NameAt());
        ASSERT_EQ(found, expected == positions_.end() ? PositionIndex::kNotFound : expected->second) << name;
        if (found != PositionIndex::kNotFound) return;
        positions_.emplace(name, static_cast<std::uint32_t>(names_.size()));
        index_.Append(names_.emplace_back(name), NameAt());
        ASSERT_EQ(index_.Size(), names_.size());
    }
    void Reserve(std::size_t count) { index_.Reserve(count, NameAt()); }
    void ExpectEveryNameFound() const {
        for (const auto& [name, position] : positions_) EXPECT_EQ(index_.Find(name, NameAt()), position) << name;
        EXPECT_EQ(index_.Find(L"", NameAt()), PositionIndex::kNotFound);
    }

private:
    struct NamesAt {
        const std::vector<std::wstring>* names;
        std::wstring_view operator()(std::uint32_t position) const { return (*names)[position]; }
    };
    NamesAt NameAt() const { return NamesAt{&names_}; }

    std::vector<std::wstring> names_;  // reserved ahead: the index keeps views of them
    std::unordered_map<std::wstring, std::uint32_t> positions_;
    PositionIndex index_;
};

TEST(PositionIndex, AnswersLikeAMapAcrossScanningGrowthAndReservedRoom) {
    std::mt19937 random(7);
    for (const int reserveAt : {0, 3, static_cast<int>(PositionIndex::kScanLimit), 100}) {
        SCOPED_TRACE(reserveAt);
        PositionIndexModel model;
        for (int i = 0; i < 4000; ++i) {
            if (reserveAt && i == reserveAt) model.Reserve(i + 500);
            model.Offer(L"u" + std::to_wstring(random() % 3000));
        }
        model.ExpectEveryNameFound();
    }
}

// Names of one character differ in few bits; small and capital letters and
// names that are prefixes of others stay apart.
TEST(PositionIndex, KeepsSimilarNamesApart) {
    PositionIndexModel model;
    for (const wchar_t* name : {L"m", L"M", L"mm", L"Mm", L"mM", L"m2", L"m\u00b2", L"km", L"kmm", L"k"})
        model.Offer(name);
    for (wchar_t c = L'a'; c <= L'z'; ++c) model.Offer(std::wstring(1, c));
    model.ExpectEveryNameFound();
}

}  // namespace
