#include "property_definitions.h"

#include <cstdlib>
#include <sstream>

namespace NStandIn {

namespace {

// The columns of a line that hold a property: "INPROP name" or "OUTPROP name", id, type, display,
// minimum, maximum and initial value. Any further columns are for the real host alone.
enum Column { kKindAndName, kId, kType, kDisplay, kMinimum, kMaximum, kInitial, kColumnCount };

// Columns are separated by one or more tabs.
std::vector<std::string> SplitColumns(const std::string& line)
{
    std::vector<std::string> columns;
    std::istringstream stream(line);
    for (std::string column; std::getline(stream, column, '\t');) {
        while (!column.empty() && column.back() == ' ') column.pop_back();
        if (!column.empty()) columns.push_back(column);
    }
    return columns;
}

// "*" isn't a number, and reads as 0.
Value ReadValue(NActor::HostValueTag tag, const std::string& column)
{
    Value value;
    value.mBits.mTag = tag;
    if (tag == NActor::kValueString) {
        value.mText = column;
    } else {
        value.mBits.SetInteger(std::strtoll(column.c_str(), nullptr, 10));
    }
    return value;
}

}  // namespace

void ReadDefinitions(const std::string& definitions, std::vector<Property>& ioInputs,
                     std::vector<Property>& ioOutputs)
{
    std::istringstream stream(definitions);
    for (std::string line; std::getline(stream, line, '\r');) {
        const std::vector<std::string> columns = SplitColumns(line);
        if (columns.size() < kColumnCount) continue;
        const std::size_t blank = columns[kKindAndName].find(' ');
        if (blank == std::string::npos) continue;
        Property property;
        property.mName = columns[kKindAndName].substr(blank + 1);
        property.mId = columns[kId];
        const auto tag = columns[kType] == "string" ? NActor::kValueString : NActor::kValueInteger;
        property.mMinimum = ReadValue(tag, columns[kMinimum]);
        property.mMaximum = ReadValue(tag, columns[kMaximum]);
        property.mInitial = property.mValue = ReadValue(tag, columns[kInitial]);
        const bool isInput = columns[kKindAndName].compare(0, blank, "INPROP") == 0;
        (isInput ? ioInputs : ioOutputs).push_back(property);
    }
}

}  // namespace NStandIn
