#pragma once

#include <array>
#include <vector>

#include "algebra/Matriu.h"
#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "model/Frame.h"
#include "results/StressTensor.h"

namespace kestol {

/// Resultants of a shell per unit of width, in the element's axes: membrane forces (xx, yy, xy),
/// moments (a positive one pulls at the top, the side that the normal points to), shears (x, y).
struct ShellForces {
  std::array<double, 3> n{}, m{};
  std::array<double, 2> q{};
};

/// From the solver's eight values of a point.
ShellForces ShellForcesOf(const double* values);

enum class ShellFace { Top, Bottom };

/// The stress tensor of a face of a shell of thickness t: n / t + 6 m / t^2 at the top. The shears
/// vanish there. In the element's axes, and in global ones.
StressTensor FaceStress(const ShellForces& forces, double t, ShellFace face);
StressTensor FaceStress(const ShellForces& forces, double t, ShellFace face, const Frame& axes);

/// Main values by the solver's rule: the first one acts along the axis that is nearest to the
/// element's x. Directions are global.
struct ShellMain {
  std::array<double, 2> n, m;
  std::array<Vector3, 2> nDirections, mDirections;
};
ShellMain ShellMainOf(const ShellForces& forces, const Frame& axes);

/// An integration point with the local resultants as computed, whatever the deck says of main
/// values and smoothing.
struct ShellPoint {
  Vector3 x;
  ShellForces forces;
};

/// A shell element with its results.
struct ShellView {
  const Elem* elem = nullptr;
  Frame axes;
  double thickness = 0.0;
  int pointCount = 0;
  std::array<ShellPoint, 3> points;

  /// The mean of the points.
  ShellForces Mean() const;
};

/// One shell of a mesh after the other. Without results its points hold zeros.
class ShellReader {
public:
  explicit ShellReader(const Project& project) : project_(project) {}

  /// `stored` are the element's values in Results::meshes; null: none.
  const ShellView& Read(const Elem& elem, const double* stored);

private:
  const Project& project_;
  Matriu T_, T6_;
  ShellView view_;
};

/// Calls action(view) for every shell, mesh after mesh. `results` may be null.
template <class Action>
void ForEachShell(const Project& project, const Results* results, Action action) {
  ShellReader reader(project);
  for (std::size_t m = 0; m < project.meshes.size(); ++m) {
    const Mesh& mesh = *project.meshes[m];
    if (mesh.elemType != Triangle) continue;
    const double* stored = results != nullptr ? results->meshes[m].local.begin() : nullptr;
    for (const auto [number, elem] : mesh.elems) {
      action(reader.Read(*elem, stored));
      if (stored != nullptr) stored += PointLayoutOf(project, mesh).PerElement();
    }
  }
}

}  // namespace kestol
