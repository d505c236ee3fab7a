#pragma once

#include <ostream>
#include <string_view>

class Matriu;
class TextInput;
class Units;

/// Releases of a beam's ends, as two decimal digits: end 1, end 2; 1 rigid, 0 hinged.
enum EndCode { BothHinged = 0, HingeAtEnd1 = 1, HingeAtEnd2 = 10, BothFixed = 11 };

/// One material with its section or thickness, in result units. -1.0 marks a value that was not
/// given; it is never completed from others.
class Material {
public:
  /// Reads "number key value ..." of the materials section. Gives 0 when no number follows (end of
  /// the section), else the result of ReadMaterialText. `units` null: no scaling.
  int ReadMaterialLine(TextInput& input, const Units* units);

  /// Sets all values to "not given" and reads keys and values. Gives 1; or -1 for a text without
  /// any key; or 0, with the key in `keyWithoutValue`, when a key has no value.
  int ReadMaterialText(std::string_view text, const Units* units);

  /// A, Iy, Iz and J of a solid rectangle.
  void SetRectangleSection(double widthY, double widthZ);

  /// One line: number and the doubles from E1 to t.
  void Print(std::ostream& stream) const;

  /// Stiffness of a beam of squared length L2 in local axes: Kii (end 1), Kij (rows of end 1,
  /// columns of end 2), Kjj (end 2); 3x3 for (u, v, theta) in the plane, 6x6 in space. An unknown
  /// end code gives zeros. Ends the run when a value that the problem type needs is not positive.
  void ConstructLocalK(int elementNumber, double L2, int problemType, int endCode, Matriu& Kii,
                       Matriu& Kij, Matriu& Kjj) const;

  /// Membrane (3x3), bending (3x3) and transverse shear (2x2) matrices of a shell of thickness t.
  void ShellMatrices(int elementNumber, Matriu& Dm, Matriu& Db, Matriu& Ds) const;

  /// Elasticity matrix (6x6) in the order xx, yy, zz, then three shears.
  void SolidMatrix(int elementNumber, Matriu& D) const;

  int number = 0;  ///< material number
  double E1 = -1.0, E2 = -1.0;
  double nuXY = -1.0, nuYX = -1.0;
  double Iy = -1.0, Iz = -1.0;
  double Gxy = -1.0, Gxz = -1.0, Gyz = -1.0;
  double J = -1.0;
  double A = -1.0;
  double Weight = -1.0;                             ///< force per volume
  double t = -1.0;                                  ///< shell thickness
  int hasEuler = 0;                                 ///< 1 when any Euler angle was given
  double Euler1 = 0.0, Euler2 = 0.0, Euler3 = 0.0;  ///< radians
};
