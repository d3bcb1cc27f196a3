// Changes of files that keep enough of their form to get past a reader's first check.
#pragma once

#include <random>
#include <string>

namespace halmek::test {

using Random = std::minstd_rand;

// One change of a FITS file in terms of its cards of 80 bytes and its records of 2880.
void MutateCards(std::string& file, Random& random);

// One change of any file: another byte, a character that means something, a piece cut out or doubled.
void MutateBytes(std::string& file, Random& random);

}  // namespace halmek::test
