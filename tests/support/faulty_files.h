// File operations that fail, or end the process.
#pragma once

#include "files/file_operations.h"

namespace halmek::test {

enum class Lasting { once, always, everything };  // `always`: that operation; `everything`: all from then on

// Which of the operations made goes wrong, counted from 1, and how.
struct Fault {
  int at = 0;  // 0 = none
  int error = 0;
  bool isShortWrite = false;  // half the bytes are written; `error` has no meaning
  Lasting lasting = Lasting::once;
  bool kills = false;  // ends the process after that operation
};

// The system's operations but for a fault. It must outlive the table that it hands out.
class FaultyFiles {
 public:
  explicit FaultyFiles(const Fault& fault) : fault_(fault) {}
  FaultyFiles(const FaultyFiles&) = delete;
  FaultyFiles& operator=(const FaultyFiles&) = delete;

  FileOperations Operations();

  // As of a file system that knows no files without a name.
  FileOperations OperationsWithHiddenNames();

  int calls() const { return calls_; }
  bool occurred() const { return calls_ >= fault_.at; }

 private:
  template <typename Result, typename... Args>
  void Watch(std::function<Result(Args...)>& operation, const char* name);
  bool IsAtFault(const char* name);

  Fault fault_;
  int calls_ = 0;
  const char* faulty_ = nullptr;  // the operation that failed first
};

}  // namespace halmek::test
