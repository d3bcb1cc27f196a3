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
    "  This loads non-standard FITS files, used at the DAO and elsewhere, that hold 16-bit integers but do "
    "not "
    "say so correctly in the FITS header."
    "  (They are in the simple format of value = 256*high byte + low byte.)"
    "  Once the file is loaded, you can save it as one of the standard FITS types (32-bit real is "
    "recommended).",
    "[menu] File > Load Wavelength Table:"
    "  This loads a text file that has a header line, then lines of a wavelength in Angstroms, a comma and "
    "the "
    "name of the element."
    "  It is used to identify arc lines automatically once the first two have been identified.",
    "[menu] File > Load 2-D Fits file:"
    "  This loads a standard 2-D FITS file; it does the same as 'Load ...' in the main window.",
    "[menu] File > Save:"
    "  This saves the 2-D FITS file of Part I, as 32-bit real, where it was saved last; the first time, "
    "beside "
    "the file that was loaded, with the ending .fts.",
    "[menu] File > Save 2-D File:"
    "  This is the same, but you choose the filename, the folder and the type of the pixels.",
    "[menu] File > Save 2-D Data to Text File:"
    "  This saves the pixel values to a text file, which a spreadsheet can read.  Each line is a column of "
    "the "
    "frame, its values in the order of rows, with commas between them.",
    "[menu] File > Save 1-D File:"
    "  This is not available.  Use 'Save 1-D Frame ...' in the main window, which saves the spectrum that "
    "the "
    "Crunch step makes.",
    "[menu] File > Save 1-D Data to Text File:"
    "  This saves the spectrum that you choose to a text file.  Each line is the number of a pixel and its "
    "value.",
    "Before a file is replaced, you are asked, and told what it is.",
};

const std::vector<std::string> part1 = {
    "Load ...:"
    "  This loads the 2-D FITS file (object or arc).  It does the same as [menu] File > Load 2-D Fits File.",
    "Fix ! [bad column]:"
    "  This repairs a bad column."
    "  Each pixel of it, in every row from 1 to NAXIS2, is replaced by the median of its six neighbours in "
    "the "
    "same row, three on each side.",
    "Snip !:"
    "  This trims off the edges, such as the overscan, and keeps the section of the frame between the corner "
    "points."
    "  The FITS header will say what was kept.",
    "Fix Trace ...:"
    "  This plots an entire row, so that you can fix (zap) the bad pixels that cosmic ray hits have left."
    "  (They are replaced by the mean of a number of pixels that you choose on each side of them.)"
    "  Left-click nearby on each side of the bad pixels; the program then zooms in, and you right-click on "
    "the "
    "first and the last of the bad pixels."
    "  When ready, click 'ZAP!'; use 'Deselect' or 'Undo' to correct mistakes."
    "  After you zap, the program can return to the full row or plot the same interval again; to change "
    "that, "
    "click [menu] Options > Full Row after Zap."
    "  For bad pixels at the ends of the row, use '[Zoom] IN' and move to that end with the scroll bar.",
    "Plot Vertical Slice ...:"
    "  This plots a column that you choose, so that you can mark the aperture from which the data are "
    "extracted, "
    "and the two background ranges."
    "  The latter are then fitted by their median, a straight line or a parabola.",
    "Crunch !:"
    "  This subtracts the fitted background from all pixels within the aperture and sums them, column by "
    "column, to a one-dimensional spectrum.",
    "Normalize ...:"
    "  This plots the spectrum."
    "  You then fit the continuum by a polynomial of power 2 to 5, and the entire spectrum is rescaled so "
    "that "
    "the continuum is flat."
    "  The points of the fit are selected automatically or by hand."
    "  After selecting 'Manual', left-click at high points that belong to the continuum; right-click to "
    "delete "
    "one.",
    "Save 1-D Frame ...:"
    "  This saves the spectrum that the steps above have made."
    "  Arcs, standard stars and program stars are all processed in Part I, and loaded again from their files "
    "in "
    "Part II.",
};

const std::vector<std::string> part2 = {
    "# Arc files:"
    "  Normally, the observer takes two arc images - one before and one after the object image."
    "  Occasionally only one may be available; this allows you to use only one.",
    "Load ... [arc frames]:"
    "  This loads the spectrum of an arc that was saved in Part I.",
    "Plot Arc 1 (or 2):"
    "  In the plot you click on a peak, the program displays the centroided column number, and you enter the "
    "tabular wavelength."
    "  After two peaks have been so identified - and where the wavelength table has been loaded - a click on "
    "another peak proposes its tabular wavelength."
    "  After all the lines have been identified, you fit their differences from a linear fit."
    "  See the help in the plot's window for more details.",
    "Load ... [object frame]:"
    "  This loads the spectrum of the object, which was saved in Part I, too.",
    "Fix !:"
    "  This applies the functions fitted in step 9 to correct the object spectrum so that it is strictly "
    "linear in wavelength.",
    "Save Calibrated Frame...:"
    "  This saves the corrected spectrum; the wavelength of the first pixel and the pixel scale are written "
    "to the FITS header.",
};

const std::vector<std::string> arcPlot = {
    "You click on a peak and a window opens."
    "  You then enter the tabular wavelength for that peak (line)."
    "  After two lines have been so identified, pressing 'Update Fit' will display some statistics."
    "  Pressing 'Update/Done' does the same, and the window closes so that you can go on to the next peak."
    "  Note that what appear to be very low (weak) peaks still have lots of data for fitting."
    "  Note too that the program guards against entering data for the same line twice.",
    "Once two lines have been identified, the program proposes wavelengths from the wavelength table that "
    "has "
    "been loaded."
    "  If the table has not been loaded, you can do so from the menu of the main window.",
    "Once you have identified all the lines that you can, 'Save Mask' saves them (centroided column, tabular "
    "wavelength) to a text file, a mask, by which the lines of all later arc spectra can be identified "
    "automatically.",
    "'Calc. Fit' opens a window in which the deviations from a linear fit are plotted across the wavelength "
    "range."
    "  You then fit a polynomial of power 2 to 4 to the differences."
    "  This and the fit of the other arc are applied to the object by the dispersion correction.",
    "'OK' closes the window after checking that the process is complete."
    "  'Cancel' and the X at the top corner close it without that check.",
    "For all later arc files (assuming that no changes have been made to the spectrograph), the "
    "sequence is very rapid: 'Load Mask' once, then 'Apply Mask', 'Calc. Fit', 'Fit Differences', 'OK', "
    "'OK'.",
    "[menu] File > Print Setup selects the printer, the orientation (portrait or landscape) and the number "
    "of "
    "copies."
    "  Its button 'Print' does not print yet; it only accepts the settings."
    "  To print the page, use [menu] File > Print.",
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
