// Layout of help pages, and the form of their texts.
#include "app/help_layout.h"

#include <gtest/gtest.h>

#include <regex>
#include <tuple>

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

TEST(HelpLayout, StacksTwentyParagraphsAtMostByTheirLengths) {
  const std::vector lengths{500, 30, 85}, heights{100, 100, 100};
  const HelpLayout wide = LayoutOf(lengths, 9000, 0, heights);
  EXPECT_EQ(wide.tops,
            (std::vector{500, 1782, 2235}));  // 500 x 15000 / 8500 = 882.4, 30 x 15000 / 8500 = 52.9
  EXPECT_EQ(wide.windowHeight, 3225);         // 1000 + 615 x 15000 / 9000 + 3 x 400
  EXPECT_EQ(LayoutOf(lengths, 4500, 0, heights).windowHeight, 4250);
  EXPECT_EQ(LayoutOf(std::vector(25, 10), 9000, 0, std::vector(25, 10)).tops.size(), 20u);

  // Nothing is divided by, nothing overflows.
  for (int width : {500, 1, -3}) {
    const HelpLayout narrow = LayoutOf({30000, 30000}, width, 0, {10, 10});
    EXPECT_EQ(narrow.windowHeight, 32767);
    EXPECT_EQ(narrow.tops, (std::vector{500, 32767}));
  }
}

TEST(HelpLayout, ATextThatNeedsMoreRoomPushesDownWhatFollows) {
  const std::vector lengths{100, 100, 100}, heights{3000, 200, 4000};
  const HelpLayout layout = LayoutOf(lengths, 9000, 0, heights);
  for (size_t k = 1; k < 3; ++k)
    EXPECT_GE(layout.tops[k], layout.tops[k - 1] + heights[k - 1] + 100) << k;
  EXPECT_EQ(layout.tops[2] - layout.tops[1], 576) << "the room by the rule, which is enough";
  EXPECT_GT(layout.contentHeight, layout.tops[2] + heights[2]);
  EXPECT_EQ(LayoutOf(lengths, 9000, 800, heights).tops[0], 800) << "the title, too";
}

TEST(HelpPages, AreWhole) {
  // The title, and how many paragraphs and characters there are; 0 where that is not known.
  const std::tuple<HelpTopic, const char*, size_t, size_t> pages[] = {
      {HelpTopic::introduction, "Help - Introduction", 6, 0},
      {HelpTopic::fileMenu, "Help - [Menu] File", 9, 1454},
      {HelpTopic::part1, "Help - Part I", 8, 2238},
      {HelpTopic::part2, "Help - Part II", 6, 1004},
      {HelpTopic::arc1, "Help - Arc 1", 7, 0},
      {HelpTopic::arc2, "Help - Arc 2", 7, 0}};
  for (const auto& [topic, title, paragraphs, characters] : pages) {
    const HelpPage page = PageAbout(topic);
    EXPECT_EQ(page.title, title);
    EXPECT_EQ(page.paragraphs.size(), paragraphs) << title;
    size_t count = 0;
    for (const std::string& text : page.paragraphs) {
      count += text.size();
      EXPECT_FALSE(std::regex_search(text, std::regex("[a-z][.:][A-Z](?!lot Vert)")))
          << "lines run together: " << text;
    }
    EXPECT_TRUE(characters == 0 || count == characters) << title << ": " << count;
  }
  EXPECT_EQ(PageAbout(HelpTopic::arc1).paragraphs, PageAbout(HelpTopic::arc2).paragraphs);
}

}  // namespace
}  // namespace halmek::test
