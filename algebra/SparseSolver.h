#pragma once

#include <memory>
#include <vector>

#include "algebra/SparseMatrix.h"
#include "algebra/StiffnessMatrix.h"

namespace kestol {

class Preconditioner;

/// Compressed rows and preconditioned conjugate gradients. Both triangles are stored.
///
/// Iterations aim at the relative residual `tolerance1`; when `MaxIterations` are used up, a
/// residual of `tolerance2` is still accepted. The incomplete LU factors are the preconditioner; if
/// one of their pivots is not positive while the diagonal of the matrix is, the diagonal takes
/// their place.
class SparseSolver : public StiffnessMatrix {
public:
  /// Nodes that may be coupled with one node.
  static constexpr int MAXNUMNODESAROUNDNODE = 200;

  /// `n` degrees of freedom with the default tolerances and limit.
  explicit SparseSolver(int n);
  SparseSolver(int n, double tolerance1, double tolerance2, int MaxIterations);
  ~SparseSolver() override;

  /// The vector from which the iterations start; n entries are copied.
  void SetInitialValues(const ReaVecT& values);

  int NumDegrees() const override { return n; }

  /// Refuses the 201st neighbour of a node. A node is its own neighbour without being coupled.
  void AddNodePair(int node1, int node2, int dofsPerNode) override;

  /// Gives every row of a node room for the degrees of the node and of its neighbours.
  void Allocate(int dofsPerNode) override;

  /// Refuses places that no block has touched.
  double& Entry(int i, int j) override;
  void SetZero() override;

  /// A block off the diagonal is added to its mirrored place as well. Blocks that cover whole nodes
  /// find their place once.
  void AddBlock(int firstRow, int firstCol, const Matriu& block) override;

  /// Builds the preconditioner; the matrix stays. Returns 0, or -1 for a row without a diagonal.
  int Factorise(std::ostream* info) override;

  /// Solves K x = rhs; x starts from the initial values, else from zeros, and at prescribed degrees
  /// from their entries of rhs. Returns 0; or -1 after a breakdown; or -MaxIterations when not
  /// solved. Refuses a matrix without its preconditioner.
  int Substitute(ReaVecT& rhs, std::ostream* info) override;

  /// Frees the preconditioner and the initial values afterwards.
  int Solve(ReaVecT& rhs, std::ostream* info) override;

  /// Row `dof` becomes a unit row; the starting vector and rhs get the value there. The column and
  /// the other rows stay: the residual of the row is 0 from the start, and so are its entries in
  /// all directions of search.
  void Prescribe(int dof, double value, ReaVecT& rhs) override;

  double RowTimesVector(int dof, const ReaVecT& x) const override;
  void Times(const ReaVecT& x, ReaVecT& y) const override;

  /// Refused: the columns of prescribed degrees stay, so that it would not be the system that was
  /// prescribed; and iterations do not converge on what is shifted across zero.
  void ScaleAndShift(const ReaVecT& scale, double shift) override;

  void Print(std::ostream& stream) const override;
  void CopyFromYouToMat(Matriu& dense) const override;     ///< refused
  void WriteForVemo(std::ostream& stream) const override;  ///< refused
  void PrintInfo(std::ostream& stream) const override;

  /// The matrix, once it is allocated.
  const SparseMatrix& Matrix() const { return *matrix_; }
  /// Where the iterations of the next solution start: n values, or none for zeros.
  const std::vector<double>& Start() const { return start_; }
  /// Whether the preconditioner stands.
  bool IsFactorised() const { return preconditioner_ != nullptr; }

  const int n;
  const double tolerance1;
  const double tolerance2;
  const int MaxIterations;

private:
  void AddNeighbour(int node, int neighbour);
  void NeedStart();
  std::vector<double> StartFor(const ReaVecT& rhs) const;
  bool HasDiagonals() const;
  void BuildPreconditioner();
  int Accept(double residual, int flag, std::ostream* info) const;

  std::vector<std::vector<int>>
      adjacency_;                         ///< neighbours of node i at i - 1; empty once allocated
  std::unique_ptr<SparseMatrix> matrix_;  ///< null until Allocate
  std::unique_ptr<Preconditioner> preconditioner_;  ///< null until Factorise, and after Solve
  std::vector<double> start_;                       ///< n, or empty: zeros when needed
  std::vector<int> prescribed_;                     ///< degrees
};

}  // namespace kestol
