#include "Common/Suggest/suggester.h"
#include "try_box.h"
#include "web/deliveries.h"
#include "web/kept_text.h"

namespace {

using NWeb::Json;
using NWeb::TextJson;

Json SuggestionsJson(std::string_view deliveries, char eomChar)
{
    NSuggest::Suggester suggester({});
    do {
        NWeb::ForEachMessage(deliveries, eomChar, [&suggester](const NWeb::Message& message) {
            if (!message.mIsLost) suggester.Add(message.mText);
        });
    } while (suggester.NextPass());
    const NSuggest::Report& report = suggester.Result();
    Json suggestions = Json::array();
    for (const NSuggest::Suggestion& suggestion : report.mSuggestions) {
        suggestions.push_back({{"pattern", TextJson(suggestion.mPattern)},
                               {"matched", suggestion.mMatched},
                               {"notes", suggestion.mNotes}});
    }
    return {{"suggestions", std::move(suggestions)},
            {"messages", report.mMessages},
            {"unmatched", report.mUnmatched}};
}

}  // namespace

const char* WordSifterSuggest(const char* deliveries, std::size_t deliveriesSize,
                              std::uint32_t eomChar)
{
    return NWeb::KeepText([&] {
        return SuggestionsJson({deliveries, deliveriesSize}, static_cast<char>(eomChar));
    });
}
