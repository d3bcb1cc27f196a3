// Frames as the detector reads them out.
#include "night/frame.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>

#include "files/atomic_write.h"
#include "fits/fits_writer.h"
#include "fits/header.h"
#include "fits/pixel_codec.h"
#include "night/noise.h"
#include "plot/number_text.h"

namespace halmek::night {
namespace {

std::string Sexagesimal(double value, int degreeDigits) {
  const auto seconds = static_cast<int>(std::lround(value * 3600));
  char text[40];
  std::snprintf(text, sizeof text, "%0*d:%02d:%02d", degreeDigits, seconds / 3600, seconds / 60 % 60,
                seconds % 60);
  return text;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "'" + text;
  quoted.resize(std::max(quoted.size(), size_t{9}), ' ');
  return quoted + "'";
}

// Date and time of the exposure's start, as FITS writes them. The night is an invented one.
std::string DateOf(const Exposure& exposure) {
  using namespace std::chrono;
  const auto start = sys_days(year(2004) / October / 9) + 18h + 30min;
  const auto at = start + seconds(std::lround(exposure.start));
  const auto day = floor<days>(at);
  const year_month_day date(day);
  char text[40];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text + Sexagesimal(static_cast<double>((at - day).count()) / 3600, 2);
}

void FillHeader(FitsHeader& header, const Night& night, const Star& star, const Exposure& exposure) {
  const Options& options = night.options;
  const int type = options.pixelType;
  const bool isArc = &exposure != &star.exposure;
  std::string cards;
  int count = 0;
  const auto card = [&](std::string text) {
    text.resize(cardLength, ' ');
    cards += text;
    ++count;
  };
  const auto number = [&](const char* keyword, const std::string& value, const std::string& comment) {
    card(NumberCard(keyword, value, " / " + comment));
  };
  const auto text = [&](std::string keyword, const std::string& value, const std::string& comment) {
    keyword.resize(8, ' ');
    card(keyword + "= " + Quoted(value) + " / " + comment);
  };

  number("SIMPLE", "T", "conforms to FITS");
  number("BITPIX", std::to_string(type == pixel_types::unsigned16 ? 16 : type), "bits per pixel");
  number("NAXIS", "2", "");
  number("NAXIS1", std::to_string(options.columns), "columns, along the dispersion");
  number("NAXIS2", std::to_string(options.rows), "rows, along the slit");
  if (type == pixel_types::unsigned16) {
    number("BSCALE", "1.", "");
    number("BZERO", "32768.", "unsigned 16-bit numbers");
  }
  text("OBJECT", exposure.object, "");
  text("IMAGETYP", isArc ? "comparison" : "object", "");
  text("OBSERVAT", "Sample Hill", "invented");
  text("INSTRUME", "Long-slit spectrograph", "");
  text("DATE-OBS", DateOf(exposure), "UT at start");
  text("UT", DateOf(exposure).substr(11), "at start");
  number("EXPTIME", FixedText(exposure.seconds, 1), "seconds");
  text("RA", Sexagesimal(20 + 0.31 * (star.number % 10), 2), "");
  text("DEC", "+" + Sexagesimal(12 + 3.27 * (star.number % 7), 2), "");
  number("EQUINOX", "2000.0", "");
  number("AIRMASS", FixedText(1.05 + 0.043 * (star.number % 11), 3), "");
  if (isArc)
    text("LAMP", "FeNeArHe", "hollow cathode");
  number("GAIN", FixedText(detector::gain, 2), "electrons per ADU");
  number("RDNOISE", FixedText(detector::readNoise, 2), "electrons");
  card("COMMENT   As read out: bias level and overscan strip are still in it.");
  card("COMMENT   Made by halmek-night, not by a telescope; truth.txt says what is true.");
  ReplaceHeader(header, cards, count);
}

// Charge on the lit columns of a row: light with its shot noise, and cosmic rays.
void Expose(std::span<double> electrons, int row, const Exposure& exposure, Noise& noise) {
  for (double& pixel : electrons)
    pixel = noise.Poisson(pixel);
  for (const CosmicRay& hit : exposure.cosmicRays)
    if (hit.row == row)
      for (int column = hit.first; column <= hit.last; ++column)
        electrons[static_cast<size_t>(column) - 1] += hit.electrons;
}

// Reads a row out: the overscan columns behind the lit ones carry no charge.
void ReadOut(std::span<double> pixels, std::span<const double> electrons, const Night& night, Noise& noise) {
  const double saturation = SaturationOf(night.options.pixelType);
  const auto bad = static_cast<size_t>(night.instrument.layout.badColumn);
  for (size_t i = 0; i < pixels.size(); ++i) {
    const double charge = i < electrons.size() ? electrons[i] : 0;
    const double hot = i + 1 == bad ? detector::hotColumn : 0;
    const double level =
        detector::bias + hot + (charge + detector::readNoise * noise.Normal()) / detector::gain;
    pixels[i] = std::clamp(std::nearbyint(level), 0.0, saturation);
  }
}

}  // namespace

void TakeFrame(Session& session, const Night& night, const Star& star, const Exposure& exposure,
               Light light) {
  Slot& frame = session.slot[slots::frame];
  FillHeader(frame, night, star, exposure);
  frame.savePixelType = night.options.pixelType;
  Noise noise(night.options.seed, Stream::readOut, exposure.number);
  for (int row = 1; row <= night.options.rows; ++row) {
    Expose(light.Row(row), row, exposure, noise);
    ReadOut(session.image.Row(row, 1, night.options.columns), light.Row(row), night, noise);
  }
  AtomicWrite(FullName(session, exposure.File()),
              EncodeFrame(frame, session.image, night.options.columns, night.options.rows).bytes);
}

}  // namespace halmek::night
