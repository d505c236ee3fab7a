#pragma once

#include <iosfwd>

namespace kestol {

class Project;
class Units;

/// The unit systems that the deck defines, and those that it names: one for everything, so that no
/// factor but 1 is met.
void WriteUnits(const Units& units, std::ostream& stream);

/// Whether WriteUnits names a system of which the reader would take the length unit from another
/// row of the same name. Meshes that stand before the units are taken as they are.
bool LosesItsLength(const Units& units);

/// Solver, conversion, stresses, smoothing, gravity, divisions: whatever is not as by default.
void WriteOptions(const Project& project, std::ostream& stream);

}  // namespace kestol
