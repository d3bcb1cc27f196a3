// Changes of files.
#include "fuzz/mutations.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "fits/header.h"

namespace halmek::test {
namespace {

constexpr std::string_view keywords[] = {"SIMPLE", "BITPIX", "BZERO",  "BSCALE", "NAXIS",
                                         "NAXIS1", "NAXIS2", "NAXIS3", "OBJECT", "TRIM",
                                         "CRVAL1", "CD1_1",  "EXTEND", "END",    "COMMENT"};
constexpr std::string_view values[] = {"0",    "1",    "2",   "-1",  "3",    "12",    "500",   "501",
                                       "3000", "3001", "8",   "15",  "16",   "17",    "32",    "-32",
                                       "-64",  "64",   "2D0", "1E9", "-1E9", "1E309", "32768", "-32768",
                                       ".5",   "1E-6", "NAN", "T",   "",     "'",     "''",    "'A/B'"};

size_t Below(size_t count, Random& random) { return count == 0 ? 0 : random() % count; }

}  // namespace

void MutateCards(std::string& file, Random& random) {
  constexpr size_t card = cardLength, record = recordLength;
  if (file.size() < 2 * card)
    return MutateBytes(file, random);
  // Two cards of the header, END included, and the end of its last record: what is put into the header pushes
  // blanks out there, so that the data stay where they are.
  const size_t end = std::min(file.find("END     "), file.size() - card);
  const size_t one = Below(end / card + 1, random) * card, other = Below(end / card + 1, random) * card;
  const size_t dataStart = std::min((end / record + 1) * record, file.size());
  const size_t anywhere = Below(file.size(), random),
               anyRecord = Below(file.size() / record + 1, random) * record;

  std::string text = file.substr(one, card);
  switch (random() % 10) {
    case 0:
      text = NumberCard(keywords[Below(std::size(keywords), random)],
                        values[Below(std::size(values), random)], " /");
      text.resize(card, ' ');
      [[fallthrough]];
    case 1:
      file.insert(other, text).erase(dataStart, card);
      break;
    case 2:
      file.insert(dataStart, card, ' ').erase(one, card);
      break;
    case 3:
      file.erase(one, card).insert(other, text);
      break;
    case 4:
    case 5:
      text = NumberCard(text.substr(0, 8), values[Below(std::size(values), random)], "");
      file.replace(one, text.size(), text);
      break;
    case 6:
      random() % 2 == 0 ? file.erase(anyRecord, record) : file.insert(anyRecord, record, ' ');
      break;
    case 7:
      random() % 2 == 0 ? file.insert(anywhere, 1, ' ') : file.erase(one, 1);
      break;
    case 8:
      file.resize(file.size() - Below(std::min(file.size(), record), random));
      break;
    default:
      // Signs, infinities and the ends of whole numbers among the pixels.
      file[dataStart < file.size() ? dataStart + anywhere % (file.size() - dataStart) : anywhere] =
          "\x00\x7F\x80\xFF\xF0\x01"[random() % 6];
  }
}

void MutateBytes(std::string& file, Random& random) {
  if (file.empty())
    file = "\n";
  const size_t at = Below(file.size(), random), from = Below(file.size(), random);
  switch (random() % 5) {
    case 0:
      file[at] = static_cast<char>(random());
      break;
    case 1:
      file.resize(at);
      break;
    case 2:
      file.erase(at, random() % 90);
      break;
    case 3:
      file.insert(at, file.substr(from, random() % 90));
      break;
    default:
      file[at] = " \"',.-+/eE#$\r\n0123456789"[random() % 24];
  }
}

}  // namespace halmek::test
