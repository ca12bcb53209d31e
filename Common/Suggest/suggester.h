// Suggests parsing strings for messages.
//
//     NSuggest::Suggester suggester({});
//     do {
//         for (std::string_view message : messages) suggester.Add(message);
//     } while (suggester.NextPass());
//     Use(suggester.Result());

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "candidate.h"
#include "sample_store.h"
#include "suggestion.h"
#include "writer.h"

namespace NSuggest {

// Reads the same messages in several passes: it learns from the first one, and matches all messages
// against what it wrote in the others. Needs the same memory for any number of messages.
class Suggester {
  public:
    // names: for the outputs of one suggestion: of the kind of message that is the most frequent in
    // what is learned from and has outputs. Each must be a valid name; there may be fewer or more
    // than outputs.
    explicit Suggester(std::vector<std::string> names) : mNames(std::move(names)) {}

    // message: as it is cut at the end-of-message character. As in the host, it ends at a NUL byte
    // and after 2048 bytes.
    void Add(std::string_view message);

    // Ends a pass. Returns true if the same messages must be added once more.
    bool NextPass();

    // After the last pass.
    const Report& Result() const { return mReport; }

  private:
    void Count(std::string_view message);
    void WriteCandidates();
    bool IsNeedless(std::size_t candidate) const;
    void Finish();

    std::vector<std::string> mNames;
    KnownNames mKnown;         // from a header line
    bool mHasHeading = false;  // the header line of this pass was skipped
    SampleStore mStore;
    std::vector<Candidate> mCandidates;
    std::vector<std::size_t> mMatching;  // the candidates that match the current message
    // For each candidate and each candidate: the messages that both match.
    std::vector<std::size_t> mShared;
    std::vector<std::size_t> mOwn;  // for each: the messages of which it captures the most values
    std::size_t mPasses = 0;        // that have ended
    bool mHasUnlike = false;        // messages without a match were added to mStore
    Report mReport;
    Report mCount;  // of the current pass; without suggestions
};

// Returns what a Suggester reports on messages that are all there.
Report SuggestFor(const std::vector<std::string_view>& messages, std::vector<std::string> names);

// Returns true if name can be the name of an output.
bool IsName(std::string_view name);

}  // namespace NSuggest
