#include "pattern_explainer.h"

#include <algorithm>
#include <string_view>

#include "tools/output/text_forms.h"

namespace NSift {

using NPattern::Byte;
using NPattern::EqualsIgnoringCase;
using NPattern::kWildcardByte;
using NPattern::LToken;
using NPattern::Parameter;

namespace {

std::string WantsText(const Piece& piece)
{
    const LToken& text = *piece.Body();
    std::string shown = text.mText;
    std::replace(shown.begin(), shown.end(), static_cast<char>(kWildcardByte), '?');
    std::string words = "the text " + AlwaysQuoted(shown);
    words += text.mType == NPattern::kDoubleQuoted ? ", in upper or lower case"
                                                   : ", in upper and lower case just as written";
    if (text.mText.find(static_cast<char>(kWildcardByte)) != std::string::npos) {
        words += "; any character will do for a ? of it";
    }
    return words;
}

std::string AtMost(std::int32_t digits)
{
    return digits == 0 ? "" : "at most " + CountOf(static_cast<std::size_t>(digits), "digit");
}

std::string WantsNumber(const Piece& piece)
{
    const LToken* token = piece.Body();
    std::int32_t before = 0;
    if (token->mType == NPattern::kNumber) before = token++->mValue;
    if (EqualsIgnoringCase(token->mText, "x") || EqualsIgnoringCase(token->mText, "hex")) {
        return "a hexadecimal number without a sign" + (before == 0 ? "" : ", " + AtMost(before));
    }
    if (token->mText != ".") {
        return "a whole number, with a sign or without" +
               (before == 0 ? "" : ", " + AtMost(before));
    }
    const LToken& behindPoint = token[1];
    const std::int32_t behind = behindPoint.mType == NPattern::kNumber ? behindPoint.mValue : 0;
    std::string words = "a number, with a sign and a point or without";
    if (before != 0) words += ", " + AtMost(before) + " before the point";
    if (behind != 0) words += ", " + AtMost(behind) + " behind the point";
    return words;
}

std::string ListOf(const std::array<bool, 256>& members, bool wanted, bool asBytes)
{
    const auto nameOf = [asBytes](std::size_t b) {
        const char byte = static_cast<char>(b);
        return asBytes ? HexOf({&byte, 1}) : NameOfByte(static_cast<Byte>(b));
    };
    std::string list;
    for (std::size_t b = 0; b < members.size(); ++b) {
        if (members[b] != wanted) continue;
        std::size_t last = b;
        while (last + 1 < members.size() && members[last + 1] == wanted) ++last;
        if (!list.empty()) list += ", ";
        list += nameOf(b);
        if (last > b) list += (last == b + 1 ? ", " : " to ") + nameOf(last);
        b = last;
    }
    return list;
}

std::string WantsMembers(const Piece& piece, bool asBytes, bool single)
{
    const std::array<bool, 256> members = MembersOf(piece);
    const auto count = std::count(members.begin(), members.end(), true);
    const std::string unit = asBytes ? "byte" : "character";
    const std::string amount = single ? "exactly one " + unit : "one or more " + unit + "s";
    if (count == 256) return amount + ", whatever they are";
    // A set that leaves out little is told by that.
    if (count > 128) return amount + ", any but " + ListOf(members, false, asBytes);
    return amount + " out of " + ListOf(members, true, asBytes);
}

std::string WantsSet(const Piece& piece)
{
    const LToken* token = piece.Body();
    if (token->mText == "[" || token->mText == "{") {
        return WantsMembers(piece, token->mText == "{", token[1].mText == token->mText);
    }
    std::size_t count = 0;
    if (token->mType == NPattern::kNumber) count = static_cast<std::size_t>(token++->mValue);
    const auto first = static_cast<char>(NPattern::ToLower(static_cast<Byte>(token->mText[0])));
    if (first == '?' || first == 'b') {
        return "exactly " + CountOf(std::max<std::size_t>(count, 1), "byte") + " of any value";
    }
    const bool letters = first == 'a' || first == 'l';
    const std::string unit = letters ? "letter" : "visible character";
    const std::string amount =
        count == 0 ? "one or more " + unit + "s" : "exactly " + CountOf(count, unit);
    return amount + (letters ? " A to Z or a to z" : " (no blanks)");
}

std::string WantsBits(const Piece& piece)
{
    const std::size_t size = BlockSizeOf(piece);
    std::string words = "a block of " + CountOf(size, "byte") + ", cut into bits";
    if (size == 1) return words;
    const LToken& order = piece.mTokens[piece.mTokens.size() - 2];
    return words + (EqualsIgnoringCase(order.mText, "L") ? "; the first byte has the lowest bits"
                                                         : "; the first byte has the highest bits");
}

std::string TypeWords(const Piece& piece, const Parameter& capture)
{
    const bool isRaw = piece.mKind == PieceKind::kSet && piece.mElement->IsBinary();
    switch (capture.mType) {
        case NPattern::kTypeString: return "a string";
        case NPattern::kTypeFloat:
            return isRaw ? "a float: the bytes as a whole number, the lowest byte first"
                         : "a float";
        case NPattern::kTypeLInteger:
            return isRaw ? "an integer, the lowest byte first" : "an integer";
        case NPattern::kTypeBInteger:
            return isRaw ? "an integer, the highest byte first" : "an integer";
        case NPattern::kTypeNone: break;
    }
    return "nothing";
}

std::string CaptureWords(const Piece& piece, std::size_t index)
{
    const Parameter& capture = piece.mCaptures[index];
    const std::string name =
        capture.mName.empty() ? "an output without a name" : "\"" + capture.mName + "\"";
    return name + ", " + TypeWords(piece, capture);
}

// The two numbers of a range stand on either side of its '-'.
std::string RangeWords(const Piece& piece, std::size_t index)
{
    std::size_t found = 0;
    for (std::size_t t = 1; t + 1 < piece.mTokens.size(); ++t) {
        if (piece.mTokens[t].mText != "-" || found++ != index) continue;
        const auto [low, high] =
            std::minmax(piece.mTokens[t - 1].mValue, piece.mTokens[t + 1].mValue);
        return low == high ? "bit " + std::to_string(low)
                           : "bits " + std::to_string(low) + " to " + std::to_string(high);
    }
    return "";
}

bool IsOfNumberType(const Piece& piece)
{
    return !piece.mCaptures.empty() && piece.mCaptures[0].mType != NPattern::kTypeString;
}

// Each gives a caution if the piece gives cause for it, else an empty text.

std::string CautionRawDigits(const Pieces& pieces, std::size_t index)
{
    const Piece& piece = pieces[index];
    if (piece.mKind != PieceKind::kSet || !IsOfNumberType(piece) || piece.Body()->mText != "[" ||
        !piece.mElement->IsBinary()) {
        return "";
    }
    return "white space is in this set, so the number is made of the raw bytes: 12 gives 12849. A "
           "set without any, such as [-+.0-9], reads digits";
}

std::string CautionSplitNumber(const Pieces& pieces, std::size_t index)
{
    const Piece& piece = pieces[index];
    if (index + 1 == pieces.size() || piece.mKind != PieceKind::kNumber || IsHexNumber(piece) ||
        IsPointNumber(piece) || !IsPointNumber(pieces[index + 1]) ||
        !pieces[index + 1].mCaptures.empty()) {
        return "";
    }
    return "this and the next piece are two numbers, and only the first is captured; one number "
           "with a point is .#";
}

std::string CautionWholeFloat(const Pieces& pieces, std::size_t index)
{
    const Piece& piece = pieces[index];
    if (piece.mKind != PieceKind::kNumber || IsPointNumber(piece) || piece.mCaptures.empty() ||
        piece.mCaptures[0].mType != NPattern::kTypeFloat) {
        return "";
    }
    return "this reads whole numbers only, and stops at a point; .# reads a point too";
}

constexpr std::string (*kCautions[])(const Pieces&, std::size_t) = {
    CautionRawDigits,
    CautionSplitNumber,
    CautionWholeFloat,
};

}  // namespace

std::string CautionFor(const Pieces& pieces, std::size_t index)
{
    for (const auto cautionFor : kCautions) {
        if (std::string caution = cautionFor(pieces, index); !caution.empty()) return caution;
    }
    return "";
}

std::string CountOf(std::size_t count, const std::string& unit)
{
    return std::to_string(count) + ' ' + unit + (count == 1 ? "" : "s");
}

std::string NameOfByte(unsigned char byte)
{
    switch (byte) {
        case ' ': return "blank";
        case '\t': return "tab";
        case '\n': return "line feed";
        case '\r': return "carriage return";
        default: break;
    }
    const auto c = static_cast<char>(byte);
    return NPattern::IsPrint(byte) ? std::string("'") + c + '\'' : "byte " + HexOf({&c, 1});
}

std::string WantsOf(const Piece& piece)
{
    switch (piece.mKind) {
        case PieceKind::kText: return WantsText(piece);
        case PieceKind::kNumber: return WantsNumber(piece);
        case PieceKind::kSet: return WantsSet(piece);
        case PieceKind::kBits: return WantsBits(piece);
        case PieceKind::kLine: break;
    }
    return "the rest of the line, with the line ends behind it";
}

void PrintExplanation(std::ostream& stream, const Pieces& pieces, const Palette& palette)
{
    if (pieces.empty()) {
        stream << "The parsing string is empty: it matches no message.\n";
        return;
    }
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        const Piece& piece = pieces[p];
        if (piece.mSkipsSpace) {
            stream << palette.Paint(Role::kAside, "         (white space here is skipped)") << '\n';
        }
        const std::string title = "piece " + std::to_string(p + 1);
        stream << title
               << std::string(std::max<std::size_t>(9, title.size() + 1) - title.size(), ' ')
               << palette.Paint(Role::kName, Escaped(piece.mSource)) << "\n         takes "
               << WantsOf(piece) << '\n';
        for (std::size_t c = 0; c < piece.mCaptures.size(); ++c) {
            stream << "         captures " << CaptureWords(piece, c);
            if (piece.mKind == PieceKind::kBits) stream << ", " << RangeWords(piece, c);
            stream << '\n';
        }
        if (const std::string caution = CautionFor(pieces, p); !caution.empty()) {
            stream << "         careful: " << caution << '\n';
        }
    }
    stream << "A message matches if the pieces take what they need one behind the other, from its "
              "first\ncharacter on. What is left behind the last piece does no harm.\n";
}

}  // namespace NSift
