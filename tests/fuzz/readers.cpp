// Every reader of files that nobody vouches for, fed with any bytes.
#include "fuzz/readers.h"

#include <functional>
#include <memory>
#include <string>

#include "calib/line_mask.h"
#include "calib/wavelength_table.h"
#include "fits/fits_reader.h"
#include "steps/recipe.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

void Try(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure&) {
    // Refusing is what a reader may do.
  }
}

// What an observer might do next, whether the load succeeded or not.
void GoOn(Session& s) {
  const Step next[] = {
      steps::PlotRow{2, "/dev/null"},
      steps::PlotColumn{2, "/dev/null"},
      steps::FixColumn{5},
      steps::Zap{1, 3, 4, 2},
      steps::Aperture{1, 2},
      steps::Background{1, 2, 3, 4, 1},
      steps::Crunch{},
      steps::NormalizeAuto{3, 2},
      steps::Plot{"continuum", "/dev/null"},
      steps::Save{"spectrum", "/dev/null", -32},
      steps::Trim{1, 1, 4, 3},
      steps::Save{"frame", "/dev/null", 17},
      steps::Export{"frame", "/dev/null"},
      steps::Plot{"arc1", "/dev/null"},
      steps::Identify{"arc1", 5, 5000},
      steps::Identify{"arc1", 12, 5010},
      steps::ApplyMask{"arc1"},
      steps::FitDeviations{"arc1", 2},
      steps::Plot{"deviations1", "/dev/null"},
      steps::Arcs{1},
      steps::Correct{},
      steps::Save{"object", "/dev/null", 16},
      steps::Header{"frame"},
  };
  for (const Step& step : next)
    Try([&] { Perform(s, step); });
}

// One folder for the whole run; each input replaces the file.
const std::string& Folder() {
  static const TemporaryFolder folder;
  static const std::string path = folder.path();
  return path;
}

}  // namespace
}  // namespace halmek::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace halmek;
  using namespace halmek::test;
  if (size == 0)
    return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const auto session = SessionIn(Folder());
  WriteFile(Folder() + "/input", bytes);
  switch (data[0]) {
    case 'f':
    case 'd':
      session->daoFrame = data[0] == 'd';
      Try([&] { LoadFits2D(*session, "input"); });
      break;
    case 'a':
      Try([&] { LoadFits1D(*session, slots::object, "input"); });
      Try([&] { LoadFits1D(*session, slots::arc1, "input"); });
      break;
    case 't':
      Try([&] { LoadWavelengthTable(*session, "input"); });
      return 0;
    case 'm':
      SetSpectrum(*session, slots::arc1, {0, 0, 0, 1, 5, 9, 5, 1, 0, 0, 1, 4, 8, 4, 1, 0, 0, 0, 0, 0, 0});
      Try([&] { LoadMask(*session, "input"); });
      break;
    case 's':
      ReadSettings(Folder() + "/input");
      return 0;
    default:
      try {
        for (const RecipeLine& line : ParseRecipe(bytes, {{"x", "1"}}))
          if (TextOf(StepOf(WordsOf(TextOf(line.step), {}))) != TextOf(line.step))
            __builtin_trap();
      } catch (const RecipeStopped&) {
        // A recipe may be misunderstood.
      } catch (const Failure&) {
        // A name may be one that no recipe can say.
      }
      return 0;
  }
  GoOn(*session);
  return 0;
}
