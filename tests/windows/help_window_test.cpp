// The help and about windows.
#include "app/help_window.h"

#include <gtest/gtest.h>

#include <QScrollArea>
#include <tuple>

#include "app/version.h"
#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class HelpTest : public Part2Test {
 protected:
  QWidget* Help() { return Window("frmHelp"); }
  std::vector<QLabel*> Paragraphs() {
    std::vector<QLabel*> shown;
    for (QLabel* label : Help()->findChildren<QLabel*>())
      if (label->objectName().startsWith("Label1(") && label->isVisibleTo(Help()))
        shown.push_back(label);
    return shown;
  }

  // Every paragraph has the room that its text needs, below the one before and within the page.
  void ExpectReadable() {
    const auto* const area = Find<QScrollArea>(Help(), "area");
    int end = Find<QLabel>(Help(), "Label0")->geometry().bottom();
    for (const QLabel* label : Paragraphs()) {
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
      EXPECT_GE(label->y(), end) << label->text().toStdString();
      EXPECT_LT(label->geometry().right(), area->viewport()->width());
      end = label->geometry().bottom();
    }
    EXPECT_LE(end, area->widget()->height());
    EXPECT_EQ(area->verticalScrollBar()->maximum() > 0, area->widget()->height() > Help()->height());
  }
};

TEST_F(HelpTest, EveryPageStandsInTheSameWindowAtEveryWidth) {
  const std::tuple<const char*, const char*, HelpTopic> pages[] = {
      {"frmMain", "mHelpMenuFile", HelpTopic::fileMenu}, {"frmMain", "mPartIHelp", HelpTopic::part1},
      {"frmMain", "mPartIIHelp", HelpTopic::part2},      {"frmMain", "mIntro", HelpTopic::introduction},
      {"frmPlot_Arc1", "Arc1Help", HelpTopic::arc1},     {"frmPlot_Arc2", "mHelpArc2", HelpTopic::arc2}};
  const LargerText text(1.2);
  Start();
  for (int a : {1, 2})
    OpenArc(a, {100, 200});
  for (const auto& [window, item, topic] : pages) {
    Trigger(Window(window), item);
    const HelpPage page = PageAbout(topic);
    EXPECT_EQ(LabelText(Help(), "Label0"), page.title);
    Texts shown;
    for (const QLabel* label : Paragraphs())
      shown.push_back(label->text().toStdString());
    EXPECT_EQ(shown, page.paragraphs) << item;
    for (const int width : {600, 1, 1500}) {
      SCOPED_TRACE(std::string(item) + " at " + std::to_string(width));
      Help()->resize(width, 100);
      ExpectReadable();
    }
  }
  platform.TakeMessages();
}

TEST_F(HelpTest, HelpAndAboutKeepTheirPlace) {
  for (const auto& [item, name] : {std::pair("mIntro", "frmHelp"), {"mAbout", "frmAbout"}}) {
    Trigger(main.get(), item);
    EXPECT_EQ(Window(name)->pos(), QPoint(PixelsOf(500), PixelsOf(500)));
    Window(name)->move(120, 90);
    Activate(Window(name));
    QTest::keyClick(Window(name), Qt::Key_Escape);
    EXPECT_FALSE(IsOpen(name));
    Trigger(main.get(), item);
    EXPECT_EQ(Window(name)->pos(), QPoint(120, 90));
  }
  EXPECT_EQ(LabelText(Window("frmAbout"), "Label9"),
            "This is version " + std::string(programVersion) + " of " + releaseDate);
}

}  // namespace
}  // namespace halmek::test
