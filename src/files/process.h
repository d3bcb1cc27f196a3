// What a program needs from its process before it reads and writes files.
#pragma once

namespace halmek {

// Occupies standard input, output and error where they are closed, so that no file is opened in their place
// and written by a message; and makes a size limit and a reader that went away errors of the write, which are
// reported, where they would end the program in the middle of a save. Large tables come from fresh pages from
// then on. Call it first in main.
void PrepareProcess();

}  // namespace halmek
