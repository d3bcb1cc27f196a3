// Which header cards a window of a given height shows, and how far it scrolls.
#pragma once

#include "plot/scroll_bar.h"

namespace halmek {

// The height of a line of text, and of what the window needs besides its text, in twips.
inline constexpr double headerLineHeight = 194.5;
inline constexpr int headerBand = 560;

// The scroll bar for `cardCount` cards in a window of that height, scrolled to the start.
ScrollBar HeaderScroll(int windowHeight, int cardCount);

// The cards first..last, numbered from 1, to be shown at the scroll bar's value; last < first where there are
// none.
struct HeaderPage {
  int first = 1, last = 0;
};
HeaderPage PageAt(int windowHeight, int cardCount, const ScrollBar& scroll);

// How many cards a page lists at most. The last of them may lie below the window's lower edge.
int LinesOfPage(int windowHeight);

// The height of the window that just holds all cards. It needs no scroll bar, and becomes no higher.
double HeightOfAllCards(int cardCount);

}  // namespace halmek
