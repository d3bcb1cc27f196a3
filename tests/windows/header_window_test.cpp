// The header viewer.
#include "fits/header_window.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QTextBlock>
#include <tuple>

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
  const std::tuple<int, double, const char*, const char*> cases[] = {
      {200, 9000, "0-1 .. 0-44", "0-159 .. 0-200"}, {43, 43 * 194.5 + 560, "0-2 .. 0-43", "0-2 .. 0-43"}};
  for (const auto& [cards, height, start, end] : cases) {
    OpenWith(cards);
    EXPECT_EQ(Bar()->isVisible(), height == 9000) << cards;
    EXPECT_NEAR(HeightInTwips(), height, TwipsOf(1)) << cards;
    EXPECT_EQ(Seen(), start) << cards;
    Bar()->setValue(Bar()->maximum());
    EXPECT_EQ(Seen(), end) << cards;
  }
  OpenWith(0);
  EXPECT_FALSE(Bar()->isVisible());
  EXPECT_TRUE(Cards()->toPlainText().isEmpty() && !Cards()->placeholderText().isEmpty());
}

TEST_F(HeaderTest, WheelAndKeysScroll) {
  OpenWith(200);
  const int start = Bar()->value(), end = Bar()->maximum();
  SendWheel(Cards()->viewport(), -2);
  EXPECT_EQ(Bar()->value(), start + 6);
  const std::pair<Qt::Key, int> keys[] = {
      {Qt::Key_Home, start},       {Qt::Key_Down, start + 1}, {Qt::Key_PageDown, start + 43},
      {Qt::Key_PageUp, start + 1}, {Qt::Key_Up, start},       {Qt::Key_End, end}};
  for (const auto& [key, value] : keys) {
    QTest::keyClick(Cards(), key);
    EXPECT_EQ(Bar()->value(), value) << key;
  }
}

TEST_F(HeaderTest, TextCanBeSelectedAcrossPagesAndCopied) {
  OpenWith(100);
  for (const auto key : {Qt::Key_A, Qt::Key_C, Qt::Key_X})
    QTest::keyClick(Cards(), key, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 99);
  EXPECT_TRUE(Cards()->toPlainText().startsWith("CARD0-1=")) << "nothing is cut";
  QTest::keyClick(Cards(), Qt::Key_End);
  desk.RefreshViews();
  EXPECT_EQ(Cards()->textCursor().selectedText().count(QChar::ParagraphSeparator), 99)
      << "scrolling keeps the selection";
  QTest::keyClick(Cards(), Qt::Key_Home);
  const int start = Bar()->value();
  Cards()->setTextCursor(QTextCursor(Cards()->document()));
  for (int i = 0; i < 60; ++i)
    QTest::keyClick(Cards(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_GT(Bar()->value(), start + 10) << "the page follows a selection";
}

TEST_F(HeaderTest, ShowsTheSlotThatIsCurrentWhenItIsDrawn) {
  LoadFrame(40, 20);
  Hold(1, 60);
  OpenHeader(0);
  const auto text = [this] { return Cards()->toPlainText().toStdString(); };
  EXPECT_TRUE(text().starts_with("SIMPLE"));
  desk.Do(main.get(), steps::Trim{1, 1, 30, 20});
  EXPECT_NE(text().find("HISTORY"), std::string::npos) << "a new card appears at once";
  OpenHeader(1);
  EXPECT_TRUE(text().starts_with("CARD1-1="));
  EXPECT_NEAR(HeightInTwips(), 9000, TwipsOf(1)) << "as high as before the few cards";
}

TEST_F(HeaderTest, KeepsItsPlaceAndWidth) {
  OpenWith(100);
  Header()->move(50, 70);
  Header()->resize(333, 444);
  Activate(Header());
  QTest::keyClick(Header(), Qt::Key_Escape);
  EXPECT_FALSE(Header()->isVisible());
  OpenHeader(0);
  EXPECT_EQ(Header()->pos(), QPoint(50, 70));
  EXPECT_EQ(Header()->width(), 333);
}

}  // namespace
}  // namespace halmek::test
