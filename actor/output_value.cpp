#include "output_value.h"

namespace NActor {

OutputValue::OutputValue(const Host& host, const NPattern::Parameter& parameter) : mHost(host)
{
    switch (parameter.mType) {
        case NPattern::kTypeString:
            // The host reads the tag before it makes the text.
            mValue.mTag = kValueString;
            host.Operations().MakeStringValue(parameter.mStringValue.c_str(), &mValue);
            mOwned = true;
            break;
        case NPattern::kTypeFloat: mValue.SetFloat(parameter.mFloatValue); break;
        default: mValue.SetInteger(parameter.mIntValue); break;
    }
}

}  // namespace NActor
