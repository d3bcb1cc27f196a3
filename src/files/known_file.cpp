// Recognising files by how they begin.
#include "files/known_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "files/failure.h"
#include "files/input_file.h"
#include "numeric/number_prefix.h"

namespace halmek {
namespace {

constexpr size_t cardLength = 80;

// Enough for the longest header, and for the first line of any text of ours.
constexpr int64_t longestStart = 2000 * cardLength;

// The number in the first card of that keyword; 0 where there is none.
int NumberOf(const std::vector<std::string_view>& cards, std::string keyword) {
  keyword.resize(8, ' ');
  const auto found = std::find_if(cards.begin(), cards.end(),
                                  [&](std::string_view card) { return card.starts_with(keyword); });
  if (found == cards.end())
    return 0;
  const std::string_view value = found->substr(9);
  return static_cast<int>(std::clamp(
      NumericPrefix(value.substr(std::min(value.find_first_not_of(' '), value.size()))), 0.0, 1e9));
}

std::vector<std::string_view> CardsIn(std::string_view start) {
  std::vector<std::string_view> cards;
  for (; start.size() >= cardLength && !start.starts_with("END     "); start.remove_prefix(cardLength))
    cards.push_back(start.substr(0, cardLength));
  return cards;
}

KnownFile FitsFile(std::string_view start) {
  const std::vector<std::string_view> cards = CardsIn(start);
  KnownFile file{.kind = FileKind::fits, .description = {}};
  file.isOurs = std::any_of(cards.begin(), cards.end(), IsOwnHistory);
  const int columns = NumberOf(cards, "NAXIS1"), rows = NumberOf(cards, "NAXIS2");
  const std::string owner = file.isOurs ? " of Halmek" : "";
  if (columns == 0)
    file.description = "FITS file" + owner;
  else if (rows > 1)
    file.description = (file.isOurs ? "" : "raw ") + ("frame" + owner) + ", " + std::to_string(columns) +
                       " x " + std::to_string(rows);
  else
    file.description = "spectrum" + owner + ", " + std::to_string(columns) + " pixels";
  return file;
}

// A number as exports have it: a blank or a minus sign before it, a blank behind.
bool IsNumberField(std::string_view field) {
  return field.size() >= 3 && (field.front() == ' ' || field.front() == '-') && field.back() == ' ' &&
         IsNumber(field.substr(1, field.size() - 2));
}

// The first line of an export: a pixel's number and, from column 15 on, its value; or the values of a column,
// with commas between them.
bool IsLineOfNumbers(std::string_view line) {
  const std::string firstPixel = " 1" + std::string(12, ' ');
  if (line.starts_with(firstPixel))
    return IsNumberField(line.substr(firstPixel.size()));
  while (!line.empty()) {
    const size_t comma = std::min(line.find(','), line.size());
    if (!IsNumberField(line.substr(0, comma)))
      return false;
    line.remove_prefix(std::min(comma + 1, line.size()));
  }
  return true;
}

KnownFile TextFile(std::string_view start, int64_t size) {
  struct Own {
    std::string_view line;
    FileKind kind;
    const char* description;
  };
  constexpr Own own[] = {{first_lines::mask, FileKind::mask, "mask of Halmek"},
                         {first_lines::recipe, FileKind::recipe, "recipe of Halmek"},
                         {first_lines::plot, FileKind::plot, "plot of Halmek"},
                         {first_lines::report, FileKind::report, "report of Halmek"}};
  for (const Own& o : own)
    if (start.starts_with(o.line))
      return {o.kind, true, o.description};
  if (start.starts_with("\x89PNG") || start.starts_with("%PDF-"))
    return {FileKind::picture, false, "picture"};
  const size_t end = start.find("\r\n");
  if (end != std::string_view::npos && end > 0 && IsLineOfNumbers(start.substr(0, end)))
    return {FileKind::numbers, true, "text of pixel values"};
  return {
      FileKind::other, false,
      "file of " + (size < 10000 ? std::to_string(size) + " bytes" : std::to_string(size / 1000) + " KB")};
}

}  // namespace

bool IsOwnHistory(std::string_view card) {
  if (!card.starts_with("HISTORY"))
    return false;
  card.remove_prefix(7);
  card.remove_prefix(std::min(card.find_first_not_of(": "), card.size()));
  return card.starts_with("Halmek ");
}

std::optional<KnownFile> LookAtFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
    return std::nullopt;
  KnownFile known{.description = "file that cannot be read"};
  try {
    const InputFile file(path);
    const std::string start = file.ReadStart(longestStart);
    known = start.starts_with("SIMPLE  ") ? FitsFile(start) : TextFile(start, file.size());
  } catch (const RunTimeError&) {
    // It stays another's.
  }
  known.names = static_cast<int>(status.st_nlink);
  return known;
}

}  // namespace halmek
