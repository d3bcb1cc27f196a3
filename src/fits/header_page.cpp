// Paging of header cards.
#include "fits/header_page.h"

#include <algorithm>

#include "numeric/rounding.h"

namespace halmek {
namespace {

double LinesIn(int windowHeight) { return (windowHeight - headerBand) / headerLineHeight; }

}  // namespace

ScrollBar HeaderScroll(int windowHeight, int cardCount) {
  const int lines = static_cast<int>(LinesIn(windowHeight));
  ScrollBar scroll;
  scroll.min = scroll.value = RoundToInt(lines / 2.0);
  scroll.max = std::max(scroll.min, RoundToInt(cardCount - lines / 2.0));
  scroll.smallChange = 1;
  scroll.largeChange = std::max(1, lines - 1);
  return scroll;
}

HeaderPage PageAt(int windowHeight, int cardCount, const ScrollBar& scroll) {
  const int lines = LinesOfPage(windowHeight) - 1;
  HeaderPage page;
  page.first = scroll.value == scroll.min ? 1 : std::max(1, RoundToInt(scroll.value - lines / 2.0 + 2));
  page.last = page.first + lines;
  if (page.last > cardCount) {
    page.last = cardCount;
    page.first = std::max(1, cardCount - lines + 2);
  }
  return page;
}

// Rounded here, truncated for the scroll bar: a line that shows by more than half counts for the page.
int LinesOfPage(int windowHeight) { return std::max(0, RoundToInt(LinesIn(windowHeight))) + 1; }

double HeightOfAllCards(int cardCount) { return cardCount * headerLineHeight + headerBand; }

}  // namespace halmek
