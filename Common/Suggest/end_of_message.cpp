#include "end_of_message.h"

#include <algorithm>

#include "Common/Explain/byte_survey.h"

namespace NSuggest {

namespace {

constexpr std::size_t kMostBytes = 1U << 16U;
constexpr std::size_t kLongestMessage = 2048;

NExplain::Survey SurveyOf(std::string_view bytes, const std::vector<std::size_t>& pauses)
{
    bytes = bytes.substr(0, kMostBytes);
    NExplain::ByteSurvey survey;
    std::size_t start = 0;
    for (const std::size_t pause : pauses) {
        if (pause > bytes.size()) break;
        survey.Add(bytes.substr(start, pause - start));
        survey.AddPause();
        start = pause;
    }
    survey.Add(bytes.substr(start));
    return survey.Result();
}

}  // namespace

std::optional<std::uint8_t> FindEndOfMessage(std::string_view bytes,
                                             const std::vector<std::size_t>& pauses)
{
    const NExplain::Survey survey = SurveyOf(bytes, pauses);
    if (!survey.mEnd.empty()) return static_cast<std::uint8_t>(survey.mEnd.back());
    // There may be only one line so far.
    for (const char end : {'\n', '\r'}) {
        const bool isThere = bytes.substr(0, kMostBytes).find(end) != std::string_view::npos;
        if (survey.mIsText && isThere) return static_cast<std::uint8_t>(end);
    }
    return std::nullopt;
}

bool IsText(std::string_view bytes)
{
    return SurveyOf(bytes, {}).mIsText;
}

std::vector<std::string_view> MessagesIn(std::string_view text, std::optional<std::uint8_t> eomChar)
{
    std::vector<std::string_view> messages;
    if (!eomChar && !IsText(text)) return messages;
    while (!text.empty()) {
        std::string_view message = text.substr(0, kLongestMessage);
        if (eomChar) message = message.substr(0, message.find(static_cast<char>(*eomChar)));
        messages.push_back(message);
        text.remove_prefix(std::min(text.size(), message.size() + 1));
    }
    return messages;
}

}  // namespace NSuggest
