// The table of file choosers.
#include "dialogs/chooser_kinds.h"

#include "steps/slot_names.h"

namespace halmek {
namespace {

Step LoadStep(const std::string& what, const std::string& file, int) { return steps::Load{what, file}; }

Step SaveStep(const std::string& what, const std::string& file, int pixelType) {
  return steps::Save{what, file, pixelType};
}

Step SaveMaskStep(const std::string& arc, const std::string& file, int) { return steps::SaveMask{arc, file}; }

Step ExportSpectrumStep(const std::string&, const std::string& file, int slot) {
  return steps::Export{std::string(NameOfSlot(slot)), file};
}

Step ExportFrameStep(const std::string&, const std::string& file, int) {
  return steps::Export{"frame", file};
}

const std::vector<std::string> framePatterns = {"*.fts", "*.fit", "*.fits", "*.*"};
const std::vector<std::string> textPatterns = {"*.txt", "*.dat", "*.*"};
const std::vector<std::string> writtenTextPatterns = {"*.dat", "*.*"};

}  // namespace

namespace choosers {

const ChooserKind loadData = {.name = "frmLoad_Datafiles",
                              .title = "",
                              .patterns = framePatterns,
                              .placement = &Settings::loadDatafiles,
                              .StepOf = LoadStep};

const ChooserKind saveData = {
    .name = "frmSave_datafiles",
    .title = "",
    .patterns = framePatterns,
    .placement = &Settings::saveDatafiles,
    .StepOf = SaveStep,
    .saves = true,
    .requiresName = true,
    .choice = ChooserKind::Choice::pixelType,
    .options = {{"Option1(0)", "16 bit integer", 16, "Whole numbers from -32768 to 32767"},
                {"Option1(1)", "16 bit unsigned", 17, "Whole numbers from 0 to 65535"},
                {"Option1(2)", "32 bit integer", 32, "Whole numbers of any size that a frame holds"},
                {"Option1(3)", "32 bit real", -32, "Numbers with about 7 digits: the usual choice"},
                {"Option1(4)", "64 bit real", -64,
                 "Numbers with about 15 digits: not available for saving at this time"}}};

const ChooserKind loadMask = {.name = "frmLoad_Mask",
                              .title = "Load Mask",
                              .patterns = textPatterns,
                              .placement = &Settings::loadMask,
                              .StepOf = LoadStep};

const ChooserKind saveMask = {.name = "frmSave_Mask",
                              .title = "Save Mask",
                              .patterns = writtenTextPatterns,
                              .placement = &Settings::saveMask,
                              .StepOf = SaveMaskStep,
                              .saves = true};

const ChooserKind loadTable = {.name = "frmLoad_WLtable",
                               .title = "Load Wavelength Table",
                               .patterns = textPatterns,
                               .placement = &Settings::loadWLtable,
                               .StepOf = LoadStep};

const ChooserKind saveSpectrumText = {
    .name = "frmSave_1DText",
    .title = "Save 1-D Data to Text File",
    .patterns = writtenTextPatterns,
    .placement = &Settings::save1DText,
    .StepOf = ExportSpectrumStep,
    .saves = true,
    .choice = ChooserKind::Choice::slot,
    .options = {{"Option1", "Part 1 Result", slots::spectrum, "The spectrum extracted from the 2-D frame"},
                {"Option2", "Arc 1", slots::arc1, "The spectrum of the first arc"},
                {"Option4", "Part 2 Result", slots::object, "The object spectrum of Part II"},
                {"Option3", "Arc 2", slots::arc2, "The spectrum of the second arc"}}};

const ChooserKind saveFrameText = {.name = "frmSave_2DText",
                                   .title = "Save 2-D Data to Text File",
                                   .patterns = writtenTextPatterns,
                                   .placement = &Settings::save2DText,
                                   .StepOf = ExportFrameStep,
                                   .saves = true};

}  // namespace choosers

}  // namespace halmek
