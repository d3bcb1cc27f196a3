// Plain-text records with comma-separated fields.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halmek {

// The lines of a text, ended by CR LF, LF or CR, without their ends. A last line without an end counts; the
// empty piece after a last line end does not.
std::vector<std::string_view> Lines(std::string_view text);

// Takes fields from the front of one line.
class RecordLine {
 public:
  explicit RecordLine(std::string_view line) : rest_(line) {}

  // True once nothing but blanks is left.
  bool AtEnd() const;

  // The next text: from its opening to its closing double quote, or else up to the next comma or the end of
  // the line, without leading blanks. The comma after it is taken too. Nothing at the end of the line.
  std::optional<std::string_view> Text();

  // The next number, which ends at a blank, a comma or the end of the line; blanks and one comma after it are
  // taken too. Nothing where the field is not a finite number.
  std::optional<double> Number();

 private:
  void SkipBlanks();
  void SkipSeparator();

  std::string_view rest_;
};

}  // namespace halmek
