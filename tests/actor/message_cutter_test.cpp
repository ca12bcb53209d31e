// Which messages a text is cut into.

#include "actor/message_cutter.h"

#include "actor_support.h"

namespace {

// The text is in a block of exactly its length and its NUL.
Texts MessagesOf(const std::string& text, std::uint8_t eomChar)
{
    const std::vector<unsigned char> bytes(text.c_str(), text.c_str() + text.size() + 1);
    NActor::MessageCutter cutter(bytes.data(), text.size(), eomChar);
    Texts messages;
    while (const auto message = cutter.Next())
        messages.emplace_back(message->begin(), message->end());
    EXPECT_FALSE(cutter.Next());
    return messages;
}

TEST(MessageCutter, CutsAtItsCharacterAndAtTheLimit)
{
    const auto x = [](std::size_t count) { return std::string(count, 'x'); };
    struct Row {
        std::uint8_t mEomChar;
        std::string mText;
        Texts mMessages;
    };
    for (const Row& row : {
             Row{'\n', "ab\ncd\n", {"ab", "cd"}},
             {'\n', "\n\nab\n\nlost", {"", "", "ab", ""}},
             {'\n', "", {}},
             {'\n', "lost", {}},
             {0, "", {""}},
             {0, "ab\ncd", {"ab\ncd"}},
             {0xFE, "ab\376cd\376", {"ab", "cd"}},
             {'\n', x(2047) + "\nab\n", {x(2047), "ab"}},
             {'\n', x(2048) + "\nab\n", {x(2048), "ab"}},
             {'\n', x(2048) + "yab\n", {x(2048), "ab"}},  // the y is lost
             {'\n', x(2048) + "y\nab\n", {x(2048), "", "ab"}},
             {'\n', x(2048), {}},
             {'\n', x(2049), {x(2048)}},
             {'\n', x(5000), {x(2048), x(2048)}},
             {0, x(2048), {x(2048)}},
             {0, x(2049), {x(2048), ""}},
             {0, x(2050), {x(2048), x(1)}},
         }) {
        EXPECT_EQ(MessagesOf(row.mText, row.mEomChar), row.mMessages)
            << int{row.mEomChar} << ' ' << row.mText.size();
    }
}

}  // namespace
