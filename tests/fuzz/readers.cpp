// The readers under any bytes, and their oracles.
#include "fuzz/readers.h"

#include <algorithm>
#include <cmath>

#include "calib/line_mask.h"
#include "calib/wavelength_table.h"
#include "fits/fits_reader.h"
#include "fits/fits_writer.h"
#include "fits/pixel_codec.h"
#include "fuzz/recipe_folder.h"
#include "steps/recipe.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

constexpr const char *accepted = "accepted", *input = "input", *saved = "saved";
constexpr double marker = 7;  // in what a refusal must leave alone

bool AreFinite(std::span<const double> values) {
  return std::ranges::all_of(values, [](double v) { return std::isfinite(v); });
}

// The one folder of the run.
const std::string& RunFolder() {
  static const TemporaryFolder folder;
  static const std::string path = folder.path();
  return path;
}

// The first pixels, which whatever fills the slot begins with.
std::span<double> StartOf(Session& s, int slot) {
  return slot == slots::frame ? s.image.Row(1, 1, 40) : s.slot[slot].spectrum.Range(1, 40);
}

// A session in which every slot, the table and the mask hold something, all of it marked. It takes longer to
// make than a file to read, so that it is made once.
Session& FullSession() {
  static const std::unique_ptr<Session> session = [] {
    auto s = SessionIn(RunFolder());
    SetFrame(*s, 6, 4, [](int c, int r) { return 100.0 * r + c; });
    for (int slot : {slots::arc1, slots::arc2, slots::spectrum, slots::object})
      SetSpectrum(*s, slot, {1, 2, 3, 5, 8.5, 1.0 * slot});
    return s;
  }();
  Session& s = *session;
  s.writtenFiles.clear();
  s.wavelengthTable.wlCount = s.mask.maskCount = 2;
  s.wavelengthTable.WLValue(1) = s.mask.MaskColumn(1) = marker;
  for (int slot = slots::frame; slot <= slots::object; ++slot)
    std::ranges::fill(StartOf(s, slot), marker);
  return s;
}

// Whether all but what the reader fills is as it was.
bool IsMarkedBut(int target, Session& s) {
  for (int slot = slots::frame; slot <= slots::object; ++slot)
    if (slot != target && std::ranges::any_of(StartOf(s, slot), [](double v) { return v != marker; }))
      return false;
  return target == table || (s.wavelengthTable.wlCount == 2 && s.wavelengthTable.WLValue(1) == marker &&
                             s.mask.maskCount == 2 && s.mask.MaskColumn(1) == marker);
}

// The pixels that the slot's header promises, as far as the tables go.
std::vector<double> PixelsOf(const Session& s, int slot) {
  const auto within = [](double naxis, int last) {
    return static_cast<int>(std::clamp<double>(naxis, 0, last));
  };
  const int columns = within(s.slot[slot].naxis1, lastPixel);
  const int rows = slot == slots::frame ? within(s.slot[slot].naxis2, FrameTable::lastRow) : 1;
  std::vector<double> pixels;
  for (int r = 1; r <= rows; ++r) {
    const auto row =
        slot == slots::frame ? s.image.Row(r, 1, columns) : s.slot[slot].spectrum.Range(1, columns);
    pixels.insert(pixels.end(), row.begin(), row.end());
  }
  return pixels;
}

// Small numbers are written as 0 in a 32-bit real.
bool Holds(int type, double v) {
  if (type == pixel_types::real32)
    return std::fabs(v) < 3e38 && static_cast<float>(v) == v && (v == 0 || std::fabs(v) >= 1e-8);
  const auto [low, high] = type == pixel_types::unsigned16 ? std::pair(0.0, 65535.0)
                           : type == pixel_types::signed16 ? std::pair(-32768.0, 32767.0)
                                                           : std::pair(-2147483648.0, 2147483647.0);
  return v == std::nearbyint(v) && v >= low && v <= high;
}

// The bytes as which the slot is saved in a type that holds its pixels; nothing where no type does.
template <int slot, bool isDao = false>
std::string ReadFits(Session& s, const std::string&) {
  s.daoFrame = isDao;
  slot == slots::frame ? LoadFits2D(s, input) : LoadFits1D(s, slot, input);
  const std::vector<double> pixels = PixelsOf(s, slot);
  Require(s.slot[slot].cardCount <= lastCard && !pixels.empty() && AreFinite(pixels),
          "cards or pixels out of bounds");

  std::vector<int> types{pixel_types::signed16, pixel_types::unsigned16, pixel_types::integer32,
                         pixel_types::real32};
  std::erase_if(types, [&](int type) {
    return std::ranges::any_of(pixels, [=](double v) { return !Holds(type, v); });
  });
  s.slot[slot].savePixelType = types.empty() ? pixel_types::real32 : types[pixels.size() % types.size()];
  // NAXIS, BZERO and a HISTORY card may come to those that were read.
  const bool isFull = s.slot[slot].cardCount + 3 > lastCard;
  const std::string refusal = RefusalOf(
      [&] { slot == slots::frame ? SaveFits2D(s, saved, true) : SaveFits1D(s, slot, saved, true); });
  Require(refusal.empty() || isFull || types.empty(), "a loaded file cannot be saved");
  return refusal.empty() && !types.empty() ? ReadFile(FullName(s, saved)) : "";
}

std::string ReadTable(Session& s, const std::string&) {
  LoadWavelengthTable(s, input);
  const int count = s.wavelengthTable.wlCount;
  Require(count >= 1 && AreFinite(s.wavelengthTable.WLValue.Range(1, count)), "table out of bounds");
  return "";
}

std::string ReadMask(Session& s, const std::string&) {
  LoadMask(s, input);
  const int count = s.mask.maskCount;
  const auto columns = s.mask.MaskColumn.Range(1, count), wavelengths = s.mask.MaskWavelength.Range(1, count);
  Require(count >= 1 && AreFinite(columns) && AreFinite(wavelengths), "mask out of bounds");
  // Rounded to 15 digits, the largest numbers are numbers no more.
  const auto isHuge = [](double v) { return std::fabs(v) > 1e300; };
  if (std::ranges::any_of(columns, isHuge) || std::ranges::any_of(wavelengths, isHuge))
    return "";
  Arc& arc = s.arc[slots::arc1];
  arc.LineCount = count;
  std::ranges::copy(columns, arc.ArcLineColumn.Range(1, count).begin());
  std::ranges::copy(wavelengths, arc.ArcLineWavelength.Range(1, count).begin());
  Require(RefusalOf([&] { SaveMask(s, slots::arc1, saved, true); }).empty(), "a loaded mask cannot be saved");
  return ReadFile(FullName(s, saved));
}

std::string ReadRecipe(Session&, const std::string& bytes) {
  std::string text;
  for (const RecipeLine& line : ParseRecipe(bytes, {{"x", "1"}, {"name", "a b"}}))
    text += TextOf(line.step) + "\n";
  return text;
}

std::string RunRecipeText(Session&, const std::string& bytes) {
  RunInPreparedFolder(RunFolder() + "/recipes", bytes);
  return "";
}

constexpr Reader readers[] = {
    {"frame", slots::frame, ReadFits<slots::frame>},
    {"dao", slots::frame, ReadFits<slots::frame, true>, ReadFits<slots::frame>},
    {"spectrum", slots::object, ReadFits<slots::object>},
    {"table", table, ReadTable},
    {"mask", table, ReadMask},
    {"settings", none, [](Session&, const std::string& bytes) { return SettingsText(ParseSettings(bytes)); }},
    {"recipe_text", none, ReadRecipe},
    {"recipe_run", none, RunRecipeText},
};

}  // namespace

const Reader& ReaderNamed(std::string_view name) {
  const auto* found = std::ranges::find_if(readers, [=](const Reader& r) { return r.name == name; });
  Require(found != std::end(readers), "there is no reader of that name");
  return *found;
}

std::string Feed(const Reader& reader, const std::string& bytes) {
  Session& s = FullSession();
  const bool readsFile = reader.target != none;
  const auto given = [&](const std::string& text) -> const std::string& {
    if (readsFile)
      WriteFile(FullName(s, input), text);
    return text;
  };
  std::string outcome = accepted, written;
  try {
    written = reader.read(s, given(bytes));
  } catch (const Failure& failure) {
    outcome = failure.text();
  } catch (const RecipeStopped& stopped) {
    outcome = std::to_string(stopped.line()) + ": " + stopped.what();
  }
  Require(IsMarkedBut(outcome == accepted ? reader.target : none, s),
          "more has changed than the input fills");
  if (!written.empty()) {
    const int slot = std::max(0, reader.target);
    const std::vector<double> pixels = PixelsOf(s, slot);
    const auto readBack = reader.readBack == nullptr ? reader.read : reader.readBack;
    Require(readBack(s, given(written)) == written,
            "what was read changes when it is written and read again");
    Require(PixelsOf(s, slot) == pixels, "pixels change on the way through a file");
  }
  return outcome;
}

}  // namespace halmek::test
