// Feeds the kept corpus, and many mutations of it, to the readers; for compilers without a fuzzer of their
// own.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "fuzz/readers.h"
#include "support/test_session.h"

namespace {

void Feed(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
}

// A few changes of one input: other bytes, digits, pieces cut out or doubled. The first byte, which chooses
// the reader, stays.
std::string Mutated(std::string input, std::mt19937& random) {
  const auto place = [&] { return 1 + random() % std::max<size_t>(1, input.size() - 1); };
  for (auto change = random() % 6 + 1; change > 0 && input.size() > 2; --change) {
    switch (random() % 6) {
      case 0:
        input[place() % input.size()] = static_cast<char>(random());
        break;
      case 1:
        input[place() % input.size()] = static_cast<char>('0' + random() % 10);
        break;
      case 2:
        input.resize(place());
        break;
      case 3:
        input.erase(place() % input.size(), random() % 90);
        break;
      case 4:
        input.insert(place() % input.size(), input.substr(place() % input.size(), random() % 90));
        break;
      default:
        input[place() % input.size()] = " \"',.-+/eE#$\r\n"[random() % 14];
    }
  }
  return input;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s CORPUS MUTATIONS\n", argv[0]);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1]))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());

  std::mt19937 random(1);
  const int mutations = std::stoi(argv[2]);
  for (const auto& file : files) {
    const std::string input = halmek::test::ReadFile(file.string());
    Feed(input);
    for (int i = 0; i < mutations; ++i)
      Feed(Mutated(input, random));
  }
  std::printf("%zu inputs and %d mutations of each\n", files.size(), mutations);
  return files.empty() ? 1 : 0;
}
