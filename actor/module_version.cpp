// The name and version of the module, for strings(1). Nothing in the module reads them, so the
// attributes keep the compiler and the linker from dropping them.

#if __has_cpp_attribute(gnu::retain) && defined(__ELF__)
#define WORD_SIFTER_KEPT gnu::used, gnu::retain
#else
#define WORD_SIFTER_KEPT gnu::used
#endif

namespace {

[[WORD_SIFTER_KEPT]] constexpr char kModuleVersion[] = "Word Sifter " WORD_SIFTER_VERSION;

}  // namespace
