// The built plug-in, opened as the real host opens it: with the dynamic loader, and nothing linked.

#pragma once

#include <string>

#include "actor/actor_info.h"

namespace NSystem {

// Keeps the module loaded for as long as it lives.
class PluginModule {
  public:
    using Export = decltype(&::GetActorInfo);

    // path: of the module, UTF-8 on Windows. Throws std::runtime_error, with the loader's word on
    // it, if the module can't be loaded whole or lacks its export.
    explicit PluginModule(const std::string& path);
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;
    ~PluginModule();

    Export GetActorInfo() const { return mGetActorInfo; }

  private:
    void* mHandle;
    Export mGetActorInfo;
};

}  // namespace NSystem
