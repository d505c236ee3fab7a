#pragma once

#include <optional>

#include "kestol/Results.h"
#include "programs/view/SvgView.h"
#include "results/BeamResults.h"

namespace kestol {

constexpr double kSvgWidth = 760.0, kSvgMargin = 100.0;

/// The beams with the stations of the model; none without beams.
std::optional<BeamTable> BeamsOf(const PageModel& model, const Results& results);
void DrawBeams(SvgCanvas& canvas, const SvgView& view, const PageModel& model, const char* style);

// Symbols over the lines of a drawing.

void DrawSupports(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                  const PlaceOfNode& placeOf);
/// Settlements and the stiffness of springs in words.
void DrawSupportValues(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
/// At the end of the beam that is released.
void DrawHinges(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                const PlaceOfNode& placeOf);
/// Arrows with their values.
void DrawLoads(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
void DrawNodeNumbers(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
/// The global axes in the lower left corner.
void DrawAxes(SvgCanvas& canvas, const SvgView& view, bool plane);

}  // namespace kestol
