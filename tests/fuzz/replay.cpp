// Gives each seed to its reader, which must take or refuse it as the listing says, and then many changes of
// it, for compilers without a fuzzer of their own.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "fuzz/mutations.h"
#include "fuzz/readers.h"
#include "support/test_session.h"

namespace {

using namespace halmek::test;

void FeedMutations(const Reader& reader, const std::string& bytes, int count) {
  Random random(1);
  for (int i = 0; i < count; ++i) {
    std::string mutated = bytes;
    do
      reader.isFits() && random() % 4 != 0 ? MutateCards(mutated, random) : MutateBytes(mutated, random);
    while (random() % 3 != 0);
    Feed(reader, mutated);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " SEEDS MUTATIONS\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::ifstream listing(folder / "listing.tsv");
  int seeds = 0, failed = 0;
  // Three fields a line, separated by tabs.
  for (std::string reader, name, outcome; std::getline(listing, reader, '\t') &&
                                          std::getline(listing, name, '\t') && std::getline(listing, outcome);
       ++seeds) {
    // Said before it is fed, so that one that ends the program is known, too.
    std::cout << reader << '/' << name << std::endl;
    try {
      const std::string bytes = ReadFile((folder / reader / name).string());
      if (const std::string found = Feed(ReaderNamed(reader), bytes); found != outcome)
        throw std::runtime_error("expected '" + outcome + "', not '" + found + "'");
      FeedMutations(ReaderNamed(reader), bytes, std::atoi(argv[2]));
    } catch (const std::exception& problem) {
      std::cout << "FAILED: " << problem.what() << '\n';
      ++failed;
    }
  }
  std::cout << seeds << " seeds, " << failed << " failed\n";
  return seeds == 0 || failed > 0 ? 1 : 0;
}
