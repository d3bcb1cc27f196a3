// Saving of FITS files.
#include "fits/fits_writer.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "app/output.h"
#include "fits/header.h"
#include "fits/pixel_codec.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

struct TypeTexts {
  int type;
  std::string_view bitpix;
  std::string_view name;
};

constexpr TypeTexts typeTexts[] = {
    {pixel_types::signed16, "16", "16 bit integer"},  {pixel_types::unsigned16, "16", "16 bit unsigned"},
    {pixel_types::integer32, "32", "32 bit integer"}, {pixel_types::real32, "-32", "32 bit real"},
    {pixel_types::real64, "-64", "64 bit real"},
};

const TypeTexts& TextsOf(int type) {
  const auto* found = std::find_if(std::begin(typeTexts), std::end(typeTexts),
                                   [=](const TypeTexts& t) { return t.type == type; });
  if (found == std::end(typeTexts))
    throw Refusal("Sorry, this program does not save this pixel type.  Try 32-bit real.");
  return *found;
}

// The header's own card where it says the value in the fixed format that mandatory cards have, and otherwise
// one of ours.
std::string FixedCard(const FitsHeader& header, const std::string& keyword, const std::string& value,
                      const std::string& comment) {
  const std::string start = NumberCard(keyword, value, "");
  for (const std::string& card : CardsOf(header))
    if (card.starts_with(start) && (card.size() == start.size() || card[start.size()] == ' '))
      return card;
  return NumberCard(keyword, value, " / " + comment);
}

// NAXIS, and NAXIS1 to NAXIS999.
bool IsSizeKeyword(const std::string& keyword) {
  return keyword.starts_with("NAXIS") && keyword.find_first_not_of("0123456789", 5) == std::string::npos;
}

// Cards that say how data are stored or what they sum up to: those of the file that is written say it anew.
bool SpeaksOfStorage(const std::string& keyword) {
  constexpr std::string_view keywords[] = {"SIMPLE", "BITPIX", "BSCALE",   "BZERO",   "BLANK",   "GROUPS",
                                           "PCOUNT", "GCOUNT", "XTENSION", "DATASUM", "CHECKSUM"};
  return IsSizeKeyword(keyword) ||
         std::find(std::begin(keywords), std::end(keywords), keyword) != std::end(keywords);
}

// Makes the header describe data of that type and those axes, by cards that stand first and once, as FITS 4.0
// (4.4.1) has them. `label` is the text between "changed " and "data type".
void Describe(FitsHeader& header, int type, const std::vector<int>& axes, std::string_view label) {
  const TypeTexts& texts = TextsOf(type);
  if (header.bitpixCard == 0)
    throw Refusal("This header has no BITPIX card, so that it cannot be saved.  Please load the file again.");
  std::vector<std::string> cards{FixedCard(header, "SIMPLE", "T", "conforms to the FITS standard"),
                                 FixedCard(header, "BITPIX", std::string(texts.bitpix), "bits per pixel"),
                                 FixedCard(header, "NAXIS", std::to_string(axes.size()), "number of axes")};
  for (size_t k = 0; k < axes.size(); ++k) {
    const std::string number = std::to_string(k + 1);
    cards.push_back(FixedCard(header, "NAXIS" + number, std::to_string(axes[k]), "length of axis " + number));
  }
  if (type == pixel_types::unsigned16)
    cards.push_back(FixedCard(header, "BZERO", "32768.", "Actual = BSCALE*file + BZERO"));
  for (const std::string& card : CardsOf(header))
    if (!SpeaksOfStorage(PartsOf(card).keyword))
      cards.push_back(card);
  if (type != header.pixelType)
    cards.push_back("HISTORY  Halmek changed " + std::string(label) + "data type to " +
                    std::string(texts.name));
  // By its HISTORY a file is known as one of ours. Without room for it, it is taken for another's.
  const auto isOurs = [](const std::string& card) { return IsOwnHistory(card); };
  if (std::none_of(cards.begin(), cards.end(), isOurs) && cards.size() < lastCard)
    cards.emplace_back("HISTORY  Halmek saved this file");
  SetCards(header, cards);
}

void RefuseReal64(int type) {
  if (type == pixel_types::real64)
    throw Refusal("Sorry; saving to 64-bit is not available at this time.  Try 32-bit real.");
}

// Writes the file, whose header and name are the slot's then.
Warnings Write(Session& session, int s, FitsHeader header, const Output& output, const EncodedFits& encoded) {
  Warnings warnings = WriteOutput(session, output, encoded.bytes);
  Slot& slot = session.slot[s];
  static_cast<FitsHeader&>(slot) = std::move(header);
  slot.fileName = LeafName(output.file);
  slot.savedFile = FullName(session, output.file);
  warnings.insert(warnings.end(), encoded.warnings.begin(), encoded.warnings.end());
  return warnings;
}

// Header and data behind each other, each a whole number of records; zeros fill the last one of the data.
class FileBytes {
 public:
  FileBytes(const FitsHeader& header, int64_t pixels)
      : bytes_(HeaderBytes(header)), type_(header.pixelType), at_(bytes_.size()) {
    const int64_t dataBytes = pixels * BytesPerPixel(type_);
    const int64_t records = (dataBytes + recordLength - 1) / recordLength;
    bytes_.resize(at_ + static_cast<size_t>(records * recordLength), '\0');
  }

  void Append(std::span<const double> values) {
    const size_t size = values.size() * static_cast<size_t>(BytesPerPixel(type_));
    const int changed =
        EncodePixels(type_, values, std::as_writable_bytes(std::span(bytes_)).subspan(at_, size));
    at_ += size;
    if (changed == 0)
      return;
    changed_ += changed;
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    smallest_ = std::min(smallest_, *least);
    largest_ = std::max(largest_, *most);
  }

  // To be called once, at the end.
  EncodedFits Take() { return {std::move(bytes_), warnings()}; }

 private:
  // What to say of pixels that do not fit the sign of their type.
  Warnings warnings() const {
    if (changed_ == 0)
      return {};
    const bool unsignedFits = type_ == pixel_types::signed16 && smallest_ >= -0.5;
    return {std::to_string(changed_) + (changed_ == 1 ? " pixel" : " pixels") +
            " will read back changed, because 16 bits of this kind do not hold the values " +
            GeneralText(smallest_) + " to " + GeneralText(largest_) + ".  Save as " +
            (unsignedFits ? "16-bit unsigned or 32-bit." : "32-bit.")};
  }

  std::string bytes_;
  int type_;
  size_t at_;
  int changed_ = 0;
  // Of the rows that change.
  double smallest_ = std::numeric_limits<double>::max(), largest_ = std::numeric_limits<double>::lowest();
};

}  // namespace

EncodedFits EncodeFrame(const FitsHeader& header, const FrameTable& image, int columns, int rows) {
  FileBytes data(header, static_cast<int64_t>(columns) * rows);
  for (int r = 1; r <= rows; ++r)
    data.Append(image.Row(r, 1, columns));
  return data.Take();
}

Warnings SaveFits2D(Session& session, const std::string& file, bool mayReplace) {
  Slot& frame = session.slot[slots::frame];
  const int columns = Columns(session), rows = Rows(session);
  RefuseReal64(frame.savePixelType);
  FitsHeader header = frame;
  Describe(header, frame.savePixelType, {columns, rows}, "");
  const EncodedFits encoded = EncodeFrame(header, session.image, columns, rows);
  Warnings warnings =
      Write(session, slots::frame, std::move(header), {file, FileKind::fits, mayReplace}, encoded);
  session.workflow.title = PlotCaption("Halmek.  File:  ", frame.fileName, frame.objectName);
  return warnings;
}

Warnings SaveFits1D(Session& session, int s, const std::string& file, bool mayReplace) {
  const Slot& slot = session.slot[s];
  const int type = slot.savePixelType, pixels = Pixels(slot);
  RefuseReal64(type);
  const std::span<const double> values = slot.spectrum.Range(1, pixels);
  if (type == pixel_types::signed16 &&
      std::any_of(values.begin(), values.end(), [](double v) { return v > 65535; }))
    throw Refusal("Pixel value > 65535.  Save as 32-bit int or 32-bit real.");

  FitsHeader header = s == slots::spectrum ? session.crunchHeader : static_cast<const FitsHeader&>(slot);
  std::vector<int> axes{pixels};
  if (header.naxis > 1)
    axes.push_back(1);
  Describe(header, type, axes, "1-D ");
  FileBytes data(header, pixels);
  data.Append(values);
  return Write(session, s, std::move(header), {file, FileKind::fits, mayReplace}, data.Take());
}

}  // namespace halmek
