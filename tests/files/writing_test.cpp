// Whole-file writing, under failures too, and what a process needs so that its files come to no harm.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <set>
#include <tuple>
#include <utility>

#include "files/atomic_write.h"
#include "files/failure.h"
#include "files/process.h"
#include "support/faulty_files.h"
#include "support/test_session.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr const char* diskFull = "Error: 61  Error: Disk full.";

std::string WriteRefusal(const std::string& path, const std::string& bytes,
                         const FileOperations& files = {}) {
  return RefusalOf([&] { AtomicWrite(path, bytes, files); });
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

// A folder with a file of each kind that a write may find, or none, under the name "file".
class Place {
 public:
  enum Kind { nothing, file, link, kinds };

  explicit Place(Kind kind) : kind_(kind) {
    const std::string data = kind == link ? folder_.File("data") : path();
    if (kind == link)
      fs::create_symlink("data", path());
    if (kind == nothing)
      return;
    WriteFile(data, "old");
    fs::permissions(data, fs::perms(0640));
  }

  std::string path() const { return folder_.File("file"); }

  // What differs from a folder in which the file holds `content`, and nothing else has changed; none is
  // empty.
  std::string DifferenceFrom(const std::string& content) const {
    Names names;
    if (kind_ == link)
      names.emplace_back("data");
    if (!content.empty())
      names.emplace_back("file");
    if (FilesIn(folder_.path()) != names)
      return "files: " + testing::PrintToString(FilesIn(folder_.path()));
    if (content.empty())
      return {};
    if (ReadFile(path()) != content)
      return "holds " + ReadFile(path());
    if (fs::is_symlink(path()) != (kind_ == link))
      return "the link is gone";
    return kind_ == nothing || fs::status(path()).permissions() == fs::perms(0640) ? "" : "other permissions";
  }

  std::string old() const { return kind_ == nothing ? "" : "old"; }

 private:
  TemporaryFolder folder_;
  Kind kind_;
};

FileOperations Table(FaultyFiles& files, bool hasHiddenNames) {
  return hasHiddenNames ? files.OperationsWithHiddenNames() : files.Operations();
}

// The next write on the same file system, when it works again, removes what was left.
void ExpectNothingLeftByTheNextWrite(const Place& place, bool hasHiddenNames) {
  FaultyFiles none({});
  EXPECT_EQ(WriteRefusal(place.path(), "later", Table(none, hasHiddenNames)), "");
  EXPECT_EQ(place.DifferenceFrom("later"), "");
}

// Whether a write must be refused where that operation fails. A signal once is no failure; where a nameless
// file cannot be opened or named, a hidden name is tried.
bool MustRefuse(const FaultyFiles& files, const Fault& fault, bool hasHiddenNames) {
  static const std::set<std::string_view> needed = {"readlink", "stat",  "access", "fchmod",     "fstat",
                                                    "write",    "fsync", "rename", "flushFolder"};
  const std::string_view operation = files.faulty();
  if (operation.empty() || fault.isShortWrite)
    return false;
  // The last one closes what has its place already.
  if (operation == "close")
    return hasHiddenNames && files.calls() > fault.at &&
           (fault.error != EINTR || fault.lasting == Lasting::everything);
  if (fault.error == EINTR && fault.lasting == Lasting::once)
    return false;
  if (operation == "open" || operation == "dup")
    return hasHiddenNames || fault.lasting != Lasting::once;
  return needed.contains(operation) || fault.lasting == Lasting::everything;
}

// Each operation of a write fails in turn, in every way.
void ExpectWholeFiles(Place::Kind kind, bool hasHiddenNames, Fault fault, const std::string& message) {
  for (bool occurred = true; occurred;) {
    ++fault.at;
    const Place place(kind);
    FaultyFiles files(fault);
    const std::string refusal = WriteRefusal(place.path(), "new bytes", Table(files, hasHiddenNames));
    occurred = files.occurred();
    SCOPED_TRACE(testing::Message() << files.faulty() << ", kind " << kind << ", hidden " << hasHiddenNames
                                    << ", error " << fault.error << ", lasting " << int(fault.lasting));
    const bool mustRefuse = MustRefuse(files, fault, hasHiddenNames);
    EXPECT_EQ(refusal, mustRefuse ? message : "");
    // Only that the new file outlives a power cut is then in doubt.
    const bool isInPlace = files.faulty() == "flushFolder";
    const std::string whole = mustRefuse && !isInPlace ? place.old() : "new bytes";
    // On a disk that does nothing any more, the new file may stay beside the old one, until the next write.
    if (fault.lasting == Lasting::everything && place.DifferenceFrom(whole).starts_with("files: ")) {
      EXPECT_TRUE(ReadFile(place.path()) == whole && fs::is_symlink(place.path()) == (kind == Place::link));
      ExpectNothingLeftByTheNextWrite(place, hasHiddenNames);
    } else {
      EXPECT_EQ(place.DifferenceFrom(whole), "");
    }
  }
}

TEST(AtomicWrite, AnyFailureOfAnyOperationLeavesTheOldFileOrTheNewOne) {
  const std::pair<int, std::string> errors[] = {{ENOSPC, diskFull},
                                                {EACCES, "Error: 70  Error: Permission denied."},
                                                {EINTR, "Error: 75  Error: Path/file access error."}};
  for (const Place::Kind kind : {Place::nothing, Place::file, Place::link})
    for (const bool hasHiddenNames : {false, true})
      for (const Lasting lasting : {Lasting::once, Lasting::always, Lasting::everything}) {
        for (const auto& [error, message] : errors)
          ExpectWholeFiles(kind, hasHiddenNames, {.error = error, .lasting = lasting}, message);
        ExpectWholeFiles(kind, hasHiddenNames, {.isShortWrite = true, .lasting = lasting}, "");
      }
}

TEST(AtomicWrite, KnowsWhatFileSystemsSayOfWhatTheyCannotDo) {
  const Place place(Place::file);
  FileOperations files;
  files.fsync = [](int) {
    errno = EINVAL;
    return -1;
  };
  EXPECT_EQ(WriteRefusal(place.path(), "unflushed", files), "");
  files.write = [](int, const void*, size_t) { return ssize_t{0}; };
  EXPECT_EQ(WriteRefusal(place.path(), "nothing", files), "Error: 57  Error: Device I/O error.");
  // A file that is read-only is not replaced, though its folder would allow it.
  files.access = [](const char*, int mode) {
    errno = EACCES;
    return mode == W_OK ? -1 : 0;
  };
  EXPECT_EQ(WriteRefusal(place.path(), "forbidden", files), "Error: 70  Error: Permission denied.");
  EXPECT_EQ(place.DifferenceFrom("unflushed"), "");
}

constexpr int killed = 0, finished = 42, failed = 43;

[[noreturn]] void WriteUntilKilled(const Place& place, bool hasHiddenNames, int at) {
  FaultyFiles files({.at = at, .kills = true});
  const std::string refusal = WriteRefusal(place.path(), "new bytes", Table(files, hasHiddenNames));
  _exit(refusal.empty() ? finished : failed);
}

TEST(AtomicWrite, KilledAfterAnyOperationLeavesTheOldFileOrTheNewOne) {
  for (const Place::Kind kind : {Place::nothing, Place::file, Place::link})
    for (const bool hasHiddenNames : {false, true})
      for (int at = 1, ending = killed; ending == killed; ++at) {
        SCOPED_TRACE(testing::Message() << "kind " << kind << " hidden " << hasHiddenNames << " at " << at);
        const Place place(kind);
        const auto ends = [&](int status) {
          ending = WIFEXITED(status) ? WEXITSTATUS(status) : failed;
          return ending == killed || (ending == finished && at > 8);
        };
        ASSERT_EXIT(WriteUntilKilled(place, hasHiddenNames, at), ends, "");
        const std::string found = fs::exists(place.path()) ? ReadFile(place.path()) : "";
        EXPECT_TRUE(found == "new bytes" || (found == place.old() && ending == killed)) << found;
        ExpectNothingLeftByTheNextWrite(place, hasHiddenNames);
      }
}

// Another program saves the same file after every operation of a write.
TEST(AtomicWrite, IsNotTakenForALeftoverByAnother) {
  for (const bool hasHiddenNames : {false, true})
    for (int at = 1; at < 20; ++at) {
      const Place place(Place::file);
      int calls = 0;
      FaultyFiles none({});
      FileOperations files = Table(none, hasHiddenNames);
      const auto after = [&]<typename Result, typename... Args>(std::function<Result(Args...)>& operation) {
        operation = [&, real = operation](Args... args) {
          const Result result = real(args...);
          const int error = errno;
          if (++calls == at)
            AtomicWrite(place.path(), "of another");
          errno = error;
          return result;
        };
      };
      std::apply([&](auto&... each) { (after(each), ...); },
                 std::tie(files.open, files.flock, files.fstat, files.fsync, files.dup, files.close,
                          files.linkOpenFile));
      EXPECT_EQ(WriteRefusal(place.path(), "mine", files), "") << at;
      EXPECT_TRUE(place.DifferenceFrom("mine").empty() || place.DifferenceFrom("of another").empty()) << at;
    }
}

TEST(AtomicWrite, RemovesOnlyWhatKilledWritesOfTheSameFileLeft) {
  const TemporaryFolder folder;
  const std::string left = ".file.halmek-1-1.tmp", stillWritten = ".file.halmek-1-2.tmp";
  const Names kept = {
      ".file.2024-05.tmp",  ".file.halmek-1-1-1.tmp", ".file.halmek-1-1.tmp.old", stillWritten,
      ".file.halmek-1.tmp", ".file.halmek-a-1.tmp",   ".other.halmek-1-1.tmp",    "file",
      "file.halmek-1-1.tmp"};
  for (const std::string& name : kept)
    WriteFile(folder.File(name), "mine");
  WriteFile(folder.File(left), "left");
  const int writer = open(folder.File(stillWritten).c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(flock(writer, LOCK_EX), 0);
  AtomicWrite(folder.File("file"), "new");
  close(writer);
  EXPECT_EQ(FilesIn(folder.path()), kept);
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

TEST(AtomicWrite, KeepsModeOwnerAndGroupOfAnExistingFile) {
  const TemporaryFolder folder;
  const std::string file = folder.File("file");
  WriteFile(file, "old");
  fs::permissions(file, fs::perms(0777));
  AtomicWrite(file, "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0777));
  if (geteuid() == 0) {
    constexpr id_t nobody = 65534;
    ASSERT_EQ(chown(file.c_str(), nobody, nobody), 0);
    FileOperations ofRoot, ofAMember;
    ofAMember.fchown = [](int descriptor, uid_t owner, gid_t group) {
      return owner == static_cast<uid_t>(-1) ? ::fchown(descriptor, owner, group) : -1;
    };
    for (const auto& [files, owner] : {std::pair(ofRoot, nobody), {ofAMember, id_t{0}}}) {
      AtomicWrite(file, "new", files);
      struct stat status {};
      stat(file.c_str(), &status);
      EXPECT_TRUE(status.st_uid == owner && status.st_gid == nobody && (status.st_mode & 0777) == 0777);
    }
  }
  const mode_t mask = umask(027);
  AtomicWrite(folder.File("new"), "new");
  umask(mask);
  EXPECT_EQ(fs::status(folder.File("new")).permissions(), fs::perms(0640));
}

TEST(AtomicWrite, WritesToWhereALinkPoints) {
  const TemporaryFolder folder;
  fs::create_directory(folder.File("data"));
  fs::create_symlink("data/created", folder.File("link"));
  fs::create_symlink("link", folder.File("second"));
  AtomicWrite(folder.File("second"), "new");
  EXPECT_EQ(ReadFile(folder.File("data/created")), "new");
  EXPECT_EQ(FilesIn(folder.File("data")), Names{"created"});
  EXPECT_TRUE(fs::is_symlink(folder.File("link")) && fs::is_symlink(folder.File("second")));
}

TEST(AtomicWrite, WritesToDevicesWithoutReplacingThem) {
  EXPECT_EQ(WriteRefusal("/dev/full", "x"), diskFull);
  EXPECT_EQ(WriteRefusal("/dev/null", "x"), "");
  EXPECT_TRUE(fs::is_character_file("/dev/full") && fs::is_character_file("/dev/null"));
}

// The descriptor that the next file gets in a process without standard streams, as its exit status.
[[noreturn]] void PrepareAndExitWithNextDescriptor() {
  for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    close(descriptor);
  PrepareProcess();
  _exit(open("/dev/null", O_WRONLY));
}

TEST(PrepareProcess, KeepsFilesOffTheClosedStandardStreams) {
  EXPECT_EXIT(
      PrepareAndExitWithNextDescriptor(), [](int status) { return WEXITSTATUS(status) > STDERR_FILENO; }, "");
}

TEST(PrepareProcess, SurvivesASizeLimitAndAReaderThatWentAway) {
  const auto raise = [] {
    PrepareProcess();
    std::raise(SIGXFSZ);
    std::raise(SIGPIPE);
    _exit(0);
  };
  EXPECT_EXIT(raise(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace halmek::test
