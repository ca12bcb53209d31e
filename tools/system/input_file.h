// Files, pipes and devices to read bytes from.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <system_error>

namespace NSystem {

// Leaves standard input open.
struct InputCloser {
    void operator()(std::FILE* file) const;
};
using InputFile = std::unique_ptr<std::FILE, InputCloser>;

// Opens a file to read its bytes unchanged. path: "-" is standard input. Throws std::system_error.
InputFile OpenInputFile(const std::string& path);

// Waits until there are bytes to read, and reads as many as there are, at most the size of the
// buffer, which must not be empty. Returns their number; 0 at the end of the file, and after an
// error, which is then in outError. Not to be combined with the functions of the C library that
// read.
std::size_t ReadSome(std::FILE* file, std::span<char> buffer, std::error_code& outError);

// Returns the size of a regular file in bytes; none for a pipe, a device and the like, whose
// reader may have to wait.
std::optional<std::uint64_t> RegularFileSize(std::FILE* file);

}  // namespace NSystem
