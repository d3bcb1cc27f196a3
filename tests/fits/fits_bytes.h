// FITS files for tests, from the texts of their cards and the bytes of their pixels, and what CFITSIO reads.
#pragma once

#include <fitsio.h>
#include <gtest/gtest.h>

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

inline std::string Padded(std::string card) {
  card.resize(80, ' ');
  return card;
}

// The cards padded to 80 characters, END, blanks up to a whole record, and the data.
inline std::string FitsBytes(Cards cards, const std::string& data) {
  cards.push_back("END");
  std::string bytes;
  for (const std::string& card : cards)
    bytes += Padded(card);
  bytes.resize((bytes.size() + 2879) / 2880 * 2880, ' ');
  return bytes + data;
}

inline std::string Bytes(const std::vector<int>& values) { return {values.begin(), values.end()}; }

// What a file holds: its cards without trailing blanks, its axes, and its pixels row after row.
struct Image {
  Cards cards;
  std::vector<long> axes;
  std::vector<double> pixels;
  bool operator==(const Image&) const = default;
};

inline Image ReadByCfitsio(const std::string& path) {
  Image image;
  fitsfile* file = nullptr;
  int status = 0, cards = 0, naxis = 0;
  char card[FLEN_CARD];
  fits_open_diskfile(&file, path.c_str(), READONLY, &status);
  fits_get_hdrspace(file, &cards, nullptr, &status);
  for (int k = 1; k <= cards && fits_read_record(file, k, card, &status) == 0; ++k)
    image.cards.push_back(card);
  fits_get_img_dim(file, &naxis, &status);
  image.axes.resize(naxis);
  fits_get_img_size(file, naxis, image.axes.data(), &status);
  long count = status == 0 ? 1 : 0;
  for (const long length : image.axes)
    count *= length;
  image.pixels.resize(count);
  fits_read_img(file, TDOUBLE, 1, count, nullptr, image.pixels.data(), nullptr, &status);
  fits_close_file(file, &status);
  EXPECT_EQ(status, 0);
  return image;
}

}  // namespace halmek::test
