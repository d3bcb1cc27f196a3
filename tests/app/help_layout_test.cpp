// Layout of help pages, and the form of their texts.
#include "app/help_layout.h"

#include <gtest/gtest.h>

#include <regex>
#include <utility>

#include "support/test_session.h"

namespace halmek::test {
namespace {

// The layout of paragraphs of these lengths, whose texts need these heights.
HelpLayout LayoutOf(const std::vector<int>& lengths, int width, int titleBottom,
                    const std::vector<int>& heights) {
  HelpPage page;
  for (int length : lengths)
    page.paragraphs.push_back(std::string(static_cast<size_t>(length), 'x'));
  Session s;
  TakeHelpPage(s, page);
  return LayoutHelp(s, width, titleBottom, heights);
}

TEST(HelpLayout, GivesParagraphsRoomByTheirLengthsAndTheWidth) {
  const std::vector lengths{500, 30, 85}, heights{100, 100, 100};
  const HelpLayout wide = LayoutOf(lengths, 9000, 0, heights), narrow = LayoutOf(lengths, 4500, 0, heights);
  EXPECT_GT(wide.tops[1] - wide.tops[0], 2 * (wide.tops[2] - wide.tops[1]));
  EXPECT_GT(narrow.tops[2], wide.tops[2]);
  EXPECT_GT(narrow.windowHeight, wide.windowHeight);
  EXPECT_GT(LayoutOf({500, 30, 185}, 9000, 0, heights).windowHeight, wide.windowHeight);
  EXPECT_GT(LayoutOf({500, 30, 85, 1}, 9000, 0, {9, 9, 9, 9}).windowHeight, wide.windowHeight);
  EXPECT_EQ(LayoutOf(std::vector(25, 10), 9000, 0, std::vector(25, 10)).tops.size(), 20u);

  // Nothing is divided by, nothing overflows.
  for (int width : {500, 1, -3}) {
    const HelpLayout least = LayoutOf({30000, 30000}, width, 0, {10, 10});
    EXPECT_EQ(least.windowHeight, 32767);
    EXPECT_EQ(least.tops[1], 32767);
  }
}

TEST(HelpLayout, ATextThatNeedsMoreRoomPushesDownWhatFollows) {
  const std::vector lengths{100, 100, 100}, heights{3000, 200, 4000};
  const HelpLayout layout = LayoutOf(lengths, 9000, 0, heights);
  for (size_t k = 1; k < 3; ++k)
    EXPECT_GE(layout.tops[k], layout.tops[k - 1] + heights[k - 1] + 100) << k;
  const HelpLayout byTheRule = LayoutOf(lengths, 9000, 0, {100, 100, 100});
  EXPECT_EQ(layout.tops[2] - layout.tops[1], byTheRule.tops[2] - byTheRule.tops[1]) << "where it is enough";
  EXPECT_GT(layout.contentHeight, layout.tops[2] + heights[2]);
  EXPECT_EQ(LayoutOf(lengths, 9000, 800, heights).tops[0], 800) << "the title, too";
}

TEST(HelpPages, AreOfTheirTopicAndTheirLinesDoNotRunTogether) {
  const std::pair<HelpTopic, const char*> pages[] = {{HelpTopic::introduction, "Introduction"},
                                                     {HelpTopic::fileMenu, "[Menu] File"},
                                                     {HelpTopic::part1, "Part I"},
                                                     {HelpTopic::part2, "Part II"},
                                                     {HelpTopic::arc1, "Arc 1"},
                                                     {HelpTopic::arc2, "Arc 2"}};
  for (const auto& [topic, title] : pages) {
    const HelpPage page = PageAbout(topic);
    EXPECT_EQ(page.title, std::string("Help - ") + title);
    EXPECT_GT(page.paragraphs.size(), 1u) << title;
    for (const std::string& text : page.paragraphs)
      EXPECT_FALSE(std::regex_search(text, std::regex("[a-z][.:][A-Z](?!lot Vert)"))) << text;
  }
  EXPECT_EQ(PageAbout(HelpTopic::arc1).paragraphs, PageAbout(HelpTopic::arc2).paragraphs);
}

}  // namespace
}  // namespace halmek::test
