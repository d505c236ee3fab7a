#pragma once

namespace kestol {

/// Which ends of a beam are hinged ("rotules" in the deck), as two decimal digits: the tens are end
/// 1, the units end 2; 1 is rigid, 0 hinged.
///
///     code   end 1    end 2
///     11     rigid    rigid
///     10     rigid    hinged
///     01     hinged   rigid
///     00     hinged   hinged
enum EndCode { BothHinged = 0, HingeAtEnd1 = 1, HingeAtEnd2 = 10, BothFixed = 11 };

/// Bending stiffness of one plane of a beam: v and r are the translation across the beam and the
/// rotation at ends 1 and 2. As coefficients: vv of EI/L^3, vr of EI/L^2, rr of EI/L.
struct BendingTerms {
  double vv, vr1, vr2, r1r1, r1r2, r2r2;
};

/// What follows from the end code of a beam: one row of the table of beams. xi = x / L.
struct BeamEnds {
  EndCode code;
  bool hinged1, hinged2;
  BendingTerms bending;

  // Under a uniform load q along the whole beam, its ends held:
  double (*axial)(double x, double L, double q);   ///< axial force; the shear is its negative
  double (*moment)(double x, double L, double q);  ///< bending moment
  double (*deflection)(double xi);                 ///< over q L^4 / EI
  double (*slope)(double xi);                      ///< its derivative by xi
};

/// The row of an end code (EndCode); null for any other number.
const BeamEnds* FindBeamEnds(int endCode);

/// The code of a beam with these hinges.
EndCode EndCodeOf(bool hinged1, bool hinged2);

}  // namespace kestol
