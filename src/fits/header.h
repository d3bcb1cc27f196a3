// Header cards: finding, taking apart, appending and writing them.
#pragma once

#include <string>
#include <string_view>

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

// Throws RunTimeError 9 unless `count` more cards fit.
void RequireRoomForCards(const FitsHeader& header, int count);

// Appends a card and returns its number. Throws RunTimeError 9 where the header is full.
int AppendCard(FitsHeader& header, std::string text);

// A card whose value, a number as text, ends in column 30, as the fixed format wants it.
std::string NumberCard(std::string_view keyword, std::string_view value, std::string_view rest);

// Makes every card exactly 80 characters: longer ones are cut, shorter ones get blanks.
void PadCards(FitsHeader& header);

// The cards, END, and blanks up to the data area. The cards must be padded.
std::string HeaderBytes(const FitsHeader& header);

}  // namespace halmek
