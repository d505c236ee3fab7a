#pragma once

#include <ostream>
#include <string_view>

#include "model/BeamEnds.h"
#include "model/Kinds.h"

namespace kestol {

class Matriu;
class Units;

/// One material with its section or thickness, in result units. Zero when constructed; reading sets
/// every value to kNotGiven first. A value that was not given is never completed from others: the
/// element that needs it refuses it.
class Material {
public:
  static constexpr double kNotGiven = -1.0;

  /// Reads the definition behind an element or a material number: true, or false for a text without
  /// any key, all values then not given. A key without a value is refused with
  /// "error in materials. Key without value: '<key>'\n". `units` null: no scaling.
  bool ReadDefinition(std::string_view text, const Units* units);

  /// Sets all values to "not given" and reads keys and values, scaled by the unit system that the
  /// text names, else by the default one. Gives 1; or -1 for a text without any key; or 0, with the
  /// key in `keyWithoutValue`, when a key has no value.
  int ReadMaterialText(std::string_view text, const Units* units,
                       std::string_view* keyWithoutValue = nullptr);

  /// A, Iy, Iz and J of a solid rectangle with the sides widthY along local y and widthZ along
  /// local z; J by the nearest row of a table of side ratios.
  void SetRectangleSection(double widthY, double widthZ);

  /// The same values under the number 0. No stage of the run calls it.
  Material Copy() const;

  /// One line: number and the doubles from E1 to t.
  void Print(std::ostream& stream) const;

  /// Stiffness of a beam of squared length L2 in local axes: Kii (end 1), Kij (rows of end 1,
  /// columns of end 2), Kjj (end 2); 3x3 for (u, v, theta) in the plane, 6x6 in space. `endCode` is
  /// an EndCode; an unknown one gives zeros. Ends the run when a value that the problem type needs
  /// is not positive.
  void ConstructLocalK(int elementNumber, double L2, ProblemType problemType, int endCode,
                       Matriu& Kii, Matriu& Kij, Matriu& Kjj) const;

  /// Orthotropic shell of thickness t, per unit of width in local x and y: membrane Dm (3x3, order
  /// xx, yy, xy), bending Db (3x3) and transverse shear Ds (2x2, xz and yz, with the factor 5/6).
  /// Ends the run when a value is not positive, or when Ex nuXY and Ey nuYX differ by more than
  /// 1e-15, an absolute tolerance.
  void ShellMatrices(int elementNumber, Matriu& Dm, Matriu& Db, Matriu& Ds) const;

  /// Isotropic solid of E1 and nuXY: the 6x6 elasticity matrix in the order xx, yy, zz, then three
  /// shears. Ends the run when E is not positive or nu not in (-1, 0.5).
  void SolidMatrix(int elementNumber, Matriu& D) const;

  int number = 0;                 ///< material number
  double E1 = 0.0, E2 = 0.0;      ///< Young's moduli along x and y
  double nuXY = 0.0, nuYX = 0.0;  ///< nuYX: narrowing along y by a pull along x
  double Iy = 0.0, Iz = 0.0;      ///< second moments of area
  double Gxy = 0.0, Gxz = 0.0, Gyz = 0.0;
  double J = 0.0;                                   ///< torsion constant
  double A = 0.0;                                   ///< cross-section area
  double Weight = 0.0;                              ///< force per volume
  double t = 0.0;                                   ///< shell thickness
  bool hasEuler = false;                            ///< any Euler angle was given
  double Euler1 = 0.0, Euler2 = 0.0, Euler3 = 0.0;  ///< radians; see EulerRotation
};

}  // namespace kestol
