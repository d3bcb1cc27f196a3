// The recipe language: words, steps as text, whole recipes and the journal.
#include "steps/recipe.h"

#include <fitsio.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <locale>
#include <map>
#include <set>

#include "support/faulty_files.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

std::string RecipeFile(const std::string& name) {
  return ReadFile(std::string(HALMEK_TEST_RECIPES) + "/" + name);
}

// Why the recipe is not understood, with its line in front; empty where it is.
std::string Misunderstanding(const std::string& text, const Variables& variables = {}) {
  try {
    ParseRecipe(text, variables);
  } catch (const RecipeStopped& stopped) {
    return std::to_string(stopped.line()) + ": " + stopped.what();
  }
  return {};
}

// The bytes of all files in a folder.
std::map<std::string, std::string> BytesIn(const std::string& folder) {
  std::map<std::string, std::string> bytes;
  for (const std::string& name : FilesIn(folder))
    bytes[name] = ReadFile(folder + "/" + name);
  return bytes;
}

// Runs the recipe in the folder and returns its journal.
std::string RunIn(const std::string& folder, const std::string& recipe, const Variables& variables = {}) {
  const auto session = SessionIn(folder);
  RunRecipe(*session, ParseRecipe(recipe, variables), [](const RecipeLine&, const Outcome&) {});
  return JournalText(*session);
}

TEST(Recipe, WordsFollowTheQuotingRules) {
  const Variables variables{{"a", "x y"}, {"a_1", "z"}};
  const struct {
    const char* line;
    std::vector<std::string> words;
  } cases[] = {{"  load\tframe  a.fts ", {"load", "frame", "a.fts"}},
               {"# all of it", {}},
               {"arcs 1# not a comment #but this", {"arcs", "1#", "not", "a", "comment"}},
               {"\"a b\"c \"\" \"say \"\"hi\"\"\"", {"a bc", "", "say \"hi\""}},
               {"\"# in quotes\"", {"# in quotes"}},
               {"$a ${a}.fts \"$a_1\" $$a 5$$", {"x y", "x y.fts", "z", "$a", "5$"}}};
  for (const auto& c : cases)
    EXPECT_EQ(WordsOf(c.line, variables), c.words) << c.line;
}

TEST(Recipe, AValueMayNotHoldWhatNoTextHas) {
  EXPECT_EQ(Misunderstanding("load frame $f", {{"f", "a\ncrunch"}}),
            "1: the line holds a character that no text has");
}

TEST(Recipe, StepsReadBackFromTheirTextToTheLastBit) {
  const char* lines[] = {
      "load frame \"a b.fts\"",
      "load frame \"#1.fts\"",
      "load frame pay$$5.fts",
      "load frame \"say \"\"x\"\".fts\"",
      "save frame 16 -32",
      "save spectrum -32",
      "save object o.fts 17",
      "zap 3 10 12",
      "zap 3 10 12 5",
      "identify arc1 512.25",
      "identify arc2 512.1000000000001 5852.4880000000003",
      "normalize points 4 1 2 3",
      "save mask arc1 m.dat",
      "plot row 5 r.svg",
  };
  for (const char* line : lines) {
    const std::string text = TextOf(StepOf(WordsOf(line, {})));
    EXPECT_EQ(TextOf(StepOf(WordsOf(text, {}))), text);
    EXPECT_EQ(WordsOf(text, {}), WordsOf(TextOf(StepOf(WordsOf(text, {}))), {}));
  }
  const auto identify =
      std::get<steps::Identify>(StepOf(WordsOf("identify arc2 512.1000000000001 5852.488", {})));
  const auto again = std::get<steps::Identify>(StepOf(WordsOf(TextOf(identify), {})));
  EXPECT_EQ(again.column, identify.column);
  EXPECT_EQ(again.wavelength, identify.wavelength);

  const auto typed = std::get<steps::Save>(StepOf({"save", "frame", "16"}));
  EXPECT_EQ(typed.pixelType, 16) << "a last word that is a type is the type";
  EXPECT_EQ(typed.file, "");
  EXPECT_EQ(RefusalOf([] { TextOf(steps::Load{"frame", "a\nb"}); }), "Error: 64  Error: Bad file name.");
}

TEST(StepTable, EveryStepHasHelpARoundTripAndATestRecipe) {
  const TemporaryFolder folder;
  const Variables variables{{"in", folder.path()}, {"star", "star.fts"}, {"arc", "arc.fts"}};
  std::set<std::string_view> tested;
  for (const RecipeLine& line : ParseRecipe(RecipeFile("every_step.recipe"), variables)) {
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

TEST(Recipe, ReplayedFromItsJournalGivesTheSameBytes) {
  const TemporaryFolder first, replayed;
  for (const auto* folder : {&first, &replayed})
    WriteSmallNight(folder->path());
  const std::string recipe = RecipeFile("every_step.recipe");
  Variables variables{{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}};
  const std::string journal = RunIn(first.path(), recipe, variables);
  RunIn(replayed.path(), journal);

  const auto expected = BytesIn(first.path());
  EXPECT_EQ(expected.size(), 15u);
  EXPECT_EQ(BytesIn(replayed.path()), expected);
  EXPECT_TRUE(expected.contains("star_1Dcal.fts"));
}

constexpr const char* germanLocale = HALMEK_TEST_LOCALES "/de_DE.UTF-8";

// Runs the recipe in a process of its own, whose numbers have a decimal comma. Its status is 1 if they have
// none.
[[noreturn]] void RunWithDecimalCommaAndExit(const std::string& folder, const std::string& recipe,
                                             const Variables& variables) {
  setenv("LOCPATH", HALMEK_TEST_LOCALES, 1);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr || *std::localeconv()->decimal_point != ',')
    _exit(1);
  std::locale::global(std::locale("de_DE.UTF-8"));
  WriteSmallNight(folder);
  RunIn(folder, recipe, variables);
  _exit(0);
}

TEST(Recipe, GivesTheSameBytesInALocaleWithADecimalComma) {
  if (!std::filesystem::exists(germanLocale))
    GTEST_SKIP() << "there is no locale with a decimal comma";
  const TemporaryFolder plain, german;
  const std::string recipe = RecipeFile("every_step.recipe");
  const Variables variables{{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}};
  WriteSmallNight(plain.path());
  RunIn(plain.path(), recipe, variables);
  EXPECT_EXIT(RunWithDecimalCommaAndExit(german.path(), recipe, variables), testing::ExitedWithCode(0), "");
  EXPECT_EQ(BytesIn(german.path()), BytesIn(plain.path()));
}

// The lines from the first on that is numbered `number` or more.
std::vector<RecipeLine> LinesFrom(const std::vector<RecipeLine>& lines, int number) {
  std::vector<RecipeLine> rest;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(rest),
               [number](const RecipeLine& line) { return line.number >= number; });
  return rest;
}

TEST(Recipe, GoesOnAfterASaveThatFailedAsIfItHadNotFailed) {
  const auto ignored = [](const RecipeLine&, const Outcome&) {};
  const std::string recipe = RecipeFile("every_step.recipe");
  const std::vector<RecipeLine> lines =
      ParseRecipe(recipe, {{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}});
  const TemporaryFolder untroubled;
  WriteSmallNight(untroubled.path());
  RunIn(untroubled.path(), recipe, {{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}});
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
      RunRecipe(*session, lines, ignored);
    } catch (const RecipeStopped& stopped) {
      ++failures;
      const std::vector<RecipeLine> rest = LinesFrom(lines, stopped.line());
      const std::string named = FileOf(rest[0].step), file = named.empty() ? "star_1D" : named;
      EXPECT_TRUE(std::string(stopped.what()).starts_with(file)) << stopped.what();
      EXPECT_TRUE(std::string(stopped.what()).ends_with(": Error: 61  Error: Disk full.")) << stopped.what();
      for (const auto& [name, bytes] : BytesIn(folder.path()))
        EXPECT_TRUE(expected.contains(name) && expected.at(name) == bytes) << name;
      session->fileOperations = {};
      RunRecipe(*session, rest, ignored);
    }
    EXPECT_EQ(BytesIn(folder.path()), expected) << "operation " << at;
    occurred = files.occurred();
  }
  EXPECT_GT(failures, 30);
}

// The first pixels of a file, by CFITSIO.
std::vector<double> PixelsByCfitsio(const std::string& path, size_t count) {
  std::vector<double> values(count);
  fitsfile* file = nullptr;
  int status = 0;
  fits_open_file(&file, path.c_str(), READONLY, &status);
  fits_read_img(file, TDOUBLE, 1, static_cast<LONGLONG>(count), nullptr, values.data(), nullptr, &status);
  fits_close_file(file, &status);
  EXPECT_EQ(status, 0) << path;
  return values;
}

TEST(Recipe, WritesFilesThatCfitsioReadsAlike) {
  const TemporaryFolder folder;
  WriteSmallNight(folder.path());
  RunIn(folder.path(), RecipeFile("every_step.recipe"),
        {{"in", "."}, {"star", "star.fts"}, {"arc", "arc.fts"}});
  const auto session = SessionIn(folder.path());
  for (const char* name : {"star_1D.fts", "star_1Dcal.fts", "lamp.fts"}) {
    Perform(*session, steps::Load{"object", name});
    const auto values = session->slot[slots::object].spectrum.Range(1, 390);
    EXPECT_EQ(PixelsByCfitsio(folder.File(name), 390), std::vector(values.begin(), values.end())) << name;
  }
  Perform(*session, steps::Load{"frame", "trimmed star.fts"});
  const auto pixels = PixelsByCfitsio(folder.File("trimmed star.fts"), 390 * 60);
  for (int row = 1; row <= 60; ++row)
    EXPECT_EQ(pixels[static_cast<size_t>(row) * 390 - 1], session->image(row, 390));
}

TEST(Journal, KeepsWhatWasDoneAsStepsAndWhatWasRefusedAsComments) {
  const TemporaryFolder folder;
  WriteSmallNight(folder.path());
  const auto session = SessionIn(folder.path());
  Perform(*session, steps::Load{"frame", "star.fts"});
  EXPECT_THROW(Perform(*session, steps::FixColumn{2}), Refusal);
  EXPECT_THROW(Perform(*session, steps::Load{"arc1", "none.fts"}), RunTimeError);
  Perform(*session, steps::FixColumn{200});
  EXPECT_EQ(
      JournalText(*session),
      "load frame star.fts\n"
      "# refused: fix-column 2  # Enter a valid column number, please - not within 3 pixels of the edge.\n"
      "# refused: load arc1 none.fts  # Error: 53  Error: File not found.\n"
      "fix-column 200\n");
  EXPECT_EQ(ParseRecipe(JournalText(*session), {}).size(), 2u);
}

TEST(Recipe, StopsAtTheFirstRefusalNamingLineFileAndDetail) {
  const TemporaryFolder folder;
  WriteSmallNight(folder.path());
  std::filesystem::create_directories(folder.File("taken/star_1D.fts"));
  WriteFile(folder.File("short.fts"), ReadFile(folder.File("star.fts")).substr(0, 20000));
  const struct {
    const char* recipe;
    int line;
    const char* text;
  } cases[] = {
      {"load frame star.fts\nload frame none.fts\ncrunch\n", 2,
       "none.fts: Error: 53  Error: File not found."},
      {"load frame short.fts\n", 1,
       "short.fts: Error: 62  Error: Input past end of file. (the pixels end at byte 50880, the file at "
       "20000)"},
      {"folder none\n", 1, "none: Error: 76  Error: Path not found."},
      {"crunch\n", 1, "Hey, no 2-D file has been loaded!"},
      {"load frame star.fts\ncrunch\n", 2, "Hey, you need to set the aperture and fit the background first!"},
      {"load frame star.fts\ntrim 1 1 390 60\ntrim 1 1 10 10\n", 3,
       "This frame has been trimmed already.  Load the frame again to trim it."},
      {"load frame star.fts\nfix-column 9\nfix-column 9\n", 3,
       "A column of this frame has been fixed already.  Load the frame again to fix another."},
      {"load frame star.fts\nundo-zap\n", 2, "Hey, there is no zap to undo!"},
      {"load frame star.fts\nzap 61 1 2\n", 2, "Row 61 is outside 1 to 60.  Please try again."},
      {"load frame star.fts\nzap 6 0 2\n", 2, "Column 0 is outside 1 to 400.  Please try again."},
      {"load frame star.fts\naperture 0 5\n", 2, "Row 0 is outside 1 to 60.  Please try again."},
      {"load frame star.fts\nzap 6 1 2 2147483647\n", 2,
       "Error: 6  Error: Overflow. (a whole number must lie within -32768 to 32767)"},
      {"load frame star.fts\nfix-column 40000\n", 2,
       "Error: 6  Error: Overflow. (a whole number must lie within -32768 to 32767)"},
      {"arcs 1\nload arc2 star.fts\n", 2,
       "star.fts: Hey, the number of arc files is 1!  Set it to 2 to load Arc 2."},
      {"load object star.fts\n", 1,
       "star.fts: Hey, this is not a 1-D file!  Please try again. (NAXIS2 is 60)"},
      {"revert\n", 1, "Hey, the frame has not been collapsed to 1-D yet!"},
      {"save object\n", 1, "Hey, no Object file has been loaded!"},
      {"save frame\n", 1, "Hey, no 2-D file has been loaded!"},
      {"header arc2\n", 1, "Hey, no file has been loaded."},
      {"apply-mask arc1\n", 1, "Hey, no Arc 1 file has been loaded!"},
      {"load frame star.fts\nplot row 99 r.svg\n", 2,
       "r.svg: Row to plot is greater than the number of rows.  Press any key to continue."},
      {"load frame star.fts\nsave frame x/y.fts\n", 2, "x/y.fts: Error: 76  Error: Path not found."},
      {"load frame star.fts\naperture 24 36\nbackground 2 12 48 58 1\ncrunch\nfolder taken\nsave spectrum\n",
       6, "star_1D.fts: Error: 75  Error: Path/file access error. (it is a folder)"},
  };
  for (const auto& c : cases) {
    try {
      RunIn(folder.path(), c.recipe);
      ADD_FAILURE() << c.recipe;
    } catch (const RecipeStopped& stopped) {
      EXPECT_EQ(stopped.line(), c.line) << c.recipe;
      EXPECT_STREQ(stopped.what(), c.text) << c.recipe;
    }
  }
  EXPECT_EQ(FilesIn(folder.path()),
            (std::vector<std::string>{"arc.fts", "lines.txt", "short.fts", "star.fts", "taken"}));
}

TEST(Perform, ARefusedBackgroundOrZapLeavesTheSelectionAsItWas) {
  const auto session = SessionIn("/");
  SetFrame(*session, 50, 500, [](int c, int r) { return 500.0 + c + r; });
  Perform(*session, steps::Aperture{20, 30});
  Perform(*session, steps::Background{2, 10, 40, 45, 1});
  EXPECT_THROW(Perform(*session, steps::Background{2, 200, 240, 400, 1}), Refusal);
  EXPECT_THROW(Perform(*session, steps::Background{2, 10, 40, 45, 3}), Refusal);
  EXPECT_THROW(Perform(*session, steps::Zap{5, 1, 50, 3}), Refusal);
  EXPECT_EQ(session->slice.background1LastRow, 10);
  EXPECT_EQ(session->background.backgroundPower, 1);
  EXPECT_TRUE(session->background.backgroundFitted);
  EXPECT_FALSE(session->rowPlot.zapSelected);
  Perform(*session, steps::Crunch{});
  EXPECT_NEAR(session->slot[slots::spectrum].spectrum(25), 0, 1e-9);
}

TEST(Perform, ANewFrameOrATrimNeedsANewFit) {
  const TemporaryFolder folder;
  WriteSmallNight(folder.path());
  const auto session = SessionIn(folder.path());
  for (const Step& change : {Step(steps::Load{"frame", "arc.fts"}), Step(steps::Trim{1, 1, 390, 60})}) {
    Perform(*session, steps::Load{"frame", "star.fts"});
    Perform(*session, steps::Zap{30, 100, 102, 3});
    Perform(*session, steps::Aperture{24, 36});
    Perform(*session, steps::Background{2, 12, 48, 58, 1});
    Perform(*session, change);
    EXPECT_EQ(RefusalOf([&] { Perform(*session, steps::Crunch{}); }),
              "Hey, you need to set the aperture and fit the background first!");
    EXPECT_EQ(RefusalOf([&] { Perform(*session, steps::UndoZap{}); }), "Hey, there is no zap to undo!");
  }
}

TEST(Perform, IdentifyChecksWhatTheWindowsCheck) {
  const TemporaryFolder folder;
  WriteSmallNight(folder.path());
  const auto session = SessionIn(folder.path());
  const auto refusal = [&](const steps::Identify& step) {
    return RefusalOf([&] { Perform(*session, step); });
  };
  EXPECT_EQ(refusal({"arc1", 40, 5000}), "Hey, no Arc 1 file has been loaded!");
  RunRecipe(*session,
            ParseRecipe("load frame arc.fts\naperture 24 36\nbackground 2 12 48 58 1\ncrunch\n"
                        "save spectrum lamp.fts\nload arc1 lamp.fts\n",
                        {}),
            [](const RecipeLine&, const Outcome&) {});
  EXPECT_EQ(refusal({"arc1", 40, {}}), "Hey, you need to identify two lines by their wavelengths first!");
  EXPECT_EQ(refusal({"arc1", 401, 5000}), "Column 401 is outside 1 to 400.  Please try again.");
  EXPECT_EQ(refusal({"arc1", 65, 5000}), "There is no maximum in this range.  Please try again.");
  EXPECT_EQ(refusal({"arc1", 43.4, 5000}), "");
  EXPECT_EQ(refusal({"arc1", 40, 5001}),
            "This line has been identified already.  Delete it first to change its wavelength.");
  EXPECT_EQ(refusal({"arc1", 340, 5300}), "");
  EXPECT_EQ(refusal({"arc1", 90, {}}), "Hey, you need to load the wavelength table first!");
  Perform(*session, steps::Load{"table", "lines.txt"});
  const Outcome outcome = Perform(*session, steps::Identify{"arc1", 90, {}});
  EXPECT_NE(outcome.found.find("is 5050 Angstroms (line 90); 3 lines, 1.00000 Angstroms per pixel"),
            std::string::npos)
      << outcome.found;
  EXPECT_EQ(RefusalOf([&] {
              Perform(*session, steps::DeleteLine{"arc1", 140});
            }),
            "There is no identified line at column 140.  Please try again.");
}

}  // namespace
}  // namespace halmek::test
