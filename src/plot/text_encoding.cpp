// Conversion of bytes to UTF-8.
#include "plot/text_encoding.h"

#include <cstdint>
#include <cstdio>
#include <optional>

namespace halmek {
namespace {

// One character of UTF-8: its code and how many bytes it took.
struct Character {
  uint32_t code = 0;
  size_t length = 0;
};

// The first character of `text`; nothing where its bytes are no UTF-8: malformed, longer than needed, half of
// a surrogate pair, or beyond the last code.
std::optional<Character> FirstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80)
    return Character{lead, 1};
  const size_t length = lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
  if (length == 0 || length > text.size())
    return std::nullopt;

  uint32_t code = lead & (0xFFu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80)
      return std::nullopt;
    code = (code << 6) | (next & 0x3Fu);
  }
  constexpr uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < least[length] || isSurrogate || code > 0x10FFFF)
    return std::nullopt;
  return Character{code, length};
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto character = FirstCharacter(text);
    if (!character)
      return false;
    text.remove_prefix(character->length);
  }
  return true;
}

// Control characters, and codes that are no characters and that XML forbids.
bool IsUnprintable(uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code & 0xFFFE) == 0xFFFE;
}

// Marks, embeddings, overrides and isolates of the direction of writing.
bool TurnsWriting(uint32_t code) {
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

std::string EscapeOf(uint32_t code) {
  char escape[16];
  std::snprintf(escape, sizeof escape, "\\u%04X", code);
  return escape;
}

}  // namespace

std::string Utf8Of(std::string_view bytes) {
  const bool isUtf8 = IsUtf8(bytes);
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const Character character =
        isUtf8 ? *FirstCharacter(bytes) : Character{static_cast<unsigned char>(bytes[0]), 1};
    if (IsUnprintable(character.code)) {
      text += '?';
    } else if (TurnsWriting(character.code)) {
      text += EscapeOf(character.code);
    } else if (isUtf8 || character.code < 0x80) {
      text += bytes.substr(0, character.length);
    } else {
      text += static_cast<char>(0xC0 | (character.code >> 6));
      text += static_cast<char>(0x80 | (character.code & 0x3F));
    }
    bytes.remove_prefix(character.length);
  }
  return text;
}

std::string MarkupText(std::string_view utf8) {
  std::string text;
  for (const char c : utf8) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        text += c;
    }
  }
  return text;
}

}  // namespace halmek
