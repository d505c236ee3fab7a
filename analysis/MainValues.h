#pragma once

namespace kestol {

class Matriu;
class Mesh;
class Project;
class ReaVecT;
struct PointValues;

/// Turns the shell values (Nx Ny Nxy Mx My Mxy Qx Qy) of consecutive integration points into main
/// values (N11 N22 0 M11 M22 0 Qm1 Qm2).
///
/// `firstValue` is the position (from 1) of the first point in `values` and in `target` (which may
/// be the same vector), `firstDirection` that of its six angles in `directions`: three of the main
/// axes of the membrane forces, three of the moments. T holds the element's local axes as columns.
void MainValues(const ReaVecT& values, int firstValue, int points, ReaVecT& directions,
                int firstDirection, const Matriu& T, ReaVecT& target);

/// Fills `main` and `angles` of the values of a shell mesh from its local ones, for the stress
/// options 1 and 2. Does nothing with option 0.
void MainValuesOfMesh(const Project& project, const Mesh& mesh, PointValues& values);

}  // namespace kestol
