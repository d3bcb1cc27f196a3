// File choosers.
#include "dialogs/file_chooser.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QRadioButton>
#include <QStyle>
#include <algorithm>
#include <filesystem>

#include "files/failure.h"
#include "platform/accessible.h"
#include "platform/placement.h"
#include "platform/text.h"
#include "platform/twips.h"
#include "steps/clicks.h"
#include "steps/slot_names.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

// In twips: the size without the frame that it has at first, and the least one with it.
constexpr int usualWidth = 8400, usualHeight = 6900;
constexpr int leastWidth = 3540, leastHeight = 6525;

constexpr int usualPixelType = -32;

// A box that may be narrower than its longest entry.
QComboBox* NewBox(const char* name, const char* explanation) {
  auto* const box = new ChoiceBox(name);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(4);
  box->setToolTip(explanation);
  return box;
}

QLabel* LabelOf(QWidget* control, const char* name, const char* text) {
  QLabel* const label = NewLabel(name, text);
  label->setBuddy(control);
  return label;
}

// One line in smaller print. It keeps its place while it is empty, so that nothing moves when a text appears.
QLabel* NewNote(const char* name, QFont font) {
  font.setPixelSize(QFontInfo(font).pixelSize() * 9 / 10);
  QLabel* const note = NewLabel(name, "");
  note->setFont(font);
  note->setFixedHeight(QFontMetrics(font).height());
  return note;
}

bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

bool IsFile(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored) && !fs::is_directory(path, ignored);
}

// As the data folder is named after a step into `folder`; itself where there is no such folder.
std::string RealFolder(const std::string& folder) {
  std::error_code failed;
  const fs::path real = fs::canonical(folder, failed);
  return failed ? folder : real.string();
}

}  // namespace

FileChooser::FileChooser(Desk& desk, const ChooserKind& kind)
    : desk_(desk),
      kind_(kind),
      nameBox_(new EntryBox("Text1")),
      fileList_(new NameList("File1")),
      patternBox_(NewBox("Combo1", "Which files are listed")),
      folderLabel_(new ElidedLabel("Label4")),
      folderList_(new FolderList("Dir1", [this](int key) { return TakeFolderKey(key); })),
      driveBox_(NewBox("Drive1", "The home folder and the mounted disks")),
      options_(new QButtonGroup(this)),
      okButton_(NewButton("Command1", "OK", [this] { Accept(); })),
      cancelButton_(NewButton("Command2", "Cancel", [this] { close(); })) {
  setObjectName(kind.name);
  desk_.AddView(*this);
  Arrange();
  Connect();
  SetLeastOuterSize(*this, leastWidth, leastHeight);
  SetInnerSize(*this, usualWidth, usualHeight);
}

FileChooser::~FileChooser() { desk_.RemoveView(*this); }

void FileChooser::Arrange() {
  const int gap = PixelsOf(75);
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(gap, gap, gap, gap);
  grid->setSpacing(gap);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(3, 1);

  // The Tab key goes through the controls in the order in which they are added.
  grid->addWidget(LabelOf(nameBox_, "Label1", "File Name:"), 0, 0);
  grid->addWidget(nameBox_, 1, 0);
  grid->addWidget(fileList_, 3, 0);
  NameArea(fileList_, "Files");
  grid->addWidget(LabelOf(patternBox_, "Label2", "List Files of Type:"), 4, 0);
  grid->addWidget(patternBox_, 5, 0);

  grid->addWidget(LabelOf(folderList_, "Label3", "Directories:"), 0, 1);
  grid->addWidget(folderLabel_, 1, 1);
  grid->addWidget(folderList_, 3, 1);
  NameArea(folderList_, "Directories");
  SetMeaning(folderLabel_, "Directory shown");
  folderList_->setToolTip("A double-click or Return opens a folder, Backspace the one above");
  grid->addWidget(LabelOf(driveBox_, "Label5", "Drives:"), 4, 1);
  grid->addWidget(driveBox_, 5, 1);

  if (kind_.saves) {
    fileList_->TypeInto(nameBox_);
    replaceNote_ = NewNote("labelExists", font());
    SetMeaning(replaceNote_, "Note");
    grid->addWidget(replaceNote_, 2, 0, 1, 2);
  }
  if (!kind_.options.empty())
    grid->addLayout(NewOptions(), 6, 0, 1, 2);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(okButton_);
  buttons->addWidget(cancelButton_);
  okButton_->setDefault(true);
  // Return on it cancels; anywhere else it is OK.
  cancelButton_->setAutoDefault(true);
  grid->addLayout(buttons, 7, 0, 1, 2);
}

QLayout* FileChooser::NewOptions() {
  auto* const grid = new QGridLayout;
  grid->setColumnStretch(1, 1);
  const int rows = static_cast<int>(kind_.options.size() + 1) / 2;
  int count = 0;
  for (const ChooserOption& option : kind_.options) {
    auto* const button = new QRadioButton(option.caption);
    button->setObjectName(option.name);
    button->setToolTip(option.explanation);
    options_->addButton(button, option.value);
    grid->addWidget(button, count % rows, count / rows);
    ++count;
  }
  return grid;
}

void FileChooser::Connect() {
  connect(nameBox_, &QLineEdit::textChanged, this, [this] { TakeTypedName(); });
  connect(patternBox_, &QComboBox::currentIndexChanged, this, [this] {
    ShowFiles();
    // A name to load is offered where there is none; one to save would be a file to replace.
    if (name_.empty() && !kind_.saves && !files_.empty())
      SetName(files_.front());
  });
  connect(fileList_, &QListWidget::itemSelectionChanged, this, [this] {
    if (!fileList_->selectedItems().isEmpty())
      SetName(files_[fileList_->currentRow()]);
  });
  connect(fileList_, &QListWidget::itemDoubleClicked, this, [this] { Accept(); });
  connect(folderList_, &QListWidget::itemDoubleClicked, this,
          [this] { GoTo(places_[folderList_->currentRow()]); });
  // Only the observer's choice: the box also follows the folder.
  connect(driveBox_, &QComboBox::activated, this, [this](int drive) { GoTo(drives_[drive].folder); });
  connect(options_, &QButtonGroup::idToggled, this, [this](int value, bool isChosen) {
    if (isChosen)
      ChooseOption(value);
  });
}

void FileChooser::Open(const ChooserRequest& request) {
  request_ = request;
  setWindowTitle(Shown(request.title.empty() ? kind_.title : request.title));
  // A data folder that is gone is said and shown as empty; from the folders above it there is a way out.
  const fs::path name(request.name);
  folder_ = name.is_absolute() ? name.parent_path().string() : desk_.session().dataFolder;
  listing_ = {};
  desk_.Try(desk_.mainWindow(), [this] { listing_ = ListFolder(folder_); });
  drives_ = Drives();
  ShowDrives();
  ShowFolders();
  SelectPattern(request.pattern);
  SetName(!request.name.empty() ? LeafName(request.name) : files_.empty() ? "" : files_.front());
  SelectFirstOption();
  source_ = SourceOfData();

  if (!isVisible())
    Place(*this, desk_.session().*kind_.placement);
  setWindowState(windowState() & ~Qt::WindowMinimized);
  BringToFront(*this);
  nameBox_->setFocus(Qt::OtherFocusReason);
  nameBox_->selectAll();
}

void FileChooser::Refresh() {
  if (isVisible() && kind_.saves && SourceOfData() != source_)
    close();
}

std::string FileChooser::SourceOfData() const {
  const Session& session = desk_.session();
  return request_.what == "spectrum" ? session.crunchLoad : session.slot[SlotNamed(request_.what)].loadedFile;
}

void FileChooser::SelectPattern(int index) {
  {
    const QSignalBlocker quiet(patternBox_);
    patternBox_->clear();
    for (const std::string& pattern : kind_.patterns)
      patternBox_->addItem(Shown(pattern));
    patternBox_->setCurrentIndex(index == 0 ? 1 : 0);
  }
  patternBox_->setCurrentIndex(index);
}

void FileChooser::SelectFirstOption() {
  const bool isType = kind_.choice == ChooserKind::Choice::pixelType;
  const int first = isType ? usualPixelType : desk_.session().currentSlot;
  if (QAbstractButton* const button = options_->button(first)) {
    button->setChecked(true);
    ChooseOption(first);
  } else if (QAbstractButton* const last = options_->checkedButton()) {
    options_->setExclusive(false);
    last->setChecked(false);
    options_->setExclusive(true);
  }
}

void FileChooser::ChooseOption(int value) {
  Session& session = desk_.session();
  if (kind_.choice == ChooserKind::Choice::pixelType) {
    session.slot[SlotNamed(request_.what)].savePixelType = value;
    return;
  }
  // A name that was proposed for the one spectrum would be wrong for the other.
  const bool isProposed = name_ == SpectrumTextName(session, session.currentSlot);
  session.currentSlot = value;
  if (isProposed)
    SetName(SpectrumTextName(session, value));
}

void FileChooser::ShowDrives() {
  driveBox_->clear();
  for (const Drive& drive : drives_) {
    driveBox_->addItem(Shown(drive.name));
    driveBox_->setItemData(driveBox_->count() - 1, Shown(drive.name).toHtmlEscaped(), Qt::ToolTipRole);
  }
}

void FileChooser::GoTo(const std::string& folder) {
  desk_.Try(this, [&] {
    const std::string before = folder_, now = RealFolder(folder);
    listing_ = ListFolder(now);
    folder_ = now;
    ShowFolders();
    ShowFiles();
    if (now != before)
      SetName(files_.empty() ? "" : files_.front());
  });
  driveBox_->setCurrentIndex(DriveHolding(drives_, folder_));
}

bool FileChooser::TakeFolderKey(int key) {
  const bool isReturn = key == Qt::Key_Return;
  GoTo(isReturn ? places_[folderList_->currentRow()] : fs::path(folder_).parent_path().string());
  return true;
}

// Throws RunTimeError where the folder cannot be read any more; it is shown as empty then.
void FileChooser::ReadAgain() {
  const auto show = [this](FolderListing listing) {
    if (listing != listing_) {
      listing_ = std::move(listing);
      ShowFolders();
      ShowFiles();
    }
    ShowName();
  };
  try {
    show(ListFolder(folder_));
  } catch (const RunTimeError&) {
    show({});
    throw;
  }
}

void FileChooser::ShowFolders() {
  const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
  const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);

  folderList_->clear();
  places_ = FoldersDownTo(folder_);
  const int depth = static_cast<int>(places_.size());
  for (int i = 0; i < depth; ++i)
    folderList_->Add(open, Shown(i == 0 ? places_[i] : LeafName(places_[i])), i);
  for (const std::string& name : listing_.folders) {
    folderList_->Add(closed, Shown(name), depth);
    places_.push_back((fs::path(folder_) / name).string());
  }
  // In the middle, so that folders can be seen above and below.
  folderList_->setCurrentRow(depth - 1);
  folderList_->scrollToItem(folderList_->currentItem(), QListWidget::PositionAtCenter);
  folderLabel_->SetText(Shown(folder_));
  driveBox_->setCurrentIndex(DriveHolding(drives_, folder_));
}

void FileChooser::ShowFiles() {
  const std::string& pattern = kind_.patterns[patternBox_->currentIndex()];
  files_.clear();
  std::copy_if(listing_.files.begin(), listing_.files.end(), std::back_inserter(files_),
               [&](const std::string& name) { return IsOfType(name, pattern); });

  QStringList names;
  for (const std::string& name : files_)
    names.push_back(Shown(name));
  const QSignalBlocker quiet(fileList_);
  fileList_->clear();
  fileList_->addItems(names);
  ShowName();
}

void FileChooser::SetName(const std::string& name) {
  name_ = name;
  const QSignalBlocker quiet(nameBox_);
  nameBox_->setText(Shown(name));
  ShowName();
}

void FileChooser::TakeTypedName() {
  // A name that the screen cannot show truly can still be typed as it is listed.
  const QString text = nameBox_->text();
  const std::string typed = Typed(text);
  const auto listed = std::find_if(files_.begin(), files_.end(),
                                   [&](const std::string& name) { return Shown(name) == text; });
  const bool isListed = std::find(files_.begin(), files_.end(), typed) != files_.end();
  name_ = isListed || listed == files_.end() ? typed : *listed;
  ShowName();
}

// Selects the name in the list of files, and says whether it names one.
void FileChooser::ShowName() {
  const QSignalBlocker quiet(fileList_);
  const auto listed = std::find(files_.begin(), files_.end(), name_);
  if (listed == files_.end())
    fileList_->clearSelection();
  else
    fileList_->setCurrentRow(static_cast<int>(listed - files_.begin()));

  if (replaceNote_ != nullptr) {
    const bool isReplaced = !name_.empty() && IsFile(fs::path(folder_) / name_);
    replaceNote_->setText(isReplaced ? "This file exists; OK asks about it." : "");
  }
}

void FileChooser::Accept() {
  StorePlacement();
  if (!IsFolder(folder_))
    return desk_.Tell(this, RunTimeError(run_time_error::pathNotFound).text());

  Session& session = desk_.session();
  if (kind_.requiresName && name_.empty()) {
    if (folder_ != session.dataFolder)
      desk_.Do(this, steps::Folder{folder_});
    return desk_.Tell(this, "Please select a filename for save.");
  }
  // The slot that was current may be none of those that the buttons offer.
  const int option = options_->checkedId();
  if (!kind_.options.empty() && options_->checkedButton() == nullptr)
    return desk_.Tell(this, "Please select a spectrum for save.");

  const auto allowed =
      desk_.Allowed(this, StepsIn(session, folder_, kind_.StepOf(request_.what, name_, option)));
  if (!allowed)
    return;
  hide();
  if (request_.slot)
    session.currentSlot = *request_.slot;
  if (!desk_.DoAllowed(request_.over != nullptr ? request_.over : desk_.mainWindow(), *allowed) &&
      request_.over != nullptr)
    BringToFront(*request_.over);
}

void FileChooser::StorePlacement() {
  if (isVisible())
    Store(desk_.session().*kind_.placement, *this);
}

void FileChooser::showEvent(QShowEvent* event) {
  // What frame the desktop draws is known only now.
  SetLeastOuterSize(*this, leastWidth, leastHeight);
  folderList_->scrollToItem(folderList_->currentItem(), QListWidget::PositionAtCenter);
  QWidget::showEvent(event);
}

void FileChooser::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !isVisible() || !isActiveWindow())
    return;
  try {
    ReadAgain();
  } catch (const RunTimeError&) {
    // OK will say it. A box here would come again whenever it is closed.
  }
}

void FileChooser::closeEvent(QCloseEvent* event) {
  StorePlacement();
  QWidget::closeEvent(event);
}

void FileChooser::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Accept();
      break;
    case Qt::Key_Escape:
      close();
      break;
    case Qt::Key_F5:
      desk_.Try(this, [this] { ReadAgain(); });
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace halmek
