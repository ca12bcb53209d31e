// A parsing string under trial.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Explain/piece.h"
#include "Common/Explain/value_cautions.h"
#include "Common/Pattern/pattern.h"
#include "suggestion.h"

namespace NSuggest {

// Matches messages with the engine and keeps what they showed. Needs the same memory for any number
// of messages.
class Candidate {
  public:
    // Throws NPattern::PatternSyntaxException if pattern doesn't compile.
    explicit Candidate(const std::string& pattern);

    bool HasCautions() const;

    // Matches without keeping anything.
    bool Matches(std::string_view message);

    // Counts the message. Returns true if it matches and no value is cut or too large for its type.
    bool Count(std::string_view message);

    std::size_t OutputCount() const { return mSuggestion.mOutputs.size(); }
    // All messages from which the parsing string was made are the same.
    void SetHasOneSample() { mHasOneSample = true; }
    void AddNote(std::string note) { mSuggestion.mNotes.push_back(std::move(note)); }
    const std::string& Pattern() const { return mSuggestion.mPattern; }

    // messages: the number of all messages counted.
    Suggestion Result(std::size_t messages) const;

  private:
    static std::string_view RestOf(std::string_view message, const NPattern::Byte* end);
    bool IsCutBefore(std::string_view message, std::string_view rest) const;
    bool IsClamped(std::string_view message);
    void KeepValues();
    bool IsTextNext(std::size_t piece, std::string_view rest);
    void CountEmptyField(std::string_view message);

    Suggestion mSuggestion;
    NPattern::Pattern mPattern;
    NPattern::CapturedParameters mCaptured;
    NExplain::Pieces mPieces;
    std::vector<NExplain::ValueRisk> mRisks;
    bool mHasOneSample = false;
    std::size_t mLonger = 0;          // messages with more text after the match
    std::vector<std::size_t> mEmpty;  // for each piece: messages in which its field was empty
};

}  // namespace NSuggest
