#pragma once

#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "algebra/StiffnessMatrix.h"

namespace kestol {

/// Symmetric matrix stored by columns, each from its first structurally non-zero row down to the
/// diagonal, and solved by K = U^T D U, U unit upper triangular ("Txolesky").
///
/// Entry (i, j), i <= j, is stored if and only if j - i < Heights()[j - 1]:
///
///     column j of height 3     Column(j):    [0]       [1]        [2]
///                                           (j, j)  (j - 1, j)  (j - 2, j)
///
/// Order of use: AddNodePair or AddDegreePair for every coupling -> Allocate -> AddBlock for every
/// element -> Prescribe for every fixed degree -> Factorise, once -> Substitute. Factorise
/// overwrites the matrix with D on the diagonal and U above it; SetZero makes it ready for another
/// assembly.
///
/// Storage is the profile and 16 bytes per degree; the factorisation adds a working copy of some
/// tens of columns.
class SkyLine : public StiffnessMatrix {
public:
  /// A matrix of n degrees without any coupling and without storage.
  explicit SkyLine(int n);

  int NumDegrees() const override { return n_; }
  void AddNodePair(int node1, int node2, int dofsPerNode) override;

  /// Couples two degrees: column max(p, q) reaches up to row min(p, q).
  void AddDegreePair(int p, int q);

  /// Every node's own block of dofsPerNode x dofsPerNode is stored, coupled or not.
  void Allocate(int dofsPerNode) override;

  /// The stored place of (i, j), in either order. Outside the profile: a place that reads 0.0;
  /// what is written there is lost. Ends the run when i or j is not within 1..n.
  double& Entry(int i, int j) override;

  void SetZero() override;

  /// Adds what of the block lies on or above the diagonal; the rest is ignored.
  void AddBlock(int firstRow, int firstCol, const Matriu& block) override;

  /// Returns 0, or the first degree whose pivot is not at least kZero in magnitude; the matrix is
  /// then half factorised. Refuses a matrix that is factorised already.
  int Factorise(std::ostream* info) override;

  /// Solves K f = f in place; returns 0. Refuses a matrix that is not factorised.
  int Substitute(ReaVecT& f, std::ostream* info) override;

  /// Eliminates x(p) = value: row and column p become those of the unit matrix, rhs(p) the value.
  /// The other entries of rhs stay as they are when |value| <= kZero.
  void Prescribe(int p, double value, ReaVecT& rhs) override;

  /// Row and column p become those of the unit matrix.
  void Prescribe(int p);

  double RowTimesVector(int i, const ReaVecT& x) const override;
  void Times(const ReaVecT& x, ReaVecT& y) const override;
  void ScaleAndShift(const ReaVecT& scale, double shift) override;

  /// Each row from its first to its last entry above kZero in magnitude.
  void Print(std::ostream& stream) const override;
  /// All n x n entries.
  void PrintFull(std::ostream& stream) const;
  void CopyFromYouToMat(Matriu& dense) const override;

  /// One square cell per entry, (1, 1) at the upper left corner, with the entry as its value.
  void WriteForVemo(std::ostream& stream) const override;
  void PrintInfo(std::ostream& stream) const override;

  /// The first row without an entry above kZero in magnitude; 0 when there is none. Looks at the
  /// matrix before it is factorised; no stage of a run calls it.
  int FirstZeroRow() const;

  /// Looks for a row that is a multiple of row p, column by column and within kZero, and ends the
  /// run with "error: Degree of freedom p and r are dependent\n" when there is one; two rows of
  /// zeros count as dependent. Looks at the matrix before it is factorised; no stage calls it.
  void ReportDependence(int p) const;

  /// The stored entries of each column, the diagonal included.
  const std::vector<int>& Heights() const { return heights_; }
  /// What is stored of column j (from 1), from the diagonal upwards; nothing before Allocate.
  std::span<const double> Column(int j) const {
    if (!storage_) return {};
    return {columns_[j - 1], static_cast<std::size_t>(heights_[j - 1])};
  }
  /// Whether D and U stand in place of the matrix.
  bool IsFactorised() const { return factorised_; }

private:
  struct Free {
    void operator()(double* storage) const { std::free(storage); }
  };

  bool IsStored(int i, int j) const { return j - i < heights_[j - 1]; }  // i <= j
  void CheckRange(int i, int j) const;                                   ///< i <= j
  template <class Visit>
  void VisitRow(int i, Visit visit) const;
  void FillRow(int i, std::vector<double>& row) const;
  long long NumStored() const;
  void FindLastColumns();

  int n_;
  std::vector<int> heights_;
  std::vector<double*> columns_;             ///< into the storage; null until Allocate
  bool factorised_ = false;                  ///< the storage holds D and U
  std::unique_ptr<double[], Free> storage_;  ///< column after column
  std::vector<int> lastColumn_;              ///< of each row: the last column that may reach it
  double outside_ = 0.0;                     ///< what Entry hands out outside the profile
};

}  // namespace kestol
