// Header cards: finding, taking apart, appending and writing them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/session.h"

namespace halmek {

inline constexpr int cardLength = 80;
inline constexpr int recordLength = 2880;

// The byte offset of the data area behind a header of `cardCount` cards and END.
int DataStart(int cardCount);

// Takes the first `cardCount` (at most 200) cards of `text` apart into the header's tables and replaces all
// that the header says: card count, data start, the values and card numbers of the keywords. Of BITPIX the
// last card wins, of the others the first.
// The object's name is cleared.
void ReplaceHeader(FitsHeader& header, std::string_view text, int cardCount);

// Takes the object's name from its card, without the quotes. Throws RunTimeError 5 where there are none to
// take off.
void ReadObjectName(FitsHeader& header);

// The stored whole number that BLANK says to be no value; nothing where there is no such card.
std::optional<double> BlankOf(const FitsHeader& header);

// Throws RunTimeError 9 unless `count` more cards fit.
void RequireRoomForCards(const FitsHeader& header, int count);

// Appends a card and returns its number. Throws RunTimeError 9 where the header is full.
int AppendCard(FitsHeader& header, std::string text);

// A card whose value, a number as text, ends in column 30, as the fixed format wants it.
std::string NumberCard(std::string_view keyword, std::string_view value, std::string_view rest);

// The cards 1..cardCount, in order.
std::vector<std::string> CardsOf(const FitsHeader& header);

// Replaces all cards, cut or filled with blanks to 80 characters, and all that the header says but for the
// object's name. Throws RunTimeError 9 for more than 200.
void SetCards(FitsHeader& header, const std::vector<std::string>& cards);

// What stands in a card: its keyword, its value (a text in its quotes) and what follows from the slash on,
// each without blanks around it. Every part may be empty.
struct CardParts {
  std::string keyword, value, comment;
};
CardParts PartsOf(std::string_view card);

// The cards, END, and blanks up to the data area.
std::string HeaderBytes(const FitsHeader& header);

}  // namespace halmek
