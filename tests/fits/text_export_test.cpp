// Text exports and the pages of the header viewer.
#include "fits/text_export.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fits/header_page.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

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
  const struct {
    int height, cards, value, first, last;  // value -1: the minimum, -2: the maximum
  } cases[] = {{9000, 50, -1, 1, 44}, {9000, 50, -2, 9, 50}, {9000, 50, 23, 4, 47},     {2505, 10, -1, 2, 10},
               {9000, 0, -1, 1, 0},   {9100, 50, -1, 1, 45}, {9000, 200, 178, 159, 200}};
  for (const auto& c : cases) {
    const ScrollBar bar = HeaderScroll(c.height, c.cards);
    ScrollBar scroll = bar;
    scroll.value = c.value == -1 ? bar.min : c.value == -2 ? bar.max : c.value;
    const HeaderPage page = PageAt(c.height, c.cards, scroll);
    EXPECT_EQ(std::pair(page.first, page.last), std::pair(c.first, c.last)) << c.cards << " " << c.value;
  }
}

TEST(HeaderPage, ScrollsAsFarAsTheCardsReachAndShrinksAroundFew) {
  EXPECT_EQ(HeaderScroll(9000, 50), (ScrollBar{22, 28, 22, 1, 42}));
  EXPECT_EQ(HeaderScroll(9000, 10), (ScrollBar{22, 22, 22, 1, 42}));
  EXPECT_EQ(HeightOfAllCards(10), 2505);
}

}  // namespace
}  // namespace halmek::test
