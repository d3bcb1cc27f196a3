// Header cards.
#include "fits/header.h"

#include <algorithm>
#include <utility>

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
    CardParts parts = PartsOf(card);
    header.card(k) = card;
    header.cardKeyword(k) = std::move(parts.keyword);
    header.cardValue(k) = std::move(parts.value);
    header.cardComment(k) = std::move(parts.comment);
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

std::optional<double> BlankOf(const FitsHeader& header) {
  const int card = FindCard(header, "BLANK");
  return card == 0 ? std::nullopt : std::optional(NumericPrefix(header.cardValue(card)));
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

std::vector<std::string> CardsOf(const FitsHeader& header) {
  const auto cards = header.card.Range(1, header.cardCount);
  return {cards.begin(), cards.end()};
}

void SetCards(FitsHeader& header, const std::vector<std::string>& cards) {
  const int count = static_cast<int>(cards.size());
  if (count > lastCard)
    throw RunTimeError(run_time_error::subscript, "the header would have " + std::to_string(count) +
                                                      " cards; at most " + std::to_string(lastCard) + " fit");
  std::string text;
  for (std::string card : cards) {
    card.resize(cardLength, ' ');
    text += card;
  }
  const std::string objectName = header.objectName;
  ReplaceHeader(header, text, count);
  header.objectName = objectName;
}

CardParts PartsOf(std::string_view card) {
  const std::string_view rest = card.substr(std::min<size_t>(keywordLength + 1, card.size()));
  const size_t slash = std::min(rest.find('/'), rest.size());
  return {TrimmedRight(card.substr(0, keywordLength)), Trimmed(rest.substr(0, slash)),
          TrimmedRight(rest.substr(slash))};
}

std::string HeaderBytes(const FitsHeader& header) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(DataStart(header.cardCount)));
  for (int k = 1; k <= header.cardCount; ++k) {
    bytes += header.card(k);
    bytes.resize(static_cast<size_t>(k * cardLength), ' ');
  }
  bytes += "END";
  bytes.resize(static_cast<size_t>(DataStart(header.cardCount)), ' ');
  return bytes;
}

}  // namespace halmek
