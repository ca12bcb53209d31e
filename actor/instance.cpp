#include "instance.h"

#include <memory>
#include <new>

#include "parse_string.h"
#include "parser_data.h"
#include "record_watch.h"

namespace NActor {

void CreateInstance(const HostCall& call) noexcept
{
    call.Info().mActorDataPtr = nullptr;
    void* const block = call.AllocateBlock(sizeof(ParserData));
    if (!call.Check(block != nullptr, "info != nil", __LINE__)) return;
    auto* const record = new (block) ParserData;
    record->mActorInfo = &call.Info();
    call.Info().mActorDataPtr = record;
}

void DisposeInstance(const HostCall& call) noexcept
{
    ParserData* const record = call.Record();
    if (!call.Check(record != nullptr, "info != nil", __LINE__)) return;
    const RecordWatch watch(record);
    DropParseString(call, *record);
    call.Check(watch.Record() != nullptr && call.Record() != nullptr,
               "ioActorInfo->mActorDataPtr != nil", __LINE__);
    // A host that disposed of the instance from inside that release has left nothing to do.
    if (watch.Record() == nullptr) return;
    // From here on nothing finds the record. What was stored from inside the release goes too.
    call.Info().mActorDataPtr = nullptr;
    RecordWatch::EndAll(*record);
    DropParseString(call, *record);
    std::destroy_at(record);
    call.ReleaseBlock(record);
}

}  // namespace NActor
