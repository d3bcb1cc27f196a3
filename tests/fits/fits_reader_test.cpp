// Loading of FITS files: what is read, what is refused, and what a refused file leaves behind.
#include "fits/fits_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <span>
#include <tuple>
#include <utility>

#include "fits/fits_bytes.h"
#include "fits/header.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class LoadFits : public testing::Test {
 protected:
  Warnings Load(int slot, const Cards& cards, const std::string& data) {
    const std::string name = slot == 0 ? "frame.fts" : "spectrum.fts";
    WriteFile(folder.File(name), FitsBytes(cards, data));
    return slot == 0 ? LoadFits2D(s, name) : LoadFits1D(s, slot, name);
  }

  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
};

TEST_F(LoadFits, FindsTheDataAtTheRecordBehindTheEndCardAtACardStart) {
  for (const auto& [count, dataStart] : {std::pair{35, 2880}, {36, 5760}, {200, 17280}}) {
    Cards cards = ImageCards("16", "1", "1", {"EXTEND  = T"});
    cards.resize(static_cast<size_t>(count), "COMMENT THE END");
    Load(0, cards, Bytes({1, 2, 'E', 'N', 'D'}));
    EXPECT_EQ(std::pair(s.slot[0].headerLength, s.slot[0].dataStart), std::pair(count * 80 + 3, dataStart));
    EXPECT_EQ(s.image(1, 1), 258) << count;
  }
}

TEST_F(LoadFits, TakesCardsApartAtTheFirstSlash) {
  const std::tuple<std::string, std::string, std::string, std::string> cases[] = {
      {"OBJECT  = 'HD 12345'", "HD 12345", "'HD 12345'", ""},
      {"OBJECT  = 'M 31    '           / n", "M 31    ", "'M 31    '", "/ n"},
      {"OBJECT  = 'NGC/IC 5'", "NG", "'NGC", "/IC 5'"},
      {"OBJECT  = ''", "", "''", ""}};
  for (const auto& [card, object, value, comment] : cases) {
    Load(0, ImageCards("16", "1", "1", {card, "OBJECT  = 'second'"}), Bytes({0, 0}));
    const Slot& frame = s.slot[0];
    EXPECT_EQ(frame.objectName, object);
    EXPECT_EQ(frame.card(6), Padded(card));
    EXPECT_EQ(frame.cardKeyword(6) + frame.cardValue(6), "OBJECT" + value);
    EXPECT_TRUE(frame.cardComment(6).starts_with(comment));
  }
}

TEST_F(LoadFits, DecodesByBitpixBzeroAndTheLayoutAskedFor) {
  const Warnings notApplied{"BSCALE and BZERO are not applied to the pixels of a DAO frame."};
  const std::tuple<const char*, Cards, bool, std::vector<int>, double, int, Warnings> cases[] = {
      {"16", {}, false, {0xFF, 0xFF}, -1, 16, {}},
      {"16", {"BZERO   = 3.2768D+04 / offset"}, false, {0x80, 0x01}, 1, 17, {}},
      {"16", {"BZERO   = 7", "BZERO   = 0"}, false, {0, 0}, 7, 16, {}},
      {"16", {"BZERO   = 32768", "BSCALE  = 0.5"}, false, {0, 2}, 32769, 17, {}},
      {"16", {}, true, {0xFF, 0xFE}, 65534, 16, {}},
      {"16", {"BZERO   = 32768"}, true, {0xFF, 0xFE}, 32766, 17, {}},
      {"16", {"BSCALE  = 3"}, true, {0, 2}, 2, 16, notApplied},
      {"8", {"BITPIX  = 16"}, false, {1, 0}, 256, 16, {}},
      {"32", {"BSCALE  = 2"}, false, {0, 1, 0, 0}, 131072, 32, {}},
      {"32", {"BZERO   = 2147483648."}, false, {0xFF, 0xFF, 0xFF, 0xFF}, 2147483647, 32, {}},
      {"-64", {"BSCALE  = 0.25", "BZERO   = 1"}, false, {0xC0, 0, 0, 0, 0, 0, 0, 0}, 0.5, -64, {}},
  };
  for (const auto& [bitpix, others, isDao, bytes, value, pixelType, warnings] : cases) {
    s.daoFrame = isDao;
    EXPECT_EQ(Load(0, ImageCards(bitpix, "1", "1", others), Bytes(bytes)), warnings);
    EXPECT_EQ(s.image(1, 1), value) << bitpix << " " << isDao;
    EXPECT_EQ(s.slot[0].pixelType, pixelType) << bitpix;
    EXPECT_FALSE(s.daoFrame);
  }
}

TEST_F(LoadFits, FillsPixelsWithoutValueFromTheirRowAndTellsHowMany) {
  const std::string told = " (BLANK = -1): filled with the mean of the nearest pixels of the row.";
  const std::tuple<Cards, std::vector<int>, std::vector<double>, Warnings> cases[] = {
      {{}, {5, -1, 9}, {5, -1, 9}, {}},
      {{"BLANK   = -1"}, {5, 7, 9}, {5, 7, 9}, {}},
      {{"BLANK   = -1"}, {5, -1, -1, 9, -1}, {5, 7, 7, 9, 9}, {"3 pixels have no value" + told}},
      {{"BLANK   = -1", "BSCALE  = 2", "BZERO   = 1"}, {-1, 9}, {19, 19}, {"1 pixel has no value" + told}},
      {{"BLANK   = -1", "BZERO   = 32768"}, {-1, 0}, {32768, 32768}, {"1 pixel has no value" + told}},
      {{"BLANK   = -1"}, {-1, -1}, {0, 0}, {"2 pixels have no value" + told}}};
  for (const auto& [others, stored, expected, warnings] : cases) {
    std::string data;
    for (const int number : stored)
      data += Bytes({(number >> 8) & 0xFF, number & 0xFF});
    const int n = static_cast<int>(expected.size());
    for (const int slot : {0, 4}) {
      EXPECT_EQ(Load(slot, ImageCards("16", std::to_string(n), "1", others), data), warnings);
      const auto pixels = slot == 0 ? s.image.Row(1, 1, n) : s.slot[4].spectrum.Range(1, n);
      EXPECT_EQ(std::vector(pixels.begin(), pixels.end()), expected);
      EXPECT_EQ(slot == 0 ? s.imageMin : s.slot[4].spectrumMin, *std::ranges::min_element(expected));
      const std::string last = CardsOf(s.slot[slot]).back();
      EXPECT_EQ(last.starts_with("HISTORY  Halmek filled"), !warnings.empty());
    }
  }
}

TEST_F(LoadFits, ReadsTheWidestAndTheHighestFrameRowAfterRowAndItsRange) {
  for (const auto& [columns, rows] : {std::pair{3000, 2}, {2, 500}}) {
    std::string data;
    for (int i = 0; i < columns * rows; ++i)
      data += Bytes({(i + 100) / 256, (i + 100) % 256});
    Load(0, ImageCards("16", std::to_string(columns), std::to_string(rows)), data);
    for (int i : {0, columns - 1, columns, columns * rows - 1})
      EXPECT_EQ(s.image(1 + i / columns, 1 + i % columns), i + 100) << i;
    EXPECT_EQ(std::pair(s.imageMin, s.imageMax), std::pair(100.0, columns * rows + 99.0));
  }
}

TEST_F(LoadFits, AFrameShowsItsNamesAndMayBeTrimmedOnce) {
  Workflow& w = s.workflow;
  for (const std::string trimmed : {"", "TRIM    = '[1:5]'", "OVERSCAN  cut"}) {
    w.traceStatus = doneText;
    Load(0, ImageCards("16", "1", "1", {"OBJECT  = 'Vega'", trimmed}), Bytes({0, 0}));
    EXPECT_EQ(w.title, "Halmek.  File:  frame.fts     Object:  Vega");
    EXPECT_EQ(w.fileLabel[0] + w.objectLabel[0] + w.traceStatus, "frame.ftsVega");
    EXPECT_TRUE(w.trimEnabled == trimmed.empty() && s.frameTrimmed != trimmed.empty()) << trimmed;
    EXPECT_TRUE(w.fixColumnEnabled && w.sliceEnabled && w.fixTraceEnabled);
  }
}

// Files that are refused, as files of that many rows, by name.
std::map<std::string, std::string> BadFiles(const std::string& rows) {
  const auto image = [&](const char* bitpix, const char* columns, const Cards& others = {}) {
    return FitsBytes(ImageCards(bitpix, columns, rows, others), std::string(200, 'x'));
  };
  const std::string good = image("16", "9");
  return {{"empty", ""},
          {"header cut", good.substr(0, 300)},
          {"201 cards", image("16", "9", Cards(196, "COMMENT"))},
          {"8 bits", image("8", "9")},
          {"OBJECT of one character", image("16", "9", {"OBJECT  = X"})},
          {"3001 columns", image("16", "3001")},
          {"columns not a number", image("16", "many")},
          {"no whole column", image("16", "0.9")},
          {"too large when scaled", image("-32", "9", {"BSCALE  = 1e300"})},
          {"data cut", good.substr(0, 2897)}};
}

TEST_F(LoadFits, ARefusedFileChangesNothing) {
  for (const int slot : {0, 1, 4}) {
    const std::string rows = slot == 0 ? "2" : "1", data(2000, 'x');
    auto files = BadFiles(rows);
    files["rows"] = FitsBytes(ImageCards("16", "1", slot == 0 ? "501" : "2"), data);
    if (slot == 0)
      files["no rows"] = FitsBytes({"SIMPLE", "BITPIX  = 16", "NAXIS1  = 9"}, data);
    Load(slot, ImageCards("16", "2", rows, {"TRIM    = 1", "OBJECT  = 'Ne'"}),
         Bytes({0, 1, 0, 2, 0, 3, 0, 4}));
    s.rowPlot.undoRow = 2;
    s.arc[1].LineCount = 3;
    s.arc[1].fitDone = s.workflow.crunchEnabled = true;
    s.workflow.saveObjectEnabled = slot == 4;
    const auto state = [&] {
      const Slot& loaded = s.slot[slot];
      const Workflow& w = s.workflow;
      const std::span<const double> pixels = slot == 0 ? s.image.Row(1, 1, 2) : loaded.spectrum.Range(1, 2);
      return std::tuple(std::vector(pixels.begin(), pixels.end()), CardsOf(loaded), loaded.fileName,
                        loaded.loadedFile, loaded.objectName, loaded.naxis1, s.image(2, 2), s.imageMax,
                        s.rowPlot.undoRow, w.title, w.fileLabel[slot], w.crunchEnabled, s.frameTrimmed,
                        s.arc[1].LineCount, s.arc[1].fitDone, w.saveObjectEnabled, w.correctEnabled);
    };
    const auto before = state();
    EXPECT_EQ(std::get<0>(before), (std::vector<double>{1, 2}));
    const auto refusal = [&](const std::string& name) {
      return RefusalOf([&] { slot == 0 ? LoadFits2D(s, name) : LoadFits1D(s, slot, name); });
    };
    EXPECT_NE(refusal("missing.fts"), "");
    for (const auto& [name, bytes] : files) {
      WriteFile(folder.File("bad.fts"), bytes);
      EXPECT_NE(refusal("bad.fts"), "") << name;
      EXPECT_EQ(state(), before) << name;
    }
  }
}

TEST_F(LoadFits, AnArcShowsItsNamesAndHasNoFit) {
  s.workflow.arc[1].fitWindowStatus = doneText;
  s.arc[1].PixelCentroid(3000) = s.arc[1].PixelCentroidError(3) = s.arc[1].PixelWavelength(3) = 9;
  Load(1, {"SIMPLE", "BITPIX  = 16", "NAXIS1  = 3", "OBJECT  = 'Ne'"}, Bytes({0, 3, 1, 0, 0, 1}));
  EXPECT_EQ(std::tuple(s.slot[1].spectrum(2), s.slot[1].spectrumMax, s.slot[1].spectrumMin),
            std::tuple(256, 256, 1));
  EXPECT_EQ(s.arc[1].PixelCentroid(3000) + s.arc[1].PixelCentroidError(3) + s.arc[1].PixelWavelength(3), 0);
  EXPECT_EQ(s.workflow.fileLabel[1] + s.workflow.objectLabel[1] + s.workflow.arc[1].fitWindowStatus,
            "spectrum.ftsNe");
  EXPECT_TRUE(s.workflow.arc[1].plotEnabled);
}

TEST_F(LoadFits, TheScaleIsThatOfItsFirstCards) {
  Load(4, ImageCards("16", "1", "1", {"CRVAL1  = 1", "CD1_1   = 2", "CRVAL1  = 3"}), Bytes({0, 3}));
  EXPECT_EQ(s.slot[4].crval1Card * 10 + s.slot[4].cd1_1Card, 67);
}

}  // namespace
}  // namespace halmek::test
