// Writing of whole files so that no reader ever finds half of one.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace halmek {

// Puts `bytes` into the file `path`. They are written to a temporary file beside it, flushed to the disk and
// renamed over it: a full disk, a crash or a kill at any moment leaves either the old file or the new one,
// and a failure leaves no temporary file. A link is followed; the mode of an existing file is kept; a device
// is written directly. Throws RunTimeError 61 (disk full), 70 (permission denied), 76 (no such folder) or
// another.
void AtomicWrite(const std::string& path, std::string_view bytes);

}  // namespace halmek
