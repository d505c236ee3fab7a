#pragma once

#include <array>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"
#include "algebra/Vector3.h"

namespace kestol {

class Elem;
class Material;
class Project;

/// What a flat shell triangle of N nodes knows at its P integration points, in its local plane:
/// shape functions, their derivatives along local x and y, and the area that each point stands for.
template <int N, int P>
struct ShellPoints {
  std::array<double, P> weight;                ///< area of each point
  std::array<std::array<double, N>, P> shape;  ///< N
  std::array<std::array<double, N>, P> dx;     ///< N,x
  std::array<std::array<double, N>, P> dy;     ///< N,y
};

/// One shell triangle at a time: material matrices, local axes, place in its plane. The work space
/// serves one element after the other without touching the heap.
class ShellElement {
public:
  explicit ShellElement(const Project& project) : project_(project) {}

  /// Goes on to the next element: its material, local axes and material matrices. Ends the run, in
  /// this order, for a missing material, axes that do not exist, and values that are not positive.
  void SetElem(const Elem& elem);

  /// The three-noded element: constant derivatives, everything sampled at the centroid. Ends the
  /// run with "error: element N has jacobian <=0\n".
  void Evaluate(ShellPoints<3, 1>& points) const;
  /// The six-noded element at the mid-points of its edges. Ends the run with
  /// "error: element N has jacobian 0\n".
  void Evaluate(ShellPoints<6, 3>& points) const;

  /// Turns local node degrees (u, v, w, beta1, beta2, drilling) into global ones and back.
  FixedMatrix<6, 1> ToLocal(const double* global) const;

  const Elem* elem = nullptr;
  const Material* material = nullptr;
  Matriu T;           ///< 3x3, local axes as columns
  Matriu T6;          ///< 6x6, of the node degrees
  Matriu Dm, Db, Ds;  ///< membrane 3x3, bending 3x3, transverse shear 2x2

private:
  template <int N>
  std::array<Vector3, N> LocalCoordinates() const;

  const Project& project_;
};

/// Strain matrices of one node, columns u, v, w, beta1, beta2.
struct ShellStrain {
  FixedMatrix<3, 5> membrane, bending;
  FixedMatrix<2, 5> shear;
};

/// Strain matrices of a node with the shape function N and the derivatives Nx, Ny at a point: for
/// three nodes b/J, c/J and N at the centroid.
ShellStrain ShellStrainMatrices(double Nx, double Ny, double N);

}  // namespace kestol
