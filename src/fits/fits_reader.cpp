// Loading of FITS files.
#include "fits/fits_reader.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "files/input_file.h"
#include "fits/header.h"
#include "fits/pixel_codec.h"
#include "plot/number_text.h"

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

struct HeaderText {
  std::string text;
  int cardCount = 0;
};

HeaderText ReadHeader(const InputFile& file) {
  if (file.size() == 0)
    throw RunTimeError(run_time_error::pastEndOfFile, "the file is empty");
  HeaderText header{file.ReadStart(longestHeader)};
  // A header has no line ends: what follows one is not header any more.
  header.text.resize(std::min(header.text.find('\r'), header.text.size()));

  const std::string first = header.text.substr(0, 8);
  if (first.substr(0, first.find_last_not_of(' ') + 1) != "SIMPLE")
    throw Refusal("This is not a fits file!  Please try again.");
  header.cardCount = CountCards(header.text);
  if (header.cardCount > lastCard)
    throw RunTimeError(run_time_error::subscript, "the header has " + std::to_string(header.cardCount) +
                                                      " cards; at most " + std::to_string(lastCard) + " fit");
  return header;
}

// The type by which the pixels are decoded. Where 16-bit data have a BZERO at all, they are stored with an
// offset of 32768.
int DecodedType(const FitsHeader& header, bool isDao) {
  const bool hasZero = std::fabs(header.bzero) >= 0.00001;
  if (isDao && header.bzero < 0.00001)
    return pixel_types::dao;
  if (header.bitpix == 16 && hasZero)
    return pixel_types::unsigned16;
  return header.pixelType;
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

void RequirePixels(const FitsHeader& header, double naxis, int card, const char* keyword) {
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

// Values that the header scales are shown as they are stored.
Warnings ScalingWarnings(const FitsHeader& header, int decodedType) {
  Warnings warnings;
  if (header.bscale != 0 && header.bscale != 1)
    warnings.push_back("BSCALE = " + GeneralText(header.bscale) + " is not applied to the pixels.");
  const bool isOffset = decodedType == pixel_types::unsigned16;
  if (isOffset && header.bzero != 32768)
    warnings.push_back("BZERO = " + GeneralText(header.bzero) + " is taken as 32768.");
  if (!isOffset && header.bzero != 0)
    warnings.push_back("BZERO = " + GeneralText(header.bzero) + " is not applied to the pixels.");
  return warnings;
}

// Decodes the frame a few rows at a time, so that the bytes are still in the processor's cache when they are
// decoded.
void ReadFrame(const InputFile& file, Session& session, int type) {
  const Slot& frame = session.slot[slots::frame];
  const int columns = Columns(session), rows = Rows(session);
  const auto rowBytes = static_cast<size_t>(columns * BytesPerPixel(type));
  RequireData(file, frame.dataStart, static_cast<int64_t>(rowBytes) * rows);

  constexpr size_t chunkBytes = 128 << 10;
  const int chunkRows = std::max(1, static_cast<int>(chunkBytes / rowBytes));
  std::vector<std::byte> chunk(rowBytes * static_cast<size_t>(std::min(chunkRows, rows)));
  PixelRange range;
  for (int first = 1; first <= rows; first += chunkRows) {
    const int count = std::min(chunkRows, rows - first + 1);
    const std::span bytes(chunk.data(), rowBytes * static_cast<size_t>(count));
    file.ReadAt(frame.dataStart + static_cast<int64_t>(rowBytes) * (first - 1), bytes);
    for (int r = 0; r < count; ++r)
      DecodePixels(type, bytes.subspan(rowBytes * static_cast<size_t>(r), rowBytes),
                   session.image.Row(first + r, 1, columns), range);
  }
  session.imageMin = range.min;
  session.imageMax = range.max;
}

void ReadSpectrum(const InputFile& file, Slot& slot, int type) {
  const int pixels = Pixels(slot);
  std::vector<std::byte> bytes(static_cast<size_t>(pixels * BytesPerPixel(type)));
  RequireData(file, slot.dataStart, static_cast<int64_t>(bytes.size()));
  file.ReadAt(slot.dataStart, bytes);
  PixelRange range;
  DecodePixels(type, bytes, slot.spectrum.Range(1, pixels), range);
  slot.spectrumMin = range.min;
  slot.spectrumMax = range.max;
}

// The names of a loaded file stand in the main window.
void ShowNames(Session& session, int s) {
  session.workflow.fileLabel[s] = session.slot[s].fileName;
  session.workflow.objectLabel[s] = session.slot[s].objectName;
}

void DisableFrameSteps(Workflow& workflow) {
  workflow.trimEnabled = workflow.fixColumnEnabled = workflow.sliceEnabled = workflow.fixTraceEnabled = false;
}

// Until the pixels are in, the new header does not describe them.
void DisableSteps(Workflow& workflow, int slot) {
  if (slot == slots::object)
    workflow.correctEnabled = workflow.saveObjectEnabled = false;
  else
    workflow.arc[slot].plotEnabled = false;
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
  status.deviationStatus.clear();
  status.fitStatus.clear();
  status.fitWindowStatus.clear();
}

}  // namespace

Warnings LoadFits2D(Session& session, const std::string& file) {
  if (file.empty() || session.dataFolder.empty())
    return {};
  Slot& frame = session.slot[slots::frame];
  frame.fileName = LeafName(file);
  const InputFile input(FullName(session, file));
  const HeaderText header = ReadHeader(input);

  DropFrameState(session);
  DisableFrameSteps(session.workflow);
  session.frameTrimmed = false;
  frame.isWhole = false;
  ReplaceHeader(frame, header.text, header.cardCount);
  RequireSupportedType(frame, session.daoFrame);
  session.frameTrimmed = frame.overscanCard != 0 || frame.trimCard != 0;
  ReadObjectName(frame);
  RequirePixels(frame, frame.naxis1, frame.naxis1Card, "NAXIS1");
  RequirePixels(frame, frame.naxis2, frame.naxis2Card, "NAXIS2");

  const int type = DecodedType(frame, session.daoFrame);
  ReadFrame(input, session, type);
  session.daoFrame = false;

  Workflow& workflow = session.workflow;
  workflow.title = PlotCaption("Halmek.  File:  ", frame.fileName, frame.objectName);
  workflow.trimEnabled = !session.frameTrimmed;
  workflow.fixColumnEnabled = workflow.fixTraceEnabled = workflow.sliceEnabled = true;
  ClearFrameStatus(workflow);
  frame.isWhole = true;
  frame.dataName = frame.fileName;
  frame.loadedFile = FullName(session, file);
  ShowNames(session, slots::frame);
  return ScalingWarnings(frame, type);
}

Warnings LoadFits1D(Session& session, int s, const std::string& file) {
  if (file.empty() || session.dataFolder.empty())
    return {};
  Slot& slot = session.slot[s];
  slot.fileName = LeafName(file);
  const InputFile input(FullName(session, file));
  const HeaderText header = ReadHeader(input);

  DisableSteps(session.workflow, s);
  slot.isWhole = false;
  ReplaceHeader(slot, header.text, header.cardCount);
  RequireSupportedType(slot, false);
  if (slot.naxis2 > 1)
    throw Refusal("Hey, this is not a 1-D file!  Please try again.", "NAXIS2 is " + GeneralText(slot.naxis2));
  ReadObjectName(slot);
  RequirePixels(slot, slot.naxis1, slot.naxis1Card, "NAXIS1");

  const int type = DecodedType(slot, false);
  ReadSpectrum(input, slot, type);

  if (s == slots::object) {
    session.workflow.correctEnabled = true;
    session.workflow.correctionStatus.clear();
  } else {
    StartOverArc(session, s);
  }
  slot.isWhole = true;
  slot.dataName = slot.fileName;
  slot.loadedFile = FullName(session, file);
  ShowNames(session, s);
  return ScalingWarnings(slot, type);
}

}  // namespace halmek
