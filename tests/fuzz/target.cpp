// The entry points of the compiler's own fuzzer, for the reader that the build names.
#include <algorithm>
#include <cstdint>

#include "fuzz/mutations.h"
#include "fuzz/readers.h"

namespace {

const halmek::test::Reader& TheReader() {
  static const halmek::test::Reader& reader = halmek::test::ReaderNamed(HALMEK_FUZZED_READER);
  return reader;
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t mostBytes);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  halmek::test::Feed(TheReader(), {reinterpret_cast<const char*>(data), size});
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t mostBytes, unsigned seed) {
  halmek::test::Random random(seed);
  if (!TheReader().isFits() || random() % 4 == 0)
    return LLVMFuzzerMutate(data, size, mostBytes);
  std::string file(reinterpret_cast<const char*>(data), size);
  do
    halmek::test::MutateCards(file, random);
  while (random() % 2 == 0);
  file.resize(std::min(file.size(), mostBytes));
  std::copy(file.begin(), file.end(), data);
  return file.size();
}
