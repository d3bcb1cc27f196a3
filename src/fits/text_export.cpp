// Text exports.
#include "fits/text_export.h"

#include "app/output.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

constexpr const char* lineEnd = "\r\n";
constexpr size_t printZone = 14;

void AppendNumber(std::string& text, double value) {
  if (value >= 0)
    text += ' ';
  AppendGeneralText(text, value);
  text += ' ';
}

Warnings Write(Session& session, int s, const std::string& file, const std::string& text, bool mayReplace) {
  Warnings warnings = WriteOutput(session, {file, FileKind::numbers, mayReplace}, text);
  session.slot[s].textFileName = LeafName(file);
  return warnings;
}

}  // namespace

Warnings SaveSpectrumText(Session& session, int s, const std::string& file, bool mayReplace) {
  const Slot& slot = session.slot[s];
  std::string text;
  for (int i = 1; const double value : slot.spectrum.Range(1, Pixels(slot))) {
    const size_t lineStart = text.size();
    AppendNumber(text, i++);
    text.resize(lineStart + printZone, ' ');
    AppendNumber(text, value);
    text += lineEnd;
  }
  return Write(session, s, file, text, mayReplace);
}

Warnings SaveFrameText(Session& session, const std::string& file, bool mayReplace) {
  const int columns = Columns(session), rows = Rows(session);
  std::string text;
  for (int c = 1; c <= columns; ++c) {
    for (int r = 1; r <= rows; ++r) {
      AppendNumber(text, session.image(r, c));
      if (r < rows)
        text += ',';
    }
    text += lineEnd;
  }
  return Write(session, slots::frame, file, text, mayReplace);
}

}  // namespace halmek
