// File operations that fail, or end the process.
#pragma once

#include <string_view>

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

  // The name of the operation that failed first; empty where none has.
  std::string_view faulty() const { return faulty_; }

 private:
  template <typename Result, typename... Args>
  void Watch(std::function<Result(Args...)>& operation, std::string_view name);
  bool IsAtFault(std::string_view name);

  Fault fault_;
  int calls_ = 0;
  std::string_view faulty_;
};

}  // namespace halmek::test
