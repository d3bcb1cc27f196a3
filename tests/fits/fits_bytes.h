// FITS files for tests, from the texts of their cards and the bytes of their pixels.
#pragma once

#include <string>
#include <vector>

namespace halmek::test {

using Cards = std::vector<std::string>;

// The mandatory cards of an image, followed by others.
inline Cards ImageCards(const std::string& bitpix, const std::string& columns, const std::string& rows,
                        const Cards& others = {}) {
  Cards cards{"SIMPLE  =                    T", "BITPIX  = " + bitpix, "NAXIS   = 2", "NAXIS1  = " + columns,
              "NAXIS2  = " + rows};
  cards.insert(cards.end(), others.begin(), others.end());
  return cards;
}

// The cards padded to 80 characters, END, blanks up to a whole record, and the data.
inline std::string FitsBytes(Cards cards, const std::string& data) {
  cards.push_back("END");
  std::string bytes;
  for (std::string& card : cards) {
    card.resize(80, ' ');
    bytes += card;
  }
  bytes.resize((bytes.size() + 2879) / 2880 * 2880, ' ');
  return bytes + data;
}

inline std::string Bytes(const std::vector<int>& values) { return {values.begin(), values.end()}; }

}  // namespace halmek::test
