// The name and version of the module, for strings(1). Nothing in the module reads them, so the
// attribute keeps the compiler from dropping them.

namespace {

[[gnu::used]] constexpr char kModuleVersion[] = "Word Sifter " WORD_SIFTER_VERSION;

}  // namespace
