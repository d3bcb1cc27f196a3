// Lines, and the fields of one line.
#include "files/text_records.h"

#include <algorithm>
#include <cmath>

#include "numeric/number_prefix.h"

namespace halmek {

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = std::min(text.find_first_of("\r\n"), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
    if (text.starts_with("\r\n"))
      text.remove_prefix(2);
    else if (!text.empty())
      text.remove_prefix(1);
  }
  return lines;
}

void RecordLine::SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size())); }

void RecordLine::SkipSeparator() {
  SkipBlanks();
  if (rest_.starts_with(','))
    rest_.remove_prefix(1);
}

bool RecordLine::AtEnd() const { return rest_.find_first_not_of(" \t") == std::string_view::npos; }

std::optional<std::string_view> RecordLine::Text() {
  SkipBlanks();
  if (rest_.empty())
    return std::nullopt;
  if (rest_.starts_with('"')) {
    const size_t end = std::min(rest_.find('"', 1), rest_.size());
    const std::string_view text = rest_.substr(1, end - 1);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    SkipSeparator();
    return text;
  }
  const size_t end = std::min(rest_.find(','), rest_.size());
  const std::string_view text = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return text;
}

std::optional<double> RecordLine::Number() {
  SkipBlanks();
  const std::string_view field = rest_.substr(0, std::min(rest_.find_first_of(" \t,"), rest_.size()));
  const double value = NumericPrefix(field);
  if (!IsNumber(field) || !std::isfinite(value))
    return std::nullopt;
  rest_.remove_prefix(field.size());
  SkipSeparator();
  return value;
}

}  // namespace halmek
