// Loading of FITS files.
#include "fits/fits_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "files/input_file.h"
#include "fits/header.h"
#include "fits/pixel_codec.h"
#include "plot/number_text.h"
#include "plot/wording.h"

namespace halmek {
namespace {

// How far END is looked for, so that a large file without one is refused at once.
constexpr int64_t longestHeader = 2000 * cardLength;

// The cards before END; nothing where there is no END at the start of a card.
int CountCards(std::string_view text) {
  for (size_t at = 0; at < text.size(); at += cardLength) {
    const std::string_view keyword = text.substr(at, 8);
    if (keyword.starts_with("END") && keyword.find_first_not_of(' ', 3) == std::string_view::npos)
      return static_cast<int>(at / cardLength);
  }
  throw Refusal("This FITS header has no END card.  Please try again.");
}

FitsHeader ReadHeader(const InputFile& file) {
  if (file.size() == 0)
    throw RunTimeError(run_time_error::pastEndOfFile, "the file is empty");
  std::string text = file.ReadStart(longestHeader);
  // A header has no line ends: what follows one is not header any more.
  text.resize(std::min(text.find('\r'), text.size()));

  const std::string first = text.substr(0, 8);
  if (first.substr(0, first.find_last_not_of(' ') + 1) != "SIMPLE")
    throw Refusal("This is not a fits file!  Please try again.");
  const int count = CountCards(text);
  if (count > lastCard)
    throw RunTimeError(run_time_error::subscript, "the header has " + std::to_string(count) +
                                                      " cards; at most " + std::to_string(lastCard) + " fit");
  FitsHeader header;
  ReplaceHeader(header, text, count);
  return header;
}

void RequireSupportedType(const FitsHeader& header, bool isDao) {
  if (header.bitpix == 8)
    throw Refusal("Sorry, this program does not support 8-bit integer data.  Convert to 16-bit unsigned.");
  if (isDao && header.bitpix != 16)
    throw Refusal(
        "Sorry, this program does not support DAO frames other than 16-bit.  Load it as a FITS file.",
        "BITPIX is " + GeneralText(header.bitpix));
  if (header.bitpix != header.pixelType && header.pixelType != 17)
    throw Refusal("Sorry, this program does not support this pixel type.  Convert to 32-bit real.",
                  "BITPIX is " + GeneralText(header.bitpix));
  if (BytesPerPixel(header.pixelType) == 0 || header.bitpix == 15 || header.bitpix == 17)
    throw Refusal("Sorry, this program does not support " + GeneralText(std::fabs(header.bitpix)) + "-bit " +
                      (header.bitpix < 0 ? "real" : "integer") + " data.  Convert to 32-bit real.",
                  header.bitpixCard == 0 ? "there is no BITPIX card" : "");
}

// Makes the length of an axis whole, and requires it to lie within 1..last.
void TakeSize(double& naxis, const FitsHeader& header, int card, const char* keyword, int last) {
  naxis = std::floor(naxis);
  if (naxis > last)
    throw RunTimeError(run_time_error::subscript, std::string(keyword) + " is above " + std::to_string(last));
  if (naxis >= 1)
    return;
  throw Refusal("This FITS file has no pixels.  Please try again.",
                card == 0 ? std::string("there is no ") + keyword + " card"
                          : std::string(keyword) + " is " + header.cardValue(card));
}

void RequireData(const InputFile& file, int64_t start, int64_t bytes) {
  if (file.size() < start + bytes)
    throw RunTimeError(run_time_error::pastEndOfFile, "the pixels end at byte " +
                                                          std::to_string(start + bytes) + ", the file at " +
                                                          std::to_string(file.size()));
}

// How the header says that the stored numbers stand for pixels: pixel = zero + scale x stored.
struct Storage {
  int type = 0;  // by which they are decoded
  double zero = 0, scale = 1;
  std::optional<double> blank;  // the number that stands for no value, as it is decoded

  bool IsPlain() const { return zero == 0 && scale == 1 && !blank; }
};

Storage StorageOf(const FitsHeader& header, bool isDao) {
  const double scale = header.bscale == 0 ? 1 : header.bscale;
  if (isDao && header.bzero < 0.00001)
    return {.type = pixel_types::dao, .blank = {}};
  Storage storage{.type = header.pixelType, .zero = header.bzero, .scale = scale, .blank = {}};
  const bool isUnsigned = header.pixelType == pixel_types::unsigned16 && scale == 1;
  if (isUnsigned)
    storage.zero = 0;
  else if (header.pixelType == pixel_types::unsigned16)
    storage.type = pixel_types::signed16;
  if (const auto blank = BlankOf(header); blank && header.bitpix > 0)
    storage.blank = *blank + (isUnsigned ? header.bzero : 0);
  return storage;
}

// Gives each blank pixel of the row the mean of the nearest others on either side, the one where there is no
// other, and 0 where all are blank. Returns how many there were.
int FillBlanks(std::span<double> row, double blank) {
  constexpr size_t none = SIZE_MAX;
  int count = 0;
  size_t before = none;
  for (size_t i = 0; i < row.size(); ++i) {
    if (row[i] != blank) {
      before = i;
      continue;
    }
    size_t after = i;
    while (after < row.size() && row[after] == blank)
      ++after;
    const double left = before == none ? (after < row.size() ? row[after] : 0) : row[before];
    const double right = after < row.size() ? row[after] : left;
    count += static_cast<int>(after - i);
    std::fill(row.begin() + static_cast<std::ptrdiff_t>(i), row.begin() + static_cast<std::ptrdiff_t>(after),
              (left + right) / 2);
    before = after < row.size() ? after : before;
    i = after;
  }
  return count;
}

// Decodes rows of pixels, one after the other.
class RowDecoder {
 public:
  explicit RowDecoder(const Storage& storage) : storage_(storage) {}

  void Decode(std::span<const std::byte> bytes, std::span<double> row) {
    if (storage_.IsPlain())
      return DecodePixels(storage_.type, bytes, row, range_);
    PixelRange ofStored;
    DecodePixels(storage_.type, bytes, row, ofStored);
    if (storage_.blank)
      blanks_ += FillBlanks(row, *storage_.blank);
    for (double& pixel : row) {
      pixel = storage_.zero + storage_.scale * pixel;
      if (!std::isfinite(pixel))
        throw RunTimeError(run_time_error::overflow, "a pixel that BSCALE makes too large");
      range_.min = std::min(range_.min, pixel);
      range_.max = std::max(range_.max, pixel);
    }
  }

  PixelRange range() const { return range_; }
  int blanks() const { return blanks_; }

 private:
  const Storage storage_;
  PixelRange range_;
  int blanks_ = 0;
};

// The bytes of all pixels. They are read at once, so that a disk that fails leaves the pixels of the frame
// that is loaded.
std::unique_ptr<std::byte[]> ReadFrameBytes(const InputFile& file, const FitsHeader& header) {
  const auto size = static_cast<size_t>(header.naxis1 * header.naxis2) *
                    static_cast<size_t>(BytesPerPixel(header.pixelType));
  RequireData(file, header.dataStart, static_cast<int64_t>(size));
  auto bytes = std::make_unique_for_overwrite<std::byte[]>(size);
  file.ReadAt(header.dataStart, {bytes.get(), size});
  return bytes;
}

void DecodeFrame(const std::byte* bytes, const FitsHeader& header, FrameTable& image, RowDecoder& decoder) {
  const int columns = static_cast<int>(header.naxis1), rows = static_cast<int>(header.naxis2);
  const auto rowBytes = static_cast<size_t>(columns * BytesPerPixel(header.pixelType));
  for (int r = 1; r <= rows; ++r, bytes += rowBytes)
    decoder.Decode({bytes, rowBytes}, image.Row(r, 1, columns));
}

std::vector<double> ReadSpectrum(const InputFile& file, const FitsHeader& header, RowDecoder& decoder) {
  std::vector<double> pixels(static_cast<size_t>(header.naxis1));
  std::vector<std::byte> bytes(pixels.size() * static_cast<size_t>(BytesPerPixel(header.pixelType)));
  RequireData(file, header.dataStart, static_cast<int64_t>(bytes.size()));
  file.ReadAt(header.dataStart, bytes);
  decoder.Decode(bytes, pixels);
  return pixels;
}

// Says what the observer must know of how the pixels were stored.
Warnings StorageWarnings(FitsHeader& header, const Storage& storage, int blanks) {
  Warnings warnings;
  const bool isDao = storage.type == pixel_types::dao;
  if (isDao && (header.bzero != 0 || (header.bscale != 0 && header.bscale != 1)))
    warnings.push_back("BSCALE and BZERO are not applied to the pixels of a DAO frame.");
  if (blanks == 0)
    return warnings;
  const std::string count = Count(blanks, "pixel");
  warnings.push_back(count + (blanks == 1 ? " has" : " have") +
                     " no value (BLANK = " + GeneralText(*BlankOf(header)) +
                     "): filled with the mean of the nearest pixels of the row.");
  if (header.cardCount < lastCard)
    AppendCard(header, "HISTORY  Halmek filled " + count + " without value from their row");
  return warnings;
}

// The slot goes by the header and the name of a file that was loaded, and the main window shows them.
void TakeFile(Session& session, int s, FitsHeader header, const std::string& file) {
  Slot& slot = session.slot[s];
  static_cast<FitsHeader&>(slot) = std::move(header);
  slot.fileName = LeafName(file);
  slot.loadedFile = FullName(session, file);
  slot.savedFile.clear();
  session.workflow.fileLabel[s] = slot.fileName;
  session.workflow.objectLabel[s] = slot.objectName;
}

void StartOverArc(Session& session, int a) {
  Arc& arc = session.arc[a];
  arc.fitIsStale.fill(true);
  arc.PixelCentroid.Clear();
  arc.PixelCentroidError.Clear();
  arc.PixelWavelength.Clear();
  arc.LineCount = 0;
  arc.linRms = 0;
  arc.fitDone = false;
  arc.maskApplied = false;

  Workflow::ArcStatus& status = session.workflow.arc[a];
  status.plotEnabled = true;
  status.maskStatus.clear();
  ClearFitStatus(status);
}

}  // namespace

Warnings LoadFits2D(Session& session, const std::string& file) {
  if (file.empty() || session.dataFolder.empty())
    return {};
  const InputFile input(FullName(session, file));
  FitsHeader header = ReadHeader(input);
  RequireSupportedType(header, session.daoFrame);
  ReadObjectName(header);
  TakeSize(header.naxis1, header, header.naxis1Card, "NAXIS1", FrameTable::lastColumn);
  TakeSize(header.naxis2, header, header.naxis2Card, "NAXIS2", FrameTable::lastRow);

  const Storage storage = StorageOf(header, session.daoFrame);
  RowDecoder decoder(storage);
  const auto bytes = ReadFrameBytes(input, header);
  // Only scaled pixels can be refused while they are decoded. A second table for all others would double the
  // pages that a night touches.
  DecodeFrame(bytes.get(), header, storage.IsPlain() ? session.image : session.nextImage, decoder);
  Warnings warnings = StorageWarnings(header, storage, decoder.blanks());

  if (!storage.IsPlain())
    std::swap(session.image, session.nextImage);
  session.imageMin = decoder.range().min;
  session.imageMax = decoder.range().max;
  TakeFile(session, slots::frame, std::move(header), file);
  session.daoFrame = false;
  DropFrameState(session);
  const Slot& frame = session.slot[slots::frame];
  session.frameTrimmed = frame.overscanCard != 0 || frame.trimCard != 0;
  Workflow& workflow = session.workflow;
  workflow.title = PlotCaption("Halmek.  File:  ", frame.fileName, frame.objectName);
  workflow.trimEnabled = !session.frameTrimmed;
  workflow.fixColumnEnabled = workflow.fixTraceEnabled = workflow.sliceEnabled = true;
  ClearFrameStatus(workflow);
  return warnings;
}

Warnings LoadFits1D(Session& session, int s, const std::string& file) {
  if (file.empty() || session.dataFolder.empty())
    return {};
  const InputFile input(FullName(session, file));
  FitsHeader header = ReadHeader(input);
  RequireSupportedType(header, false);
  if (header.naxis2 > 1)
    throw Refusal("Hey, this is not a 1-D file!  Please try again.",
                  "NAXIS2 is " + GeneralText(header.naxis2));
  ReadObjectName(header);
  TakeSize(header.naxis1, header, header.naxis1Card, "NAXIS1", lastPixel);

  const Storage storage = StorageOf(header, false);
  RowDecoder decoder(storage);
  const std::vector<double> pixels = ReadSpectrum(input, header, decoder);
  Warnings warnings = StorageWarnings(header, storage, decoder.blanks());

  Slot& slot = session.slot[s];
  std::copy(pixels.begin(), pixels.end(), slot.spectrum.Range(1, static_cast<int>(pixels.size())).begin());
  slot.spectrumMin = decoder.range().min;
  slot.spectrumMax = decoder.range().max;
  TakeFile(session, s, std::move(header), file);
  if (s == slots::object) {
    session.workflow.correctEnabled = true;
    session.workflow.saveObjectEnabled = false;
    session.workflow.correctionStatus.clear();
  } else {
    StartOverArc(session, s);
  }
  return warnings;
}

}  // namespace halmek
