#include "kept_text.h"

#include <string>

namespace NWeb {

const char* KeepText(const std::function<Json()>& make)
{
    static std::string kept;
    try {
        kept = make().dump();
        return kept.c_str();
    } catch (...) {
        return nullptr;
    }
}

}  // namespace NWeb
