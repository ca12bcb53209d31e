#include "tools/system/plugin_module.h"

#include <bit>
#include <stdexcept>
#include <string>

namespace NSystem {

namespace {

constexpr char kExport[] = "GetActorInfo";

}  // namespace

PluginModule::PluginModule(const std::filesystem::path& path)
    : mLibrary(path), mGetActorInfo(std::bit_cast<GetActorInfoFunction>(mLibrary.Find(kExport)))
{
    if (mGetActorInfo == nullptr) {
        throw std::runtime_error(path.string() + " has no export " + kExport);
    }
}

}  // namespace NSystem
