// Writing of whole files so that no reader ever finds half of one.
#pragma once

#include <string>
#include <string_view>

#include "files/file_operations.h"

namespace halmek {

// Puts `bytes` into the file `path`. They are written to a new file, flushed to the disk, and only then given
// its name: a full disk, a crash or a kill at any moment leaves either the old file or the new one. A link is
// followed; the mode of an existing file is kept, and its owner and group where the system lets us give it
// away; another name of the same file (a hard link) keeps the old content; a device is written directly. The
// folder is flushed, too, so that a file that was written outlives a power cut.
//
// The new file has no name while it is written, where the file system knows such files, and otherwise the
// hidden name ".NAME.halmek-PID-N.tmp" beside its target. It is removed after a failure; where a killed
// program, or a disk that does nothing any more, left it, the next write of the same file removes it.
//
// Throws RunTimeError 61 (disk full), 70 (permission denied), 76 (no such folder) or another.
void AtomicWrite(const std::string& path, std::string_view bytes, const FileOperations& system = {});

}  // namespace halmek
