// The recipe language: words, steps as text, whole recipes and the journal.
#include "steps/recipe.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <map>
#include <set>

#include "support/faulty_files.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

// The bytes of all files in a folder.
std::map<std::string, std::string> BytesIn(const std::string& folder) {
  std::map<std::string, std::string> bytes;
  for (const std::string& name : FilesIn(folder))
    bytes[name] = ReadFile(folder + "/" + name);
  return bytes;
}

void RunLines(Session& session, const std::vector<RecipeLine>& lines) {
  RunRecipe(session, lines, [](const RecipeLine&, const Outcome&) {});
}

std::vector<RecipeLine> EveryStep() {
  return ParseRecipe(ReadFile(HALMEK_TEST_RECIPES "/every_step.recipe"),
                     {{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}});
}

// Runs the recipe of every step on a small night in the folder and returns its journal.
std::string RunEveryStep(const std::string& folder) {
  WriteSmallNight(folder);
  const auto session = SessionIn(folder);
  RunLines(*session, EveryStep());
  return JournalText(*session);
}

class SmallNight : public testing::Test {
 protected:
  SmallNight() { WriteSmallNight(folder.path()); }

  void Run(const std::string& recipe) { RunLines(s, ParseRecipe(recipe, {})); }

  // Why the step is refused; empty where it is not.
  std::string Refused(const char* step) {
    return RefusalOf([&] { Perform(s, StepOf(WordsOf(step, {}))); });
  }

  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
};

TEST(Recipe, WordsFollowTheQuotingRules) {
  const Variables variables{{"a", "x y"}, {"a_1", "z"}};
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"  load\tframe  a.fts ", {"load", "frame", "a.fts"}},
      {"# all of it", {}},
      {"arcs 1# not a comment #but this", {"arcs", "1#", "not", "a", "comment"}},
      {"\"a b\"c \"\" \"say \"\"hi\"\"\"", {"a bc", "", "say \"hi\""}},
      {"\"# in quotes\"", {"# in quotes"}},
      {"$a ${a}.fts \"$a_1\" $$a 5$$", {"x y", "x y.fts", "z", "$a", "5$"}}};
  for (const auto& [line, words] : cases)
    EXPECT_EQ(WordsOf(line, variables), words) << line;
}

TEST(Recipe, ALineOfMoreThan64KibAfterReplacementIsRefused) {
  const Variables variables{{"half", std::string(32768, 'h')}};
  std::string many;
  for (int i = 0; i < 1'000'000; ++i)
    many += "$half";
  const std::pair<std::string, bool> cases[] = {{"$half $half # $half", true},
                                                {"$half ${half}x", false},
                                                {"$half\"$half\" x", false},
                                                {many, false},
                                                {std::string(65536, 'x'), true}};
  for (const auto& [line, isTaken] : cases) {
    std::string refusal;
    try {
      WordsOf(line, variables);
    } catch (const NotUnderstood& problem) {
      refusal = problem.what();
    }
    EXPECT_EQ(refusal, isTaken ? "" : "the line is longer than 64 KiB after its variables are replaced");
  }
}

TEST(Recipe, StepsReadBackFromTheirTextToTheLastBit) {
  for (const char* line :
       {"load frame \"a b.fts\"", "load frame \"#1.fts\"", "load frame pay$$5.fts",
        "load frame \"say \"\"x\"\".fts\"", "save frame 16 -32", "save spectrum -32", "save object o.fts 17",
        "zap 3 10 12", "zap 3 10 12 5", "identify arc1 512.25", "identify arc2 512.1000000000001 5852.488",
        "normalize points 4 1 2 3", "save mask arc1 m.dat", "plot row 5 r.svg"})
    EXPECT_EQ(TextOf(StepOf(WordsOf(line, {}))), line);

  const auto typed = std::get<steps::Save>(StepOf({"save", "frame", "16"}));
  EXPECT_EQ(typed.pixelType, 16) << "a last word that is a type is the type";
  EXPECT_EQ(typed.file, "");
  EXPECT_EQ(RefusalOf([] { TextOf(steps::Load{"frame", "a\nb"}); }), "Error: 64  Error: Bad file name.");
}

TEST(StepTable, EveryStepHasHelpARoundTripAndATestRecipe) {
  std::set<std::string_view> tested;
  for (const RecipeLine& line : EveryStep()) {
    const std::string text = TextOf(line.step);
    EXPECT_EQ(TextOf(StepOf(WordsOf(text, {}))), text);
    tested.insert(std::visit([](const auto& step) { return step.name; }, line.step));
  }
  const std::string help = LanguageHelp();
  for (const StepInfo& info : StepTable()) {
    EXPECT_TRUE(tested.contains(info.name)) << info.name << " stands in no test recipe";
    EXPECT_FALSE(info.help.empty()) << info.name;
    EXPECT_NE(help.find(info.arguments), std::string::npos) << info.name;
  }
}

TEST_F(SmallNight, ReplayedFromTheJournalGivesTheSameBytes) {
  const TemporaryFolder first;
  Run(RunEveryStep(first.path()));
  const auto expected = BytesIn(first.path());
  EXPECT_EQ(expected.size(), 15u);
  EXPECT_EQ(BytesIn(folder.path()), expected);
  EXPECT_TRUE(expected.contains("star_1Dcal.fts"));
}

constexpr const char* germanLocale = HALMEK_TEST_LOCALES "/de_DE.UTF-8";

// Runs in a process of its own, whose numbers have a decimal comma. Its status is 1 if they have none.
[[noreturn]] void RunWithDecimalCommaAndExit(const std::string& folder) {
  setenv("LOCPATH", HALMEK_TEST_LOCALES, 1);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr || *std::localeconv()->decimal_point != ',')
    _exit(1);
  std::locale::global(std::locale("de_DE.UTF-8"));
  RunEveryStep(folder);
  _exit(0);
}

TEST(Recipe, GivesTheSameBytesInALocaleWithADecimalComma) {
  if (!std::filesystem::exists(germanLocale))
    GTEST_SKIP() << "there is no locale with a decimal comma";
  const TemporaryFolder plain, german;
  RunEveryStep(plain.path());
  EXPECT_EXIT(RunWithDecimalCommaAndExit(german.path()), testing::ExitedWithCode(0), "");
  EXPECT_EQ(BytesIn(german.path()), BytesIn(plain.path()));
}

TEST(Recipe, GoesOnAfterASaveThatFailedAsIfItHadNotFailed) {
  const std::vector<RecipeLine> lines = EveryStep();
  const TemporaryFolder untroubled;
  RunEveryStep(untroubled.path());
  const auto expected = BytesIn(untroubled.path());

  int failures = 0;
  int at = 0;
  for (bool occurred = true; occurred;) {
    FaultyFiles files({.at = ++at, .error = ENOSPC, .lasting = Lasting::always});
    const TemporaryFolder folder;
    WriteSmallNight(folder.path());
    const auto session = SessionIn(folder.path());
    session->fileOperations = files.Operations();
    try {
      RunLines(*session, lines);
    } catch (const RecipeStopped& stopped) {
      ++failures;
      const auto line = std::ranges::find(lines, stopped.line(), &RecipeLine::number);
      const std::string named = FileOf(line->step), file = named.empty() ? "star_1D" : named;
      EXPECT_TRUE(std::string(stopped.what()).starts_with(file)) << stopped.what();
      EXPECT_NE(std::string(stopped.what()).find(": Error: 61  Error: Disk full."), std::string::npos);
      for (const auto& [name, bytes] : BytesIn(folder.path()))
        EXPECT_TRUE(expected.contains(name) && expected.at(name) == bytes) << name;
      session->fileOperations = {};
      RunLines(*session, {line, lines.end()});
    }
    EXPECT_EQ(BytesIn(folder.path()), expected) << "operation " << at;
    occurred = files.occurred();
  }
  EXPECT_GT(failures, 30);
}

TEST_F(SmallNight, JournalKeepsWhatWasDoneAsStepsAndWhatWasRefusedAsComments) {
  for (const char* step : {"load frame star.fts", "fix-column 2", "load arc1 none.fts", "fix-column 200"})
    Refused(step);
  EXPECT_EQ(
      JournalText(s),
      "# Steps performed by Halmek\n"
      "load frame star.fts\n"
      "# refused: fix-column 2  # Enter a valid column number, please - not within 3 pixels of the edge.\n"
      "# refused: load arc1 none.fts  # Error: 53  Error: File not found.\n"
      "fix-column 200\n");
  EXPECT_EQ(ParseRecipe(JournalText(s), {}).size(), 2u);
}

// Where and why the recipe stops: its line and the text; empty where it does not stop.
std::string StopOf(const std::string& folder, const char* recipe) {
  try {
    RunLines(*SessionIn(folder), ParseRecipe(recipe, {{"f", "a\ncrunch"}}));
  } catch (const RecipeStopped& stopped) {
    return std::to_string(stopped.line()) + ": " + stopped.what();
  }
  return {};
}

TEST_F(SmallNight, StopsARecipeAtTheFirstRefusalNamingLineFileAndDetail) {
  std::filesystem::create_directories(folder.File("taken/star_1D.fts"));
  WriteFile(folder.File("short.fts"), ReadFile(folder.File("star.fts")).substr(0, 20000));
  const std::pair<const char*, const char*> cases[] = {
      {"load frame $f\n", "1: the line holds a character that no text has"},
      {"load frame a\x7F.fts\n", "1: the line holds a character that no text has"},
      {"load frame star.fts\nload frame none.fts\ncrunch\n",
       "2: none.fts: Error: 53  Error: File not found."},
      {"load frame short.fts\n",
       "1: short.fts: Error: 62  Error: Input past end of file. (the pixels end at byte 50880, the file at "
       "20000)"},
      {"folder none\n", "1: none: Error: 76  Error: Path not found."},
      {"load frame star.fts\ncrunch\n", "2: Hey, you need to set the aperture and fit the background first!"},
      {"load frame star.fts\ntrim 1 1 390 60\ntrim 1 1 10 10\n",
       "3: This frame has been trimmed already.  Load the frame again to trim it."},
      {"load frame star.fts\nfix-column 9\nfix-column 9\n",
       "3: A column of this frame has been fixed already.  Load the frame again to fix another."},
      {"load frame star.fts\nundo-zap\n", "2: Hey, there is no zap to undo!"},
      {"load frame star.fts\nzap 61 1 2\n", "2: Row 61 is outside 1 to 60.  Please try again."},
      {"load frame star.fts\nzap 6 0 2\n", "2: Column 0 is outside 1 to 400.  Please try again."},
      {"load frame star.fts\nzap 6 1 2 2147483647\n",
       "2: Error: 6  Error: Overflow. (a whole number must lie within -32768 to 32767)"},
      {"arcs 1\nload arc2 star.fts\n",
       "2: star.fts: Hey, the number of arc files is 1!  Set it to 2 to load Arc 2."},
      {"load object star.fts\n",
       "1: star.fts: Hey, this is not a 1-D file!  Please try again. (NAXIS2 is 60)"},
      {"revert\n", "1: Hey, the frame has not been collapsed to 1-D yet!"},
      {"save object\n", "1: Hey, no Object file has been loaded!"},
      {"save frame\n", "1: Hey, no 2-D file has been loaded!"},
      {"header arc2\n", "1: Hey, no file has been loaded."},
      {"load frame star.fts\nplot row 99 r.svg\n",
       "2: r.svg: Row to plot is greater than the number of rows.  Press any key to continue."},
      {"load frame star.fts\naperture 24 36\nbackground 2 12 48 58 1\ncrunch\nfolder taken\nsave spectrum\n",
       "6: star_1D.fts: Error: 75  Error: Path/file access error. (it is a folder)"},
      {"load frame arc.fts\naperture 20 40\nbackground 2 12 48 58 1\ncrunch\nsave spectrum s.fts 17\n",
       "5: s.fts: Error: 6  Error: Overflow. (the pixel value 136353.000000 does not fit 16 bits)"},
  };
  for (const auto& [recipe, stop] : cases)
    EXPECT_EQ(StopOf(folder.path(), recipe), stop) << recipe;
  EXPECT_EQ(FilesIn(folder.path()),
            (std::vector<std::string>{"arc.fts", "lines.txt", "short.fts", "star.fts", "taken"}));
}

TEST_F(SmallNight, IdentifyChecksWhatTheWindowsCheck) {
  EXPECT_EQ(Refused("identify arc1 40 5000"), "Hey, no Arc 1 file has been loaded!");
  Run("load frame arc.fts\naperture 24 36\nbackground 2 12 48 58 1\ncrunch\nsave spectrum lamp.fts\n"
      "load arc1 lamp.fts\n");
  const std::pair<const char*, const char*> cases[] = {
      {"identify arc1 40", "Hey, you need to identify two lines by their wavelengths first!"},
      {"identify arc1 401 5000", "Column 401 is outside 1 to 400.  Please try again."},
      {"identify arc1 65 5000", "There is no maximum in this range.  Please try again."},
      {"identify arc1 43.4 5000", ""},
      {"identify arc1 40 5001",
       "This line has been identified already.  Delete it first to change its wavelength."},
      {"identify arc1 340 5300", ""},
      {"identify arc1 90", "Hey, you need to load the wavelength table first!"},
      {"load table lines.txt", ""},
      {"delete-line arc1 140", "There is no identified line at column 140.  Please try again."}};
  for (const auto& [step, refusal] : cases)
    EXPECT_EQ(Refused(step), refusal) << step;
  const std::string found = Perform(s, steps::Identify{"arc1", 90, {}}).found;
  EXPECT_NE(found.find("is 5050 Angstroms (line 90); 3 lines, 1.00000 Angstroms per pixel"),
            std::string::npos)
      << found;
}

}  // namespace
}  // namespace halmek::test
