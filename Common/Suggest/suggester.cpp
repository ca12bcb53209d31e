#include "suggester.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

#include "Common/Explain/word_lists.h"
#include "Common/Pattern/pattern_bytes.h"
#include "bytes_writer.h"
#include "columns.h"
#include "headings.h"
#include "kinds.h"
#include "message_token.h"

namespace NSuggest {

namespace {

constexpr std::size_t kLongestMessage = 2048;  // of the host
constexpr std::size_t kMostSuggestions = 16;
constexpr std::size_t kMostPasses = 4;

// The part of a message that reaches the parsing string.
std::string_view InHost(std::string_view message)
{
    return message.substr(0, std::min(message.find('\0'), kLongestMessage));
}

Sameness SamenessOf(const Column& messages)
{
    return AreEqual(messages) ? Sameness::kValue : Sameness::kText;
}

// The candidate that matches the most messages of a kind; none if no parsing string is found.
struct Best {
    std::optional<Candidate> mCandidate;
    std::size_t mMatched = 0;
};

void TryPattern(const WrittenPattern& written, const Column& messages, Best& ioBest)
{
    Candidate candidate(written.mPattern);
    if (candidate.HasCautions()) return;
    const auto matched = static_cast<std::size_t>(
        std::count_if(messages.begin(), messages.end(),
                      [&](std::string_view m) { return candidate.Matches(m); }));
    if (matched <= ioBest.mMatched) return;
    if (!written.mFixedNumbers.empty()) {
        const NExplain::Words numbers(written.mFixedNumbers.begin(), written.mFixedNumbers.end());
        candidate.AddNote("the same in all these messages, so it is text: " +
                          NExplain::Joined(numbers, ", "));
    }
    ioBest.mMatched = matched;
    ioBest.mCandidate = std::move(candidate);
}

Best BestFor(const Kind& kind, const KnownNames& known)
{
    Best best;
    const Column& messages = kind.mMessages;
    if (kind.mIsRaw) {
        TryPattern({WriteBytesPattern(messages, known.mGiven), {}}, messages, best);
        return best;
    }
    const Sameness sameness = SamenessOf(messages);
    const auto tryCuts = [&](const Cuts& cuts, const std::optional<MergedSegments>& merged) {
        const auto columns = SplitAtSeparators(messages, cuts, merged, sameness);
        TryPattern(WritePattern(messages, columns, sameness, known), messages, best);
    };
    tryCuts(kind.mCuts, kind.mMerged);
    if (best.mMatched < messages.size()) tryCuts({}, std::nullopt);
    return best;
}

// True if nothing can be learned: there is only one long message.
bool IsTooSpecial(const Kind& kind, const Candidate& candidate)
{
    constexpr std::size_t kLongestSpecial = 300;
    return AreEqual(kind.mMessages) && candidate.Pattern().size() > kLongestSpecial;
}

// What the messages of a kind leave open.
void AddNotes(const Kind& kind, Candidate& ioCandidate)
{
    if (AreEqual(kind.mMessages)) ioCandidate.SetHasOneSample();
    if (kind.mMerged) {
        const auto hasQuotes = [](std::string_view m) { return m.find("\"\"") != m.npos; };
        const bool isQuoted = std::any_of(kind.mMessages.begin(), kind.mMessages.end(), hasQuotes);
        ioCandidate.AddNote(std::string(isQuoted ? "some quoted fields are empty or hold quotes"
                                                 : "some fields are empty in many messages") +
                            ", so they are one text with their separators");
    }
}

}  // namespace

void Suggester::Add(std::string_view message)
{
    message = InHost(message);
    if (TrimmedRight(message).empty()) {
        ++mCount.mEmpty;
        return;
    }
    if (mPasses == 0) {
        mStore.Add(message);
    } else {
        Count(message);
    }
}

void Suggester::Count(std::string_view message)
{
    if (!mKnown.mHeadings.empty() && !mHasHeading) {
        mHasHeading = true;
        return;
    }
    ++mCount.mMessages;
    mMatching.clear();
    for (std::size_t c = 0; c < mCandidates.size(); ++c) {
        if (mCandidates[c].Count(message)) mMatching.push_back(c);
    }
    if (!mMatching.empty()) {
        const auto hasFewer = [this](std::size_t a, std::size_t b) {
            return mCandidates[a].OutputCount() < mCandidates[b].OutputCount();
        };
        ++mOwn[*std::max_element(mMatching.begin(), mMatching.end(), hasFewer)];
    }
    for (const std::size_t a : mMatching) {
        for (const std::size_t b : mMatching) ++mShared[a * mCandidates.size() + b];
    }
    if (!mMatching.empty()) return;
    if (++mCount.mUnmatched == 1) mCount.mExample = message;
    if (mStore.AddUnlike(message)) mHasUnlike = true;
}

bool Suggester::NextPass()
{
    ++mPasses;
    const bool isFirst = mPasses == 1;
    if (!isFirst) {
        Finish();
        if (!mHasUnlike || mPasses == kMostPasses) return false;
    }
    mHasUnlike = false;
    mHasHeading = false;
    mCount = Report();
    std::vector<std::string> before;
    for (const Candidate& candidate : mCandidates) before.push_back(candidate.Pattern());
    WriteCandidates();
    const auto isOld = [&before](const Candidate& candidate) {
        return std::find(before.begin(), before.end(), candidate.Pattern()) != before.end();
    };
    return isFirst || !std::all_of(mCandidates.begin(), mCandidates.end(), isOld);
}

void Suggester::WriteCandidates()
{
    mCandidates.clear();
    Column messages = mStore.Messages();
    if (auto known = HeadingsIn(messages)) {
        mKnown = std::move(*known);
        messages.erase(messages.begin());
    }
    std::vector<Kind> kinds = FindKinds(messages);
    std::stable_sort(kinds.begin(), kinds.end(), [](const Kind& a, const Kind& b) {
        return a.mMessages.size() > b.mMessages.size();
    });
    mCount.mLeftOut = kinds.size() - std::min(kinds.size(), kMostSuggestions);
    kinds.resize(kinds.size() - mCount.mLeftOut, Kind());
    bool isNamed = false;
    for (const Kind& kind : kinds) {
        KnownNames known =
            mKnown.mHeadings.empty() ? SentenceNames(kind.mMessages.front()) : mKnown;
        if (!isNamed) known.mGiven = mNames;
        Best best = BestFor(kind, known);
        if (!best.mCandidate || IsTooSpecial(kind, *best.mCandidate)) continue;
        AddNotes(kind, *best.mCandidate);
        isNamed = isNamed || best.mCandidate->OutputCount() != 0;
        mCandidates.push_back(std::move(*best.mCandidate));
    }
    mOwn = std::vector<std::size_t>(mCandidates.size());
    mShared = std::vector<std::size_t>(mCandidates.size() * mCandidates.size());
}

// True if another candidate matches all messages that this one does, and more, with no fewer
// outputs. Of two that match the same messages, the later one is needless.
bool Suggester::IsNeedless(std::size_t c) const
{
    const auto sharedBy = [&](std::size_t a, std::size_t b) {
        return mShared[a * mCandidates.size() + b];
    };
    for (std::size_t other = 0; other < mCandidates.size(); ++other) {
        if (sharedBy(c, other) != sharedBy(c, c)) continue;
        const std::size_t outputs = mCandidates[other].OutputCount();
        const bool isMore = sharedBy(other, other) > sharedBy(c, c) ||
                            outputs > mCandidates[c].OutputCount() || other < c;
        if (isMore && outputs >= mCandidates[c].OutputCount()) return true;
    }
    return false;
}

// Keeps the result of this pass if it is better than the one before.
void Suggester::Finish()
{
    if (!mReport.mSuggestions.empty() && mReport.mUnmatched <= mCount.mUnmatched) return;
    mReport = std::exchange(mCount, Report());
    mReport.mHeadings = mKnown.mHeadings;
    std::vector<std::size_t> order(mCandidates.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [this](std::size_t a, std::size_t b) { return mOwn[a] > mOwn[b]; });
    for (const std::size_t c : order) {
        if (IsNeedless(c)) continue;
        mReport.mSuggestions.push_back(mCandidates[c].Result(mReport.mMessages));
    }
}

Report SuggestFor(const std::vector<std::string_view>& messages, std::vector<std::string> names)
{
    Suggester suggester(std::move(names));
    do {
        for (const std::string_view message : messages) suggester.Add(message);
    } while (suggester.NextPass());
    return suggester.Result();
}

bool IsName(std::string_view name)
{
    return !name.empty() && !NPattern::IsDigit(static_cast<NPattern::Byte>(name[0])) &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return NPattern::IsAlnum(static_cast<NPattern::Byte>(c)) || c == '_';
           });
}

}  // namespace NSuggest
