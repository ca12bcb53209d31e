// One instance of the actor, and what the host does to it.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "actor/actor_info.h"
#include "actor/host_interface.h"
#include "property.h"

namespace NStandIn {

// Made by StandInHost::CreateInstance, and owned by the host.
class Instance {
  public:
    // The host's side alone, without a call of the actor. info: copied. inputs, outputs: the fixed
    // properties.
    Instance(const NActor::ActorInfo& info, std::vector<Property> inputs,
             std::vector<Property> outputs);
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;
    ~Instance();

    // Calls CreateCallback.
    void Create();
    // Calls DisposeCallback each time. The actor's record is gone after the first.
    void Dispose();
    // Disposes of the instance and creates it again, with the same ActorInfo and only the fixed
    // output. Does nothing if it has been disposed of.
    void Recreate();

    // Passes a copy of exactly these bytes, which is gone after the call; null if there are none.
    void SetState(std::string_view bytes);
    // Passes the arguments unchanged, even if they don't fit each other.
    void SetState(const void* bytes, std::uint32_t size);
    void SetDefaultState();
    // Saves the state. capacity: the value passed to the actor; the buffer has room for no more
    // than the state needs.
    std::string State(std::uint32_t capacity = 0xFFFFFFFF);

    void SetEomChar(std::uint8_t eomChar);
    // Makes text, up to its first NUL, the value of the text input, and notifies the actor. The
    // memory of the previous value is released, or reused if the host is plain.
    void Deliver(std::string_view text);
    // Notifies the actor of a change of an input. value: may be null.
    void Notify(std::uint16_t input, const NActor::HostValue* value);

    // Double click; the host's script runs the dialog. Returns the changed flag. asksForFlag: if
    // false, the actor gets a null pointer for the flag, and the result is false.
    bool DoubleClick(bool asksForFlag = true);

    // Asks for a help text in a buffer of size bytes. Returns the whole buffer.
    std::string Help(NActor::PropertyKind kind, std::uint16_t number, std::uint32_t size);

    // Returns the four words of the icon's size. host: passed on unchanged.
    std::array<std::uint16_t, 4> IconSize(void* host);
    void DrawIcon(void* host, std::uint16_t part, NActor::HostWord place, std::uint8_t state);

    NActor::ActorInfo& Info() { return mInfo; }
    const std::vector<Property>& Inputs() const { return mInputs; }
    const std::vector<Property>& Outputs() const { return mOutputs; }  // output 1 first

    // For the operations of the host. Properties are numbered from 1; null if there is none of
    // that number.
    const NActor::HostValue* FindInputValue(std::uint16_t input) const;
    Property* FindOutput(std::uint16_t output)
    {
        return output < 1 || output > mOutputs.size() ? nullptr : &mOutputs[output - 1U];
    }
    void AddOutput(Property output) { mOutputs.push_back(std::move(output)); }
    // output: the number of an output that exists.
    void RemoveOutput(std::uint16_t output) { mOutputs.erase(mOutputs.begin() + (output - 1)); }

  private:
    // Replaces the value of the text input.
    void SetInputText(std::string_view text);

    NActor::ActorInfo mInfo;
    std::vector<Property> mInputs;
    std::vector<Property> mOutputs;
    std::unique_ptr<NActor::HostValue> mTextValue;  // of the text input
    std::unique_ptr<unsigned char[]> mTextString;   // the HostString in mTextValue, or null
    std::size_t mTextRoom = 0;                      // bytes in mTextString
};

}  // namespace NStandIn
