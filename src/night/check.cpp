// Reduction of a sample night, and its errors against the truth.
#include "night/check.h"

#include <cmath>
#include <memory>

#include "app/session.h"
#include "calib/deviations.h"
#include "calib/dispersion.h"
#include "files/input_file.h"
#include "fits/fits_reader.h"
#include "night/text.h"
#include "numeric/number_prefix.h"
#include "plot/number_text.h"
#include "steps/recipe.h"

namespace halmek::night {
namespace {

std::unique_ptr<Session> SessionFor(const std::string& folder) {
  auto session = std::make_unique<Session>();
  session->dataFolder = folder;
  return session;
}

// Adds up errors.
class Errors {
 public:
  void Add(double error) {
    sum_ += error;
    sumSq_ += error * error;
    ++count_;
  }
  ErrorStatistics statistics() const { return {sum_ / count_, std::sqrt(sumSq_ / count_)}; }

 private:
  double sum_ = 0, sumSq_ = 0;
  int count_ = 0;
};

// Where the calibration put the flux of every pixel, against where it came from.
void CompareWavelengths(StarCheck& check, const Session& s, const Truth& truth, const StarTruth& star) {
  Errors wavelengths, velocities;
  check.pixels = Pixels(s.slot[slots::object]);
  for (int i = 1; i <= check.pixels; ++i) {
    const double claimed = s.dispStart + (i - 1 - CorrectionShift(s, i)) * s.dispStep;
    const double column = i + truth.trimCol1 - 1;
    const double truly = WavelengthAt(truth.optics, column, TraceRow(truth.optics, column), star.drift);
    wavelengths.Add(claimed - truly);
    velocities.Add((claimed - truly) / truly * speedOfLight);
  }
  check.wavelengthError = wavelengths.statistics();
  check.velocityError = velocities.statistics();
}

// The velocity as whoever is given the calibrated file measures it.
void MeasureFile(StarCheck& check, const std::string& folder, const std::string& file, const Truth& truth,
                 const StarTruth& star) {
  const auto session = SessionFor(folder);
  LoadFits1D(*session, slots::object, file);
  const Slot& object = session->slot[slots::object];
  check.start = NumericPrefix(object.cardValue(object.crval1Card));
  check.step = NumericPrefix(object.cardValue(object.cd1_1Card));
  if (!(check.step > 0))
    throw Refusal("The calibrated file has no wavelength scale.");
  check.velocity =
      MeasureVelocity(object.spectrum.Range(1, Pixels(object)), check.start, check.step, truth, star);
  check.trueVelocity = star.velocity;
}

}  // namespace

StarCheck CheckStar(const std::string& folder, const Truth& truth, const StarTruth& star) {
  const auto session = SessionFor(folder);
  const std::string recipe = ReadWholeFile(FullName(*session, star.name + ".recipe"));
  RunRecipe(*session, ParseRecipe(recipe, {}), [](const RecipeLine&, const Outcome&) {});

  StarCheck check;
  check.name = star.name;
  check.type = star.type;
  for (size_t a = 0; a < 2; ++a) {
    const Arc& arc = session->arc[a + 1];
    check.lines[a] = arc.LineCount;
    check.linearRms[a] = LinearRms(arc);
    check.deviationRms[a] = DeviationRms(arc);
    check.power = arc.fitPower;
  }
  CompareWavelengths(check, *session, truth, star);
  MeasureFile(check, folder, session->slot[slots::object].fileName, truth, star);
  return check;
}

std::string ReportOf(const StarCheck& c) {
  const auto both = [](const std::array<double, 2>& values, int decimals) {
    return FixedText(values[0], decimals) + " and " + FixedText(values[1], decimals);
  };
  return c.name + " (" + c.type + ")\n" + "  lines identified    " + std::to_string(c.lines[0]) + " and " +
         std::to_string(c.lines[1]) + "\n" + "  straight line, RMS  " + both(c.linearRms, 3) + " Angstrom\n" +
         "  deviations, RMS     " + both(c.deviationRms, 4) + " Angstrom, power " + std::to_string(c.power) +
         "\n" + "  scale               " + FixedText(c.step, 5) + " Angstrom per pixel from " +
         FixedText(c.start, 3) + "\n" + "  wavelength error    mean " + Signed(c.wavelengthError.mean, 4) +
         ", rms " + FixedText(c.wavelengthError.rms, 4) + " Angstrom; mean " +
         Signed(c.velocityError.mean, 2) + ", rms " + FixedText(c.velocityError.rms, 2) + " km/s; over " +
         std::to_string(c.pixels) + " pixels\n" + "  radial velocity     " + Signed(c.velocity.velocity, 2) +
         " +- " + FixedText(c.velocity.error, 2) + " km/s from " + std::to_string(c.velocity.pixels) +
         " pixels; true " + Signed(c.trueVelocity, 2) + ", error " +
         Signed(c.velocity.velocity - c.trueVelocity, 2) + "\n";
}

}  // namespace halmek::night
