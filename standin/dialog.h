// The text dialog, as a script sees it in place of a user.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace NStandIn {

// The result of a check of the text in the dialog.
struct Validation {
    bool mGood;
    std::string mMessage;  // cut to the size of the error buffer; empty if mGood
    std::int32_t mStart;   // where the fault starts and ends; kUnset if the actor didn't write it
    std::int32_t mEnd;
    static constexpr std::int32_t kUnset = -12345;
};

// The dialog while it is open. Valid only during the call of the script that it was passed to.
class Dialog {
  public:
    // text: must outlive the dialog. validate: checks the text; its argument is the size of the
    // error buffer in bytes.
    Dialog(std::string& text, std::function<Validation(std::int32_t)> validate)
        : mText(text), mValidate(std::move(validate))
    {
    }

    const std::string& Text() const { return mText; }
    void SetText(std::string text) { mText = std::move(text); }

    // Has the actor check the text. errorSize: of the actor's error buffer, in bytes; 0 and less
    // are passed on as they are.
    Validation Validate(std::int32_t errorSize = 2049) const { return mValidate(errorSize); }

  private:
    std::string& mText;
    std::function<Validation(std::int32_t)> mValidate;
};

}  // namespace NStandIn
