// Files, pipes and devices to read bytes from.

#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace NSystem {

// Leaves standard input open.
struct InputCloser {
    void operator()(std::FILE* file) const;
};
using InputFile = std::unique_ptr<std::FILE, InputCloser>;

// Opens a file to read its bytes unchanged. path: "-" is standard input. Throws std::system_error.
InputFile OpenInputFile(const std::string& path);

// Returns the size of a regular file in bytes; none for a pipe, a device and the like, whose
// reader may have to wait.
std::optional<std::uint64_t> RegularFileSize(std::FILE* file);

}  // namespace NSystem
