// Whole calibrations at the screen: what is enabled and said at each step, and that one arc leaves the other
// alone.
#include <gtest/gtest.h>

#include <tuple>

#include "windows/part2_test.h"

namespace halmek::test {
namespace {

constexpr auto noFit = "Hey, you need to do the fit!";
constexpr auto notCalibrated = "Hey, you have not completed the line identification and fitting process!";
constexpr auto oneArcOnly =
    "Hey, if you have only 1 calibrated arc, select 1 under # Arc files or calibrate the uncalibrated arc "
    "file.";

class CalibrationWindowTest : public Part2Test {
 protected:
  const std::vector<double> columns = test::Columns(8, 100, 100);

  // Of Label31, Label32 and Label35 of the main window, and, by arc, of Label15 and Label16 of its plot and
  // Label13 of its deviations.
  std::string Status() {
    std::string status = Done(main.get(), {"Label31", "Label32", "Label35"});
    for (int a : {1, 2})
      status += " " + Done(ArcPlot(a), {"Label15", "Label16"}) + Done(Deviations(a), {"Label13"});
    return status;
  }
  void Calibrate(int a) {
    OpenArc(a, columns);
    IdentifyLines(a, 1, 8);
    Fit(a);
  }
  void SaveMask(int a) { desk.Do(nullptr, steps::SaveMask{a == 1 ? "arc1" : "arc2", "m.dat"}); }
  void SaveObject() { desk.Do(nullptr, steps::Save{"object", "cal.fts"}); }
  void LoadObject() { LoadValues("object", ArcOf(1000, {333, 777}, 50)); }
};

TEST_F(CalibrationWindowTest, EventsEnableTheNextStepsAndShowWhatIsDone) {
  const auto arc1 = [&](const char* button) { return [=] { Press(ArcPlot(1), button); }; };
  const auto arc2 = [&](const char* button) { return [=] { Press(ArcPlot(2), button); }; };
  const auto fit1 = [&](const char* button) { return [=] { Press(Deviations(1), button); }; };
  const auto correct = [&] { Press("Command10"); };
  const std::vector<Event> events = {
      {"start", [] {}, "13", "--- ... ..."},
      {"arc 1", [&] { OpenArc(1, columns); }, "7 13", "--- --. ..."},
      {"two lines", [&] { IdentifyLines(1, 1, 2); }, "7 13", "--- --. ..."},
      {"too few", arc1("Command1"), "7 13", "--- --. ...", tooFewPeaks},
      {"eight lines", [&] { IdentifyLines(1, 3, 8); }, "7 13", "--- --. ..."},
      {"no fit", arc1("Command3"), "7 13", "--- --. ...", notCalibrated},
      {"deviations", arc1("Command1"), "7 13", "--- -D- ..."},
      {"fitted", fit1("Command1"), "7 13", "D-- -DD ..."},
      {"reset", fit1("Command3"), "7 13", "--- -D- ..."},
      {"no fit any more", fit1("Command6"), "7 13", "--- -D- ...", noFit},
      {"fitted again", fit1("Command1"), "7 13", "D-- -DD ..."},
      {"accepted", fit1("Command6"), "7 9 13", "D-- -D. ..."},
      {"arc accepted", arc1("Command3"), "7 9 13", "D-- ... ..."},
      {"object", [&] { LoadObject(); }, "7 9 10 13", "D-- ... ..."},
      {"one arc of two", correct, "7 9 10 13", "D-- ... ...", oneArcOnly},
      {"mask and arc 2", [&] { SaveMask(1), OpenArc(2, columns); }, "7 9 10 13 14", "D-- ... --."},
      {"mask applied", arc2("Command6"), "7 9 10 13 14", "D-- ... D-."},
      {"only shown", arc2("Command1"), "7 9 10 13 14", "D-- ... DD-"},
      {"not fitted", correct, "7 9 10 13 14", "D-- ... DD-", oneArcOnly},
      {"both fitted", [&] { Fit(2); }, "7 9 10 13 14", "DD- ... DDD"},
      {"corrected", correct, "7 9 13 14 15", "DDD ... DDD"},
      {"saved and loaded", [&] { SaveObject(), Load("cal.fts", "object"); }, "7 9 10 13 14", "DD- ... DDD"},
      {"corrected before", correct, "7 9 10 13 14", "DD- ... DDD",
       "This file has already been dispersion corrected."},
      {"next object", [&] { LoadObject(); }, "7 9 10 13 14", "DD- ... DDD"},
      {"one arc", [&] { Choose(main.get(), "Combo1", 0); }, "7 9 10", "DD- ... ..."},
      {"corrected by it", correct, "7 9 15", "DDD ... ..."},
      {"two arcs", [&] { Choose(main.get(), "Combo1", 1); }, "7 9 13 14 15", "DDD ... ..."},
      {"its lines were kept", [&] { PlotArc(2); }, "7 9 13 14 15", "DDD ... DD."},
      {"next arc 2", [&] { LoadValues("arc2", ArcOf(600, {100})); }, "7 9 13 14 15", "D-D ... --."},
      {"no arc 2", [&] { Load("none.fts", "arc2"); }, "7 9 13 14 15", "D-D ... --.",
       "Error: 53  Error: File not found."},
  };
  Follow(events, [&] { return Status(); });
}

TEST_F(CalibrationWindowTest, TheCorrectionTakesTheChosenPowerOfAnArcThatHasLines) {
  Calibrate(1);
  OpenArc(2, columns);
  IdentifyLines(2, 1, 3);
  Press(ArcPlot(2), "Command1");
  LoadObject();
  // What is deleted before, and the power chosen.
  const std::tuple<std::vector<int>, int, bool> cases[] = {
      {{}, 2, true}, {{100, 200}, 3, true}, {{300}, 5, false}};
  for (const auto& [deleted, power, isTaken] : cases) {
    for (int column : deleted)
      Delete(2, column);
    Choose(Deviations(2), "Combo1", power - 2);
    session->journal.clear();
    Press("Command10");
    EXPECT_EQ(session->journal.front() == "use-power arc2 " + std::to_string(power), isTaken);
    EXPECT_EQ(session->journal.size(), isTaken ? 2u : 1u) << session->arc[2].LineCount << " lines";
    EXPECT_EQ(platform.TakeMessages(), Texts{oneArcOnly});
  }
}

}  // namespace
}  // namespace halmek::test
