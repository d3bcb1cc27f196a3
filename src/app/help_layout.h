// Where the paragraphs of a help page stand. Everything is in twips.
#pragma once

#include <span>
#include <vector>

#include "app/help_pages.h"
#include "app/session.h"

namespace halmek {

// Makes a page the one on show: sets `helpParagraphCount`, at most `Session::mostHelpParagraphs`, and
// `helpParagraphLength`.
void TakeHelpPage(Session& session, const HelpPage& page);

struct HelpLayout {
  std::vector<int> tops;  // of the paragraphs
  int contentHeight = 0;  // down to below the last one
  int windowHeight = 0;   // by the rule, title bar and borders included
};

// The width of the paragraphs in a window of that outer width.
int HelpLabelWidth(int windowWidth);

// Stacks the paragraphs of the page on show in a window of that outer width. The rule gives each the room
// that its number of characters is likely to take. `titleEnd` is where the title ends, and `textHeights` are
// the heights that the texts have at that width, one a paragraph: what is higher than its room pushes down
// what follows, so that nothing covers another.
HelpLayout LayoutHelp(const Session& session, int windowWidth, int titleEnd,
                      std::span<const int> textHeights);

}  // namespace halmek
