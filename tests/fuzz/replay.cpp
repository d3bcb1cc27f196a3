// Gives each seed to its reader, which must take or refuse it as the listing says, and then many changes of
// it, for compilers without a fuzzer of their own.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <stdexcept>

#include "fuzz/readers.h"
#include "support/test_session.h"

namespace {

using namespace halmek::test;

// One change of a file: another byte, a piece cut out or doubled, or the end lost. Pieces are as long as
// cards of a header and often lie like them, so that cards go, come twice or change their values and the rest
// holds.
void Change(std::string& file, std::minstd_rand& random) {
  constexpr size_t card = 80;
  const auto place = [&](size_t step) { return random() % (file.size() / step + 1) * step; };
  const size_t step = random() % 2 == 0 ? 1 : card, at = place(step), from = place(step);
  switch (random() % 6) {
    case 0:
      file.resize(at);
      break;
    case 1:
      file.erase(at, card);
      break;
    case 2:
      file.insert(at, file.substr(from, card));
      break;
    case 3:
      file.replace(std::min(at + 8, file.size()), card - 8,
                   file.substr(std::min(from + 8, file.size()), card - 8));
      break;
    case 4:
      file.insert(at, 1, static_cast<char>(random()));
      break;
    default:
      file.replace(at, 1, 1, " \"',.-+/eE#$\r\n0123456789\x7F\xFF"[random() % 26]);
  }
}

void FeedChanges(const Reader& reader, const std::string& bytes, int count) {
  std::minstd_rand random(1);
  for (int i = 0; i < count; ++i) {
    std::string changed = bytes;
    do
      Change(changed, random);
    while (random() % 3 != 0);
    Feed(reader, changed);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " SEEDS CHANGES\n";
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
      FeedChanges(ReaderNamed(reader), bytes, std::atoi(argv[2]));
    } catch (const std::exception& problem) {
      std::cout << "FAILED: " << problem.what() << '\n';
      ++failed;
    }
  }
  std::cout << seeds << " seeds, " << failed << " failed\n";
  return seeds == 0 || failed > 0 ? 1 : 0;
}
