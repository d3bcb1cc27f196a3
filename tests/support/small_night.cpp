// Small frames for recipes.
#include "support/small_night.h"

#include <cmath>

#include "fits/fits_writer.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

double Gauss(double distance, double width) { return std::exp(-distance * distance / (2 * width * width)); }

double Sky(int row) { return 400 + row; }

double Star(int column, int row) {
  const double continuum = 8000 + 10 * column - 0.02 * column * column;
  const double line = 1 - 0.5 * Gauss(column - 180, 4);
  return Sky(row) + continuum * line * Gauss(row - 30, 2);
}

double Lamp(int column, int row) {
  double light = 0;
  for (int line = 40; line <= 340; line += 50)
    light += 20000 * Gauss(column - line, 2);
  return Sky(row) + (row > 15 && row < 45 ? light : 0);
}

// Makes a frame that was saved look like one from a camera.
void MakeRaw(const std::string& path) {
  std::string bytes = ReadFile(path);
  for (size_t at = 0; (at = bytes.find("HISTORY  Halmek ", at)) != std::string::npos;)
    bytes.replace(at, 16, "COMMENT  Camera ");
  WriteFile(path, bytes);
}

}  // namespace

void WriteSmallNight(const std::string& folder) {
  const auto session = SessionIn(folder);
  session->slot[slots::frame].savePixelType = 17;
  SetFrame(*session, 400, 60, Star);
  SaveFits2D(*session, "star.fts", true);
  SetFrame(*session, 400, 60, Lamp);
  SaveFits2D(*session, "arc.fts", true);
  for (const char* name : {"/star.fts", "/arc.fts"})
    MakeRaw(folder + name);
  std::string table = "wavelength, line\r\n";
  for (int line = 40; line <= 340; line += 50)
    table += std::to_string(4960 + line) + ",line " + std::to_string(line) + "\r\n";
  WriteFile(folder + "/lines.txt", table);
}

void WriteTinyNight(const std::string& folder) {
  const auto s = SessionIn(folder);
  s->slot[slots::frame].savePixelType = 17;
  SetFrame(*s, 40, 12, [](int c, int r) { return 200 + r + (500 + 3 * c) / (1 + (r - 6) * (r - 6)); });
  SaveFits2D(*s, "frame.fts");
  for (const auto& [name, shift] : {std::pair{"arc1.fts", 0}, {"arc2.fts", 1}}) {
    std::vector<double> light(40, 50);
    for (size_t peak : {8, 20, 32})
      for (size_t i = 0; i < 5; ++i)
        light[peak + i - 2 + static_cast<size_t>(shift)] += (std::vector{60, 500, 900, 450, 50})[i];
    SetSpectrum(*s, slots::object, light);
    s->slot[slots::object].savePixelType = -32;
    SaveFits1D(*s, slots::object, name);
  }
  WriteFile(FullName(*s, "lines.txt"), "lines\n5009.3,Ne I\n5021.1,Ar\n5033.2,Ne II\n");
  WriteFile(FullName(*s, "a.mask"), "Mask\n9 5009.3\n21 5021.1\n33 5033.2\n");
}

}  // namespace halmek::test
