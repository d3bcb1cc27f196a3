// Tests of whole-file writing, under failures too.
#include "files/atomic_write.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "files/failure.h"
#include "files/file_size_limit.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr const char* diskFull = "Error: 61  Error: Disk full.";

std::string WriteRefusal(const std::string& path, const std::string& bytes) {
  return RefusalOf([&] { AtomicWrite(path, bytes); });
}

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
  const TemporaryFolder folder;
  WriteFile(folder.File("old"), "old content");
  for (const rlim_t room : {0, 1, 4096, 9999}) {
    for (const char* name : {"old", "new"}) {
      std::string refusal;
      {
        const FileSizeLimit limit(room);
        refusal = WriteRefusal(folder.File(name), std::string(10000, 'n'));
      }
      EXPECT_EQ(refusal, diskFull) << room;
      EXPECT_EQ(FilesIn(folder.path()), Names{"old"}) << room;
    }
    EXPECT_EQ(ReadFile(folder.File("old")), "old content") << room;
  }
}

TEST(AtomicWrite, RefusesWhatIsNoPlaceForAFile) {
  const TemporaryFolder folder;
  fs::create_directory(folder.File("folder"));
  WriteFile(folder.File("file"), "old");
  mkfifo(folder.File("pipe").c_str(), 0600);
  const Names before = FilesIn(folder.path());

  const std::string noAccess = "Error: 75  Error: Path/file access error.";
  const std::string noPath = "Error: 76  Error: Path not found.";
  const std::string badName = "Error: 64  Error: Bad file name.", longName(256, 'n');
  const std::pair<std::string, std::string> cases[] = {{"folder", noAccess},    {"pipe", noAccess},
                                                       {"absent/file", noPath}, {"file/file", noPath},
                                                       {"folder/", badName},    {longName, badName}};
  for (const auto& [name, refusal] : cases)
    EXPECT_EQ(WriteRefusal(folder.File(name), "x"), refusal) << name;
  EXPECT_EQ(WriteRefusal("", "x"), badName);

  EXPECT_EQ(FilesIn(folder.path()), before);
  EXPECT_TRUE(fs::is_empty(folder.File("folder")) && ReadFile(folder.File("file")) == "old");
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
  for (const auto mode : {fs::perms(0600), fs::perms(0777)}) {
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
  fs::create_symlink("data/created", folder.File("dangling"));
  for (const auto& [link, target] : {std::pair{"second", "data/old"}, {"dangling", "data/created"}}) {
    AtomicWrite(folder.File(link), "new");
    EXPECT_EQ(ReadFile(folder.File(target)), "new");
  }
  EXPECT_EQ(FilesIn(folder.File("data")), (Names{"created", "old"}));
  for (const char* link : {"link", "second", "dangling"})
    EXPECT_TRUE(fs::is_symlink(folder.File(link))) << link;
}

TEST(AtomicWrite, WritesToDevicesWithoutReplacingThem) {
  EXPECT_EQ(WriteRefusal("/dev/full", "x"), diskFull);
  EXPECT_EQ(WriteRefusal("/dev/null", "x"), "");
  EXPECT_TRUE(fs::is_character_file("/dev/full") && fs::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace halmek::test
