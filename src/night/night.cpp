// The plan of a sample night.
#include "night/night.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "night/lamp_lines.h"
#include "night/noise.h"

namespace halmek::night {
namespace {

constexpr double arcSeconds = 20, starSeconds = 900;
constexpr double arcLead = 60;        // from the start of an arc to that of the star
constexpr double slotSeconds = 1800;  // from one star to the next
constexpr int starsOfANight = 18;     // the next one begins a day later
constexpr double daySeconds = 86400;

// Cosmic rays and natural radioactivity together, for pixels of 20 micrometres on a thick detector.
constexpr double hitsPerPixelSecond = 1.5e-7;

// A straight track: the pixels of it, row by row.
std::vector<CosmicRay> Track(Noise& noise, const Layout& layout) {
  constexpr int margin = 20;  // so that there are neighbours to mend it from
  const double column = noise.Uniform(margin, layout.litColumns - margin);
  const double row = noise.Uniform(1, layout.rows);
  const double angle = noise.Uniform(0, std::numbers::pi);
  // Most particles come through steeply.
  const double length = std::min(9.0, -1.5 * std::log(1 - noise.Uniform()));
  const double electrons = 1200 * std::exp(0.8 * noise.Normal());

  std::vector<CosmicRay> runs;
  constexpr double step = 0.25;
  for (double t = 0; t <= length; t += step) {
    const int c = static_cast<int>(std::lround(column + t * std::cos(angle)));
    const int r = static_cast<int>(std::lround(row + t * std::sin(angle)));
    if (r > layout.rows)
      break;
    if (runs.empty() || runs.back().row != r)
      runs.push_back({r, c, c, electrons});
    runs.back().first = std::min(runs.back().first, c);
    runs.back().last = std::max(runs.back().last, c);
  }
  return runs;
}

std::vector<CosmicRay> CosmicRays(const Options& options, const Layout& layout, const Exposure& exposure) {
  Noise noise(options.seed, Stream::cosmicRays, exposure.number);
  const double expected = hitsPerPixelSecond * exposure.seconds * layout.litColumns * layout.rows;
  std::vector<CosmicRay> all;
  for (auto tracks = noise.Poisson(expected); tracks > 0; --tracks)
    for (const CosmicRay& run : Track(noise, layout))
      all.push_back(run);
  std::sort(all.begin(), all.end(), [](const CosmicRay& a, const CosmicRay& b) {
    return a.row != b.row ? a.row < b.row : a.first < b.first;
  });
  return all;
}

Star PlanStar(const Options& options, const Layout& layout, int number) {
  Noise noise(options.seed, Stream::star, number);
  Star star;
  star.number = number;
  star.type = TypeOfStar(number);
  star.lines = LinesOf(star.type);
  star.velocity = std::round(noise.Uniform(-90, 90) * 100) / 100;
  star.peak = std::round(noise.Uniform(15000, 25000));

  // The telescope's new pointing bends the spectrograph a little; then it goes on bending while it tracks.
  const double pointing = noise.Uniform(-0.3, 0.3);
  const double halfDrift = (noise.Uniform() < 0.5 ? -1 : 1) * noise.Uniform(0.1, 0.2);
  const double start = (number - 1) / starsOfANight * daySeconds + (number - 1) % starsOfANight * slotSeconds;
  const std::string label = std::to_string(number);
  const int first = 3 * (number - 1);
  star.before = {
      first, "arc" + label + "a", "Lamp before star " + label, start, arcSeconds, pointing - halfDrift, {}};
  star.exposure = {first + 1, "star" + label, "Sample star " + label, start + arcLead, starSeconds, pointing,
                   {}};
  star.after = {first + 2,
                "arc" + label + "b",
                "Lamp after star " + label,
                start + 2 * arcLead + starSeconds - arcSeconds,
                arcSeconds,
                pointing + halfDrift,
                {}};
  for (Exposure* e : {&star.before, &star.exposure, &star.after})
    e->cosmicRays = CosmicRays(options, layout, *e);
  return star;
}

// A line of the lamp where it falls on the detector.
struct PlacedLine {
  double column, wavelength, strength;
};

constexpr double searched = 12;  // columns from a line that a search for it, some pixels off, may look at

// True where `other` bends the profile of `line`, or is so strong that a search for `line` would find the
// other or its flank.
bool Spoils(const PlacedLine& other, const PlacedLine& line) {
  constexpr double profile = 8, flank = 5;        // columns
  constexpr double bending = 0.02, luring = 0.3;  // strengths relative to the line
  const double distance = std::fabs(other.column - line.column);
  return &other != &line && ((distance < profile && other.strength > bending * line.strength) ||
                             (distance < searched + flank && other.strength > luring * line.strength));
}

// The lines that an observer would choose for a mask: strong, alone, and not beside the bad column.
std::vector<PlacedLine> LonelyLines(const Instrument& instrument) {
  constexpr double faintest = 0.003;
  const auto& [optics, layout] = instrument;
  std::vector<PlacedLine> all, chosen;
  for (const LampLine& line : LampLines())
    all.push_back({ColumnOf(optics, line.wavelength), line.wavelength, line.strength});
  for (const PlacedLine& line : all)
    if (line.column > layout.trimCol1 + searched && line.column < layout.trimCol2 - searched &&
        std::fabs(line.column - layout.badColumn) > searched && line.strength >= faintest &&
        std::none_of(all.begin(), all.end(), [&](const PlacedLine& other) { return Spoils(other, line); }))
      chosen.push_back(line);
  return chosen;
}

std::vector<MaskEntry> ChooseMask(const Instrument& instrument) {
  constexpr size_t most = 40;
  constexpr double sinceThen = 1.3;  // columns by which the grating has moved since that night
  std::vector<PlacedLine> lines = LonelyLines(instrument);
  std::stable_sort(lines.begin(), lines.end(),
                   [](const PlacedLine& a, const PlacedLine& b) { return a.strength > b.strength; });
  lines.resize(std::min(lines.size(), most));
  std::sort(lines.begin(), lines.end(),
            [](const PlacedLine& a, const PlacedLine& b) { return a.column < b.column; });

  std::vector<MaskEntry> mask;
  for (const PlacedLine& line : lines) {
    const double trimmed = line.column - (instrument.layout.trimCol1 - 1) + sinceThen;
    mask.push_back({std::round(trimmed * 1000) / 1000, line.wavelength});
  }
  return mask;
}

}  // namespace

Night PlanNight(const Options& options) {
  Night night{options, MakeInstrument(options), {}, {}};
  for (int number = 1; number <= options.stars; ++number)
    night.stars.push_back(PlanStar(options, night.instrument.layout, number));
  night.mask = ChooseMask(night.instrument);
  return night;
}

}  // namespace halmek::night
