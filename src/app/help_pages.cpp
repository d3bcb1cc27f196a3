// Help texts. Lines that go on with a paragraph begin with the blanks that part them from the one before.
#include "app/help_pages.h"

namespace halmek {
namespace {

const std::vector<std::string> introduction = {
    "The overall goal is to obtain radial velocities from stellar spectra."
    "  Bias removal, dark subtraction and flat-fielding are expected to have been done beforehand by other "
    "programs.",
    "Halmek does the steps in between, in two parts, whose numbered steps stand in the main window."
    "  Each step that is done is also noted as a line of a recipe ([menu] Recipe), from which it can be "
    "repeated.",
    "Part I converts 2-D frames (stars, arc lamps) to 1-D spectra:"
    "  The overscan strip and other edges are trimmed off, a bad column is repaired, and cosmic ray hits are "
    "removed from the trace."
    "  The aperture and the background on both sides of it are marked, the background is fitted by a "
    "polynomial, and the rows of the aperture less their background are summed (extraction from 2-D to 1-D)."
    "  The continuum of a star is then normalized.",
    "Part II calibrates the wavelengths of the 1-D object spectrum:"
    "  The lines of the arcs taken before and after it are identified, and their deviations from a linear "
    "fit are fitted by a polynomial."
    "  With these fits the dispersion of the object file is corrected, so that it is strictly linear; the "
    "initial wavelength and the pixel scale are written to its FITS header.",
    "The final step, measuring the radial velocities in the corrected files, is for the separate program "
    "Kelvas.",
    "More detailed help is provided in the next help pages.",
};

const std::vector<std::string> fileMenu = {
    "[menu] File > Load DAO Non-standard 2-D File:"
    "  This is to load non-standard FITS files used at the DAO and elsewhere which are 16-bit integer but "
    "which are not correctly identified in the FITS header. "
    "  (They are in the simple format of value = 256*high byte + low byte.)"
    "  Once the file is loaded, you can then save it in one of the standard FITS types (32-bit real is "
    "recommended).",
    "[menu] File > Load Wavelength Table:"
    "  This loads a text file consisting of:  header line, thence wavelength in Angstroms, Element."
    "  It is used for automatic identification of arc lines once the first two have been identified.",
    "[menu] File > Load 2-D Fits file:"
    "  This loads a standard 2-D fits file; it does the same as the 'Load ...' button in the main window.",
    "[menu] File > Save:"
    "  This saves, under the existing filename, the 2-D FITS file loaded in Part I.",
    "[menu] File > Save 2-D File:"
    "  This is the same as above, but you get to set a new filename and folder.",
    "[menu] File > Save 2-D Data to Text File:"
    "  This saves the individual pixel values to a text file.  Following a header line, they are saved "
    "column-wise."
    "  (That way, the values may be dumped into a spreadsheet if needed.)",
    "[menu] File > Save 1-D File:"
    "  This saves the 1-D FITS file resulting from the Crunch (compression from 2-D to 1-D) function.",
    "[menu] File > Save 1-D Data to Text File:"
    "  Following a header line, the pixel values are saved to a text file.",
    "Before a file is replaced, you are asked, and told what it is.",
};

const std::vector<std::string> part1 = {
    "Load:"
    "  This loads the 2-D FITS file (object, arc).  It will take a few seconds."
    "  It does the same as [menu]File > Load 2-D Fits File.",
    "Fix [Bad column]:"
    "  This deals with bad columns."
    "  For each element of the bad column, (i.e., row number from 1 to NAXIS2), the program takes the median "
    "of a specified number of elements (same row) on each side of that column. ",
    "Snip:"
    "  This trims off the edges, keeping the section of the frame delineated by the corner points."
    "  Thus one can trim off the overscan or whatever else."
    "  The information will be documented in the FITS header.",
    "Fix Trace:"
    "  This option plots an entire row, enabling you to fix (or zap) the bad pixel(s) that have resulted "
    "from cosmic ray hits."
    "  (The program takes the median of a specified number of pixels on each side of the bad pixels.)"
    "  To use, left-click nearby on each side of the bad pixel; the program then zooms in enabling you to "
    "right-click on as many contiguous pixels as you want."
    "  When ready, click 'Zap'; use 'Deselect' or 'Undo' to correct mistakes."
    "  After you zap, the program can return automatically to the full row or replot the same interval; to "
    "change, click [menu]Options > Full Row after Zap.",
    "  For bad pixels at the end, use '[Zoom]In', then migrate to that end with the slide bar."
    "Plot Vertical Trace:"
    "  A user-selected column is plotted, enabling the user to select the aperture for data extraction and "
    "the two background ranges. "
    "   The latter are then fitted by a linear or higher polynomial.",
    "Crunch:"
    "  This uses the information from the previous step to subtract the fitted background from all pixels "
    "within the aperture and then sum them, producing a one-dimensional image file.",
    "Normalize:"
    "  This first plots the spectrum."
    "  The user then fits the continuum by a polynomial of power 2-5 and the entire spectrum is rescaled so "
    "that the continuum is flat."
    "  The selection of points can be automatic or manual."
    "  After selecting 'manual', left-click at various high points that ",
    "Save 1-D Frame:"
    "  This saves the frame resulting from the above steps."
    "  There will be numerous files (arcs, standard stars, program stars) that will be processed in Part I."
    "  It is therefore intended that the arcs and object files (standard stars, program stars) will be "
    "reloaded in part II.",
};

const std::vector<std::string> part2 = {
    "# Arc Files:"
    "  Normally, the observer takes two arc images - one before and one after the object image."
    "  Occasionally only one may be available; this allows you to use only one.",
    "Arc 1 (or 2) Load:"
    "  Obvious.",
    "Plot Arc 1 (or 2):"
    "  From the plot screen, one clicks on a peak, the program displays the centroided column number, and "
    "one enters the tabular wavelength."
    "  After two peaks have been so identified -- and providing that the wavelength file has been loaded -- "
    "clicking on subsequent peaks results in automatically selected (identified) tabular wavelengths. "
    "  After all the lines have been identified, one then fits the differences from a linear fit."
    "  See the help in the plot screen for more details.",
    "Load Object Frame:"
    "  Obvious",
    "Fix:"
    "  This applies the fitted function from step 8 to correct the object spectrum so that it is strictly "
    "linear in wavelength. ",
    "Save Calibrated Object File:"
    "  The final corrected file is saved; the wavelength of the first pixel and the pixel scale are written "
    "to the FITS header.",
};

const std::vector<std::string> arcPlot = {
    "You click on  a peak and a window opens."
    "  You then enter the tabular wavelength for that peak (line). "
    "  After two lines have been so identified, pressing 'Update Linfit' will display some statistics."
    "  Pressing 'OK' does the same as 'Update Linfit' but the window disappears so that you can go on to the "
    "next peak."
    "  Note that what appear to be very low (weak) peaks still have lots of data for fitting. "
    "  Note too that the program guards against entering data for the same line twice.",
    "Once two lines have been identified, the program automatically selects (identifies) wavelengths from "
    "the wavelength table that has been loaded. "
    "  If the table has not been loaded, you can do so from the main menu. ",
    "Once you have identified all the lines that you can, you can, using 'Save Mask' saves the information "
    "(centroided pixel value, tabular wavelength) to a text file (mask) that can be applied to automatically "
    "identify the lines from all succeeding arc spectra.",
    "'Calc. Fit' opens a new window in which deviations from a linear fit are plotted across the wavelength "
    "range."
    "  You then fit a polynomial of power 2-5 to the differences."
    "  This and the data from the arc 2 fit are applied to the object 1-D image using the dispersion "
    "correction routine.",
    "'OK' closes the window."
    "  You could just as well click the X at the top corner (but then there is no check that the process is "
    "complete).",
    "For all subsequent arc files (assuming that no changes have been made to the spectrograph), the "
    "sequence is very rapid: 'Apply Mask', 'Calc. Fit', [do the fit], 'OK', 'OK'.",
    "[Menu]File > Print Setup selects the printer, the orientation (portrait or landscape) and the number of "
    "copies."
    " The 'Print' does not print; regard it as an 'OK' button."
    " To print the page, use [Menu]File > Print.",
};

}  // namespace

HelpPage PageAbout(HelpTopic topic) {
  switch (topic) {
    case HelpTopic::introduction:
      return {"Help - Introduction", introduction};
    case HelpTopic::fileMenu:
      return {"Help - [Menu] File", fileMenu};
    case HelpTopic::part1:
      return {"Help - Part I", part1};
    case HelpTopic::part2:
      return {"Help - Part II", part2};
    case HelpTopic::arc1:
      return {"Help - Arc 1", arcPlot};
    case HelpTopic::arc2:
      return {"Help - Arc 2", arcPlot};
  }
  return {};
}

}  // namespace halmek
