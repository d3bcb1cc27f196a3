// Layout of help pages.
#include "app/help_layout.h"

#include <algorithm>

#include "numeric/rounding.h"

namespace halmek {
namespace {

// The area that a character takes, in square twips, by which the height of a text is estimated.
constexpr double areaOfCharacter = 15000;
constexpr int firstTop = 500, sideMargins = 500, perParagraph = 400, perPage = 1000;
// Below a text that needs more than its estimate, and below the last.
constexpr int leastGap = 180, lowerMargin = 250;

int SixteenBits(double twips) { return std::min(RoundToInt(twips), int{INT16_MAX}); }

}  // namespace

void TakeHelpPage(Session& session, const HelpPage& page) {
  const size_t count = std::min<size_t>(page.paragraphs.size(), Session::mostHelpParagraphs);
  session.helpParagraphCount = static_cast<int16_t>(count);
  for (size_t k = 1; k <= count; ++k)
    session.helpParagraphLength[k] = static_cast<int16_t>(page.paragraphs[k - 1].size());
}

int HelpLabelWidth(int windowWidth) { return std::max(1, windowWidth - sideMargins); }

HelpLayout LayoutHelp(const Session& session, int windowWidth, int titleEnd,
                      std::span<const int> textHeights) {
  const int labelWidth = HelpLabelWidth(windowWidth);
  HelpLayout layout;
  double windowHeight = perPage;
  int top = std::max(firstTop, titleEnd);
  for (int k = 1; k <= session.helpParagraphCount; ++k) {
    const double area = session.helpParagraphLength[k] * areaOfCharacter;
    const int textEnd = top + textHeights[k - 1];
    layout.tops.push_back(top);
    layout.contentHeight = textEnd + lowerMargin;
    top = std::max(SixteenBits(top + area / labelWidth + perParagraph), textEnd + leastGap);
    windowHeight += area / std::max(1, windowWidth) + perParagraph;
  }
  layout.windowHeight = SixteenBits(windowHeight);
  return layout;
}

}  // namespace halmek
