// World coordinates and sections.
#include "fits/world_coordinates.h"

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "fits/header.h"
#include "numeric/number_prefix.h"
#include "plot/number_text.h"

namespace halmek {
namespace {

// The axes that a keyword of a scale is about; none for other keywords.
struct ScaleKeyword {
  bool isScale = false;
  int axis = 0;  // 0: of all axes, or of none alone
  int other = 0;
};

bool IsAmong(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

ScaleKeyword ScaleKeywordOf(std::string_view keyword) {
  const size_t digits = std::min(keyword.find_first_of("0123456789"), keyword.size());
  const std::string_view stem = keyword.substr(0, digits);
  std::string_view rest = keyword.substr(digits);
  if (rest.empty()) {
    const bool hasLetter = stem.size() == 8;
    return {.isScale = IsAmong(stem, {"WCSDIM", "DC-FLAG"}) ||
                       IsAmong(stem.substr(0, hasLetter ? 7 : stem.size()),
                               {"WCSAXES", "WCSNAME", "LONPOLE", "LATPOLE"})};
  }
  if (stem == "WAT")
    return {.isScale = true};
  ScaleKeyword scale{.axis = rest[0] - '0'};
  rest.remove_prefix(1);
  const bool hasTwo = rest.size() >= 2 && rest[0] == '_' && IsDigit(rest[1]);
  if (hasTwo) {
    scale.other = rest[1] - '0';
    rest.remove_prefix(2);
  }
  if (IsAmong(stem, {"PV", "PS"}))
    return {.isScale = hasTwo, .axis = scale.axis};
  const bool endsWell = rest.empty() || (rest.size() == 1 && rest[0] >= 'A' && rest[0] <= 'Z');
  scale.isScale = endsWell && (hasTwo ? IsAmong(stem, {"CD", "PC", "LTM"})
                                      : IsAmong(stem, {"CRPIX", "CRVAL", "CDELT", "CTYPE", "CUNIT", "CROTA",
                                                       "CNAME", "CRDER", "CSYER", "LTV"}));
  return scale;
}

// A text such as '[1:1748,1:140]' under a keyword such as DATASEC or BSEC12: a rectangle of pixels.
bool IsSection(const CardParts& card) {
  return card.keyword.find("SEC") != std::string::npos && card.value.find('[') != std::string::npos &&
         card.value.find_first_not_of("-0123456789:,[] '") == std::string::npos;
}

void DropCards(FitsHeader& header, const std::function<bool(const CardParts&)>& isDropped) {
  std::vector<std::string> cards = CardsOf(header);
  if (std::erase_if(cards, [&](const std::string& card) { return isDropped(PartsOf(card)); }) > 0)
    SetCards(header, cards);
}

// The text of the first card of that keyword, without quotes and blanks; empty where there is none.
std::string TextOf(const FitsHeader& header, const std::string& keyword) {
  for (const std::string& card : CardsOf(header))
    if (const CardParts parts = PartsOf(card); parts.keyword == keyword) {
      std::string text = parts.value;
      std::erase_if(text, [](char c) { return c == '\'' || c == ' '; });
      return text;
    }
  return {};
}

bool HasCard(const FitsHeader& header, const std::string& keyword) {
  const std::vector<std::string> cards = CardsOf(header);
  return std::any_of(cards.begin(), cards.end(),
                     [&](const std::string& card) { return PartsOf(card).keyword == keyword; });
}

// A celestial type has a projection behind its axis, as in RA---TAN; some spectral types have an algorithm
// there, as in WAVE-LOG (FITS 4.0, tables 22 and 25).
bool IsOfSkyOrPixels(const std::string& type) {
  const bool isSpectral = IsAmong(std::string_view(type).substr(0, 4),
                                  {"FREQ", "ENER", "WAVN", "VRAD", "WAVE", "VOPT", "ZOPT", "AWAV", "VELO"});
  return type == "PIXEL" || (type.find('-') <= 4 && !isSpectral);
}

}  // namespace

void FollowTrim(FitsHeader& header, int firstColumn, int firstRow) {
  const int before[] = {0, firstColumn - 1, firstRow - 1};
  std::vector<std::string> cards;
  for (const std::string& card : CardsOf(header)) {
    const CardParts parts = PartsOf(card);
    if (IsSection(parts))
      continue;
    const ScaleKeyword scale = ScaleKeywordOf(parts.keyword);
    const bool isReference = parts.keyword.starts_with("CRPIX") || parts.keyword.starts_with("LTV");
    if (scale.isScale && isReference && scale.axis <= 2 && before[scale.axis] != 0)
      cards.push_back(NumberCard(parts.keyword, GeneralText(NumericPrefix(parts.value) - before[scale.axis]),
                                 " " + parts.comment));
    else
      cards.push_back(card);
  }
  // A scale without a reference pixel counts from pixel 0.
  for (int axis = 1; axis <= 2; ++axis) {
    const std::string n = std::to_string(axis);
    if (before[axis] != 0 && !HasCard(header, "CRPIX" + n) &&
        (HasCard(header, "CRVAL" + n) || HasCard(header, "CD" + n + "_" + n)))
      cards.push_back(NumberCard("CRPIX" + n, std::to_string(-before[axis]), " / reference pixel"));
  }
  SetCards(header, cards);
}

void DropRows(FitsHeader& header) {
  const bool keepsFirst = HasWavelengthScale(header);
  DropCards(header, [&](const CardParts& card) {
    const ScaleKeyword scale = ScaleKeywordOf(card.keyword);
    const bool isOfFirst = scale.axis == 1 && scale.other <= 1;
    return IsSection(card) || (scale.isScale && !(keepsFirst && isOfFirst));
  });
}

void DropScales(FitsHeader& header) {
  DropCards(header,
            [](const CardParts& card) { return IsSection(card) || ScaleKeywordOf(card.keyword).isScale; });
}

bool HasWavelengthScale(const FitsHeader& header) {
  const std::vector<std::string> cards = CardsOf(header);
  if (std::any_of(cards.begin(), cards.end(), [](const std::string& card) {
        return card.starts_with("HISTORY  Halmek corrected the dispersion");
      }))
    return true;
  return (header.crval1Card != 0 || header.cd1_1Card != 0) && !HasCard(header, "CTYPE2") &&
         !IsOfSkyOrPixels(TextOf(header, "CTYPE1"));
}

}  // namespace halmek
