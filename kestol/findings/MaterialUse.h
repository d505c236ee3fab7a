#pragma once

#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kestol/findings/Inspection.h"

namespace kestol {

/// What an element asks of its material.
enum Family { PlaneBeam, SpaceBeam, Shell, Solid, OtherFamily };

constexpr unsigned Bit(Family family) {
  return 1U << static_cast<unsigned>(family);
}
constexpr unsigned kBeams = Bit(PlaneBeam) | Bit(SpaceBeam);

/// A material, where it is written, and the elements that have it.
struct UsedMaterial {
  const Material* material = nullptr;
  RecordKind kind = RecordKind::Material;
  int number = 0;         ///< of the material, or of the element whose own it is
  unsigned families = 0;  ///< of the elements
  std::vector<int> elements;
  std::vector<Family> familyOf;                                              ///< each element's
  double shortest = std::numeric_limits<double>::infinity(), longest = 0.0;  ///< beams
};

using Written = std::vector<Inspection::WrittenValue>;

std::vector<UsedMaterial> UsedMaterials(const Inspection& deck);
const Written& WrittenOf(const Inspection& deck, const UsedMaterial& used);
const Inspection::WrittenValue* FindWritten(const Written& written,
                                            std::span<const std::string_view> keys);
Place PlaceOf(const Inspection& deck, const UsedMaterial& used);
std::string NameOf(const UsedMaterial& used);
std::string UsersText(const UsedMaterial& used);

}  // namespace kestol
