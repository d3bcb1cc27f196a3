// Names and header texts, which are bytes, as Unicode.
#pragma once

#include <string>
#include <string_view>

namespace halmek {

// `bytes` as UTF-8: unchanged where they are UTF-8 already, as file names are here; otherwise taken as the
// 8-bit Latin character set of header cards. Control characters become "?", so that the text may go to a
// terminal; those that turn the direction of writing, as in a name that seems to end in another way, become
// "\u202E" and the like.
std::string Utf8Of(std::string_view bytes);

// UTF-8 as the text of an SVG or HTML element or attribute: with names for the characters of the markup.
std::string MarkupText(std::string_view utf8);

}  // namespace halmek
