// Saving of FITS files.
#include "fits/fits_writer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "files/atomic_write.h"
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

// 16-bit pixels whose header has another BZERO than their type would read back offset.
bool NeedsZeroCard(const FitsHeader& header, int type) {
  if (type == pixel_types::unsigned16)
    return header.bzero != 32768;
  return type == pixel_types::signed16 && std::fabs(header.bzero) >= 0.00001;
}

void SetZero(FitsHeader& header, int type) {
  const bool isOffset = type == pixel_types::unsigned16;
  const std::string card = isOffset ? NumberCard("BZERO", "32768.", " / Actual = BSCALE*file + BZERO")
                                    : NumberCard("BZERO", "0", " / ");
  if (header.bzeroCard != 0)
    header.card(header.bzeroCard) = card;
  else if (isOffset)
    header.bzeroCard = AppendCard(header, card);
  header.bzero = isOffset ? 32768 : 0;
}

// A HISTORY card for a change of type, and the BZERO card that type 17 needs.
int CardsToAdd(const FitsHeader& header, int type) {
  const bool addsZero = type == pixel_types::unsigned16 && header.bzeroCard == 0;
  return (type != header.pixelType ? 1 : 0) + (addsZero ? 1 : 0);
}

// Makes the header describe data of that type. `label` is the text between "changed " and "data type".
void SetType(FitsHeader& header, int type, std::string_view label) {
  const TypeTexts& texts = TextsOf(type);
  if (header.bitpixCard == 0)
    throw Refusal("This header has no BITPIX card, so that it cannot be saved.  Please load the file again.");
  RequireRoomForCards(header, CardsToAdd(header, type));
  const bool changes = type != header.pixelType;

  if (header.naxis3 > 1 && header.naxis3Card != 0) {
    header.naxis3 = 1;
    header.card(header.naxis3Card) = NumberCard("NAXIS3", "1", " /  ");
  }
  if (changes) {
    header.card(header.bitpixCard) = NumberCard("BITPIX", texts.bitpix, " / bits per pixel");
    header.bitpix = type == pixel_types::unsigned16 ? 16 : type;
    AppendCard(header,
               "HISTORY  Halmek changed " + std::string(label) + "data type to " + std::string(texts.name));
  }
  if (changes || NeedsZeroCard(header, type))
    SetZero(header, type);

  PadCards(header);
  header.pixelType = type;
  header.headerLength = header.cardCount * cardLength + 3;
  header.dataStart = DataStart(header.cardCount);
}

void RefuseReal64(int type) {
  if (type == pixel_types::real64)
    throw Refusal("Sorry; saving to 64-bit is not available at this time.  Try 32-bit real.");
}

// Header and data behind each other; the data are padded with blanks, by a whole record where they fill one.
class FileBytes {
 public:
  FileBytes(const FitsHeader& header, int64_t pixels)
      : bytes_(HeaderBytes(header)), type_(header.pixelType), at_(bytes_.size()) {
    const int64_t dataBytes = pixels * BytesPerPixel(type_);
    const int64_t padded = (dataBytes / recordLength + 1) * recordLength;
    bytes_.resize(at_ + static_cast<size_t>(padded), ' ');
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

  const std::string& bytes() const { return bytes_; }

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

 private:
  std::string bytes_;
  int type_;
  size_t at_;
  int changed_ = 0;
  // Of the rows that change.
  double smallest_ = std::numeric_limits<double>::max(), largest_ = std::numeric_limits<double>::lowest();
};

void WriteAndRemember(Session& session, const std::string& file, const std::string& bytes) {
  const std::string path = FullName(session, file);
  AtomicWrite(path, bytes, session.fileOperations);
  session.writtenFiles.push_back(path);
}

}  // namespace

Warnings SaveFits2D(Session& session, const std::string& file) {
  Slot& frame = session.slot[slots::frame];
  const int columns = Columns(session), rows = Rows(session);
  SetType(frame, frame.savePixelType, "");
  frame.fileName = LeafName(file);
  RefuseReal64(frame.savePixelType);

  FileBytes data(frame, static_cast<int64_t>(columns) * rows);
  for (int r = 1; r <= rows; ++r)
    data.Append(session.image.Row(r, 1, columns));
  WriteAndRemember(session, file, data.bytes());
  session.workflow.title = PlotCaption("Halmek.  File:  ", frame.fileName, frame.objectName);
  return data.warnings();
}

Warnings SaveFits1D(Session& session, int s, const std::string& file) {
  Slot& slot = session.slot[s];
  if (s == slots::spectrum) {
    FitsHeader header = session.crunchHeader;
    header.naxis2 = 1;
    if (header.naxis2Card != 0)
      header.card(header.naxis2Card) = NumberCard("NAXIS2", "1", " /");
    RequireRoomForCards(header, CardsToAdd(header, slot.savePixelType));
    static_cast<FitsHeader&>(slot) = std::move(header);
  }
  const int pixels = Pixels(slot);
  SetType(slot, slot.savePixelType, "1-D ");
  slot.fileName = LeafName(file);
  RefuseReal64(slot.savePixelType);

  const std::span<const double> values = slot.spectrum.Range(1, pixels);
  if (slot.pixelType == pixel_types::signed16 &&
      std::any_of(values.begin(), values.end(), [](double v) { return v > 65535; }))
    throw Refusal("Pixel value > 65535.  Save as 32-bit int or 32-bit real.");
  FileBytes data(slot, pixels);
  data.Append(values);
  WriteAndRemember(session, file, data.bytes());
  return data.warnings();
}

}  // namespace halmek
