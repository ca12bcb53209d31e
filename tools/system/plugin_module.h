// The built plug-in, opened as the real host opens it: by the dynamic loader, with nothing linked.

#pragma once

#include <filesystem>

#include "actor/actor_info.h"
#include "tools/system/shared_library.h"

namespace NSystem {

// Keeps the module loaded for as long as it lives.
class PluginModule {
  public:
    using GetActorInfoFunction = decltype(&::GetActorInfo);

    // Throws std::runtime_error if the module can't be loaded or lacks its export.
    explicit PluginModule(const std::filesystem::path& path);

    GetActorInfoFunction GetActorInfo() const { return mGetActorInfo; }

  private:
    SharedLibrary mLibrary;
    GetActorInfoFunction mGetActorInfo;
};

}  // namespace NSystem
