// Whole calibrations at the screen: what is enabled and said at each step, and that one arc leaves the other
// alone.
#include <gtest/gtest.h>

#include "steps/recipe.h"
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
  std::string StateOfArcs() { return StateOfArc(*session, 1) + StateOfArc(*session, 2); }
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
      {"no lines", arc1("Command1"), "7 13", "--- --. ...", tooFewPeaks},
      {"no mask", arc1("Command6"), "7 13", "--- --. ...", "Hey, you need to load the mask file first!"},
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
      {"all deleted", arc2("Command2"), "7 9 10 13 14", "D-- ... --."},
      {"applied again", arc2("Command6"), "7 9 10 13 14", "D-- ... D-."},
      {"only shown", arc2("Command1"), "7 9 10 13 14", "D-- ... DD-"},
      {"not fitted", correct, "7 9 10 13 14", "D-- ... DD-", oneArcOnly},
      {"opened anew", [&] { PlotArc(2); }, "7 9 10 13 14", "D-- ... D--"},
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
      {"next arc 2", [&] { OpenArc(2, columns); }, "7 9 13 14 15", "D-D ... --."},
  };
  Follow(
      events, [&] { return Status(); }, [&] { return StateOfArcs(); });
}

TEST_F(CalibrationWindowTest, WhatIsDoneToOneArcLeavesTheOther) {
  for (int a : {1, 2})
    Calibrate(a);
  LoadMask("300 5300\r\n100 5100\r\n200 5200\r\n");
  for (int a : {1, 2}) {
    const int other = 3 - a;
    const struct {
      const char* what;
      std::function<void()> action;
      std::vector<double> list;
    } actions[] = {
        {"power", [&] { Fit(a, 2), Fit(a, 3); }, columns},
        {"reset", [&] { Press(Deviations(a), "Command3"); }, columns},
        {"move", [&] { ArcPlot(a)->move(90, 77), Deviations(a)->close(), ArcPlot(a)->close(), PlotArc(a); },
         columns},
        {"delete", [&] { Delete(a, 300); }, {100, 200, 400, 500, 600, 700, 800}},
        {"delete all", [&] { Press(ArcPlot(a), "Command2"); }, {}},
        {"identify", [&] { IdentifyLines(a, 8, 8), IdentifyLines(a, 2, 3); }, {200, 300, 800}},
        {"apply, in the mask's order", [&] { Press(ArcPlot(a), "Command6"); }, {300, 100, 200}},
        {"identify one more", [&] { IdentifyLines(a, 7, 7); }, {100, 200, 300, 700}},
        {"load", [&] { OpenArc(a, {500}); }, {}},
        {"calibrate", [&] { Calibrate(a); }, columns},
    };
    for (const auto& action : actions) {
      const std::string before = StateOfArc(*session, a), kept = StateOfArc(*session, other);
      action.action();
      EXPECT_NE(StateOfArc(*session, a), before) << action.what << a;
      EXPECT_EQ(StateOfArc(*session, other), kept) << action.what << a;
      EXPECT_EQ(Columns(a), action.list) << action.what << a;
      EXPECT_EQ(Range(MarkCount(a), MarkCount(other)), Range(session->arc[a].LineCount, 8)) << action.what;
    }
  }
}

TEST_F(CalibrationWindowTest, AnotherArcStartsOverAndOneThatCannotBeReadLeavesAll) {
  WriteFrame("frame.fts", 40, 20, Star);
  for (int a : {1, 2}) {
    const Arc& arc = session->arc[a];
    const char* const what = a == 1 ? "arc1" : "arc2";
    Calibrate(a);
    SaveMask(a);
    Press(ArcPlot(a), "Command6");
    EXPECT_EQ(Status().substr(4 * a, 3), "DDD");
    LoadValues(what, ArcOf(600, {100}));
    EXPECT_EQ(arc.LineCount + arc.fitDone + arc.maskApplied, 0);
    EXPECT_EQ(Status(), a == 1 ? "--- --- ..." : "--- --- ---");
    EXPECT_EQ(LabelText(ArcPlot(a), "Label13"), "m.dat") << "the mask is still loaded";
    EXPECT_EQ(MarkCount(a), 0);
    ClickColumn(a, 100);
    EXPECT_EQ(LabelText(Line(), "Label14"), "") << "no RMS of the arc before";
    const QString title = ArcPlot(a)->windowTitle();
    const std::string state = StateOfArc(*session, a), status = Status();
    for (const char* bad : {"none.fts", "frame.fts"}) {
      Load(bad, what);
      EXPECT_EQ(platform.TakeMessages().size(), 1u) << bad;
      EXPECT_EQ(ArcPlot(a)->windowTitle(), title);
      EXPECT_EQ(StateOfArc(*session, a) + Status(), state + status) << bad;
    }
  }
}

TEST_F(CalibrationWindowTest, TheJournalGivesTheSameFileAgain) {
  OpenArc(1, columns);
  IdentifyLines(1, 1, 8);
  for (int power : {3, 4, 2})
    Fit(1, power);
  Choose(Deviations(1), "Combo1", 1);
  OpenArc(2, columns);
  for (const auto& [column, wavelength] : {std::pair(800, 5480), {100, 5061}, {400, 5243}, {300, 5180}})
    Identify(2, column, wavelength);
  Delete(2, 300);
  Identify(2, 300, 5183);
  Fit(2, 2);
  LoadObject();
  Press("Command10");
  SaveObject();
  const std::string saved = ReadFile(folder.File("cal.fts")), journal = JournalText(*session);
  EXPECT_NE(saved.find("CD1_1"), std::string::npos);
  EXPECT_NE(journal.find("\nuse-power arc1 3\n"), std::string::npos) << journal;
  EXPECT_EQ(journal.find("use-power arc2"), std::string::npos) << journal;

  const auto again = SessionIn(folder.path());
  WriteFile(folder.File("cal.fts"), "");
  RunRecipe(*again, ParseRecipe(journal, {}), [](const RecipeLine&, const Outcome&) {});
  EXPECT_TRUE(ReadFile(folder.File("cal.fts")) == saved) << journal;
}

}  // namespace
}  // namespace halmek::test
