// Writing of whole files so that no reader ever finds half of one.
#pragma once

#include <string>
#include <string_view>

#include "files/file_operations.h"

namespace halmek {

// Puts `bytes` into the file `path`. They are written to a new file, flushed to the disk, and only then given
// its name: a full disk, a crash or a kill at any moment leaves either the old file or the new one, and a
// failure leaves nothing else. A link is followed; the mode of an existing file is kept; a device is written
// directly.
//
// The new file has no name while it is written, where the file system knows such files, and otherwise the
// hidden name ".NAME.PID-N.tmp" beside its target. What a killed program left under such a name is removed by
// the next write of the same file.
//
// Throws RunTimeError 61 (disk full), 70 (permission denied), 76 (no such folder) or another.
void AtomicWrite(const std::string& path, std::string_view bytes, const FileOperations& system = {});

}  // namespace halmek
