#pragma once

#include "algebra/Vector3.h"
#include "input/Project.h"

namespace kestol {

/// The loads that the deck puts on one element, own weight left out, summed in global axes by what
/// they are spread over.
struct ElementLoads {
  Vector3 perLength{};        ///< beams; edges of shells
  Vector3 perArea{};          ///< shells; faces of solids
  Vector3 perVolume{};        ///< solids
  Vector3 couplePerLength{};  ///< beams, about their axis
  Vector3 couplePerArea{};    ///< shells, about their local x
};

ElementLoads LoadsOnElement(const Project& project, const Elem& elem);

/// A beam's end that turns freely against its node.
struct BeamHinges {
  bool end1, end2;
};
BeamHinges HingesOf(const Project& project, const Elem& beam);

}  // namespace kestol
