#include "actor_info.h"

#include <algorithm>
#include <cstring>

#include "icon.h"
#include "message_processing.h"
#include "parser_data.h"
#include "pattern_dialog.h"
#include "persistent_state.h"
#include "property_texts.h"

namespace NActor {

namespace {

void NoOpCallback() {}

}  // namespace

}  // namespace NActor

#if defined(__GNUC__)
[[gnu::visibility("default")]]
#endif
void GetActorInfo(void* /*unread*/, NActor::ActorInfo* outActorInfo)
{
    using namespace NActor;
    ActorInfo& info = *outActorInfo;

    std::memcpy(info.mActorClass, "ltnc", sizeof info.mActorClass);
    std::memcpy(info.mActorId, "SoW_", sizeof info.mActorId);
    info.mHostWord = 256;
    info.mDisplayName = kDisplayName;

    info.DefinitionStringCallback = DefinitionStringCallback;
    info.PropertyHelpCallback = PropertyHelpCallback;
    info.CreateCallback = CreateCallback;
    info.DisposeCallback = DisposeCallback;
    info.NoOpCallback = NoOpCallback;
    info.InputChangedCallback = InputChangedCallback;
    std::fill(std::begin(info.mNull680), std::end(info.mNull680), nullptr);
    info.IconSizeCallback = IconSizeCallback;
    info.DrawIconCallback = DrawIconCallback;
    info.mNull736 = nullptr;
    info.SetStateCallback = SetStateCallback;
    info.StateSizeCallback = StateSizeCallback;
    info.GetStateCallback = GetStateCallback;
    info.DoubleClickCallback = DoubleClickCallback;
    info.DefaultStateCallback = DefaultStateCallback;
}
