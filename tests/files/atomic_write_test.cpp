// Tests of whole-file writing, under failures too.
#include "files/atomic_write.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "files/failure.h"
#include "support/test_session.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;
using test::FilesIn;
using test::ReadFile;
using test::RefusalOf;
using test::TemporaryFolder;
using test::WriteFile;
using Names = std::vector<std::string>;

constexpr const char* diskFull = "Error: 61  Error: Disk full.";

std::string WriteRefusal(const std::string& path, const std::string& bytes) {
  return RefusalOf([&] { AtomicWrite(path, bytes); });
}

// While it lives, no file of this process grows beyond `bytes`, as on a disk that is full then.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, oldHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_{};
  void (*oldHandler_)(int);
};

TEST(AtomicWrite, PutsExactlyTheBytesIntoTheFile) {
  const TemporaryFolder folder;
  const std::string longestName(255, 'n');
  for (const std::string& bytes : {std::string(100000, 'x'), std::string("\0\r\n\xFF", 4), std::string()}) {
    AtomicWrite(folder.File(longestName), bytes);
    EXPECT_TRUE(ReadFile(folder.File(longestName)) == bytes) << bytes.size();
  }
  EXPECT_EQ(FilesIn(folder.path()), Names{longestName});
}

TEST(AtomicWrite, LeavesTheOldFileWhenTheDiskIsFull) {
  const std::string bytes(10000, 'n');
  for (const rlim_t room : {0, 1, 4096, 9999}) {
    const TemporaryFolder folder;
    WriteFile(folder.File("old"), "old content");
    std::string refusals[2];
    {
      const FileSizeLimit limit(room);
      refusals[0] = WriteRefusal(folder.File("old"), bytes);
      refusals[1] = WriteRefusal(folder.File("new"), bytes);
    }
    EXPECT_TRUE(refusals[0] == diskFull && refusals[1] == diskFull) << room;
    EXPECT_EQ(ReadFile(folder.File("old")), "old content") << room;
    EXPECT_EQ(FilesIn(folder.path()), Names{"old"}) << room;
  }
}

TEST(AtomicWrite, RefusesWhatIsNoPlaceForAFile) {
  const TemporaryFolder folder;
  fs::create_directory(folder.File("folder"));
  WriteFile(folder.File("file"), "old");
  mkfifo(folder.File("pipe").c_str(), 0600);
  const Names before = FilesIn(folder.path());

  const struct {
    std::string name;
    const char* refusal;
  } cases[] = {{"folder", "Error: 75  Error: Path/file access error."},
               {"pipe", "Error: 75  Error: Path/file access error."},
               {"absent/file", "Error: 76  Error: Path not found."},
               {"file/file", "Error: 76  Error: Path not found."},
               {"folder/", "Error: 64  Error: Bad file name."},
               {std::string(256, 'n'), "Error: 64  Error: Bad file name."}};
  for (const auto& c : cases)
    EXPECT_EQ(WriteRefusal(folder.File(c.name), "x"), c.refusal) << c.name;
  EXPECT_EQ(WriteRefusal("", "x"), "Error: 64  Error: Bad file name.");

  EXPECT_EQ(FilesIn(folder.path()), before);
  EXPECT_TRUE(fs::is_empty(folder.File("folder")));
  EXPECT_EQ(ReadFile(folder.File("file")), "old");
}

// Runs in a process of its own without the rights of root, to which every folder is open.
[[noreturn]] void WriteAsAnybodyAndExit(const std::string& path) {
  if (geteuid() == 0 && setuid(65534) != 0)
    _exit(99);
  _exit(WriteRefusal(path, "new") == "Error: 70  Error: Permission denied." ? 70 : 1);
}

TEST(AtomicWrite, RespectsReadOnlyFoldersAndFiles) {
  const TemporaryFolder folder;
  WriteFile(folder.File("old"), "old");
  fs::permissions(folder.path(), fs::perms(0555));
  EXPECT_EXIT(WriteAsAnybodyAndExit(folder.File("new")), testing::ExitedWithCode(70), "");
  fs::permissions(folder.path(), fs::perms(0777));
  fs::permissions(folder.File("old"), fs::perms(0444));
  EXPECT_EXIT(WriteAsAnybodyAndExit(folder.File("old")), testing::ExitedWithCode(70), "");
  EXPECT_EQ(ReadFile(folder.File("old")), "old");
  EXPECT_EQ(FilesIn(folder.path()), Names{"old"});
}

TEST(AtomicWrite, KeepsTheModeOfAnExistingFile) {
  const TemporaryFolder folder;
  for (const auto mode : {fs::perms(0600), fs::perms(0640), fs::perms(0777)}) {
    WriteFile(folder.File("file"), "old");
    fs::permissions(folder.File("file"), mode);
    AtomicWrite(folder.File("file"), "new");
    EXPECT_EQ(fs::status(folder.File("file")).permissions(), mode);
  }
  const mode_t mask = umask(027);
  AtomicWrite(folder.File("new"), "new");
  umask(mask);
  EXPECT_EQ(fs::status(folder.File("new")).permissions(), fs::perms(0640));
}

TEST(AtomicWrite, WritesToWhereALinkPoints) {
  const TemporaryFolder folder;
  fs::create_directory(folder.File("data"));
  WriteFile(folder.File("data/old"), "old");
  fs::create_symlink("data/old", folder.File("link"));
  fs::create_symlink("link", folder.File("second"));
  AtomicWrite(folder.File("second"), "new");
  EXPECT_EQ(ReadFile(folder.File("data/old")), "new");
  EXPECT_EQ(FilesIn(folder.File("data")), Names{"old"});

  // The file need not exist yet.
  fs::create_symlink("data/created", folder.File("dangling"));
  AtomicWrite(folder.File("dangling"), "new");
  EXPECT_EQ(ReadFile(folder.File("data/created")), "new");

  for (const char* link : {"link", "second", "dangling"})
    EXPECT_TRUE(fs::is_symlink(folder.File(link))) << link;
}

TEST(AtomicWrite, WritesToDevicesWithoutReplacingThem) {
  const auto isDevice = [](const char* path) { return fs::is_character_file(path); };
  ASSERT_TRUE(isDevice("/dev/full") && isDevice("/dev/null"));
  EXPECT_EQ(WriteRefusal("/dev/full", "x"), diskFull);
  EXPECT_EQ(WriteRefusal("/dev/null", "x"), "");
  EXPECT_TRUE(isDevice("/dev/full") && isDevice("/dev/null"));
}

}  // namespace
}  // namespace halmek
