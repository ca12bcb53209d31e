#include "tools/output/json_text.h"

#include <string>

#include "Common/Explain/byte_text.h"

namespace NSift {

Json TextJson(std::string_view text)
{
    if (NExplain::IsUtf8(text)) return Json(std::string(text));
    return Json{{"hex", NExplain::HexOf(text)}};
}

}  // namespace NSift
