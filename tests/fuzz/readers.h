// One input for the readers.
#pragma once

#include <cstddef>
#include <cstdint>

// Hands the bytes after the first to the reader that the first byte chooses, and then goes on working with
// what it left in the session: every failure must be a Refusal or a RunTimeError.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
