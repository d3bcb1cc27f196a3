// The deviations' windows, by their controls.
#include <gtest/gtest.h>

#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class DeviationWindowTest : public Part2Test {
 protected:
  Arc& arc = session->arc[1];

  DeviationWindowTest() { OpenArc(1, test::Columns(8, 100, 100)); }
  QWidget* OpenWith(int lines) {
    IdentifyLines(1, 1, lines);
    Press(ArcPlot(1), "Command1");
    return Deviations(1);
  }
  std::string Label(const char* name) { return LabelText(Deviations(1), name); }
};

TEST_F(DeviationWindowTest, EachPowerNeedsOneLineMoreAndTwoLinesAMask) {
  QWidget* const window = OpenWith(3);
  Delete(1, 300);
  Press(window, "Command1");
  EXPECT_EQ(platform.TakeMessages(),
            Texts{"You haven't identified enough lines.  At least three are required."});
  LoadMask("100 5060\r\n200 5120\r\n");
  Press(ArcPlot(1), "Command6");
  for (int power : {2, 3, 4, 5}) {
    FitAgain(1, power);
    EXPECT_EQ(platform.TakeMessages(),
              Texts{"For a fit of power " + std::to_string(power) + ", you need at least " +
                    std::to_string(power + 1) + " terms.  Please try again."});
    EXPECT_FALSE(arc.fitDone);
    IdentifyLines(1, power + 1, power + 1);
    FitAgain(1, power);
    const bool isFitted = power < 5;
    EXPECT_EQ(platform.TakeMessages(),
              Told(isFitted ? nullptr : "Sorry; this has not been implemented yet."));
    EXPECT_EQ(Label("Label13") + LabelText(main.get(), "Label31"), isFitted ? "DONE!DONE!" : "") << power;
    EXPECT_EQ(Marks(window), (isFitted ? "B" : "") + std::string(static_cast<size_t>(power) + 1, 'o') + "ob");
    Press(window, "Command3");
  }
}

TEST_F(DeviationWindowTest, FollowsTheLinesAndSaysWhatTheFitIsWorth) {
  QWidget* const window = OpenWith(7);
  const auto reopen = [&] { Press(ArcPlot(1), "Command1"); };
  const auto stale = "power 4 was fitted before the lines changed: fit it again";
  const auto none = "0 lines identified: at least three are needed";
  const struct {
    const char* what;
    std::function<void()> event;
    const char *marks, *words;  // "+" where the RMS and the largest deviation follow
  } events[] = {
      {"opened", [] {}, "oooooooob", "power 4 not fitted yet; straight line through 7 lines +"},
      {"fitted", [&] { FitAgain(1, 4); }, "Boooooooob", "power 4 through 7 lines +"},
      {"chosen", [&] { Choose(window, "Combo1", 0); }, "oooooooob",
       "power 2 not fitted yet; straight line through 7 lines +"},
      {"fitted with 2", [&] { FitAgain(1, 2); }, "Boooooooob", "power 2 through 7 lines +"},
      {"hidden", [&] { Press(window, "Command2"), reopen(); }, "Boooooooob", "power 2 through 7 lines +"},
      {"loaded anew", [&] { window->close(), reopen(); }, "Boooooooob", "power 4 through 7 lines +"},
      {"a line deleted", [&] { Delete(1, 300); }, "Booooooob", stale},
      {"another deleted", [&] { Delete(1, 600); }, "Boooooob", stale},
      {"fitted again", [&] { FitAgain(1, 4); }, "Boooooob",
       "power 4 through 5 lines, as many as it needs: nothing tells how good it is"},
      {"all deleted", [&] { Press(ArcPlot(1), "Command2"); }, "ob", none},
      {"identified again", [&] { IdentifyLines(1, 1, 3); }, "oooob",
       "power 4 not fitted yet; straight line through 3 lines +"},
      {"another arc", [&] { LoadValues("arc1", ArcOf(900, {50})); }, "ob", none},
  };
  for (const auto& e : events) {
    e.event();
    EXPECT_EQ(Marks(window), e.marks) << e.what;
    const std::string worth = Label("labelRms").substr(0, 3) + Label("labelLargest").substr(0, 7);
    EXPECT_EQ(Label("labelFit") + (worth == "RMSlargest" ? " +" : worth), e.words) << e.what;
    for (int k = 1; k <= arc.LineCount; ++k)
      EXPECT_EQ(arc.Deviation(k),
                arc.linIntercept + arc.linSlope * arc.ArcLineColumn(k) - arc.ArcLineWavelength(k))
          << e.what;
  }
}

}  // namespace
}  // namespace halmek::test
