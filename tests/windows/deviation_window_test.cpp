// The deviations' windows, by their controls.
#include <gtest/gtest.h>

#include "windows/part2_test.h"

namespace halmek::test {
namespace {

class DeviationWindowTest : public Part2Test {
 protected:
  DeviationWindowTest() { OpenArc(1, test::Columns(8, 100, 100)); }
  std::string Label(const char* name) { return LabelText(Deviations(1), name); }
};

TEST_F(DeviationWindowTest, FollowsTheLinesAndSaysWhatTheFitIsWorth) {
  const Arc& arc = session->arc[1];
  IdentifyLines(1, 1, 7);
  const auto reopen = [&] { Press(ArcPlot(1), "Command1"); };
  reopen();
  QWidget* const window = Deviations(1);
  const auto stale = "power 4 was fitted before the lines changed: fit it again";
  const auto none = "0 lines identified: at least three are needed";
  const struct {
    const char* what;
    std::function<void()> event;
    const char *marks, *words;  // "+" where the RMS and the largest deviation follow
    const char* message = nullptr;
  } events[] = {
      {"opened", [] {}, "oooooooob", "power 4 not fitted yet; straight line through 7 lines +"},
      {"fitted", [&] { FitAgain(1, 4); }, "Boooooooob", "power 4 through 7 lines +"},
      {"chosen", [&] { Choose(window, "Combo1", 0); }, "oooooooob",
       "power 2 not fitted yet; straight line through 7 lines +"},
      {"loaded anew", [&] { window->close(), reopen(); }, "Boooooooob", "power 4 through 7 lines +"},
      {"two deleted", [&] { Delete(1, 300), Delete(1, 600); }, "Boooooob", stale},
      {"fitted again", [&] { FitAgain(1, 4); }, "Boooooob",
       "power 4 through 5 lines, as many as it needs: nothing tells how good it is"},
      {"another deleted", [&] { Delete(1, 200); }, "Booooob", stale},
      {"all deleted", [&] { Press(ArcPlot(1), "Command2"); }, "ob", none},
      {"too few", [&] { Press(window, "Command1"); }, "ob", none,
       "You haven't identified enough lines.  At least three are required."},
      {"identified again", [&] { IdentifyLines(1, 1, 3); }, "oooob",
       "power 4 not fitted yet; straight line through 3 lines +"},
      {"another arc", [&] { LoadValues("arc1", ArcOf(900, {50})); }, "ob", none},
  };
  for (const auto& e : events) {
    SCOPED_TRACE(e.what);
    e.event();
    EXPECT_EQ(platform.TakeMessages(), Told(e.message));
    EXPECT_EQ(Marks(window), e.marks);
    const std::string worth = Label("labelRms").substr(0, 3) + Label("labelLargest").substr(0, 7);
    EXPECT_EQ(Label("labelFit") + (worth == "RMSlargest" ? " +" : worth), e.words);
    EXPECT_EQ(Label("Label13"), arc.fitDone && e.words != stale ? "DONE!" : "");
    for (int k = 1; k <= arc.LineCount; ++k)
      EXPECT_EQ(arc.Deviation(k),
                arc.linIntercept + arc.linSlope * arc.ArcLineColumn(k) - arc.ArcLineWavelength(k));
  }
}

}  // namespace
}  // namespace halmek::test
