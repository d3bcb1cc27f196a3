// Wavelength tables and line masks.
#include "calib/line_mask.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "calib/wavelength_table.h"
#include "synthetic_arc.h"

namespace halmek::test {
namespace {

struct MaskTest : testing::Test {
  TemporaryFolder folder;
  std::unique_ptr<Session> session = SessionIn(folder.path());
  Arc& arc = session->arc[1];

  std::string LoadMaskText(const std::string& text) {
    WriteFile(folder.File("m.dat"), text);
    return RefusalOf([&] { LoadMask(*session, "m.dat"); });
  }
};

std::string TableOf(int entries) {
  std::string text = "header\r\n";
  for (int i = 1; i <= entries; ++i)
    text += std::to_string(4000 + i) + ",Fe I\r\n";
  return text;
}

TEST_F(MaskTest, TablesThatCannotBeReadLeaveTheTableAndSayWhy) {
  const auto isNoEntry = [](int line) {
    return "was not loaded: line " + std::to_string(line) + " is not a number followed by a label.";
  };
  const std::string none = "was not loaded: there are no entries.";
  // What is in the file, and how many entries come of it, or why it is refused.
  const std::tuple<const char*, std::string, int, std::string> cases[] = {
      {"1000 entries", TableOf(1000), 1000, ""},
      {"1001 entries", TableOf(1001), 0, "was not loaded: there are more than 1000 entries."},
      {"header only", "header\r\n", 0, none},
      {"empty", "", 0, none},
      {"words", "header\r\nsix thousand,Ne\r\n", 0, isNoEntry(2)},
      {"a number alone", "header\r\n6000,\r\n6000\r\n", 0, isNoEntry(3)},
      {"a decimal comma", "header\r\n6000,12;Ne\r\n6001,5;Ar,x\r\n", 0, isNoEntry(3)},
      {"beyond a double", "header\r\n1e999,Ne\r\n", 0, isNoEntry(2)},
      {"unix line ends, no last one", "header\n 6000.5 , Ne I\n6001,\"Ar, II\"", 2, ""},
      {"an empty label, blank lines", "header\r\n6000,\r\n\r\n6001,x\r\n\r\n", 2, ""}};
  for (const auto& [what, text, count, refusal] : cases) {
    WriteFile(folder.File("t.txt"), text);
    session->wavelengthTable.wlCount = 7;
    EXPECT_EQ(RefusalOf([&] { LoadWavelengthTable(*session, "t.txt"); }),
              count > 0 ? "" : "Wavelength file 't.txt' " + refusal)
        << what;
    EXPECT_EQ(session->wavelengthTable.wlCount, count > 0 ? count : 7) << what;
  }
  EXPECT_EQ(session->wavelengthTable.WLValue(1), 6000);
  for (const std::string name : {"Nowhere.txt", "no_folder/Nowhere.txt"})
    EXPECT_EQ(
        RefusalOf([&] { LoadWavelengthTable(*session, name); }),
        "Wavelength file 'Nowhere.txt' not found - load from menu bar or enter tabular values manually.");
}

TEST_F(MaskTest, AMaskForATableAndATableForAMaskAreRefusedInWords) {
  WriteFile(folder.File("mask.dat"), "Mask data\r\n 200.5  5852.488 \r\n 500  6000 \r\n");
  EXPECT_EQ(RefusalOf([&] { LoadWavelengthTable(*session, "mask.dat"); }),
            "This is a mask of lines, not a wavelength table.  Please load it as a mask.");
  EXPECT_EQ(LoadMaskText("Neon\r\n5852.488,Ne I\r\n"),
            "This is a wavelength table, not a mask of lines.  Please load it as a wavelength table.");
  for (const char* other : {"Neon\r\n", "Columns\r\n 200.5  5852.488 \r\n"})
    EXPECT_EQ(LoadMaskText(other), "This is not a mask file for this program.  Please try again.") << other;
  WriteFile(folder.File("table.txt"), "Masked lines\r\n5852.488,Ne I\r\n");
  EXPECT_EQ(RefusalOf([&] { LoadWavelengthTable(*session, "table.txt"); }), "");
}

TEST_F(MaskTest, SavedMasksHaveBlanksAroundEachNumberAndReadBackTheSameLines) {
  arc.LineCount = 2;
  arc.ArcLineColumn(1) = 12.5;
  arc.ArcLineWavelength(1) = 5852.488;
  arc.ArcLineColumn(2) = 800.123456789012;
  arc.ArcLineWavelength(2) = 6000;
  SaveMask(*session, 1, "m.dat");
  EXPECT_EQ(session->mask.maskFileName + session->workflow.arc[1].maskName, "m.datm.dat");
  EXPECT_EQ(ReadFile(folder.File("m.dat")),
            "Mask data for line identification.  Peak column; tabular wavelength (Angstroms).\r\n"
            " 12.5  5852.488 \r\n 800.123456789012  6000 \r\n");
  const auto other = SessionIn(folder.path());
  LoadMask(*other, "m.dat");
  for (const LineMask& mask : {session->mask, other->mask})
    EXPECT_EQ(std::tuple(mask.maskCount, mask.MaskColumn(1), mask.MaskWavelength(1), mask.MaskColumn(2),
                         mask.MaskWavelength(2)),
              std::tuple(2, 12.5, 5852.488, 800.123456789012, 6000));
}

TEST_F(MaskTest, SavingNothingOrIntoNowhereKeepsTheLoadedMask) {
  ASSERT_EQ(LoadMaskText("Mask\r\n10 5000\r\n"), "");
  EXPECT_EQ(RefusalOf([&] { SaveMask(*session, 1, "n.dat"); }),
            "There are no centroided peaks and tabular wavelengths to save.");
  IdentifyLines(*session, 1, 1000, {200, 500}, [](double c) { return 5000 + c; });
  EXPECT_EQ(RefusalOf([&] { SaveMask(*session, 1, "none/n.dat"); }), "Error: 76  Error: Path not found.");
  EXPECT_EQ(session->mask.maskFileName + std::to_string(session->mask.maskCount), "m.dat1");
}

TEST_F(MaskTest, AppliedMaskFindsLinesShiftedByTenPixelsAndReplacesTheList) {
  ASSERT_EQ(LoadMaskText("Mask\r\n800 5800\r\n200 5200\r\n500 5500\r\n"), "");
  for (double shift : {0.0, 10.0, -10.0}) {
    IdentifyLines(*session, 1, 1000, test::Columns(8, 100, 100), [](double c) { return 4000 + c; });
    ASSERT_EQ(arc.LineCount, 8);
    SetSpectrum(*session, 1, ArcOf(1000, {200 + shift, 500 + shift, 800 + shift}));
    EXPECT_EQ(ApplyMask(*session, 1).size(), shift == 0 ? 0u : 3u) << "at the edge of the search";
    ASSERT_EQ(arc.LineCount, 3);
    EXPECT_NEAR(arc.ArcLineColumn(1), 800 + shift, 1e-6) << "in the order of the mask";
    EXPECT_EQ(arc.ArcLineWavelength(1), 5800);
    EXPECT_NEAR(arc.linSlope, 1, 1e-9);
    EXPECT_TRUE(arc.maskApplied);
    EXPECT_EQ(session->workflow.arc[1].maskStatus, "DONE!");

    RebuildLineList(*session, 1);
    EXPECT_EQ(arc.LineCount, 3) << "lines that the mask replaced do not come back";
    EXPECT_NEAR(arc.ArcLineColumn(1), 200 + shift, 1e-6) << "in pixel order once it is rebuilt";
    DeleteAllLines(*session, 1);
  }
}

TEST_F(MaskTest, AMaskThatDoesNotFitNamesTheEntryAndChangesNothing) {
  EXPECT_EQ(RefusalOf([&] { ApplyMask(*session, 1); }), "Hey, you need to load the mask file first!");
  IdentifyLines(*session, 1, 1000, {200, 500}, [](double c) { return 5000 + c; });
  const double slope = arc.linSlope;
  const std::string second = "Mask entry 2 (column ", two = "Hey, a mask needs two or more different lines!";
  const std::string none = "There is no maximum in this range.  Please try again.";
  for (const auto& [entries, message] : std::map<std::string, std::string>{
           {"200 5200\r\n2500 5500\r\n", second + "2500, 5500 Angstroms):  " + none},
           {"200 5200\r\n350.5 5500\r\n", second + "350.5, 5500 Angstroms):  " + none},
           {"200 5200\r\n500 0\r\n",
            second + "500, 0 Angstroms):  The wavelength must be between 3000 and 9000 Angstroms."},
           {"200 5200\r\n", two},
           {"199 5200\r\n201 5300\r\n", two}}) {
    ASSERT_EQ(LoadMaskText("Mask\r\n" + entries), "");
    EXPECT_EQ(RefusalOf([&] { ApplyMask(*session, 1); }), message);
    EXPECT_EQ(std::tuple(arc.LineCount, arc.linSlope, arc.maskApplied), std::tuple(2, slope, false));
  }
  ASSERT_EQ(LoadMaskText("Mask\r\n199 5200\r\n201 5201\r\n500 5500\r\n"), "");
  EXPECT_EQ(ApplyMask(*session, 1), Warnings{"Mask entries 1 and 2 found the same line, at column 200."});
}

}  // namespace
}  // namespace halmek::test
