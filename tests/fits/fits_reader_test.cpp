// Loading of FITS files: what is read, what is refused, and what a refused file leaves behind.
#include "fits/fits_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "fits/fits_bytes.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

class LoadFits : public testing::Test {
 protected:
  Warnings LoadFrame(const Cards& cards, const std::string& data) {
    WriteFile(folder.File("frame.fts"), FitsBytes(cards, data));
    return LoadFits2D(s, "frame.fts");
  }
  Warnings LoadSpectrum(int slot, const Cards& cards, const std::string& data) {
    WriteFile(folder.File("spectrum.fts"), FitsBytes(cards, data));
    return LoadFits1D(s, slot, "spectrum.fts");
  }

  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Session& s = *session;
};

TEST_F(LoadFits, FindsTheDataAtTheRecordBehindTheEndCard) {
  const struct {
    size_t cards;
    int dataStart;
  } cases[] = {{35, 2880}, {36, 5760}, {71, 5760}, {200, 17280}};
  for (const auto& c : cases) {
    Cards cards = ImageCards("16", "1", "1");
    cards.resize(c.cards, "COMMENT");
    LoadFrame(cards, Bytes({1, 2}));
    EXPECT_EQ(s.slot[0].dataStart, c.dataStart) << c.cards;
    EXPECT_EQ(s.slot[0].headerLength, static_cast<int>(c.cards) * 80 + 3);
    EXPECT_EQ(s.image(1, 1), 258) << c.cards;
  }
}

TEST_F(LoadFits, TakesCardsApartAtTheFirstSlash) {
  const struct {
    std::string card, object, value, comment;
  } cases[] = {{"OBJECT  = 'HD 12345'", "HD 12345", "'HD 12345'", ""},
               {"OBJECT  = 'M 31    '           / n", "M 31    ", "'M 31    '", "/ n"},
               {"OBJECT  = 'NGC/IC 5'", "NG", "'NGC", "/IC 5'"},
               {"OBJECT  = ''", "", "''", ""}};
  for (const auto& c : cases) {
    LoadFrame(ImageCards("16", "1", "1", {c.card, "OBJECT  = 'second'"}), Bytes({0, 0}));
    const Slot& frame = s.slot[0];
    EXPECT_EQ(frame.objectName, c.object);
    EXPECT_EQ(frame.card(6), c.card + std::string(80 - c.card.size(), ' '));
    EXPECT_EQ(frame.cardKeyword(6) + frame.cardValue(6), "OBJECT" + c.value);
    EXPECT_TRUE(frame.cardComment(6).starts_with(c.comment));
  }
}

TEST_F(LoadFits, DecodesByBitpixBzeroAndTheLayoutAskedFor) {
  const struct {
    const char* bitpix;
    Cards others;
    bool dao;
    std::vector<int> bytes;
    double value;
    int pixelType;
    Warnings warnings;
  } cases[] = {
      {"16", {}, false, {0xFF, 0xFF}, -1, 16, {}},
      {"16", {"BZERO   = 3.2768D+04 / offset"}, false, {0x80, 0x01}, 1, 17, {}},
      {"16", {"BZERO   = 7", "BZERO   = 0"}, false, {0, 0}, 32768, 16, {"BZERO = 7 is taken as 32768."}},
      {"16", {}, true, {0xFF, 0xFE}, 65534, 16, {}},
      {"16", {"BZERO   = 32768"}, true, {0xFF, 0xFE}, 32766, 17, {}},
      {"8", {"BITPIX  = 16"}, false, {1, 0}, 256, 16, {}},
      {"32", {"BSCALE  = 2"}, false, {0, 1, 0, 0}, 65536, 32, {"BSCALE = 2 is not applied to the pixels."}},
      {"-32", {}, false, {0x3F, 0x80, 0, 0}, 1, -32, {}},
      {"-64", {}, false, {0xC0, 0, 0, 0, 0, 0, 0, 0}, -2, -64, {}},
  };
  for (const auto& c : cases) {
    s.daoFrame = c.dao;
    const Warnings warnings = LoadFrame(ImageCards(c.bitpix, "1", "1", c.others), Bytes(c.bytes));
    EXPECT_EQ(s.image(1, 1), c.value) << c.bitpix << " " << c.dao;
    EXPECT_EQ(s.slot[0].pixelType, c.pixelType) << c.bitpix;
    EXPECT_EQ(warnings, c.warnings);
    EXPECT_FALSE(s.daoFrame);
  }
}

TEST_F(LoadFits, LooksForEndAtCardStartsOnly) {
  LoadFrame(ImageCards("16", "1", "1", {"EXTEND  = T", "COMMENT THE END"}), Bytes({1, 2, 'E', 'N', 'D'}));
  EXPECT_EQ(s.slot[0].cardCount, 7);
  EXPECT_EQ(s.image(1, 1), 258);
}

TEST_F(LoadFits, ReadsTheLargestFrameRowAfterRowAndItsRange) {
  std::string data;
  for (int i = 0; i < 3000 * 500; ++i)
    data += Bytes({(i % 1901 + 100) / 256, (i % 1901 + 100) % 256});
  LoadFrame(ImageCards("16", "3000", "500"), data);
  for (int i : {0, 2999, 3000, 65535, 1499999})
    EXPECT_EQ(s.image(1 + i / 3000, 1 + i % 3000), i % 1901 + 100) << i;
  EXPECT_EQ(s.imageMin, 100);
  EXPECT_EQ(s.imageMax, 2000);
}

TEST_F(LoadFits, AFrameStartsTheReductionOver) {
  for (const std::string trimmed : {"", "TRIM    = '[1:5]'", "OVERSCAN  cut"}) {
    s.workflow.traceStatus = s.workflow.sliceStatus = s.workflow.crunchStatus = doneText;
    s.workflow.crunchEnabled = true;
    s.slice.apertureFirstRow = s.slice.apertureState = 2;
    s.slice.backgroundClicks = 4;
    s.background.backgroundFitted = true;
    s.rowPlot.undoRow = 1;
    LoadFrame(ImageCards("16", "1", "1", {"OBJECT  = 'Vega'", trimmed}), Bytes({0, 0}));

    const Workflow& w = s.workflow;
    EXPECT_EQ(w.title, "Halmek.  File:  frame.fts     Object:  Vega");
    EXPECT_EQ(w.fileLabel[0] + w.objectLabel[0], "frame.ftsVega");
    EXPECT_EQ(w.trimEnabled, trimmed.empty());
    EXPECT_EQ(s.frameTrimmed, !trimmed.empty());
    EXPECT_TRUE(w.fixColumnEnabled && w.sliceEnabled && w.fixTraceEnabled && !w.crunchEnabled);
    EXPECT_EQ(w.traceStatus + w.sliceStatus + w.crunchStatus, "");
    EXPECT_EQ(s.slice.apertureFirstRow + s.slice.apertureState + s.slice.backgroundClicks, 0);
    EXPECT_EQ(s.background.backgroundFitted + s.rowPlot.undoRow, 0);
  }
}

struct BadFile {
  std::string name;
  std::string bytes;
  std::string message;
  bool headerTaken;  // the slot holds the file's header afterwards
};

std::vector<BadFile> BadFiles(const std::string& rows) {
  const std::string noEnd = "This FITS header has no END card.  Please try again.";
  const std::string noPixels = "This FITS file has no pixels.  Please try again.";
  const std::string tooLarge = "Error: 9  Subscript out of range.";
  const std::string tooShort = "Error: 62  Error: Input past end of file.";
  const std::string tooFewBits =
      "Sorry, this program does not support 8-bit integer data.  Convert to 16-bit unsigned.";
  const std::string data(200, 'x');
  const std::string good = FitsBytes(ImageCards("16", "9", rows), data);
  const auto image = [&](const char* bitpix, const char* columns, const Cards& others = {}) {
    return FitsBytes(ImageCards(bitpix, columns, rows, others), data);
  };
  std::string withLineEnd = good;
  withLineEnd[100] = '\r';
  Cards extendOnly = ImageCards("16", "9", rows, {"EXTEND  = T"});
  extendOnly.resize(36, "COMMENT   the END");
  return {
      {"empty", "", tooShort, false},
      {"text", "A text.\r\nEND\r\n", "This is not a fits file!  Please try again.", false},
      {"header cut", good.substr(0, 300), noEnd, false},
      {"line end in the header", withLineEnd, noEnd, false},
      {"END inside other texts only", FitsBytes(extendOnly, data).substr(0, 2880), noEnd, false},
      {"201 cards", image("16", "9", Cards(196, "COMMENT")), tooLarge, false},
      {"8 bits", image("8", "9"), tooFewBits, true},
      {"8 bits and a bad OBJECT", image("8", "9", {"OBJECT  = X"}), tooFewBits, true},
      {"type of our own", image("17", "9"),
       "Sorry, this program does not support 17-bit integer data.  Convert to 32-bit real.", true},
      {"fraction of a bit", image("16.5", "9"),
       "Sorry, this program does not support this pixel type.  Convert to 32-bit real.", true},
      {"OBJECT of one character", image("16", "9", {"OBJECT  = X"}), "Error: 5  ", true},
      {"3001 columns", image("16", "3001"), tooLarge, true},
      {"777777701 columns", image("16", "777777701"), tooLarge, true},
      {"no columns", image("16", "0"), noPixels, true},
      {"columns not a number", image("16", "many"), noPixels, true},
      {"data cut", good.substr(0, 2897), tooShort, true},
  };
}

TEST_F(LoadFits, AFrameIsReplacedAllOrNotAtAll) {
  std::vector<BadFile> files = BadFiles("2");
  const std::string data(2000, 'x');
  files.push_back(
      {"501 rows", FitsBytes(ImageCards("16", "1", "501"), data), "Error: 9  Subscript out of range.", true});
  files.push_back({"no rows", FitsBytes({"SIMPLE", "BITPIX  = 16", "NAXIS1  = 9"}, data),
                   "This FITS file has no pixels.  Please try again.", true});
  for (const BadFile& file : files) {
    SCOPED_TRACE(file.name);
    SetSpectrum(s, 4, {5, 6});
    LoadFrame(ImageCards("16", "2", "2", {"TRIM    = 1"}), Bytes({0, 1, 0, 2, 0, 3, 0, 4}));
    WriteFile(folder.File("bad.fts"), file.bytes);
    EXPECT_EQ(RefusalOf([&] { LoadFits2D(s, "bad.fts"); }), file.message);

    EXPECT_EQ(s.slot[0].fileName, "bad.fts");
    EXPECT_EQ(s.slot[0].naxis1 == 2, !file.headerTaken);
    EXPECT_EQ(s.workflow.fixTraceEnabled, !file.headerTaken);
    EXPECT_EQ(s.workflow.sliceEnabled && s.workflow.fixColumnEnabled, !file.headerTaken);
    EXPECT_EQ(s.frameTrimmed, !file.headerTaken);
    EXPECT_EQ(s.image(1, 1) + 10 * s.image(1, 2) + 100 * s.image(2, 1) + 1000 * s.image(2, 2), 4321);
    EXPECT_EQ(s.imageMax, 4);
    EXPECT_EQ(s.slot[4].spectrum(2), 6);
    EXPECT_EQ(s.slot[4].cardCount, 5);
  }
}

TEST_F(LoadFits, ASpectrumIsReplacedAllOrNotAtAllAndItsIdentificationsWithIt) {
  std::vector<BadFile> files = BadFiles("1");
  files.push_back({"a frame", FitsBytes(ImageCards("16", "9", "2", {"OBJECT  = X"}), std::string(200, 'x')),
                   "Hey, this is not a 1-D file!  Please try again.", true});
  for (const BadFile& file : files) {
    SCOPED_TRACE(file.name);
    SetSpectrum(s, 1, {5, 6});
    s.arc[1].LineCount = 3;
    WriteFile(folder.File("bad.fts"), file.bytes);
    EXPECT_EQ(RefusalOf([&] { LoadFits1D(s, 1, "bad.fts"); }), file.message);
    EXPECT_EQ(s.slot[1].fileName, "bad.fts");
    EXPECT_EQ(s.slot[1].naxis1 == 2, !file.headerTaken);
    EXPECT_EQ(s.slot[1].spectrum(1) + 10 * s.slot[1].spectrum(2), 65);
    EXPECT_EQ(s.arc[1].LineCount, 3);
  }
}

TEST_F(LoadFits, NamesWhatIsNoFileAndNoDaoFrame) {
  std::filesystem::create_directory(folder.File("folder"));
  const struct {
    const char* file;
    const char* message;
  } cases[] = {{"missing.fts", "Error: 53  Error: File not found."},
               {"folder", "Error: 75  Error: Path/file access error."},
               {"nowhere/a.fts", "Error: 76  Error: Path not found."}};
  for (const auto& c : cases) {
    EXPECT_EQ(RefusalOf([&] { LoadFits2D(s, c.file); }), c.message);
    EXPECT_EQ(RefusalOf([&] { LoadFits1D(s, 2, c.file); }), c.message);
  }
  s.daoFrame = true;
  EXPECT_EQ(RefusalOf([&] {
              LoadFrame(ImageCards("32", "1", "1"), Bytes({0, 0, 0, 0}));
            }),
            "Sorry, this program does not support DAO frames other than 16-bit.  Load it as a FITS file.");
}

TEST_F(LoadFits, ANewArcDropsTheIdentificationsOfItsOwnSlotOnly) {
  SetSpectrum(s, 4, {7});
  for (int a : {1, 2}) {
    s.arc[a].LineCount = 2;
    s.arc[a].PixelCentroid(3000) = s.arc[a].PixelCentroidError(3) = s.arc[a].PixelWavelength(3) = 9;
    s.arc[a].fitDone = s.arc[a].maskApplied = true;
    s.workflow.arc[a].fitStatus = s.workflow.arc[a].fitWindowStatus = doneText;
  }
  s.frameTrimmed = true;
  LoadSpectrum(1, {"SIMPLE", "BITPIX  = 16", "NAXIS1  = 3", "OBJECT  = 'Ne'"}, Bytes({0, 3, 1, 0, 0, 1}));

  EXPECT_EQ(s.slot[1].spectrum(2), 256);
  EXPECT_EQ(s.slot[1].spectrumMax * 10 + s.slot[1].spectrumMin, 2561);
  EXPECT_EQ(s.workflow.fileLabel[1] + s.workflow.objectLabel[1], "spectrum.ftsNe");
  EXPECT_TRUE(s.workflow.arc[1].plotEnabled);
  for (int a : {1, 2}) {
    const Arc& arc = s.arc[a];
    const int kept = a - 1;
    EXPECT_EQ(arc.LineCount, 2 * kept);
    EXPECT_EQ(arc.PixelCentroid(3000) + arc.PixelCentroidError(3) + arc.PixelWavelength(3), 27 * kept);
    EXPECT_EQ(arc.fitDone + arc.maskApplied, 2 * kept);
    EXPECT_EQ((s.workflow.arc[a].fitStatus + s.workflow.arc[a].fitWindowStatus).empty(), kept == 0);
  }
  EXPECT_TRUE(s.frameTrimmed);
  EXPECT_EQ(s.slot[4].spectrum(1), 7);
}

TEST_F(LoadFits, AnObjectWaitsForItsCorrection) {
  s.workflow.correctionStatus = doneText;
  s.workflow.saveObjectEnabled = true;
  LoadSpectrum(4, ImageCards("16", "1", "1", {"CRVAL1  = 1", "CD1_1   = 2", "CRVAL1  = 3"}), Bytes({0, 3}));
  EXPECT_TRUE(s.workflow.correctEnabled && !s.workflow.saveObjectEnabled);
  EXPECT_EQ(s.workflow.correctionStatus, "");
  EXPECT_EQ(s.slot[4].crval1Card * 10 + s.slot[4].cd1_1Card, 67);
}

}  // namespace
}  // namespace halmek::test
