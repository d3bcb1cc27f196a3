// Scales and sections of a header when the data change.
#include "fits/world_coordinates.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fits/fits_bytes.h"
#include "fits/header.h"

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
  const struct {
    Cards cards;
    bool isOfWavelengths;
  } cases[] = {{{"CRVAL1  = 4000"}, true},
               {{"CD1_1   = 2", "CTYPE1  = 'LINEAR  '"}, true},
               {{"CRVAL1  = 4000", "CTYPE1  = 'WAVE-LOG'"}, true},
               {{"CRVAL1  = 4000", "CTYPE1  = 'AWAV'"}, true},
               {{"CRVAL1  = 1", "CD1_1   = 1", "CTYPE1  = 'PIXEL   '"}, false},
               {{"CRVAL1  = 12.5", "CTYPE1  = 'RA---TAN'"}, false},
               {{"CRVAL1  = 12.5", "CTYPE1  = 'LAMBDA'", "CTYPE2  = 'DEC--TAN'"}, false},
               {{"CRPIX1  = 4", "CDELT1  = 1"}, false}};
  for (const auto& c : cases) {
    Cards cards = c.cards;
    cards.insert(cards.end(), rows.begin(), rows.end());
    FitsHeader header = HeaderOf(cards);
    EXPECT_EQ(HasWavelengthScale(header), c.isOfWavelengths) << c.cards.back();
    DropRows(header);
    EXPECT_EQ(CardsOf(header).size(), c.isOfWavelengths ? c.cards.size() : 0) << c.cards.back();
  }
  EXPECT_TRUE(HasWavelengthScale(HeaderOf({"HISTORY  Halmek corrected the dispersion to linear."})));
}

}  // namespace
}  // namespace halmek::test
