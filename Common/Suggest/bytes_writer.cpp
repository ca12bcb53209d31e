#include "bytes_writer.h"

#include <algorithm>
#include <cstddef>
#include <set>

#include "Common/Pattern/pattern_bytes.h"
#include "names.h"
#include "writer.h"

namespace NSuggest {

using NPattern::Byte;

namespace {

constexpr std::size_t kLeastForCounter = 8;  // messages
constexpr std::size_t kLeastForBits = 64;    // messages
constexpr std::size_t kLeastForText = 3;     // fixed bytes that are better read as text

class BytesWriter {
  public:
    explicit BytesWriter(const Column& messages) : mMessages(messages)
    {
        const auto [shortest, longest] = std::minmax_element(
            messages.begin(), messages.end(),
            [](std::string_view a, std::string_view b) { return a.size() < b.size(); });
        mLength = shortest->size();
        mHasLength = mLength == longest->size();
    }

    std::string Write(const std::vector<std::string>& names)
    {
        for (std::size_t p = 0; p < mLength;) {
            const std::size_t fixed = RunFrom(p, true);
            if (fixed != 0) {
                AddFixed(p, fixed);
                p += fixed;
            } else if (mHasLength) {
                p += AddVarying(p, RunFrom(p, false));
            } else {
                break;
            }
        }
        if (!mHasLength) AddField("data", ":string={01-FF}");
        return Joined(names);
    }

  private:
    struct Piece {
        std::string mName;  // of an output; empty: none
        std::string mForm;  // without the name
    };

    Byte At(std::size_t message, std::size_t position) const
    {
        return static_cast<Byte>(mMessages[message][position]);
    }

    bool IsFixed(std::size_t position) const
    {
        const char first = mMessages.front()[position];
        return std::all_of(mMessages.begin(), mMessages.end(),
                           [=](std::string_view m) { return m[position] == first; });
    }

    std::size_t RunFrom(std::size_t start, bool isFixed) const
    {
        std::size_t end = start;
        while (end < mLength && IsFixed(end) == isFixed) ++end;
        return end - start;
    }

    void AddFixed(std::size_t start, std::size_t length)
    {
        const std::string_view bytes = mMessages.front().substr(start, length);
        const bool isText = std::all_of(bytes.begin(), bytes.end(), [](char c) {
            return NPattern::IsPrint(static_cast<Byte>(c));
        });
        if (isText && length >= kLeastForText) {
            mPieces.push_back({"", WriteText(bytes)});
            return;
        }
        for (const char c : bytes) mPieces.push_back({"", WriteByte(static_cast<Byte>(c))});
    }

    void AddField(const std::string& name, const std::string& form)
    {
        mPieces.push_back({name, form});
    }

    // Adds a field that begins at start, and returns its length. length: of the varying bytes.
    std::size_t AddVarying(std::size_t start, std::size_t length)
    {
        if (IsCounter(start)) {
            AddField("counter", ":integer=byte");
            return 1;
        }
        std::size_t end = start;
        while (end < start + length && !IsCounter(end)) ++end;
        if (end - start > 1) {
            AddField("data", ":string=" + std::to_string(end - start) + " bytes");
        } else if (const std::string bits = BitsAt(start); !bits.empty()) {
            mPieces.push_back({"bits", bits});
        } else {
            AddField("byte", ":integer=byte");
        }
        return end - start;
    }

    // True if the byte is one larger from each message to the next. A larger counter can't be seen:
    // its lower byte becomes NUL, which ends a message.
    bool IsCounter(std::size_t position) const
    {
        if (mMessages.size() < kLeastForCounter) return false;
        for (std::size_t m = 1; m < mMessages.size(); ++m) {
            if (At(m - 1, position) + 1 != At(m, position)) return false;
        }
        return true;
    }

    // Returns the form of a byte of which the upper bits are fixed, and the lower ones take every
    // value. Otherwise, and for printable bytes, returns an empty text.
    std::string BitsAt(std::size_t position) const
    {
        if (mMessages.size() < kLeastForBits) return "";
        unsigned varying = 0;
        std::set<Byte> seen;
        for (std::size_t m = 0; m < mMessages.size(); ++m) {
            varying |= At(m, position) ^ unsigned { At(0, position) };
            seen.insert(At(m, position));
        }
        const bool isText = std::all_of(seen.begin(), seen.end(), NPattern::IsPrint);
        if (isText || seen.size() != varying + 1) return "";
        unsigned last = 0;
        while ((varying >> (last + 1)) != 0) ++last;
        return "0-" + std::to_string(last);
    }

    std::string Joined(const std::vector<std::string>& given) const
    {
        std::vector<std::string> names;
        for (const Piece& piece : mPieces) {
            if (piece.mName.empty()) continue;
            names.push_back(names.size() < given.size() ? given[names.size()] : piece.mName);
        }
        MakeUnique(names, given.size());
        std::string pattern;
        std::size_t next = 0;
        for (const Piece& piece : mPieces) {
            if (!pattern.empty()) pattern += ' ';
            const bool isBits = piece.mName == "bits";
            if (isBits) pattern += '(';
            if (!piece.mName.empty()) pattern += names[next++];
            pattern += isBits ? '=' + piece.mForm + ')' : piece.mForm;
        }
        return pattern;
    }

    const Column& mMessages;
    std::size_t mLength;  // of the shortest message
    bool mHasLength;      // all messages are of this length
    std::vector<Piece> mPieces;
};

}  // namespace

std::string WriteBytesPattern(const Column& messages, const std::vector<std::string>& names)
{
    return BytesWriter(messages).Write(names);
}

}  // namespace NSuggest
