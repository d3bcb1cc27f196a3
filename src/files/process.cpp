// Preparation of the process.
#include "files/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace halmek {

void PrepareProcess() {
  int descriptor = open("/dev/null", O_RDWR);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO)
    descriptor = open("/dev/null", O_RDWR);
  if (descriptor >= 0)
    close(descriptor);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace halmek
