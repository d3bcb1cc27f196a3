// Scales and sections of a header when the data change, its pages in the viewer, and text exports.
#include "fits/header.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "fits/fits_bytes.h"
#include "fits/header_page.h"
#include "fits/text_export.h"
#include "fits/world_coordinates.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

FitsHeader HeaderOf(const Cards& cards) {
  FitsHeader header;
  SetCards(header, cards);
  return header;
}
// The keywords with their values, a blank between them.
Cards Values(const FitsHeader& header) {
  Cards values;
  for (const std::string& card : CardsOf(header))
    values.push_back(PartsOf(card).keyword + " " + PartsOf(card).value);
  return values;
}

TEST(WorldCoordinates, ReferencePixelsFollowATrimAndSectionsGo) {
  FitsHeader header = HeaderOf({"CRPIX1  = 1.5E2 / kept", "CRPIX1A = 3", "CRPIX2  = 7", "CRPIX3  = 9",
                                "LTV1    = -2", "LTM1_1  = 0.5", "CRVAL2  = 4", "DATASEC = '[1:60,1:12]'",
                                "BSEC12  = '[1:4,1:12]'", "CCDSIZE = '[1:99,1:99]'", "SECTION = 'B'"});
  FollowTrim(header, 5, 3);
  EXPECT_EQ(Values(header), (Cards{"CRPIX1 146", "CRPIX1A -1", "CRPIX2 5", "CRPIX3 9", "LTV1 -6",
                                   "LTM1_1 0.5", "CRVAL2 4", "CCDSIZE '[1:99,1:99]'", "SECTION 'B'"}));
  // Without a reference pixel a scale counts from pixel 0.
  header = HeaderOf({"CRVAL1  = 4000", "CD2_2   = 3"});
  FollowTrim(header, 5, 1);
  EXPECT_EQ(Values(header), (Cards{"CRVAL1 4000", "CD2_2 3", "CRPIX1 -4"}));
}

TEST(WorldCoordinates, ASpectrumKeepsOnlyAScaleOfWavelengths) {
  const Cards rows{"CRPIX2  = 7", "CD1_2   = 1", "LTV2    = 1", "PV2_1   = 3", "TRIMSEC = '[1:9,1:9]'"};
  const std::pair<Cards, bool> cases[] = {
      {{"CRVAL1  = 4000"}, true},
      {{"CD1_1   = 2", "CTYPE1  = 'LINEAR  '"}, true},
      {{"CRVAL1  = 4000", "CTYPE1  = 'WAVE-LOG'"}, true},
      {{"CRVAL1  = 1", "CD1_1   = 1", "CTYPE1  = 'PIXEL   '"}, false},
      {{"CRVAL1  = 12.5", "CTYPE1  = 'RA---TAN'"}, false},
      {{"CRVAL1  = 12.5", "CTYPE1  = 'LAMBDA'", "CTYPE2  = 'DEC--TAN'"}, false},
      {{"CRPIX1  = 4", "CDELT1  = 1"}, false}};
  for (const auto& [scale, isOfWavelengths] : cases) {
    Cards cards = scale;
    cards.insert(cards.end(), rows.begin(), rows.end());
    FitsHeader header = HeaderOf(cards);
    EXPECT_EQ(HasWavelengthScale(header), isOfWavelengths) << scale.back();
    DropRows(header);
    EXPECT_EQ(CardsOf(header).size(), isOfWavelengths ? scale.size() : 0) << scale.back();
  }
  EXPECT_TRUE(HasWavelengthScale(HeaderOf({"HISTORY  Halmek corrected the dispersion to linear."})));
}

TEST(TextExport, WritesASpectrumInTwoColumnsAndAFrameColumnByColumn) {
  const TemporaryFolder folder;
  const auto s = SessionIn(folder.path());
  const std::string path = folder.File("out.txt");
  SetSpectrum(*s, 2, {1.5, -20, 1e20});
  SaveSpectrumText(*s, 2, "out.txt");
  EXPECT_EQ(ReadFile(path),
            " 1             1.5 \r\n"
            " 2            -20 \r\n"
            " 3             1E+20 \r\n");
  EXPECT_EQ(s->slot[2].textFileName, "out.txt");
  EXPECT_EQ(s->writtenFiles, std::vector{path});

  SetFrame(*s, 2, 3, [](int c, int r) { return c == 2 && r == 3 ? -0.25 : 10 * c + r; });
  SaveFrameText(*s, "out.txt");
  EXPECT_EQ(ReadFile(path), " 11 , 12 , 13 \r\n 21 , 22 ,-0.25 \r\n");
}

TEST(HeaderPage, ShowsTheCardsOfTheScrollBarsPlace) {
  // The height, the cards, the value (-1: the minimum, -2: the maximum), the first and the last card shown.
  const std::array<int, 5> cases[] = {{9000, 50, -1, 1, 44},     {9000, 50, -2, 9, 50}, {9000, 50, 23, 4, 47},
                                      {2505, 10, -1, 2, 10},     {9000, 0, -1, 1, 0},   {9100, 50, -1, 1, 45},
                                      {9000, 200, 178, 159, 200}};
  for (const auto& [height, cards, value, first, last] : cases) {
    ScrollBar scroll = HeaderScroll(height, cards);
    scroll.value = value == -1 ? scroll.min : value == -2 ? scroll.max : value;
    const HeaderPage page = PageAt(height, cards, scroll);
    EXPECT_EQ(std::pair(page.first, page.last), std::pair(first, last)) << cards << " " << value;
  }
}

TEST(HeaderPage, ScrollsAsFarAsTheCardsReachAndShrinksAroundFew) {
  EXPECT_EQ(HeaderScroll(9000, 50), (ScrollBar{22, 28, 22, 1, 42}));
  EXPECT_EQ(HeaderScroll(9000, 10), (ScrollBar{22, 22, 22, 1, 42}));
  EXPECT_EQ(HeightOfAllCards(10), 2505);
}

}  // namespace
}  // namespace halmek::test
