// What a file is, as far as one must know before it is replaced.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halmek {

// The kinds of file that this program writes, and all others.
enum class FileKind { fits, numbers, mask, plot, recipe, report, picture, other };

// The first lines, or what they begin with, by which files of ours are known.
namespace first_lines {
inline constexpr std::string_view mask =
    "Mask data for line identification.  Peak column; tabular wavelength (Angstroms).";
inline constexpr std::string_view recipe = "# Steps performed by Halmek";
inline constexpr std::string_view plot = R"(<svg class="halmek-plot" )";
inline constexpr std::string_view report = "<!DOCTYPE html><!-- Report of halmek-batch -->";
}  // namespace first_lines

// True for the HISTORY card of an operation of this program.
bool IsOwnHistory(std::string_view card);

struct KnownFile {
  FileKind kind = FileKind::other;
  bool isOurs = false;      // this program wrote it
  std::string description;  // as in "raw frame, 1748 x 140" or "mask of Halmek"
  int names = 1;            // how many hard links the file has
};

// What the file `path` is, links followed; nothing where there is none, for an empty one, and for a device. A
// FITS file is ours by a HISTORY card of ours, a text by its first line, a file of numbers by the layout of
// its first line. What cannot be read is another's.
std::optional<KnownFile> LookAtFile(const std::string& path);

}  // namespace halmek
