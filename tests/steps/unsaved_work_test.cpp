// What an evening would lose: work that is in no file, and the journal that outlives the program.
#include "steps/unsaved_work.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "steps/journal_file.h"
#include "steps/perform.h"
#include "steps/recipe.h"
#include "steps/step_text.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

using Texts = std::vector<std::string>;

const std::string extract = "aperture 24 36\nbackground 2 12 48 58 0\ncrunch\n";

class UnsavedWorkTest : public testing::Test {
 protected:
  UnsavedWorkTest() { WriteSmallNight(folder.path()); }
  static Step StepIn(const std::string& line) { return StepOf(WordsOf(line, {})); }
  void Run(const std::string& recipe) {
    for (const RecipeLine& line : ParseRecipe(recipe, {}))
      Perform(s, line.step);
  }

  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
};

TEST_F(UnsavedWorkTest, IsWhatNoFileHolds) {
  const std::string frame = "the changes of the frame star.fts",
                    spectrum = "the spectrum extracted from star.fts", arc = "the 1 identified line of Arc 1",
                    object = "the calibrated spectrum of star_1D.fts";
  const std::pair<std::string, Texts> evening[] = {
      {"load frame star.fts", {}},
      {"zap 30 100 102", {frame}},
      {"save frame zapped.fts", {}},
      {"trim 1 1 390 60", {frame}},
      {extract, {frame, spectrum}},
      {"normalize auto 20 4", {frame, spectrum}},
      {"save spectrum", {}},
      {"revert", {spectrum}},
      {"zap 30 200 202", {frame, spectrum}},
      {"save spectrum", {frame}},
      {"load frame arc.fts", {}},
      {"trim 1 1 390 60", {"the changes of the frame arc.fts"}},
      {extract, {"the changes of the frame arc.fts", "the spectrum extracted from arc.fts"}},
      {"save spectrum lamp.fts", {}},
      {"load arc1 lamp.fts\nidentify arc1 40 5000", {arc}},
      {"delete-lines arc1", {}},
      {"identify arc1 40 5000\nidentify arc1 340 5300", {"the 2 identified lines of Arc 1"}},
      {"identify arc1 190 5150", {"the 3 identified lines of Arc 1"}},
      {"save mask arc1 m.dat\nfit-deviations arc1 2\narcs 1\nload object star_1D.fts", {}},
      {"correct", {object}},
      {"export object x.txt", {object}},
      {"save object", {}}};
  for (const auto& [recipe, unsaved] : evening) {
    Run(recipe);
    EXPECT_EQ(UnsavedWork(s), unsaved) << recipe;
  }
}

TEST_F(UnsavedWorkTest, IsLostByWhatTakesItsPlace) {
  Run("load frame arc.fts\n" + extract + "save spectrum a.fts\nload arc2 a.fts\nidentify arc2 40 5000\n" +
      "load frame star.fts\ntrim 1 1 390 60\n" + extract + "save spectrum\ncrunch\n");
  const Texts frame{"the changes of the frame star.fts"}, arc{"the 1 identified line of Arc 2"};
  const auto lost = [&](const char* step) { return LostBy(s, StepIn(step)); };
  EXPECT_EQ(lost("load frame arc.fts"), Texts{}) << "its changes are in the spectrum that was saved";
  Run("fix-column 200");
  EXPECT_EQ(lost("load frame arc.fts"), frame);
  EXPECT_EQ(lost("load dao arc.fts"), frame);
  EXPECT_EQ(lost("load arc2 a.fts"), arc);
  for (const char* harmless : {"load arc1 a.fts", "load object a.fts", "load table lines.txt", "crunch"})
    EXPECT_EQ(lost(harmless), Texts{}) << harmless;
  Run("load frame arc.fts");
  EXPECT_EQ(lost("crunch"), Texts{"the spectrum extracted from star.fts"});
}

TEST_F(UnsavedWorkTest, TheJournalOnTheDiskOutlivesTheSession) {
  const std::string state = folder.File("state/halmek"), start = folder.path();
  std::optional<JournalFile> journal;
  journal.emplace(state, start);
  s.keepJournal = [&](const std::string& line) { journal->Append(line); };
  EXPECT_TRUE(LeftJournals(state).empty());
  Run("load frame star.fts");
  RefusalOf([&] { Perform(s, StepIn("fix-column 2")); });
  Run("zap 30 100 102");
  EXPECT_TRUE(LeftJournals(state).empty()) << "its session lives";
  const std::string path = journal->path();
  journal.reset();

  const auto left = LeftJournals(state);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].path, path);
  EXPECT_EQ(left[0].steps, 2);
  EXPECT_EQ(left[0].lastStep, "zap 30 100 102");
  const auto again = SessionIn("/");
  EXPECT_TRUE(RunRecipeFile(*again, path, {}).isDone);
  EXPECT_EQ(again->dataFolder, start);
  EXPECT_EQ(again->image(30, 101), s.image(30, 101));

  journal.emplace(state, start);
  journal->Append("crunch");
  journal->Remove();
  EXPECT_EQ(FilesIn(state).size(), 1u);
  JournalFile nowhere("", start);
  EXPECT_EQ(RefusalOf([&] { nowhere.Append("crunch"); }), "Error: 76  Error: Path not found.");
}

}  // namespace
}  // namespace halmek::test
