// The entry point of the compiler's own fuzzer, for the reader that the build names.
#include <cstdint>

#include "fuzz/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const halmek::test::Reader& reader = halmek::test::ReaderNamed(HALMEK_FUZZED_READER);
  halmek::test::Feed(reader, {reinterpret_cast<const char*>(data), size});
  return 0;
}
