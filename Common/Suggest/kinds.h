// Sorts messages into kinds: those that one parsing string can describe.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "columns.h"
#include "values.h"

namespace NSuggest {

struct Kind {
    Column mMessages;  // texts are trimmed at their end
    bool mIsRaw;       // raw bytes, not text
    Cuts mCuts;        // of texts: all have the same separators in the same order
    std::optional<MergedSegments> mMerged;  // fields of which now these, now those are empty
};

// Messages of which there is no second one with the same structure may be in no kind.
// messages: in the order of arrival.
std::vector<Kind> FindKinds(const Column& messages);

}  // namespace NSuggest
