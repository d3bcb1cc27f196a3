// Layout of help pages, and the form of their texts.
#include "app/help_layout.h"

#include <gtest/gtest.h>

#include <regex>

#include "support/test_session.h"

namespace halmek::test {
namespace {

HelpPage PageOf(const std::vector<int>& lengths) {
  HelpPage page;
  for (int length : lengths)
    page.paragraphs.push_back(std::string(static_cast<size_t>(length), 'x'));
  return page;
}

TEST(HelpLayout, StacksParagraphsByTheirLengths) {
  Session s;
  TakeHelpPage(s, PageOf({500, 30, 85}));
  EXPECT_EQ(s.helpParagraphCount, 3);
  EXPECT_EQ(s.helpParagraphLength[2], 30);
  const HelpLayout wide = LayoutHelp(s, 9000, 0, std::vector{100, 100, 100});
  EXPECT_EQ(wide.tops,
            (std::vector{500, 1782, 2235}));  // 500 x 15000 / 8500 = 882.4, 30 x 15000 / 8500 = 52.9
  EXPECT_EQ(wide.windowHeight, 3225);         // 1000 + 615 x 15000 / 9000 + 3 x 400
  EXPECT_EQ(LayoutHelp(s, 4500, 0, std::vector{100, 100, 100}).windowHeight, 4250);

  // Nothing is divided by, nothing overflows.
  TakeHelpPage(s, PageOf({30000, 30000}));
  for (int width : {500, 1, -3}) {
    const HelpLayout narrow = LayoutHelp(s, width, 0, std::vector{10, 10});
    EXPECT_EQ(narrow.windowHeight, 32767);
    EXPECT_EQ(narrow.tops, (std::vector{500, 32767}));
  }
}

TEST(HelpLayout, ATextThatNeedsMoreRoomPushesDownWhatFollows) {
  Session s;
  TakeHelpPage(s, PageOf({100, 100, 100}));
  const std::vector heights{3000, 200, 4000};
  const HelpLayout layout = LayoutHelp(s, 9000, 0, heights);
  for (size_t k = 1; k < 3; ++k)
    EXPECT_GE(layout.tops[k], layout.tops[k - 1] + heights[k - 1] + 100) << k;
  EXPECT_EQ(layout.tops[2] - layout.tops[1], 576) << "the room by the rule, which is enough";
  EXPECT_GT(layout.contentHeight, layout.tops[2] + heights[2]);
  EXPECT_EQ(LayoutHelp(s, 9000, 800, heights).tops[0], 800) << "the title, too";
}

TEST(HelpLayout, LaysOutTwentyParagraphsAtMost) {
  Session s;
  TakeHelpPage(s, PageOf(std::vector(25, 10)));
  EXPECT_EQ(s.helpParagraphCount, 20);
  EXPECT_EQ(LayoutHelp(s, 9000, 0, std::vector(25, 10)).tops.size(), 20u);
}

TEST(HelpPages, AreWhole) {
  const struct {
    HelpTopic topic;
    const char* title;
    size_t paragraphs, characters;
  } pages[] = {{HelpTopic::introduction, "Help - Introduction", 6, 0},
               {HelpTopic::fileMenu, "Help - [Menu] File", 9, 1479},
               {HelpTopic::part1, "Help - Part I", 8, 2238},
               {HelpTopic::part2, "Help - Part II", 6, 1004},
               {HelpTopic::arc1, "Help - Arc 1", 7, 0},
               {HelpTopic::arc2, "Help - Arc 2", 7, 0}};
  for (const auto& p : pages) {
    const HelpPage page = PageAbout(p.topic);
    EXPECT_EQ(page.title, p.title);
    EXPECT_EQ(page.paragraphs.size(), p.paragraphs) << p.title;
    size_t characters = 0;
    for (const std::string& text : page.paragraphs) {
      characters += text.size();
      EXPECT_FALSE(std::regex_search(text, std::regex("[a-z][.:][A-Z](?!lot Vert)")))
          << "lines run together: " << text;
    }
    if (p.characters != 0) {
      EXPECT_EQ(characters, p.characters) << p.title;
    }
  }
  EXPECT_EQ(PageAbout(HelpTopic::arc1).paragraphs, PageAbout(HelpTopic::arc2).paragraphs);
}

}  // namespace
}  // namespace halmek::test
