#include "writer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"
#include "columns.h"
#include "message_token.h"
#include "names.h"
#include "value_form.h"

namespace NSuggest {

using NPattern::Byte;

namespace {

constexpr std::size_t kLongestUnit = 4;  // in bytes

// The white space before the values of a column.
struct Gap {
    bool mIsAlways = true;  // no value follows without any
    bool mIsNever = true;
    bool mIsEqual = true;
    std::string mText;  // before the first value
};

// A fixed text or a field, in the order of the messages.
struct Item {
    std::string mText;     // fixed; empty: a field
    Values mValues;        // of a field
    Gap mGap;              // before it
    std::string mHeading;  // of a field; empty: none
};

// Positions in the lists of the writer.
struct Field {
    std::size_t mItem;
    std::size_t mPiece;
};

struct Piece {
    std::string mHeader;  // with the name to come between its two parts
    std::string mForm;
    bool mIsText;  // a fixed text, which mForm is
};

class PatternWriter {
  public:
    PatternWriter(const Column& messages, const std::vector<Column>& columns, Sameness sameness,
                  const KnownNames& known)
        : mFirst(messages.front()), mKnown(known)
    {
        for (const std::string_view message : messages) mEnds.push_back(message.data());
        for (const Column& column : columns) AddItem(column, sameness);
    }

    WrittenPattern Write()
    {
        for (std::size_t i = 0; i < mItems.size() && !mIsAtEnd; ++i) AddPiece(i);
        GiveNames();
        std::string& pattern = mWritten.mPattern;
        for (const Piece& piece : mPieces) {
            if (!pattern.empty()) pattern += ' ';
            pattern += piece.mIsText ? WriteText(piece.mForm) : piece.mHeader + piece.mForm;
        }
        return std::move(mWritten);
    }

  private:
    void AddItem(const Column& column, Sameness sameness)
    {
        // Tabs between fields are white space.
        if (AreEqual(column) && Trimmed(column.front()).empty()) return;
        Gap gap;
        for (std::size_t m = 0; m < column.size(); ++m) {
            const char* const start = column[m].data();
            const std::string_view space(mEnds[m], static_cast<std::size_t>(start - mEnds[m]));
            mEnds[m] = start + column[m].size();
            gap.mIsAlways = gap.mIsAlways && !space.empty();
            gap.mIsNever = gap.mIsNever && space.empty();
            if (m == 0) gap.mText = space;
            gap.mIsEqual = gap.mIsEqual && gap.mText == space;
        }
        // The number after the name of a month is a day, and varies.
        const bool isDay = !mItems.empty() && mItems.back().mValues.mKind == ValueKind::kMonth;
        std::string heading = HeadingOf(column);
        const bool isValue = isDay || IsClockHeading(heading);
        Values values = ValuesOf(column, isValue ? Sameness::kValue : sameness);
        if (sameness == Sameness::kValue && IsChecksum(column)) values.mKind = ValueKind::kHex;
        const bool isFixed = values.mKind == ValueKind::kFixed;
        if (isFixed && !mItems.empty() && IsToken(column.front(), TokenKind::kNumber)) {
            mWritten.mFixedNumbers.emplace_back(column.front());
        }
        Item item{isFixed ? std::string(column.front()) : "", values, gap, std::move(heading)};
        if (isFixed && !mItems.empty() && !mItems.back().mText.empty() && gap.mIsEqual) {
            mItems.back().mText += gap.mText + item.mText;
        } else {
            mItems.push_back(std::move(item));
        }
    }

    // True if the column follows the item that was added last as a checksum does.
    bool IsChecksum(const Column& column) const
    {
        return !mItems.empty() && mItems.back().mText.ends_with('*') &&
               column.front().size() == 2 && AreHexDigits(column);
    }

    std::string HeadingOf(const Column& column) const
    {
        const std::string_view before =
            mFirst.substr(0, static_cast<std::size_t>(column.front().data() - mFirst.data()));
        if (before.find('*') != std::string_view::npos) return "";  // a checksum
        const auto position = mKnown.mSeparator == ' '
                                  ? WordsIn(before).size()
                                  : static_cast<std::size_t>(std::count(
                                        before.begin(), before.end(), mKnown.mSeparator));
        return position < mKnown.mHeadings.size() ? mKnown.mHeadings[position] : "";
    }

    // True for the digits after the only comma of a message that has a unit after them: 1,05 V.
    bool IsDecimals(std::size_t i) const
    {
        if (i < 2 || i + 1 == mItems.size() || mItems[i - 1].mText != ",") return false;
        const bool isAlone = std::count(mFirst.begin(), mFirst.end(), ',') == 1;
        const bool isAttached = mItems[i].mGap.mIsNever && mItems[i - 1].mGap.mIsNever;
        const bool hasSign = mItems[i].mValues.mMembers['-'] || mItems[i].mValues.mMembers['+'];
        const std::string& unit = mItems[i + 1].mText;
        return isAlone && isAttached && !hasSign && NPattern::IsAlpha(static_cast<Byte>(unit[0])) &&
               mItems[i].mValues.mKind == ValueKind::kInteger &&
               mItems[i - 2].mValues.mKind == ValueKind::kInteger;
    }

    static bool IsClockHeading(const std::string& heading)
    {
        return heading == "date" || heading == "time";
    }

    void AddPiece(std::size_t i)
    {
        const Item& item = mItems[i];
        const bool isText = !item.mText.empty();
        ValueForm form = {"", item.mText, isText && IsRawByte(item.mText.front())};
        if (!isText) {
            form = FormOf(item.mValues, SurroundingsOf(i));
            if (mKnown.mHasClockDigits && IsClockHeading(item.mHeading)) form.mType = "string";
            if (IsDecimals(i)) form = {"string", "#"};
        }
        Piece piece{form.mType, form.mForm, isText};
        if (!mAbsorbsGap) AddGap(item.mGap, form.mIsRaw, piece);
        mAbsorbsGap = form.mAbsorbsGap;
        mIsAtEnd = form.mTakesRest;
        if (!isText) mFields.push_back({i, mPieces.size()});
        mPieces.push_back(std::move(piece));
        mIsRaw = isText ? IsRawByte(item.mText.back()) : form.mIsRaw;
    }

    // c: at the start or end of a text, so no white space.
    static bool IsRawByte(char c)
    {
        const Byte b = static_cast<Byte>(c);
        return b < ' ' || b == 0x7F;
    }

    // White space next to a raw piece, and at the start, isn't skipped.
    void AddGap(const Gap& gap, bool isRaw, Piece& ioPiece)
    {
        if (!gap.mIsAlways || (!mIsRaw && !isRaw)) return;
        const bool followsText = !mPieces.empty() && mPieces.back().mIsText;
        if (followsText && gap.mIsEqual) {
            mPieces.back().mForm += gap.mText;
        } else if (ioPiece.mIsText && gap.mIsEqual && mIsRaw) {
            ioPiece.mForm = gap.mText + ioPiece.mForm;
        } else if (gap.mIsEqual && mIsRaw && !mPieces.empty()) {
            mPieces.push_back({"", gap.mText, true});
        } else {
            mPieces.push_back({"", gap.mText[0] == '\t' ? "[\\t ]" : "[ ]", false});
        }
    }

    Surroundings SurroundingsOf(std::size_t i) const
    {
        Surroundings around;
        around.mTextBefore = i != 0 ? mItems[i - 1].mText : "";
        around.mIsLast = i + 1 == mItems.size();
        if (around.mIsLast) return around;
        const Item& next = mItems[i + 1];
        around.mSpaceFollows = next.mGap.mIsAlways;
        around.mSpaceNeverFollows = next.mGap.mIsNever;
        if (next.mGap.mIsAlways && next.mGap.mIsEqual) around.mNextSpace = next.mGap.mText.front();
        if (!next.mText.empty()) around.mNextText = next.mText.front();
        return around;
    }

    void GiveNames()
    {
        std::vector<NameClue> clues;
        for (std::size_t f = 0; f < mFields.size(); ++f) clues.push_back(ClueFor(f));
        const std::vector<std::string> names = NamesOf(clues, mKnown.mGiven.size());
        for (std::size_t f = 0; f < mFields.size(); ++f) {
            std::string& header = mPieces[mFields[f].mPiece].mHeader;
            header.insert(0, 1, ':').insert(0, names[f]).push_back('=');
        }
    }

    NameClue ClueFor(std::size_t f) const
    {
        const std::size_t i = mFields[f].mItem;
        const Item& item = mItems[i];
        NameClue clue;
        clue.mKind = item.mValues.mKind;
        clue.mGivenName = GivenName(f);
        clue.mIsFirst = f == 0;
        clue.mIsLast = f + 1 == mFields.size();
        clue.mIsShort = item.mValues.mLongest <= kLongestUnit;
        for (std::size_t t = f == 0 ? 0 : mFields[f - 1].mItem; t < i; ++t) {
            if (!clue.mTextBefore.empty()) clue.mTextBefore += ' ';
            clue.mTextBefore += mItems[t].mText;
            clue.mIsAttached = mItems[t].mGap.mIsNever;
        }
        if (!clue.mTextBefore.empty() && !item.mGap.mIsNever) clue.mTextBefore += ' ';
        if (f != 0) {
            const ValueKind kind = mItems[mFields[f - 1].mItem].mValues.mKind;
            clue.mFollowsNumber = IsNumber(kind);
            clue.mFollowsMonth = kind == ValueKind::kMonth && clue.mTextBefore.empty();
        }
        return clue;
    }

    std::string GivenName(std::size_t f) const
    {
        if (f < mKnown.mGiven.size()) return mKnown.mGiven[f];
        const Item& item = mItems[mFields[f].mItem];
        if (IsDecimals(mFields[f].mItem)) return "decimals";
        const auto hasSameHeading = [&](const Field& other) {
            return &mItems[other.mItem] != &item && mItems[other.mItem].mHeading == item.mHeading;
        };
        const bool isShared = std::any_of(mFields.begin(), mFields.end(), hasSameHeading);
        // A date and a time under one heading have names of their own.
        return IsOfClock(item.mValues.mKind) && isShared ? "" : item.mHeading;
    }

    static bool IsNumber(ValueKind kind)
    {
        return kind == ValueKind::kInteger || kind == ValueKind::kFloat ||
               kind == ValueKind::kExponent;
    }

    std::string_view mFirst;  // the first message
    const KnownNames& mKnown;
    std::vector<const char*> mEnds;  // of each message: where the column before ends
    WrittenPattern mWritten;
    std::vector<Item> mItems;
    std::vector<Piece> mPieces;
    std::vector<Field> mFields;
    bool mIsRaw = true;        // the last piece is raw, or none is there
    bool mAbsorbsGap = false;  // the last piece takes the white space after it
    bool mIsAtEnd = false;     // the last piece takes all that is left
};

}  // namespace

WrittenPattern WritePattern(const Column& messages, const std::vector<Column>& columns,
                            Sameness sameness, const KnownNames& known)
{
    return PatternWriter(messages, columns, sameness, known).Write();
}

std::string WriteText(std::string_view text)
{
    std::string pieces;
    bool isOpen = false;
    for (const char c : text) {
        const auto b = static_cast<Byte>(c);
        const bool isLine = b == '\t' || b == '\r' || b == '\n';
        if (b < 0x80 && !NPattern::IsPrint(b) && !isLine) {
            if (isOpen) pieces += '\'';
            isOpen = false;
            if (!pieces.empty()) pieces += ' ';
            pieces += WriteByte(b);
            continue;
        }
        if (!isOpen) pieces += pieces.empty() ? "'" : " '";
        isOpen = true;
        if (b >= 0x80) {
            pieces += '?';
        } else if (isLine) {
            pieces += NExplain::Escaped({&c, 1});
        } else {
            if (c == '\'' || c == '\\' || c == '?') pieces += '\\';
            pieces += c;
        }
    }
    if (isOpen) pieces += '\'';
    return pieces;
}

std::string WriteByte(unsigned char byte)
{
    const auto c = static_cast<char>(byte);
    return "{{" + NExplain::HexOf({&c, 1}) + "}}";
}

}  // namespace NSuggest
