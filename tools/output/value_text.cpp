#include "tools/output/value_text.h"

#include <array>
#include <charconv>

#include "Common/Explain/byte_text.h"

namespace NSift {

std::string TextOf(const NStandIn::Value& value)
{
    if (value.mBits.mTag == NActor::kValueString) return NExplain::Quoted(value.mText);
    if (value.mBits.mTag == NActor::kValueInteger) return std::to_string(value.Integer());
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value.Float());
    return {buffer.data(), result.ptr};
}

}  // namespace NSift
