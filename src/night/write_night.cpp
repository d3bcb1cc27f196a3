// The files of a sample night.
#include "night/write_night.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "app/session.h"
#include "files/atomic_write.h"
#include "files/input_file.h"
#include "files/known_file.h"
#include "night/frame.h"
#include "night/lamp_lines.h"
#include "night/light.h"
#include "night/recipes.h"
#include "night/text.h"
#include "night/truth.h"
#include "plot/number_text.h"

namespace halmek::night {
namespace {

std::string WavelengthTableText() {
  std::string text = "Comparison lamp, laboratory wavelengths in air (Angstroms)\r\n";
  for (const LampLine& line : LampLines())
    text += FixedText(line.wavelength, 3) + "," + line.ion + "\r\n";
  return text;
}

std::string MaskText(const Night& night) {
  std::string text = std::string(first_lines::mask) + "\r\n";
  for (const MaskEntry& entry : night.mask)
    text += " " + GeneralText(entry.column) + "  " + GeneralText(entry.wavelength) + " \r\n";
  return text;
}

void MakeFolder(const std::string& folder) {
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  if (!std::filesystem::is_directory(folder))
    throw RunTimeError(run_time_error::pathNotFound, "the folder could not be made");
}

void TakeFrames(Session& session, const Night& night, const Star& star) {
  TakeFrame(session, night, star, star.before, LampLight(night, star.before));
  TakeFrame(session, night, star, star.exposure, StarLight(night, star));
  TakeFrame(session, night, star, star.after, LampLight(night, star.after));
}

// Throws Refusal where the folder holds files that the night would replace, unless they are an earlier
// night's.
void RequireFree(const Night& night, const std::string& folder) {
  const auto isThere = [&](const std::string& file) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::path(folder) / file, ignored);
  };
  if (isThere(truthFile) && IsTruth(ReadWholeFile((std::filesystem::path(folder) / truthFile).string())))
    return;
  std::vector<std::string> files{"arc.recipe", "night.recipe", "WL_Table.txt", "mask.dat", truthFile};
  for (const Star& star : night.stars)
    files.insert(files.end(), {star.before.File(), star.exposure.File(), star.after.File(),
                               star.exposure.name + ".recipe"});
  for (const std::string& file : files)
    if (isThere(file))
      throw Refusal("This would replace " + file + ", which is of no sample night.  Give another folder.");
}

std::string Summary(const Night& night, const std::string& folder) {
  const Options& o = night.options;
  const std::string last = std::to_string(o.stars);
  return folder + ": " + std::to_string(3 * o.stars) + " frames of " + std::to_string(o.columns) + " x " +
         std::to_string(o.rows) + " pixels, type " + std::to_string(o.pixelType) + ", seed " +
         std::to_string(o.seed) +
         "\n"
         "  star1.fts" +
         (o.stars > 1 ? " to star" + last + ".fts" : std::string()) +
         ", each with its arcs: arc1a.fts before star 1, arc1b.fts after it\n"
         "  WL_Table.txt with " +
         std::to_string(LampLines().size()) + " wavelengths, mask.dat with " +
         std::to_string(night.mask.size()) +
         " lines\n"
         "  star1.recipe reduces star 1 with its arcs, arc.recipe an arc, night.recipe all; truth.txt says "
         "what is true\n";
}

}  // namespace

std::string WriteNight(const Night& night, const std::string& folder) {
  MakeFolder(folder);
  RequireFree(night, folder);
  const auto session = std::make_unique<Session>();
  session->dataFolder = folder;
  const auto write = [&](const std::string& file, const std::string& text) {
    AtomicWrite(FullName(*session, file), text);
  };
  for (const Star& star : night.stars) {
    TakeFrames(*session, night, star);
    write(star.exposure.name + ".recipe", StarRecipe(night, star));
  }
  write("arc.recipe", ArcRecipe(night));
  write("night.recipe", NightRecipe(night));
  write("WL_Table.txt", WavelengthTableText());
  write("mask.dat", MaskText(night));
  write(truthFile, TruthText(night));
  return Summary(night, folder);
}

}  // namespace halmek::night
