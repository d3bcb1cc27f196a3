// The truth about a sample night.
#include "night/truth.h"

#include <initializer_list>

#include "files/failure.h"
#include "files/text_records.h"
#include "night/lamp_lines.h"
#include "plot/number_text.h"

namespace halmek::night {
namespace {

constexpr const char* introduction =
    "# What is true of this sample night. Columns and rows count from 1 on the frames as read out; "
    "wavelengths\n"
    "# are in air and in Angstrom, velocities in km/s and positive away from us, without any correction for\n"
    "# the motion of the Earth.\n"
    "#\n"
    "# The wavelength in the middle of a pixel, with a0 to a3 the numbers of `dispersion`:\n"
    "#   r = row - reference_row\n"
    "#   u = column - tilt r - curvature r^2 - drift - reference_column\n"
    "#   wavelength = a0 + a1 u + a2 u^2 + a3 u^3\n"
    "# The star lies on row trace_row + trace_slope (column - reference_column).\n"
    "# line_sigma is the deviation, in columns, of the Gaussian that the spectrograph makes of a narrow "
    "line.\n"
    "# absorption: wavelength at rest, depth and deviation of the star's own line.\n"
    "# cosmic_ray: row, first and last column, electrons in each pixel.\n";

class Writer {
 public:
  void Section(const std::string& name) { text_ += "\n[" + name + "]\n"; }
  void Line(const std::string& key, const std::string& value) { text_ += key + " = " + value + "\n"; }
  void Numbers(const std::string& key, std::initializer_list<double> values) {
    std::string all;
    for (double value : values)
      all += (all.empty() ? "" : " ") + GeneralText(value);
    Line(key, all);
  }
  std::string& text() { return text_; }

 private:
  std::string text_ = introduction;
};

void WriteInstrument(Writer& w, const Instrument& instrument) {
  const auto& [o, l] = instrument;
  w.Section("instrument");
  w.Numbers("dispersion", {o.dispersion[0], o.dispersion[1], o.dispersion[2], o.dispersion[3]});
  w.Numbers("reference_column", {o.referenceColumn});
  w.Numbers("reference_row", {o.referenceRow});
  w.Numbers("tilt", {o.tilt});
  w.Numbers("curvature", {o.curvature});
  w.Numbers("line_sigma", {o.lineSigma});
  w.Numbers("trace_row", {o.traceRow});
  w.Numbers("trace_slope", {o.traceSlope});
  w.Numbers("slit_rows", {1.0 * l.slit.first, 1.0 * l.slit.last});
  w.Numbers("lit_columns", {1.0 * l.litColumns});
  w.Numbers("bad_column", {1.0 * l.badColumn});
  w.Numbers("trim_first_column", {1.0 * l.trimCol1});
  w.Numbers("bias", {detector::bias});
  w.Numbers("gain", {detector::gain});
  w.Numbers("read_noise", {detector::readNoise});
}

void WriteExposure(Writer& w, const Exposure& exposure) {
  w.Section("exposure " + exposure.name);
  w.Line("object", exposure.object);
  w.Numbers("seconds", {exposure.seconds});
  w.Numbers("drift", {exposure.drift});
  for (const CosmicRay& hit : exposure.cosmicRays)
    w.Numbers("cosmic_ray", {1.0 * hit.row, 1.0 * hit.first, 1.0 * hit.last, hit.electrons});
}

void WriteStar(Writer& w, const Star& star) {
  WriteExposure(w, star.before);
  WriteExposure(w, star.exposure);
  WriteExposure(w, star.after);
  w.Section("star " + star.exposure.name);
  w.Line("type", std::string(star.type.name));
  w.Numbers("velocity", {star.velocity});
  w.Numbers("drift", {star.exposure.drift});
  for (const AbsorptionLine& line : star.lines)
    w.Numbers("absorption", {line.wavelength, line.depth, line.width});
}

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos)
    return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

[[noreturn]] void Refuse(const std::string& why) {
  throw Refusal("This is not the truth of a sample night: " + why + ".");
}

// The numbers of a line, of which there must be `N`.
template <size_t N>
std::array<double, N> NumbersOf(std::string_view key, std::string_view value) {
  std::array<double, N> numbers{};
  RecordLine record(value);
  for (double& number : numbers) {
    const auto read = record.Number();
    if (!read)
      Refuse("\"" + std::string(key) + "\" needs " + std::to_string(N) + " numbers");
    number = *read;
  }
  return numbers;
}

double NumberOf(std::string_view key, std::string_view value) { return NumbersOf<1>(key, value)[0]; }

void ReadInstrument(Truth& truth, std::string_view key, std::string_view value) {
  Optics& o = truth.optics;
  if (key == "dispersion")
    o.dispersion = NumbersOf<4>(key, value);
  else if (key == "reference_column")
    o.referenceColumn = NumberOf(key, value);
  else if (key == "reference_row")
    o.referenceRow = NumberOf(key, value);
  else if (key == "tilt")
    o.tilt = NumberOf(key, value);
  else if (key == "curvature")
    o.curvature = NumberOf(key, value);
  else if (key == "line_sigma")
    o.lineSigma = NumberOf(key, value);
  else if (key == "trace_row")
    o.traceRow = NumberOf(key, value);
  else if (key == "trace_slope")
    o.traceSlope = NumberOf(key, value);
  else if (key == "trim_first_column")
    truth.trimCol1 = static_cast<int>(NumberOf(key, value));
}

void ReadStar(StarTruth& star, std::string_view key, std::string_view value) {
  if (key == "type") {
    star.type = value;
  } else if (key == "velocity") {
    star.velocity = NumberOf(key, value);
  } else if (key == "drift") {
    star.drift = NumberOf(key, value);
  } else if (key == "absorption") {
    const auto [wavelength, depth, width] = NumbersOf<3>(key, value);
    star.lines.push_back({wavelength, depth, width});
  }
}

}  // namespace

bool IsTruth(std::string_view text) {
  const std::string_view all = introduction;
  return text.starts_with(all.substr(0, all.find('\n')));
}

std::string TruthText(const Night& night) {
  Writer w;
  w.Section("night");
  w.Line("seed", std::to_string(night.options.seed));
  w.Line("pixel_type", std::to_string(night.options.pixelType));
  w.Line("size", std::to_string(night.options.columns) + " x " + std::to_string(night.options.rows));
  WriteInstrument(w, night.instrument);
  for (const Star& star : night.stars)
    WriteStar(w, star);
  w.Section("lamp");
  for (const LampLine& line : LampLines())
    w.Line("line", GeneralText(line.wavelength) + " " + GeneralText(line.strength) + " " + line.ion);
  return w.text();
}

Truth ParseTruth(std::string_view text) {
  constexpr std::string_view starSection = "[star ";
  Truth truth;
  std::string_view section;
  for (std::string_view line : Lines(text)) {
    if (line.starts_with('[')) {
      section = line;
      if (line.starts_with(starSection) && line.ends_with(']'))
        truth.stars.push_back(
            {.name = std::string(line.substr(starSection.size(), line.size() - starSection.size() - 1)),
             .type = {},
             .lines = {}});
    }
    const size_t equals = line.find('=');
    if (line.starts_with('#') || line.starts_with('[') || equals == std::string_view::npos)
      continue;
    const std::string_view key = Trimmed(line.substr(0, equals)), value = Trimmed(line.substr(equals + 1));
    if (section == "[instrument]")
      ReadInstrument(truth, key, value);
    else if (section.starts_with(starSection) && !truth.stars.empty())
      ReadStar(truth.stars.back(), key, value);
  }
  if (truth.stars.empty() || truth.optics.dispersion[1] == 0 || truth.optics.lineSigma <= 0)
    Refuse("it names no star or no dispersion");
  return truth;
}

}  // namespace halmek::night
