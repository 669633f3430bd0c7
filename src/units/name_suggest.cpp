// "Did you mean" suggestions: every name that resolves on its own is measured
// against the typed name, both case-folded. A short name allows fewer edits
// (one per two characters typed, three at most), and only the closest names
// are kept, so a typo is not answered by a list of unrelated short names.
// They are ranked exact names before synonyms before display names, then by
// name; each unit or category is suggested once, by its best spelling.
#include <algorithm>
#include <tuple>

#include "quantor/names.h"
#include "units/name_case_fold.h"
#include "units/name_edit_distance.h"
#include "units/name_tables.h"

namespace {

using quantor::detail::NameTarget;
using quantor::detail::Spelling;

constexpr std::size_t kMostEdits = 3;

struct Candidate {
    std::size_t distance;
    const Spelling* spelling;
    bool operator<(const Candidate& other) const {
        return std::tie(distance, spelling->kind, spelling->name) <
               std::tie(other.distance, other.spelling->kind, other.spelling->name);
    }
};

// The spellings closest to `typed`, at most the edits its length allows.
std::vector<Candidate> ClosestCandidates(const std::vector<Spelling>& spellings, const std::wstring& typed) {
    std::size_t bound = std::min(kMostEdits, typed.size() / 2);
    quantor::detail::EditDistance measure;
    std::vector<Candidate> candidates;
    for (const Spelling& spelling : spellings) {
        const std::size_t distance = measure.Within(typed, spelling.folded, bound);
        if (distance > bound) continue;
        if (distance < bound) candidates.clear();
        bound = distance;
        candidates.push_back({distance, &spelling});
    }
    std::sort(candidates.begin(), candidates.end());
    return candidates;
}

}  // namespace

std::vector<std::wstring> QtrNameResolver::Suggest(const wchar_t* typed, std::size_t most) const {
    std::vector<std::wstring> names;
    if (!typed || !*typed) return names;
    std::vector<NameTarget> suggested;
    for (const Candidate& candidate : ClosestCandidates(tables_->Spellings(), quantor::detail::CaseFolded(typed))) {
        if (names.size() >= most) break;
        const NameTarget target = candidate.spelling->target;
        if (std::find(suggested.begin(), suggested.end(), target) != suggested.end()) continue;
        suggested.push_back(target);
        names.push_back(candidate.spelling->name);
    }
    return names;
}
