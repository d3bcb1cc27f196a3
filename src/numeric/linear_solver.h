// Systems of a few linear equations.
#pragma once

#include <array>

namespace halmek {

// Rows 0..11 and columns 0..12, of which rows 1..m and columns 1..m + 1 are used for m unknowns: cell (r, c)
// is the coefficient of unknown c in equation r, column m + 1 the right-hand side.
using NormalMatrix = std::array<std::array<double, 13>, 12>;

// Solves the m equations (1 <= m <= 11) by Gaussian elimination with partial pivoting. On success the
// solution stands in column m + 1, unknown r in row r, and the other cells are overwritten. Returns false
// where a pivot is zero or the solution is not finite; the matrix then holds nothing of use.
[[nodiscard]] bool SolveLinearSystem(NormalMatrix& matrix, int m);

}  // namespace halmek
