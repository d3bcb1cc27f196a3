// The header viewer.
#include "fits/header_window.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QTextBlock>

#include "windows/part1_test.h"

namespace halmek::test {
namespace {

class HeaderTest : public Part1Test {
 protected:
  // Makes a slot hold so many cards, which name themselves.
  void Hold(int slot, int cards) {
    Slot& s = session->slot[slot];
    s.fileName = "some.fts";
    s.cardCount = static_cast<int16_t>(cards);
    for (int k = 1; k <= cards; ++k)
      s.card(k) = "CARD" + std::to_string(slot) + "-" + std::to_string(k) + std::string(60, '=');
  }
  QWidget* Header() { return Window("frmDisplayHdr_2D"); }
  void OpenHeader(int slot) { Trigger(main.get(), ("mHeader" + std::to_string(slot)).c_str()); }
  void OpenWith(int cards) {
    Hold(0, cards);
    OpenHeader(0);
  }
  QScrollBar* Bar() { return Find<QScrollBar>(Header(), "VScroll1"); }
  PagedText* Cards() { return static_cast<PagedText*>(Find<QTextEdit>(Header(), "textCards")); }
  double HeightInTwips() { return TwipsOf(Header()->frameGeometry().height()); }

  // The first and last cards of which some can be seen, as "0-1 .. 0-44".
  std::string Seen() {
    PagedText* const view = Cards();
    const auto cardAt = [&](int y) {
      const QTextCursor cursor = view->cursorForPosition(QPoint(view->width() / 3, y));
      const QRect line = view->cursorRect(cursor);
      const std::string text = cursor.block().text().toStdString();
      return line.top() <= y && y <= line.bottom() + 2 ? text.substr(4, text.find('=') - 4) : std::string();
    };
    std::string last;
    for (int y = view->viewport()->height() - 3; last.empty() && y > 0; y -= view->HeightOf(1))
      last = cardAt(y);
    return cardAt(4) + " .. " + last;
  }
};

TEST_F(HeaderTest, ShowsAPageOfTheCardsAndShrinksAroundFew) {
  const struct {
    int cards;
    bool scrolls;
    double height;
    const char *start, *end;
  } cases[] = {{50, true, 9000, "0-1 .. 0-44", "0-9 .. 0-50"},
               {200, true, 9000, "0-1 .. 0-44", "0-159 .. 0-200"},
               {10, false, 2505, "0-2 .. 0-10", "0-2 .. 0-10"},
               {43, false, 43 * 194.5 + 560, "0-2 .. 0-43", "0-2 .. 0-43"},
               {44, true, 9000, "0-1 .. 0-44", "0-1 .. 0-44"}};
  for (const auto& c : cases) {
    OpenWith(c.cards);
    EXPECT_EQ(Bar()->isVisible(), c.scrolls) << c.cards;
    EXPECT_NEAR(HeightInTwips(), c.height, TwipsOf(1)) << c.cards;
    EXPECT_EQ(Seen(), c.start) << c.cards;
    Bar()->setValue(Bar()->maximum());
    EXPECT_EQ(Seen(), c.end) << c.cards;
  }
  EXPECT_EQ(Header()->windowTitle(), "Display Fits Hdr - 2D Spectrum");
  OpenWith(0);
  EXPECT_FALSE(Bar()->isVisible());
  EXPECT_NEAR(HeightInTwips(), 560, TwipsOf(1));
  EXPECT_TRUE(Cards()->toPlainText().isEmpty() && !Cards()->placeholderText().isEmpty());
}

TEST_F(HeaderTest, ShowsNoBarWhereAllCardsFitWhateverTheSizeOfTexts) {
  for (const int textPixels : {13, 14, 16}) {
    const LargerText text(1.0 * textPixels / QFontInfo(QApplication::font()).pixelSize());
    Start();
    platform.TakeMessages();
    for (const int cards : {10, 19, 20, 24, 27, 33}) {
      OpenWith(cards);
      EXPECT_FALSE(Bar()->isVisible()) << cards << " at " << textPixels;
    }
  }
}

TEST_F(HeaderTest, IsLaidOutAgainWhereverItIsScrolled) {
  OpenWith(200);
  Bar()->setValue(100);
  EXPECT_EQ(Seen(), "0-80 .. 0-123");
  Header()->resize(Header()->width(), Header()->height() - PixelsOf(10 * 194.5));
  EXPECT_EQ(Seen(), "0-86 .. 0-119") << "the value stays, the page becomes shorter";
  EXPECT_EQ(std::pair(Bar()->minimum(), Bar()->maximum()), std::pair(16, 184));
  // Down to nothing and back.
  for (const QSize size : {QSize(1, 1), QSize(300, 60), QSize(900, 700)}) {
    Header()->resize(size);
    Bar()->setValue(Bar()->maximum());
    Bar()->setValue(Bar()->minimum());
  }
  EXPECT_TRUE(Seen().starts_with("0-1 ..")) << Seen();
  EXPECT_LT(Cards()->geometry().right(), Bar()->x());
  Hold(0, 50);
  desk.RefreshViews();
  Header()->resize(500, 5000);
  EXPECT_NEAR(HeightInTwips(), 50 * 194.5 + 560, TwipsOf(1)) << "no higher than all cards";
  EXPECT_FALSE(Bar()->isVisible());
}

TEST_F(HeaderTest, WheelAndKeysScroll) {
  OpenWith(200);
  const int start = Bar()->value();
  SendWheel(Cards()->viewport(), -2);
  EXPECT_EQ(Bar()->value(), start + 6);
  const std::pair<Qt::Key, int> keys[] = {{Qt::Key_Home, start},
                                          {Qt::Key_Down, start + 1},
                                          {Qt::Key_PageDown, start + 43},
                                          {Qt::Key_PageUp, start + 1},
                                          {Qt::Key_Up, start},
                                          {Qt::Key_Up, start},
                                          {Qt::Key_End, Bar()->maximum()},
                                          {Qt::Key_Down, Bar()->maximum()}};
  for (const auto& [key, value] : keys) {
    QTest::keyClick(Cards(), key);
    EXPECT_EQ(Bar()->value(), value) << key;
  }
}

TEST_F(HeaderTest, TextCanBeSelectedAcrossPagesAndCopied) {
  OpenWith(100);
  QTest::keyClick(Cards(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(Cards(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 99);
  QTest::keyClick(Cards(), Qt::Key_End);
  EXPECT_EQ(Cards()->textCursor().selectedText().count(QChar::ParagraphSeparator), 99)
      << "scrolling keeps the selection";
  desk.RefreshViews();
  EXPECT_TRUE(Cards()->textCursor().hasSelection());
  QTest::keyClick(Cards(), Qt::Key_Home);
  const int start = Bar()->value();
  Cards()->setTextCursor(QTextCursor(Cards()->document()));
  for (int i = 0; i < 60; ++i)
    QTest::keyClick(Cards(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_GT(Bar()->value(), start + 10) << "the page follows a selection";
  QTest::keyClick(Cards(), Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(session->slot[0].card(1).substr(0, 7), "CARD0-1");
  EXPECT_TRUE(Cards()->toPlainText().startsWith("CARD0-1="));
}

TEST_F(HeaderTest, ShowsTheSlotThatIsCurrentWhenItIsDrawn) {
  LoadFrame(40, 20);
  Hold(1, 60);
  OpenHeader(0);
  const auto text = [this] { return Cards()->toPlainText().toStdString(); };
  EXPECT_TRUE(text().starts_with("SIMPLE"));
  const int cards = session->slot[0].cardCount;
  desk.Do(main.get(), steps::Trim{1, 1, 30, 20});
  EXPECT_GT(session->slot[0].cardCount, cards);
  EXPECT_NE(text().find("HISTORY"), std::string::npos) << "a new card appears at once";

  EXPECT_LT(HeightInTwips(), 9000);
  session->currentSlot = 1;
  desk.RefreshViews();
  EXPECT_TRUE(text().starts_with("CARD1-1="));
  EXPECT_TRUE(Bar()->isVisible());
  EXPECT_NEAR(HeightInTwips(), 9000, TwipsOf(1)) << "as high as before the few cards";
  OpenHeader(0);
  EXPECT_TRUE(text().starts_with("SIMPLE"));
}

TEST_F(HeaderTest, KeepsItsPlaceAndWidth) {
  OpenWith(100);
  EXPECT_GE(Cards()->width(), Cards()->WidthOf(80)) << "a whole card has room, where no width was chosen";
  Header()->move(50, 70);
  Header()->resize(333, 444);
  QTest::keyClick(Header(), Qt::Key_Escape);
  const SizedPlacement kept = session->displayHeader;
  EXPECT_EQ(PixelsOf(kept.left), 50);
  EXPECT_EQ(PixelsOf(kept.width), Header()->frameGeometry().width());
  OpenHeader(0);
  EXPECT_EQ(Header()->pos(), QPoint(50, 70));
  EXPECT_EQ(Header()->width(), 333);
  EXPECT_NEAR(HeightInTwips(), 9000, TwipsOf(1)) << "each opening gives it this height";
}

}  // namespace
}  // namespace halmek::test
