// A square matrix of bits, one row of 64-bit words per index, with the
// searches that rule completion needs: the next clear bit of a row, the next
// bit set in a row of this matrix and a row of another, and the last bit
// clear in a row of both.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quantor::detail {

class BitMatrix {
public:
    BitMatrix() = default;
    explicit BitMatrix(std::size_t size) : size_(size), words_((size + 63) / 64), bits_(size * words_, 0) {}

    void Set(std::size_t row, std::size_t column) { Word(row, column / 64) |= Mask(column); }

    // The first column from `from` on whose bit is clear in `row`; size() when none.
    std::size_t NextClear(std::size_t row, std::size_t from) const {
        return Next(from, [&](std::size_t w) { return ~Word(row, w); });
    }

    // The first column from `from` on set both in `row` and in `otherRow` of `other`.
    std::size_t NextCommon(std::size_t row, const BitMatrix& other, std::size_t otherRow, std::size_t from) const {
        return Next(from, [&](std::size_t w) { return Word(row, w) & other.Word(otherRow, w); });
    }

    // The last column from `from` on clear both in `row` and in `row` of `other`; size() when none.
    std::size_t LastClearOfBoth(std::size_t row, const BitMatrix& other, std::size_t from) const {
        for (std::size_t w = words_; w-- > from / 64;) {
            uint64_t word = ~(Word(row, w) | other.Word(row, w)) & InRange(w, from);
            if (word) return w * 64 + 63 - static_cast<std::size_t>(std::countl_zero(word));
        }
        return size_;
    }

    std::size_t size() const { return size_; }

private:
    static uint64_t Mask(std::size_t column) { return uint64_t{1} << (column % 64); }
    uint64_t& Word(std::size_t row, std::size_t w) { return bits_[row * words_ + w]; }
    uint64_t Word(std::size_t row, std::size_t w) const { return bits_[row * words_ + w]; }

    // The bits of word `w` that stand for columns from `from` up to size().
    uint64_t InRange(std::size_t w, std::size_t from) const {
        uint64_t mask = ~uint64_t{0};
        if (w == from / 64) mask &= ~uint64_t{0} << (from % 64);
        if (w == words_ - 1 && size_ % 64 != 0) mask &= ~(~uint64_t{0} << (size_ % 64));
        return mask;
    }

    template <class WordOf>
    std::size_t Next(std::size_t from, WordOf wordOf) const {
        for (std::size_t w = from / 64; w < words_; ++w) {
            const uint64_t word = wordOf(w) & InRange(w, from);
            if (word) return w * 64 + static_cast<std::size_t>(std::countr_zero(word));
        }
        return size_;
    }

    std::size_t size_ = 0;
    std::size_t words_ = 0;
    std::vector<uint64_t> bits_;
};

}  // namespace quantor::detail
