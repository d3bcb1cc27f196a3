// Every operation of the observer as a value: its name, its arguments in data coordinates, one line of help.
//
// A new operation is a struct here, its place in `Step`, and its Execute in one of the execute_*.cpp files.
// Reading and writing it as text, its usage, the help and the journal follow from the struct. `Visit` names
// the arguments in the order of the recipe's words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "files/known_file.h"

namespace halmek::steps {

// A step that writes a file may end in the word `replace`: whatever stands there may go.
//
// Slots and arcs go by their names in recipes: frame, arc1, arc2, spectrum, object.

struct Folder {
  static constexpr std::string_view name = "folder";
  static constexpr std::string_view help = "where files are read and written";
  std::string directory;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.File("DIR", directory);
  }
};

struct Load {
  static constexpr std::string_view name = "load";
  static constexpr std::string_view help = "a FITS file into its slot, the wavelength table, or a line mask";
  std::string what, file;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("frame|dao|arc1|arc2|object|table|mask", what);
    v.File("FILE", file);
  }
};

struct FixColumn {
  static constexpr std::string_view name = "fix-column";
  static constexpr std::string_view help = "repair a bad column by the median of its neighbours in each row";
  int column = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("COLUMN", column);
  }
};

struct Trim {
  static constexpr std::string_view name = "trim";
  static constexpr std::string_view help = "keep the rectangle between two corners, both included";
  int col1 = 0, row1 = 0, col2 = 0, row2 = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("COL1", col1);
    v.Whole("ROW1", row1);
    v.Whole("COL2", col2);
    v.Whole("ROW2", row2);
  }
};

struct Zap {
  static constexpr std::string_view name = "zap";
  static constexpr std::string_view help =
      "replace the columns FIRST to LAST of a row by the mean beside them";
  int row = 0, first = 0, last = 0;
  int neighbours = 3;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("ROW", row);
    v.Whole("FIRST", first);
    v.Whole("LAST", last);
    v.OptionalWhole("NEIGHBOURS", neighbours, 3);
  }
};

struct UndoZap {
  static constexpr std::string_view name = "undo-zap";
  static constexpr std::string_view help = "put back the pixels of the last zap";
  template <class Visitor>
  void Visit(Visitor&) {}
};

struct Aperture {
  static constexpr std::string_view name = "aperture";
  static constexpr std::string_view help = "the rows to be extracted";
  int first = 0, last = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("FIRST", first);
    v.Whole("LAST", last);
  }
};

struct Background {
  static constexpr std::string_view name = "background";
  static constexpr std::string_view help =
      "fit the background of every column from two ranges of rows: power 0 "
      "is a median, 1 a line, 2 a parabola";
  int first1 = 0, last1 = 0, first2 = 0, last2 = 0, power = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("FIRST1", first1);
    v.Whole("LAST1", last1);
    v.Whole("FIRST2", first2);
    v.Whole("LAST2", last2);
    v.Whole("POWER", power);
  }
};

struct Crunch {
  static constexpr std::string_view name = "crunch";
  static constexpr std::string_view help = "sum the aperture less the background into a spectrum";
  template <class Visitor>
  void Visit(Visitor&) {}
};

struct NormalizeAuto {
  static constexpr std::string_view name = "normalize auto";
  static constexpr std::string_view help =
      "flatten the continuum through the highest pixel of each INTERVAL "
      "columns, power 2 to 5";
  int interval = 0, power = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("INTERVAL", interval);
    v.WholeIn("POWER", power, 2, 5);
  }
};

struct NormalizePoints {
  static constexpr std::string_view name = "normalize points";
  static constexpr std::string_view help =
      "flatten the continuum through the highest pixel near each COLUMN, or "
      "the pixel COLUMN itself where it is written as -COLUMN";
  int power = 0;
  std::vector<int> columns;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.WholeIn("POWER", power, 2, 5);
    v.Wholes("COLUMN...", columns);
  }
};

struct NormalizeAgain {
  static constexpr std::string_view name = "normalize again";
  static constexpr std::string_view help = "divide once more by the continuum of the last normalisation";
  template <class Visitor>
  void Visit(Visitor&) {}
};

struct Revert {
  static constexpr std::string_view name = "revert";
  static constexpr std::string_view help = "the spectrum before the last normalisation";
  template <class Visitor>
  void Visit(Visitor&) {}
};

struct Arcs {
  static constexpr std::string_view name = "arcs";
  static constexpr std::string_view help = "how many arcs calibrate the object; 2 at the start";
  int count = 2;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.WholeIn("1|2", count, 1, 2);
  }
};

struct Identify {
  static constexpr std::string_view name = "identify";
  static constexpr std::string_view help =
      "the line near COLUMN; without WAVELENGTH the proposed one is accepted";
  std::string arc;
  double column = 0;
  std::optional<double> wavelength;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
    v.Number("COLUMN", column);
    v.OptionalNumber("WAVELENGTH", wavelength);
  }
};

struct DeleteLine {
  static constexpr std::string_view name = "delete-line";
  static constexpr std::string_view help = "drop the identification of the line near COLUMN";
  std::string arc;
  double column = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
    v.Number("COLUMN", column);
  }
};

struct DeleteLines {
  static constexpr std::string_view name = "delete-lines";
  static constexpr std::string_view help = "drop all identifications of an arc";
  std::string arc;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
  }
};

struct ApplyMask {
  static constexpr std::string_view name = "apply-mask";
  static constexpr std::string_view help = "identify an arc's lines from the loaded mask";
  std::string arc;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
  }
};

struct FitDeviations {
  static constexpr std::string_view name = "fit-deviations";
  static constexpr std::string_view help =
      "fit the deviations of an arc's lines from a straight line, power 2 to 4";
  std::string arc;
  int power = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
    v.WholeIn("POWER", power, 2, 5);
  }
};

struct UsePower {
  static constexpr std::string_view name = "use-power";
  static constexpr std::string_view help = "correct by an arc's earlier fit of that power";
  std::string arc;
  int power = 0;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
    v.WholeIn("POWER", power, 2, 5);
  }
};

struct Correct {
  static constexpr std::string_view name = "correct";
  static constexpr std::string_view help = "put the object on a linear wavelength scale";
  template <class Visitor>
  void Visit(Visitor&) {}
};

struct SaveMask {
  static constexpr std::string_view name = "save mask";
  static constexpr FileKind writes = FileKind::mask;
  static constexpr std::string_view help = "the identified lines of an arc as a mask";
  std::string arc, file;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("arc1|arc2", arc);
    v.File("FILE", file);
    v.Replace(replace);
  }
};

struct Save {
  static constexpr std::string_view name = "save";
  static constexpr FileKind writes = FileKind::fits;
  static constexpr std::string_view help =
      "as FITS, by default under the usual name and as 32-bit real; 17 is "
      "16-bit unsigned";
  std::string what, file;
  int pixelType = -32;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("frame|spectrum|object", what);
    v.FileAndType(file, pixelType);
    v.Replace(replace);
  }
};

struct Export {
  static constexpr std::string_view name = "export";
  static constexpr FileKind writes = FileKind::numbers;
  static constexpr std::string_view help = "pixel values as plain text";
  std::string what, file;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("frame|arc1|arc2|spectrum|object", what);
    v.File("FILE", file);
    v.Replace(replace);
  }
};

struct Header {
  static constexpr std::string_view name = "header";
  static constexpr std::string_view help = "print the header cards";
  std::string what;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("frame|arc1|arc2|spectrum|object", what);
  }
};

struct PlotRow {
  static constexpr std::string_view name = "plot row";
  static constexpr FileKind writes = FileKind::plot;
  static constexpr std::string_view help = "the plot of a row of the frame, as SVG";
  int row = 0;
  std::string file;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("N", row);
    v.File("FILE.svg", file);
    v.Replace(replace);
  }
};

struct PlotColumn {
  static constexpr std::string_view name = "plot column";
  static constexpr FileKind writes = FileKind::plot;
  static constexpr std::string_view help = "the plot of a column of the frame, as SVG";
  int column = 0;
  std::string file;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Whole("N", column);
    v.File("FILE.svg", file);
    v.Replace(replace);
  }
};

struct Plot {
  static constexpr std::string_view name = "plot";
  static constexpr FileKind writes = FileKind::plot;
  static constexpr std::string_view help = "the plot of a spectrum or of an arc's deviations, as SVG";
  std::string what, file;
  bool replace = false;
  template <class Visitor>
  void Visit(Visitor& v) {
    v.Choice("continuum|arc1|arc2|deviations1|deviations2", what);
    v.File("FILE.svg", file);
    v.Replace(replace);
  }
};

}  // namespace halmek::steps

namespace halmek {

// In the order of the help. Two-word names stand before the one-word name that begins them.
using Step =
    std::variant<steps::Folder, steps::Load, steps::FixColumn, steps::Trim, steps::Zap, steps::UndoZap,
                 steps::Aperture, steps::Background, steps::Crunch, steps::NormalizeAuto,
                 steps::NormalizePoints, steps::NormalizeAgain, steps::Revert, steps::Arcs, steps::Identify,
                 steps::DeleteLine, steps::DeleteLines, steps::ApplyMask, steps::FitDeviations,
                 steps::UsePower, steps::Correct, steps::SaveMask, steps::Save, steps::Export, steps::Header,
                 steps::PlotRow, steps::PlotColumn, steps::Plot>;

}  // namespace halmek
