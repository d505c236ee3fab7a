#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestol {

class SourceMap;
class TextInput;

/// One row of the units_names block.
struct UnitSystem {
  std::string name;    ///< the lookup key, at most 20 characters
  std::string nameN;   ///< force unit
  std::string nameM;   ///< length unit
  std::string namePa;  ///< pressure unit
  double facN;         ///< size of the force unit in the common reference
  double facM;         ///< size of the length unit in the common reference
};

/// Ratios that turn input values into result units.
struct UnitFactors {
  double force = 1.0;   ///< F: force unit in force / result force unit
  double length = 1.0;  ///< L: length unit in force / result length unit
};

/// The unit systems of a deck and the factors chosen from them. Only ratios of factors matter.
class Units {
public:
  std::vector<UnitSystem> table;  ///< sorted by the bytes of the name

  double meshLength = 1.0;      ///< units_mesh
  double materialForce = 1.0;   ///< units_mat_and_load
  double materialLength = 1.0;  ///< units_mat_and_load
  double resultForce = 1.0;     ///< units_res
  double resultLength = 1.0;    ///< units_res

  // Kept with the result system; no report has a place for them.
  std::string resultForceName = "N";
  std::string resultLengthName = "m";
  std::string resultPressureName = "Pa";
};

/// Whether a number can stand as the size of a unit: finite and not below kZero.
bool IsUnitFactor(double factor);

/// Whether a key begins with "units", "Units" or "UNITS": its value is the name of a system.
bool IsUnitsKey(std::string_view key);

/// Reads the rows behind the keyword units_names, up to a line that begins with "end", into the
/// sorted table.
void ReadUnitsNames(Units& units, TextInput& input, SourceMap* map = nullptr);

/// The system of that name; ends the run when the name is too long or unknown.
const UnitSystem& FindUnits(const Units& units, std::string_view name);

/// The system named behind the first "units" (else "Units", else "UNITS") of the line; null when
/// the line names none.
const UnitSystem* FindUnitsInLine(const Units& units, std::string_view line);

/// Factor of mesh coordinates against units_res.
double MeshLengthFactor(const Units& units);

/// Factors of units_mat_and_load against units_res.
UnitFactors DefaultFactors(const Units& units);

/// Factors of `system` against units_res; both factors of the system must be positive and finite,
/// else "error: factors of unit system 'X' must be two positive numbers\n".
UnitFactors FactorsOf(const Units& units, const UnitSystem& system);

/// The rule for a units key inside a key and value list: skips white space, '=' and ':' at the
/// front of `text`, takes one word as the name of a system and gives its factors.
UnitFactors TakeUnits(const Units& units, std::string_view& text);

}  // namespace kestol
