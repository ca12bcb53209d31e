// The header line of a table: a first message that names the fields of the others.

#pragma once

#include <optional>
#include <string_view>

#include "values.h"
#include "writer.h"

namespace NSuggest {

// Returns the names in the first message if it is the header line of the others. The result has no
// given names.
std::optional<KnownNames> HeadingsIn(const Column& messages);

// Returns the names of the fields of a sentence of a GPS receiver, as $GPGGA,; no names for any
// other message.
KnownNames SentenceNames(std::string_view message);

}  // namespace NSuggest
