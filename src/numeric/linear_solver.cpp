// Gaussian elimination with partial pivoting and unit-diagonal rows.
#include "numeric/linear_solver.h"

#include <cmath>
#include <utility>

namespace halmek {
namespace {

int PivotRow(const NormalMatrix& a, int k, int m) {
  int pivot = k;
  // Strictly larger only: of equal candidates the upper row stays.
  for (int i = k + 1; i <= m; ++i)
    if (std::fabs(a[i][k]) > std::fabs(a[pivot][k]))
      pivot = i;
  return pivot;
}

}  // namespace

bool SolveLinearSystem(NormalMatrix& a, int m) {
  for (int k = 1; k < m; ++k) {
    if (const int pivot = PivotRow(a, k, m); pivot != k)
      for (int j = k; j <= m + 1; ++j)
        std::swap(a[k][j], a[pivot][j]);

    const double q = a[k][k];
    if (q == 0)
      return false;
    for (int j = k; j <= m + 1; ++j)
      a[k][j] /= q;

    // Downward in j, so that the factor a[i][k] is changed last.
    for (int i = k + 1; i <= m; ++i)
      for (int j = m + 1; j >= k; --j)
        a[i][j] -= a[k][j] * a[i][k];
  }

  if (a[m][m] == 0)
    return false;
  a[m][m + 1] /= a[m][m];
  a[m][m] = 1;

  for (int i = m - 1; i >= 1; --i)
    for (int j = i + 1; j <= m; ++j)
      a[i][m + 1] -= a[i][j] * a[j][m + 1];

  for (int i = 1; i <= m; ++i)
    if (!std::isfinite(a[i][m + 1]))
      return false;
  return true;
}

}  // namespace halmek
