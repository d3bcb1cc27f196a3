// Text exports.
#include "fits/text_export.h"

#include "files/atomic_write.h"
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

void Write(Session& session, int s, const std::string& file, const std::string& text) {
  const std::string path = FullName(session, file);
  session.slot[s].textFileName = LeafName(file);
  AtomicWrite(path, text, session.fileOperations);
  session.writtenFiles.push_back(path);
}

}  // namespace

void SaveSpectrumText(Session& session, int s, const std::string& file) {
  const Slot& slot = session.slot[s];
  std::string text;
  for (int i = 1; const double value : slot.spectrum.Range(1, Pixels(slot))) {
    const size_t lineStart = text.size();
    AppendNumber(text, i++);
    text.resize(lineStart + printZone, ' ');
    AppendNumber(text, value);
    text += lineEnd;
  }
  Write(session, s, file, text);
}

void SaveFrameText(Session& session, const std::string& file) {
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
  Write(session, slots::frame, file, text);
}

}  // namespace halmek
