// The window in which files to load and to save are named.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/chooser_kinds.h"
#include "dialogs/chooser_lists.h"
#include "files/folder_listing.h"
#include "platform/controls.h"
#include "platform/desk.h"
#include "platform/drives.h"

class QButtonGroup;
class QComboBox;

namespace halmek {

// What a caller opens a chooser for.
struct ChooserRequest {
  std::string what;   // the recipe's word for what is loaded or saved: frame, dao, arc1, arc2, object,
                      // spectrum, table, mask
  std::string title;  // empty: the kind's own
  int pattern = 0;    // index selected at last
  std::string name;   // proposed in the name box; empty: the first file of the list. A full name is proposed
                      // in its folder, others in the data folder.
  std::optional<int> slot = {};  // becomes current with OK, whichever was made current meanwhile
  QWidget* over = nullptr;  // whose window it is for, and stays in front; the main window where it is none
};

// Modeless, with a list of drives, of folders, and of the files of one type. OK performs the kind's step in
// the folder shown. File names are bytes and stay so, whatever the screen makes of them.
class FileChooser : public QWidget, public View {
 public:
  FileChooser(Desk& desk, const ChooserKind& kind);
  ~FileChooser() override;

  // Shows the window for a new request, in the data folder; one that is open already comes to the front.
  void Open(const ChooserRequest& request);

  // Closes the window where it would save other data than those it was opened for.
  void Refresh() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Arrange();
  QLayout* NewOptions();
  void Connect();

  void SelectPattern(int index);
  void SelectFirstOption();
  void ChooseOption(int value);
  void ShowDrives();

  void GoTo(const std::string& folder);
  bool TakeFolderKey(int key);
  void ReadAgain();
  void ShowFolders();
  void ShowFiles();

  void SetName(const std::string& name);
  void TakeTypedName();
  void ShowName();

  std::string SourceOfData() const;
  void Accept();
  void StorePlacement();

  Desk& desk_;
  const ChooserKind& kind_;
  ChooserRequest request_;

  std::string folder_;  // absolute
  FolderListing listing_;
  std::vector<std::string> places_;  // where the rows of Dir1 lead
  std::vector<std::string> files_;   // the rows of File1
  std::vector<Drive> drives_;
  // What the name box stands for: the bytes of the file chosen, or what was typed. Where it is one of the
  // files listed, that one is selected, and no other.
  std::string name_;
  std::string source_;  // the file that the data to be saved came from

  EntryBox* nameBox_;
  NameList* fileList_;
  QComboBox* patternBox_;
  ElidedLabel* folderLabel_;
  FolderList* folderList_;
  QComboBox* driveBox_;
  QLabel* replaceNote_ = nullptr;  // only where files are saved
  QButtonGroup* options_;
  QPushButton *okButton_, *cancelButton_;
};

}  // namespace halmek
