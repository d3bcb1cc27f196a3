// Preparation of the process.
#include "files/process.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <csignal>

namespace halmek {

void PrepareProcess() {
  int descriptor = open("/dev/null", O_RDWR);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO)
    descriptor = open("/dev/null", O_RDWR);
  if (descriptor >= 0)
    close(descriptor);
  // By default the system's library keeps large tables that were freed, and clears all of one where it hands
  // it out again. A run of many recipes would clear 12 MB for each, of which most frames touch a part.
  mallopt(M_MMAP_THRESHOLD, 1 << 20);
  // And it gives back what a load or save has used for the bytes of a file, only to ask for it at the next
  // one.
  mallopt(M_TRIM_THRESHOLD, 16 << 20);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace halmek
