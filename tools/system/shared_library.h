// A library that is loaded while the program runs.

#pragma once

#include <filesystem>

namespace NSystem {

// Keeps the library loaded for as long as it lives.
class SharedLibrary {
  public:
    // Throws std::runtime_error, with the loader's message, if the library or one that it needs
    // can't be loaded. A path without a folder is searched for as the system does.
    explicit SharedLibrary(const std::filesystem::path& path);
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary();

    // Returns the address of an export, or null if there is none of that name.
    void* Find(const char* name) const;

  private:
    void* mHandle;
};

}  // namespace NSystem
