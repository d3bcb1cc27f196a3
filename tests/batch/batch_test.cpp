// halmek-batch as its users run it: exit statuses, output, many files at once, bad input.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "support/small_night.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

using std::literals::operator""s;

struct Ended {
  int status = 0;
  std::string out, err;

  std::pair<int, std::string> complaint() const { return {status, err}; }
};

class BatchTest : public testing::Test {
 protected:
  BatchTest() { WriteSmallNight(folder.path()); }

  // Runs the program in `folder` with these arguments, as a shell reads them.
  Ended Run(const std::string& arguments) const {
    const std::string command = "cd '" + folder.path() + "' && '" + HALMEK_BATCH + "' " + arguments + " >'" +
                                streams.File("out") + "' 2>'" + streams.File("err") + "'";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), ReadFile(streams.File("out")), ReadFile(streams.File("err"))};
  }
  Ended RunRecipe(const std::string& recipe, const std::string& arguments = {}) const {
    WriteFile(folder.File("r.recipe"), recipe);
    return Run("r.recipe " + arguments);
  }

  TemporaryFolder folder, streams;
};

const std::string extraction =
    "load frame $frame\naperture 24 36\nbackground 2 12 48 58 1\ncrunch\nsave spectrum\n";

TEST_F(BatchTest, PrintsALineAStepAndStopsAtTheFirstRefusalWithStatusOne) {
  const Ended done = RunRecipe("load frame $star\nfix-column 7\n", "star=star.fts");
  EXPECT_EQ(done.complaint(), std::pair(0, ""s));
  EXPECT_EQ(done.out.substr(0, done.out.find('\n')),
            "1 load frame star.fts: 400 x 60 pixels, 16-bit unsigned, 401 to 9680, object Test star");
  EXPECT_EQ(
      RunRecipe("load frame star.fts\n\nfix-column 2\ncrunch\n").complaint(),
      std::pair(1, "r.recipe:3: Enter a valid column number, please - not within 3 pixels of the edge.\n"s));
}

TEST_F(BatchTest, WhatCannotBeUnderstoodRunsNothingWithStatusTwo) {
  const std::string save = "load frame star.fts\nsave frame copy.fts\n";
  const struct {
    std::string recipe, arguments, message;
  } cases[] = {
      {save + "fry\n", "", "r.recipe:3: unknown command 'fry'\n"},
      {save, "star", "halmek-batch: 'star' is not NAME=VALUE\n"},
      {save, "--jobs 0", "halmek-batch: --jobs: Value 0 not in range 1 to 256; see halmek-batch --help\n"},
      {save, "--for star a.fts", "halmek-batch: the recipe does not use $star\n"},
      {save + "load arc1 $lamp\n", "--for star a.fts b.fts",
       "r.recipe:3: $lamp has no value; give it one as in lamp=VALUE\n"}};
  for (const auto& c : cases) {
    EXPECT_EQ(RunRecipe(c.recipe, c.arguments).complaint(), std::pair(2, c.message));
    EXPECT_FALSE(std::filesystem::exists(folder.File("copy.fts")));
  }
  EXPECT_EQ(Run("none.recipe").complaint(),
            std::pair(2, "none.recipe: Error: 53  Error: File not found.\n"s));
  EXPECT_EQ(Run("").status, 2);
}

TEST_F(BatchTest, SeveralJobsGiveTheSameFilesAsOneAndAFailureDoesNotStopTheOthers) {
  std::map<std::string, std::string> bytes;
  for (const std::string jobs : {"1", "3"}) {
    const Ended ended = RunRecipe(extraction + "export spectrum x_$frame.txt\n",
                                  "--jobs " + jobs + " --for frame arc.fts none.fts star.fts");
    EXPECT_EQ(ended.out,
              "arc.fts: done, wrote arc_1D.fts, x_arc.fts.txt\nstar.fts: done, wrote star_1D.fts, "
              "x_star.fts.txt\n\n"
              "file      object     lines  RMS (A)  scale (A/pixel)    S/N  warnings\n"
              "arc.fts   Test star      -        -                -      1         0\n"
              "none.fts  -              -        -                -      -    FAILED\n"
              "star.fts  Test star      -        -                -  24840         0\n");
    EXPECT_EQ(ended.complaint(),
              std::pair(1, "none.fts: r.recipe:1: none.fts: Error: 53  Error: File not found.\n"s));
    for (const char* name : {"arc_1D.fts", "star_1D.fts", "x_arc.fts.txt", "x_star.fts.txt"}) {
      const std::string written = ReadFile(folder.File(name));
      EXPECT_EQ(bytes.try_emplace(name, written).first->second, written) << name;
      EXPECT_TRUE(std::filesystem::remove(folder.File(name))) << name;
    }
  }
}

size_t CountOf(const std::string& part, const std::string& text) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

// Looking at a run must not change what it gives; nor must the page depend on anything beside it.
TEST_F(BatchTest, AReportShowsEveryRunOnOnePageAndChangesNoResult) {
  const std::string recipe =
      "load frame arc.fts\naperture 20 30\nbackground 2 12 48 58 0\ncrunch\naperture 24 36\nbackground 2 12 "
      "48 58 0\ncrunch\nsave spectrum\n"
      "load table lines.txt\nload arc1 arc_1D.fts\narcs 1\nidentify arc1 40 5000\nidentify arc1 240 5200\n"
      "identify arc1 90\nidentify arc1 140\nidentify arc1 340\nfit-deviations arc1 2\ndelete-line arc1 140\n"
      "fit-deviations arc1 2\nidentify arc1 290\n" +
      extraction +
      "normalize auto 25 3\nrevert\nnormalize auto 25 2\nsave spectrum\nload object star_1D.fts\n"
      "correct\nsave object c_$frame\nsave mask arc1 mask.dat\n# <&>\n";
  const std::string arguments = "--for frame none.fts star.fts";
  RunRecipe(recipe, arguments);
  const std::string spectrum = ReadFile(folder.File("c_star.fts")), mask = ReadFile(folder.File("mask.dat"));
  const Ended ended = RunRecipe(recipe, "--report night.html " + arguments);
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ReadFile(folder.File("c_star.fts")), spectrum);
  EXPECT_EQ(ReadFile(folder.File("mask.dat")), mask);
  EXPECT_NE(ended.out.find("\nstar.fts  Test star      5"), std::string::npos) << ended.out;

  const std::string page = ReadFile(folder.File("night.html"));
  // The arc before the frame that is missing is shown, too.
  for (const auto& [figure, count] : std::map<std::string, size_t>{{"Slice of arc.fts", 4},
                                                                   {"Slice of star.fts", 1},
                                                                   {"Continuum of star.fts", 1},
                                                                   {"Arc arc_1D.fts", 2},
                                                                   {"Deviations of arc_1D.fts", 2}})
    EXPECT_EQ(CountOf("<b>" + figure + "</b>", page), count) << figure;
  EXPECT_EQ(CountOf("<svg xmlns", page), 10u);
  EXPECT_NE(page.find("none.fts: Error: 53  Error: File not found."), std::string::npos);
  EXPECT_NE(page.find("# &lt;&amp;&gt;"), std::string::npos);
  EXPECT_EQ(CountOf("http", page), CountOf("xmlns=\"http://www.w3.org/2000/svg\"", page));
  for (const char* loading : {"<script", "src=", "url(", "@import", "<link"})
    EXPECT_EQ(page.find(loading), std::string::npos) << loading;

  const std::string frame = ReadFile(folder.File("star.fts"));
  const auto files = FilesIn(folder.path());
  for (const auto& [name, message] : std::map<std::string, std::string>{
           {"none/night.html", "none/night.html: Error: 76  Error: Path not found."},
           {"star.fts", "a report's name must end in .html, not 'star.fts'"}}) {
    const Ended refused = Run("r.recipe frame=star.fts --report " + name);
    EXPECT_EQ(refused.complaint(), std::pair(2, "halmek-batch: " + message + "\n"));
  }
  EXPECT_EQ(FilesIn(folder.path()), files);
  EXPECT_EQ(ReadFile(folder.File("star.fts")), frame);
}

// However the folder is named, and by whichever of the runs it is named; a file that one run writes twice is
// fine.
TEST_F(BatchTest, OneFileWrittenForTwoInputsIsAFailure) {
  std::filesystem::create_directory(folder.File("other"));
  std::filesystem::create_symlink("other", folder.File("link"));
  std::filesystem::copy(folder.File("star.fts"), folder.File("other/star.fts"));
  const std::string twice = "folder $dir\nload frame star.fts\nsave frame x.fts\nsave frame x.fts\n";
  const std::string other = folder.File("other/x.fts");
  const struct {
    std::string recipe, inputs, overwritten;
  } cases[] = {
      {extraction, "frame star.fts other/star.fts",
       folder.File("star_1D.fts") + ": written for star.fts and for other/star.fts"},
      {twice, "dir . other", ""},
      {twice, "dir other . other", other + ": written for other and for other"},
      {twice, "dir other link", other + ": written for other and for link"},
      {"load frame star.fts\nsave frame $dir/x.fts\n", "dir other link/../other",
       other + ": written for other and for link/../other"},
  };
  for (const auto& c : cases) {
    const bool isFailure = !c.overwritten.empty();
    EXPECT_EQ(RunRecipe(c.recipe, "--for " + c.inputs).complaint(),
              std::pair(isFailure ? 1 : 0, isFailure ? c.overwritten + "; only one of them is left\n" : ""));
  }
}

// Whatever a slip writes over a frame from the camera, or over a file that is in use, is refused before
// anything is written; `replace` and --replace allow it.
TEST_F(BatchTest, NothingReplacesARawFrameOrAFileInUseUnlessReplaceAllowsIt) {
  const std::string load = "load frame star.fts\n", raw = "a raw frame, 400 x 60, that Halmek did not write";
  const std::string extract = "aperture 24 36\nbackground 2 12 48 58 1\ncrunch\n";
  const std::string arc =
      "load frame arc.fts\n" + extract + "save spectrum l.fts 32\nload arc1 l.fts\nidentify arc1 40 5000\n";
  WriteFile(folder.File("page.html"), "<!DOCTYPE html>\n<html lang=\"en\">my own");
  std::filesystem::create_symlink("arc.fts", folder.File("link.fts"));
  const struct {
    std::string recipe, arguments, precious, what;
  } cases[] = {
      {load + "export frame star.fts", "", "star.fts", "a raw frame, 400 x 60, that is loaded as the frame"},
      {load + "save frame ./link.fts 17", "", "arc.fts", raw},
      {load + "plot row 5 arc.fts", "", "arc.fts", raw},
      {load + extract + "save spectrum arc.fts", "", "arc.fts", raw},
      {arc + "save mask arc1 star.fts", "", "star.fts", raw},
      {arc + "save spectrum l.fts", "", "", "a spectrum of Halmek, 400 pixels, that is loaded as Arc 1"},
      {arc + "save mask arc1 l.dat\nload mask l.dat\nsave mask arc1 l.dat", "", "",
       "a mask of Halmek, that is loaded as the mask"},
      {"load table lines.txt\n" + load + "export frame lines.txt", "", "lines.txt",
       "that is loaded as the wavelength table"},
      {load + "save frame a.fts\nload frame a.fts\nsave frame", "", "",
       "a frame of Halmek, 400 x 60, that is loaded as the frame"},
      {load + "export frame r.recipe", "", "r.recipe", "that is running"},
      {load, "--journal arc.fts", "arc.fts", raw},
      {load + "save frame j.fts", "--journal j.fts", "", "which is another kind of file"},
      {load, "--report page.html", "page.html", "that Halmek did not write"},
  };
  std::map<std::string, std::string> whole;
  for (const std::string& name : FilesIn(folder.path()))
    whole[name] = ReadFile(folder.File(name));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.recipe + " " + c.arguments);
    const auto before = c.precious == "r.recipe" ? c.recipe : c.precious.empty() ? "" : whole.at(c.precious);
    const Ended refused = RunRecipe(c.recipe, c.arguments);
    EXPECT_NE(refused.status, 0);
    const bool isOption = !c.arguments.empty();
    EXPECT_NE(refused.err.find(": This would replace "), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find(c.what + ".  Give another name, or " +
                               (isOption ? "add --replace." : "end the step with 'replace'.")),
              std::string::npos)
        << refused.err;
    EXPECT_TRUE(c.precious.empty() || ReadFile(folder.File(c.precious)) == before);

    const Ended allowed =
        RunRecipe(c.recipe + (isOption ? "" : " replace"), c.arguments + (isOption ? " --replace" : ""));
    EXPECT_EQ(allowed.status, 0) << allowed.err;
    EXPECT_TRUE(c.precious.empty() || ReadFile(folder.File(c.precious)) != before);
    for (const auto& [name, bytes] : whole)
      WriteFile(folder.File(name), bytes);
  }
  const std::string copy = load + "save frame b.fts 17\n";
  RunRecipe(copy);
  std::filesystem::create_hard_link(folder.File("b.fts"), folder.File("other.fts"));
  EXPECT_EQ(
      RunRecipe(copy).complaint(),
      std::pair(
          0,
          "warning: r.recipe:2: b.fts had another name (a hard link), which keeps what the file held.\n"s));
  std::filesystem::create_hard_link(folder.File("arc.fts"), folder.File("hard.fts"));
  EXPECT_TRUE(RunRecipe(load + "save frame hard.fts").err.ends_with("It has another name (a hard link).\n"));
}

TEST_F(BatchTest, ARunAgainOrFromItsJournalReplacesItsOwnFilesUnasked) {
  const std::string recipe = ReadFile(HALMEK_TEST_RECIPES "/every_step.recipe");
  const std::string arguments = "in=. star=star.fts arc=arc.fts --journal j.recipe --report page.html";
  std::string first;
  for (int times = 1; times <= 3; ++times) {
    EXPECT_EQ(times < 3 ? RunRecipe(recipe, arguments).status : Run("j.recipe").status, 0);
    std::string all;
    for (const std::string& name : FilesIn(folder.path()))
      all += name + ReadFile(folder.File(name));
    EXPECT_TRUE((times == 1 ? first = all : all) == first);
  }
}

TEST_F(BatchTest, ASaveWithoutANameGoesWhereTheSlotCameFromOrWentLast) {
  std::filesystem::create_directory(folder.File("work"));
  const std::string frame = folder.File("star.fts");
  const std::string recipe = "folder work\nload frame " + frame +
                             "\nsave frame replace\nsave frame out.fts\nsave frame\n" +
                             "aperture 24 36\nbackground 2 12 48 58 1\ncrunch\nsave spectrum\n"
                             "save spectrum " +
                             folder.File("s.fts") + "\nsave spectrum\n";
  const Ended ended = RunRecipe(recipe);
  EXPECT_EQ(ended.complaint(), std::pair(0, ""s));
  for (const std::string& said : {frame, "out.fts"s, "star_1D.fts"s, folder.File("s.fts")})
    EXPECT_NE(ended.out.find("wrote " + said + " as 32-bit real\n"), std::string::npos) << said << ended.out;
  EXPECT_EQ(CountOf("wrote out.fts", ended.out), 2u);
  EXPECT_EQ(CountOf("wrote " + folder.File("s.fts"), ended.out), 2u);
  EXPECT_EQ(FilesIn(folder.File("work")), (std::vector<std::string>{"out.fts", "star_1D.fts"}));
}

TEST_F(BatchTest, OutputThatCannotBeWrittenIsAFailure) {
  WriteFile(folder.File("r.recipe"), "load frame star.fts\nheader frame\n");
  const std::string command = "cd '" + folder.path() + "' && '" + HALMEK_BATCH + "' r.recipe 2>&1 >/dev/full";
  EXPECT_EQ(WEXITSTATUS(std::system((command + " | grep -q 'could not be written'").c_str())), 0);
}

}  // namespace
}  // namespace halmek::test
