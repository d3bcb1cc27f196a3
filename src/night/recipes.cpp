// The recipes that reduce a sample night.
#include "night/recipes.h"

#include <initializer_list>

namespace halmek::night {
namespace {

// Rows and columns count from 1 again after the trim.
int TrimmedRow(const Layout& l, int row) { return row - l.trimRows.first + 1; }
int TrimmedColumn(const Layout& l, int column) { return column - l.trimCol1 + 1; }

std::string Rows(const Layout& l, RowRange rows) {
  return std::to_string(TrimmedRow(l, rows.first)) + " " + std::to_string(TrimmedRow(l, rows.last));
}

bool Meets(const CosmicRay& hit, std::initializer_list<RowRange> ranges) {
  for (const RowRange& range : ranges)
    if (hit.row >= range.first && hit.row <= range.last)
      return true;
  return false;
}

// The zaps of the hits that would reach the spectrum: those on the rows that are summed or fitted.
std::string Zaps(const Layout& l, const Exposure& exposure, std::initializer_list<RowRange> ranges) {
  std::string text;
  for (const CosmicRay& hit : exposure.cosmicRays)
    if (Meets(hit, ranges))
      text += "zap " + std::to_string(TrimmedRow(l, hit.row)) + " " +
              std::to_string(TrimmedColumn(l, hit.first)) + " " + std::to_string(TrimmedColumn(l, hit.last)) +
              "\n";
  return text.empty() ? text
                      : "# Cosmic rays, as the row plots show them: row, first and last column.\n" + text;
}

std::string FixAndTrim(const Layout& l) {
  return "fix-column " + std::to_string(l.badColumn) + "\ntrim " + std::to_string(l.trimCol1) + " " +
         std::to_string(l.trimRows.first) + " " + std::to_string(l.trimCol2) + " " +
         std::to_string(l.trimRows.last) + "\n";
}

// The lamp fills the slit, so that nothing in the slit is background: it is taken beyond the slit's ends.
std::string ExtractArc(const Layout& l) {
  return "aperture " + Rows(l, l.aperture) + "\nbackground " + Rows(l, l.dark1) + " " + Rows(l, l.dark2) +
         " 0\ncrunch\nsave spectrum\n";
}

std::string ReduceArc(const Layout& l, const Exposure& arc) {
  return "load frame " + arc.File() + "\n" + FixAndTrim(l) + Zaps(l, arc, {l.aperture, l.dark1, l.dark2}) +
         ExtractArc(l);
}

std::string ReduceStar(const Layout& l, const Exposure& star) {
  const std::string trace =
      std::to_string((TrimmedRow(l, l.aperture.first) + TrimmedRow(l, l.aperture.last)) / 2);
  const std::string middle = std::to_string((l.trimCol2 - l.trimCol1 + 1) / 2);
  return "load frame " + star.File() + "\n" + FixAndTrim(l) + "\n" +
         Zaps(l, star, {l.aperture, l.sky1, l.sky2}) +
         "\n"
         "# A look along the trace and across it. The spectrum runs a little uphill, so the aperture is "
         "wider\n"
         "# than the star. The sky is fitted by a straight line on both sides of it, because it is brighter\n"
         "# towards one end of the slit.\n"
         "plot row " +
         trace + " " + star.name +
         "_row.svg\n"
         "aperture " +
         Rows(l, l.aperture) +
         "\n"
         "background " +
         Rows(l, l.sky1) + " " + Rows(l, l.sky2) +
         " 1\n"
         "plot column " +
         middle + " " + star.name +
         "_column.svg\n"
         "crunch\n"
         "\n"
         "# The continuum, through the highest pixel of every 25, is made flat. The plot shows the flat "
         "spectrum\n"
         "# and the curve that flattened it.\n"
         "normalize auto 25 4\n"
         "plot continuum " +
         star.name +
         "_continuum.svg\n"
         "save spectrum\n";
}

std::string FitArc(int number, int power) {
  const std::string n = std::to_string(number);
  return "apply-mask arc" + n + "\nfit-deviations arc" + n + " " + std::to_string(power) + "\n";
}

std::string CalibrateArc(const Star& star, const Exposure& arc, int number, int power) {
  const std::string n = std::to_string(number);
  return FitArc(number, power) + "plot arc" + n + " " + star.exposure.name + "_" + arc.name +
         ".svg\nplot deviations" + n + " " + star.exposure.name + "_deviations" + n + ".svg\n";
}

}  // namespace

int DeviationPower(const Night& night) {
  // A polynomial needs a few lines more than it has coefficients, or it follows their errors.
  const size_t lines = night.mask.size();
  return lines >= 8 ? 4 : lines >= 6 ? 3 : 2;
}

std::string ArcRecipe(const Night& night) {
  const Layout& l = night.instrument.layout;
  return "# Reduces one arc frame of the sample night to a spectrum. From the folder of the frames:\n"
         "#\n"
         "#   halmek-batch arc.recipe arc=arc1a.fts\n"
         "#   halmek-batch arc.recipe --for arc arc*[ab].fts\n"
         "#\n"
         "# Each line is a step that the main window offers, too. $arc is the file named on the command "
         "line.\n"
         "load frame $arc\n"
         "\n"
         "# The bad column is counted on the frame as read out, so it is repaired before the trim. The trim\n"
         "# keeps the rectangle between two corners (column, row) and drops the overscan strip at the "
         "right.\n" +
         FixAndTrim(l) +
         "\n"
         "# The aperture is that of the stars: the arc must see the same rows. The lamp fills the slit, so "
         "the\n"
         "# background is taken from rows beyond the slit's ends, by a median (power 0).\n" +
         ExtractArc(l);
}

std::string StarRecipe(const Night& night, const Star& star) {
  const Layout& l = night.instrument.layout;
  const std::string& name = star.exposure.name;
  const int power = DeviationPower(night);
  return "# " + star.exposure.object +
         ", from three frames to a calibrated spectrum. From the folder of the frames:\n"
         "#\n"
         "#   halmek-batch " +
         name +
         ".recipe\n"
         "#\n"
         "# Each line is a step that the main window offers, too; a line that begins with # is a comment.\n"
         "\n"
         "# Part I: frames become spectra. First the arcs before and after the star, as arc.recipe does "
         "it.\n" +
         ReduceArc(l, star.before) + "\n" + ReduceArc(l, star.after) +
         "\n"
         "# Then the star: the same columns and rows, and the same aperture.\n" +
         ReduceStar(l, star.exposure) +
         "\n"
         "# Part II: wavelengths. The mask holds the columns of the lamp's lines on an earlier night; each "
         "line\n"
         "# is found within ten columns of them. What a straight line leaves of the wavelengths is fitted by "
         "a\n"
         "# polynomial of power " +
         std::to_string(power) +
         ".\n"
         "load arc1 " +
         star.before.name +
         "_1D.fts\n"
         "load arc2 " +
         star.after.name +
         "_1D.fts\n"
         "load mask mask.dat\n" +
         CalibrateArc(star, star.before, 1, power) + CalibrateArc(star, star.after, 2, power) +
         "\n"
         "# The star is put on the mean of both arcs, because the spectrograph bends slowly between them.\n"
         "load object " +
         name +
         "_1D.fts\n"
         "correct\n"
         "save object\n";
}

std::string NightRecipe(const Night& night) {
  const Layout& l = night.instrument.layout;
  const int power = DeviationPower(night);
  const std::string arcs[] = {"arc${n}a", "arc${n}b"};
  std::string text =
      "# Reduces any star of the sample night with its arcs, here the first two. From the folder of the "
      "frames:\n"
      "#\n"
      "#   halmek-batch night.recipe --jobs 2 --report night.html --for n 1 2\n"
      "#\n"
      "# $n is the number of the star. Cosmic rays lie elsewhere on each frame: the recipes of the single\n"
      "# stars remove them, this one leaves them.\n";
  for (const std::string& arc : arcs)
    text += "load frame " + arc + ".fts\n" + FixAndTrim(l) + ExtractArc(l) + "\n";
  text += "load frame star${n}.fts\n" + FixAndTrim(l) + "aperture " + Rows(l, l.aperture) + "\nbackground " +
          Rows(l, l.sky1) + " " + Rows(l, l.sky2) +
          " 1\ncrunch\nnormalize auto 25 4\nsave spectrum\n\nload mask mask.dat\n";
  for (int a = 1; a <= 2; ++a)
    text += "load arc" + std::to_string(a) + " " + arcs[a - 1] + "_1D.fts\n" + FitArc(a, power);
  return text + "\nload object star${n}_1D.fts\ncorrect\nsave object\n";
}

}  // namespace halmek::night
