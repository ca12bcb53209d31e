// The operations of the host, by number and by name.

#pragma once

namespace NStandIn {

// In the order of HostCallbacks.
enum Operation {
    kGetInputValue,
    kSetOutputValue,
    kPropertyHelpIndex,
    kAddProperty,
    kRemoveProperty,
    kGetPropertyCount,
    kAllocateBlock,
    kReleaseBlock,
    kRunTextDialog,
    kReportAssertion,
    kLoadIconRecord,
    kDrawIconRecord,
    kMakeStringValue,
    kReleaseStringValue,
    kChangeProperty,
    kNewTextHandle,
    kDisposeTextHandle,
    kTextHandleSize,
    kLockTextHandle,
    kUnlockTextHandle,
    kOperationCount
};

inline constexpr const char* kOperationNames[kOperationCount] = {
    "GetInputValue",     "SetOutputValue",     "PropertyHelpIndex", "AddProperty",
    "RemoveProperty",    "GetPropertyCount",   "AllocateBlock",     "ReleaseBlock",
    "RunTextDialog",     "ReportAssertion",    "LoadIconRecord",    "DrawIconRecord",
    "MakeStringValue",   "ReleaseStringValue", "ChangeProperty",    "NewTextHandle",
    "DisposeTextHandle", "TextHandleSize",     "LockTextHandle",    "UnlockTextHandle",
};

}  // namespace NStandIn
