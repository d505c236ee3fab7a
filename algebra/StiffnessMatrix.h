#pragma once

#include <ostream>
#include <vector>

#include "algebra/ReaVecT.h"

namespace kestol {

class Matriu;

constexpr double kMegabyte = 1048576;  ///< bytes, as the storage reports count them

/// Takes the node blocks of element stiffnesses.
class BlockSink {
public:
  virtual ~BlockSink() = default;

  /// Adds a dense block whose first entry falls on (firstRow, firstCol). Blocks of node pairs are
  /// handed over once, with firstRow <= firstCol; the receiver takes care of the mirrored half.
  virtual void AddBlock(int firstRow, int firstCol, const Matriu& block) = 0;
};

/// The interface of the global equation solvers, for K x = f with K symmetric.
///
/// Degrees of freedom, rows and columns are counted from 1; node numbers are internal indices,
/// counted from 1; the equation of degree d of node i is (i - 1) * dofsPerNode + d.
///
/// Order of use: AddNodePair for every pair of nodes of every element -> Allocate -> AddBlock for
/// every element -> Prescribe for every fixed degree -> Solve, once; or Factorise, once, and then
/// Substitute for every right-hand side. SetZero begins a second assembly on the same structure.
class StiffnessMatrix : public BlockSink {
public:
  /// Number of degrees of freedom, n.
  virtual int NumDegrees() const = 0;

  /// Records that all degrees of two nodes are coupled.
  virtual void AddNodePair(int node1, int node2, int dofsPerNode) = 0;

  /// Builds the storage once all couplings are recorded; every entry 0.0.
  virtual void Allocate(int dofsPerNode) = 0;

  /// The stored place of (i, j).
  virtual double& Entry(int i, int j) = 0;

  /// Clears all stored entries; the structure stays.
  virtual void SetZero() = 0;

  /// Does what all right-hand sides have in common. Returns 0; or a positive degree whose pivot
  /// failed; or -1 (breakdown). `info` may be null.
  virtual int Factorise(std::ostream* info) = 0;

  /// Replaces `rhs` by the solution, once the matrix is factorised, as often as wanted. Returns 0;
  /// or -1 (breakdown); or -k (not solved after k iterations). `info` may be null.
  virtual int Substitute(ReaVecT& rhs, std::ostream* info) = 0;

  /// Substitute for each vector of `block`. Returns 0, or what the first that fails returns. What a
  /// factor costs to be read, a solver may share between the vectors.
  virtual int SubstituteAll(std::vector<ReaVecT>& block, std::ostream* info) {
    for (ReaVecT& rhs : block)
      if (const int failed = Substitute(rhs, info); failed != 0) return failed;
    return 0;
  }

  /// Factorise, then Substitute. Returns what the first of them that fails returns.
  virtual int Solve(ReaVecT& rhs, std::ostream* info) {
    const int failed = Factorise(info);
    return failed != 0 ? failed : Substitute(rhs, info);
  }

  /// Imposes x(dof) = value.
  virtual void Prescribe(int dof, double value, ReaVecT& rhs) = 0;

  /// Row `dof` times x, of the matrix before it is factorised.
  virtual double RowTimesVector(int dof, const ReaVecT& x) const = 0;

  /// y = K x, of the matrix before it is factorised. x and y are different.
  virtual void Times(const ReaVecT& x, ReaVecT& y) const = 0;

  /// K := S K S + shift I with the diagonal matrix S of the n entries of `scale`, before the matrix
  /// is factorised.
  virtual void ScaleAndShift(const ReaVecT& scale, double shift) = 0;

  /// Diagnostic print.
  virtual void Print(std::ostream& stream) const = 0;

  /// Copies the whole matrix, both triangles, into an n x n `dense`.
  virtual void CopyFromYouToMat(Matriu& dense) const = 0;

  /// Writes the matrix as a picture for the post-processor.
  virtual void WriteForVemo(std::ostream& stream) const = 0;

  /// The storage report of the information file.
  virtual void PrintInfo(std::ostream& stream) const = 0;
};

}  // namespace kestol
