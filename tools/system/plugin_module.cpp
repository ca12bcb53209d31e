#include "tools/system/plugin_module.h"

#include <bit>
#include <stdexcept>
#include <string>

#include "tools/system/path_text.h"

namespace NSystem {

namespace {

constexpr char kExport[] = "GetActorInfo";

}  // namespace

PluginModule::PluginModule(const std::filesystem::path& path)
    : mLibrary(path), mGetActorInfo(std::bit_cast<GetActorInfoFunction>(mLibrary.Find(kExport)))
{
    if (mGetActorInfo == nullptr) {
        throw std::runtime_error(TextOf(path) + " has no export " + kExport);
    }
}

}  // namespace NSystem
