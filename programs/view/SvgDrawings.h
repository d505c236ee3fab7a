#pragma once

#include <string>

#include "kestol/Results.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// Drawings of a model for reports, each a whole file.
std::string ModelDrawing(const PageModel& model);
std::string DeformedDrawing(const PageModel& model, const Results& results);

/// What the diagrams of a drawing show: one value, or both of space beside each other.
enum class DiagramOf { AxialForce, Shear, Moment };
/// Extremes are labelled; bending moments lie on the tension side.
std::string DiagramDrawing(const PageModel& model, const Results& results, DiagramOf what);

}  // namespace kestol
