// Conversion of bytes to UTF-8.
#include "plot/text_encoding.h"

namespace halmek {
namespace {

// The length of the UTF-8 sequence that `text` begins with, 0 where it is malformed. Overlong forms of two
// bytes are excluded by the lead bytes; others would not harm what the result is used for.
size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const size_t length = lead < 0x80   ? 1
                        : lead < 0xC2 ? 0
                        : lead < 0xE0 ? 2
                        : lead < 0xF0 ? 3
                        : lead < 0xF5 ? 4
                                      : 0;
  if (length > text.size())
    return 0;
  for (size_t i = 1; i < length; ++i)
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
      return 0;
  return length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = SequenceLength(text);
    if (length == 0)
      return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string Utf8Of(std::string_view bytes) {
  const bool isUtf8 = IsUtf8(bytes);
  std::string text;
  text.reserve(bytes.size());
  for (char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F) {
      text += '?';
    } else if (code < 0x80 || isUtf8) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (code >> 6));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

}  // namespace halmek
