// Header cards.
#include "fits/header.h"

#include <algorithm>

#include "numeric/number_prefix.h"

namespace halmek {
namespace {

constexpr int keywordLength = 8;

std::string TrimmedRight(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : TrimmedRight(text.substr(first));
}

// The number of the first card with that keyword; 0 = none.
int FindCard(const FitsHeader& header, std::string_view keyword) {
  for (int k = 1; k <= header.cardCount; ++k)
    if (header.cardKeyword(k) == keyword)
      return k;
  return 0;
}

double ValueOf(const FitsHeader& header, int card) {
  return card == 0 ? 0 : NumericPrefix(header.cardValue(card));
}

void TakeCardsApart(FitsHeader& header, std::string_view text, int cardCount) {
  header.cardCount = cardCount;
  for (int k = 1; k <= cardCount; ++k) {
    const std::string_view card = text.substr(static_cast<size_t>((k - 1) * cardLength), cardLength);
    const std::string_view rest = card.substr(keywordLength + 1);
    const size_t slash = std::min(rest.find('/'), rest.size());
    header.card(k) = card;
    header.cardKeyword(k) = TrimmedRight(card.substr(0, keywordLength));
    header.cardValue(k) = Trimmed(rest.substr(0, slash));
    header.cardComment(k) = rest.substr(slash);
  }
}

}  // namespace

int DataStart(int cardCount) { return ((cardCount * cardLength + 3) / recordLength + 1) * recordLength; }

void ReplaceHeader(FitsHeader& header, std::string_view text, int cardCount) {
  TakeCardsApart(header, text, cardCount);
  header.headerLength = cardCount * cardLength + 3;
  header.dataStart = DataStart(cardCount);

  header.bitpixCard = 0;
  for (int k = 1; k <= cardCount; ++k)
    if (header.cardKeyword(k) == "BITPIX")
      header.bitpixCard = k;
  header.bzeroCard = FindCard(header, "BZERO");
  header.naxisCard = FindCard(header, "NAXIS");
  header.naxis1Card = FindCard(header, "NAXIS1");
  header.naxis2Card = FindCard(header, "NAXIS2");
  header.naxis3Card = FindCard(header, "NAXIS3");
  header.overscanCard = FindCard(header, "OVERSCAN");
  header.trimCard = FindCard(header, "TRIM");
  header.crval1Card = FindCard(header, "CRVAL1");
  header.cd1_1Card = FindCard(header, "CD1_1");

  header.bitpix = ValueOf(header, header.bitpixCard);
  header.bzero = ValueOf(header, header.bzeroCard);
  header.naxis = ValueOf(header, header.naxisCard);
  header.naxis1 = ValueOf(header, header.naxis1Card);
  header.naxis2 = ValueOf(header, header.naxis2Card);
  header.naxis3 = ValueOf(header, header.naxis3Card);
  header.bscale = ValueOf(header, FindCard(header, "BSCALE"));
  // A value that no whole number of 16 bits holds is no pixel type.
  const bool isWhole = header.bitpix >= INT16_MIN && header.bitpix <= INT16_MAX;
  header.pixelType = isWhole ? static_cast<int>(header.bitpix) : 0;
  if (header.bitpix == 16 && header.bzero == 32768)
    header.pixelType = 17;

  header.objectName.clear();
}

void ReadObjectName(FitsHeader& header) {
  const int card = FindCard(header, "OBJECT");
  if (card == 0)
    return;
  const std::string& quoted = header.cardValue(card);
  if (quoted.size() < 2)
    throw RunTimeError(run_time_error::badArgument, "the OBJECT card holds no text in quotes");
  header.objectName = quoted.substr(1, quoted.size() - 2);
}

void RequireRoomForCards(const FitsHeader& header, int count) {
  if (header.cardCount + count > lastCard)
    throw RunTimeError(run_time_error::subscript, "the header has " + std::to_string(header.cardCount) +
                                                      " cards; " + std::to_string(count) +
                                                      " more would exceed " + std::to_string(lastCard));
}

int AppendCard(FitsHeader& header, std::string text) {
  RequireRoomForCards(header, 1);
  header.card(++header.cardCount) = std::move(text);
  return header.cardCount;
}

std::string NumberCard(std::string_view keyword, std::string_view value, std::string_view rest) {
  constexpr size_t valueEnd = 30;
  std::string card(keyword);
  card.resize(keywordLength, ' ');
  card += '=';
  card.append(valueEnd - std::min(valueEnd, card.size() + value.size()), ' ');
  card += value;
  card += rest;
  return card;
}

void PadCards(FitsHeader& header) {
  for (int k = 1; k <= header.cardCount; ++k)
    header.card(k).resize(cardLength, ' ');
}

std::string HeaderBytes(const FitsHeader& header) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(DataStart(header.cardCount)));
  for (int k = 1; k <= header.cardCount; ++k)
    bytes += header.card(k);
  bytes += "END";
  bytes.resize(static_cast<size_t>(DataStart(header.cardCount)), ' ');
  return bytes;
}

}  // namespace halmek
