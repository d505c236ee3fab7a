#pragma once

#include <functional>

#include "programs/view/SvgView.h"

namespace kestol {

// Symbols over the lines of a drawing.

void DrawSupports(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
/// At the end of the beam that is released; `placeOf` says where a node is drawn.
void DrawHinges(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                const std::function<Vector3(const Node&)>& placeOf);
/// Arrows with their values.
void DrawLoads(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
void DrawNodeNumbers(SvgCanvas& canvas, const SvgView& view, const PageModel& model);
/// The global axes in the lower left corner.
void DrawAxes(SvgCanvas& canvas, const SvgView& view, bool plane);

}  // namespace kestol
