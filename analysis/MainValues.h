#pragma once

namespace kestol {

class Matriu;
class Project;
class ReaVecT;

/// Turns the shell values (Nx Ny Nxy Mx My Mxy Qx Qy) of consecutive integration points into main
/// values (N11 N22 0 M11 M22 0 Qm1 Qm2).
///
/// `firstValue` is the position (from 1) of the first point in `values` and in `target`,
/// `firstDirection` that of its six angles in `directions`: three of the main axes of the membrane
/// forces, three of the moments. T holds the element's local axes as columns. Without a target the
/// values are overwritten.
void MainValues(ReaVecT& values, int firstValue, int points, ReaVecT& directions,
                int firstDirection, const Matriu& T, ReaVecT* target);

/// Main values of the shell resultants of mesh `m` (from 0), for the stress options 1 and 2: fills
/// project.mainDirections[m], and overwrites project.gaussVariables[m] (option 1) or fills
/// project.localValues[m] (option 2). Does nothing with option 0.
void MainValuesOfMesh(Project& project, int m);

}  // namespace kestol
