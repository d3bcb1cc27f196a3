// The record through which all procedures and windows communicate.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/fixed_table.h"
#include "app/settings.h"
#include "app/workflow.h"
#include "files/file_operations.h"
#include "numeric/median.h"
#include "numeric/polynomial_fit.h"
#include "plot/plot_frame.h"
#include "plot/scroll_bar.h"

namespace halmek {

inline constexpr int lastPixel = FrameTable::lastColumn;  // of a spectrum: 3000
inline constexpr int lastCard = 200;                      // of a header
inline constexpr int lastLine = 50;                       // of an arc's identified lines, and of a mask
inline constexpr int lastTableEntry = 1000;               // of the wavelength table

// The slots by what they hold. Each keeps its number for the life of the program.
namespace slots {
inline constexpr int frame = 0;     // the 2-D frame being reduced
inline constexpr int arc1 = 1;      // arc spectra
inline constexpr int arc2 = 2;      //
inline constexpr int spectrum = 3;  // the 1-D spectrum extracted from the frame
inline constexpr int object = 4;    // the 1-D spectrum to be calibrated
}  // namespace slots

// The header of a file: its cards, and what they say.
struct FitsHeader {
  std::string objectName;  // of the OBJECT card, without its quotes

  // Values of the cards of the same names; 0 where a card is absent.
  double naxis = 0, naxis1 = 0, naxis2 = 0, naxis3 = 0;
  double bitpix = 0, bzero = 0, bscale = 0;
  int pixelType = 0;  // BITPIX, or 17 for 16-bit data with BZERO = 32768

  // Numbers of the cards that hold these keywords; 0 = no such card.
  int naxisCard = 0, naxis1Card = 0, naxis2Card = 0, naxis3Card = 0;
  int bitpixCard = 0, bzeroCard = 0;
  int overscanCard = 0, trimCard = 0;
  int crval1Card = 0, cd1_1Card = 0;

  int cardCount = 0;         // cards before END
  int32_t headerLength = 0;  // cardCount x 80 + 3
  int32_t dataStart = 0;     // byte offset of the data, a multiple of 2880

  // The header's cards 1..cardCount: the 80 characters as read, and their parts, trimmed. Cards that
  // operations append or rewrite change in `card` only.
  FixedTable<std::string> card{lastCard}, cardKeyword{lastCard}, cardValue{lastCard}, cardComment{lastCard};
};

// One loaded file: its header and, except for the frame, its pixels.
struct Slot : FitsHeader {
  std::string fileName;    // of the last load or save, without folder; empty = nothing loaded
  std::string loadedFile;  // full name of the file that was loaded
  std::string savedFile;   // full name of the last save since then; empty = none
  int savePixelType = 0;   // BITPIX chosen for the next save, or 17

  FixedTable<double> spectrum{lastPixel};      // pixels 1..naxis1
  FixedTable<double> spectrumWork{lastPixel};  // the pixels before the last operation that rescaled them
  double spectrumMin = 0, spectrumMax = 0;     // of the last load
  double spectrumPeak = 0;                     // of the last extraction, at least 0

  std::string textFileName;  // of the last text export
};

// An arc's identified lines and its dispersion. Tables that stand for a function of their index, such as
// PixelCentroid(p), have names like functions, here and below. Columns count from 1 and are fractional;
// wavelengths are in Angstrom.
struct Arc {
  // By peak pixel: the centroid and its standard error (0 = not centroided), and the wavelength given to the
  // line (0 = none).
  FixedTable<double> PixelCentroid{lastPixel}, PixelCentroidError{lastPixel}, PixelWavelength{lastPixel};

  int LineCount = 0;
  FixedTable<double> ArcLineColumn{lastLine}, ArcLineWavelength{lastLine};

  // wavelength = linIntercept + linSlope x column, and its RMS; 0 = not computed.
  double linIntercept = 0, linSlope = 0, linRms = 0;

  FixedTable<double> Deviation{lastLine};     // of each line from the linear fit, fit minus table
  std::array<Polynomial, 6> DeviationCoef{};  // by power; power 0 within = never fitted
  int fitPower = 4;   // chosen for the next fit, and of the correction function that is used
  int stepPower = 4;  // the same after the steps performed, which know nothing of a choice not yet used
  bool fitDone = false;
  bool maskApplied = false;
  std::array<bool, 6> fitIsStale{};  // by power: lines have changed since it was fitted

  PlotFrame plotFrame, deviationFrame;
};

struct WavelengthTable {
  std::string loadedFile;  // its full name
  FixedTable<double> WLValue{lastTableEntry};
  FixedTable<std::string> WLName{lastTableEntry};
  int wlCount = 0;
};

struct LineMask {
  std::string maskFileName;  // of the last mask loaded or saved; empty = no mask
  std::string loadedFile;    // full name of the last mask loaded
  FixedTable<double> MaskColumn{lastLine}, MaskWavelength{lastLine};
  int maskCount = 0;
};

// The row plot: zoom, the selection of pixels to zap, and the last zap.
struct RowPlot {
  // The ends of a selection that is empty, so that the smaller and the larger column clicked can replace
  // them.
  static constexpr int noFirst = 32200, noLast = -32200;

  int plotRow = 0, lastDrawnRow = 0;
  PlotFrame rowFrame;
  ScrollBar columnScroll, rowScroll;  // [HScroll1], [VScroll1]
  bool zoomAwaitingFirst = true;
  int zoomFirstColumn = 0;
  bool zapSelected = false;
  int zapFirst = noFirst, zapLast = noLast;
  int zapNeighbours = 3;
  int undoFirst = 0, undoLast = 0, undoRow = 0;  // of the last zap; row 0 = none
  FixedTable<double> zapBackup{lastPixel};
  std::string hint;  // [Label16]
};

// The column slice: aperture and background rows, in the order in which they were clicked.
struct Slice {
  // The states of the aperture's selection.
  static constexpr int nothing = 0, firstRowSet = 1, apertureSet = 2, complete = -1;

  int sliceColumn = 0;
  int apertureFirstRow = 0, apertureLastRow = 0;
  int stepFirstRow = 0, stepLastRow = 0;  // the aperture of the last `aperture` step; 0 = none
  double apertureMarkValue = 0;
  int background1FirstRow = 0, background1LastRow = 0;
  int background2FirstRow = 0, background2LastRow = 0;
  double backgroundMarkValue = 0;
  int apertureState = nothing;
  int backgroundClicks = 0;
  bool fixedScale = false;
  PlotFrame colFrame;
};

// The background under the spectrum: one model per column, a function of the row: the median for power 0,
// else a0 + a1 t + a2 t^2 with t = row - backgroundCentre.
struct Background {
  int backgroundPower = 0;  // chosen for the next fit
  int fittedPower = 0;      // of the models below
  bool backgroundFitted = false;
  int BackgroundCount = 0;
  FixedTable<double> BackgroundRows{SortBuffer::last};
  FixedTable<double> backgroundMedian{lastPixel};
  double backgroundCentre = 0;
  FixedTable<double> backgroundA0{lastPixel}, backgroundA1{lastPixel}, backgroundA2{lastPixel};
};

struct Continuum {
  static constexpr int lastPoint = 2000;

  FixedTable<double> ContinuumPointColumn{lastPoint}, ContinuumPointValue{lastPoint};
  // Where a point set by hand was clicked; the negative column of an automatic point.
  FixedTable<int> clickedColumn{lastPoint};
  int continuumPointCount = 0;
  bool continuumFitDone = false;
  bool normalized = false;  // `spectrumWork` holds the spectrum before a normalisation
  int continuumPower = 4;   // chosen for the next fit
  int fittedPower = 4;      // of the last fit
  int continuumInterval = 10;
  std::array<Polynomial, 6> ContinuumCoefficients{};  // by power
  double continuumFitMax = 0;
  // What the last fit was made from, so that a step can make it again.
  bool fittedByHand = false;
  int fittedInterval = 10;
  std::vector<int> fittedClicks;
  bool fitUsed = false;  // the spectrum has been divided by the last fit
  int markerSize = 50;
  PlotFrame contFrame;
};

// The line that was clicked last, and what the identification window shows of it.
struct LinePanel {
  int arc = 0, column = 0;     // where it was clicked; arc 0 = nowhere yet
  std::string peakText;        // [Label3]
  std::string centroidText;    // [Label5]
  std::string errorText;       // [Label16]
  std::string estimateText;    // [Label8]
  std::string wavelengthText;  // [Text1]
  std::string nameText;        // [Label17]
  std::string deviationText;   // [Label12]
  std::string rmsText;         // [Label14]
  std::string countText;       // [Label19]
  std::string stateText;       // [labelState]: the wavelength that the line has already
  int tableEntry = 1;          // [VScroll1]
};

// Which work is in no file.
struct Unsaved {
  bool frame = false, spectrum = false, object = false;  // changes of the data
  std::array<bool, 3> arc{};                             // identified lines, of arcs 1 and 2
  bool frameIsExtracted = false;                         // the spectrum comes from the frame as it is
};

struct Session : Settings {
  std::array<Slot, 5> slot;
  FrameTable image;      // rows 1..naxis2, columns 1..naxis1 of slot 0
  FrameTable nextImage;  // into which scaled pixels are decoded, so that a refused load leaves `image`
  double imageMin = 0, imageMax = 0;

  int currentSlot = 0;
  std::string dataFolder;
  std::string settingsPath;
  bool daoFrame = false;  // the next 2-D load reads the DAO layout
  int arcCount = 2;
  bool frameTrimmed = false;
  std::string baseName;  // of the frame's file, without extension
  // The frame's file and header as they were when the spectrum of slot 3 was extracted from it.
  std::string crunchFile;  // its name
  std::string crunchLoad;  // the full name of the file it was loaded from
  FitsHeader crunchHeader;

  int traceRow = 0;  // the brightest row near the repaired column
  halmek::SortBuffer SortBuffer;
  halmek::NeighbourBuffer NeighbourBuffer;

  RowPlot rowPlot;
  Slice slice;
  Background background;
  Continuum continuum;

  std::array<Arc, 3> arc;  // 1 and 2
  WavelengthTable wavelengthTable;
  LineMask mask;
  LinePanel linePanel;
  int peakPixel = 0;
  double centroidValue = 0, estimatedWavelength = 0;
  FixedTable<double> BisectorMidpoint{lastLine};
  FixedTable<double> FitColumn{lastLine}, FitWavelength{lastLine};  // points of the last straight-line fit

  double dispStart = 0, dispStep = 0;  // of the linear scale: Angstrom at pixel 1, Angstrom per pixel

  // The help page on show: how many characters each of its paragraphs has, from 1 on.
  static constexpr int mostHelpParagraphs = 20;
  int16_t helpParagraphCount = 0;
  std::array<int16_t, mostHelpParagraphs + 1> helpParagraphLength{};

  Workflow workflow;
  FileOperations fileOperations;     // by which files are written
  std::vector<std::string> journal;  // the steps performed, as the lines of a recipe
  std::function<void(const std::string&)> keepJournal = [](const std::string&) {};  // each line as it comes
  Unsaved unsaved;
  std::vector<std::string> writtenFiles;  // full names, in order
  std::string recipeFile;                 // full name of the recipe that is running; empty = none
};

// The size of the frame and of a spectrum, as whole numbers.
int Columns(const Session& session);
int Rows(const Session& session);
int Pixels(const Slot& slot);

// The name that the slot's data go by: that of the file they were loaded from.
std::string DataName(const Slot& slot);

// The full name proposed for a save of slot 0, 3 or 4: that of the last save since the slot was filled, but
// for the object. Else the frame's own with the ending .fts, beside the file it was loaded from; the
// spectrum's after the frame that it came from, in the data folder; the object's after the spectrum that was
// loaded, and beside it.
std::string ProposedFile(const Session& session, int slot);

// The name proposed for a text file of a slot's spectrum; empty where it holds none.
std::string SpectrumTextName(const Session& session, int slot);

// Throws Refusal unless `value`, the number of a row or column, lies within 1..last.
void RequireWithin(const char* what, int value, int last);

// The full name of a file that is named relative to `dataFolder`.
std::string FullName(const Session& session, const std::string& file);

// `name` up to, not including, its last "."; the whole name if it has none.
std::string BaseName(const std::string& name);

// `name` without its folder.
std::string LeafName(const std::string& name);

// Drops what was marked, fitted and remembered on the frame as it was: aperture, background, the selection
// and the undo of a zap.
void DropFrameState(Session& session);

// Chooses one or two arcs; Arc 2 can be loaded and plotted only with two.
void SetArcCount(Session& session, int count);

}  // namespace halmek
