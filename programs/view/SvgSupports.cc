#include <array>
#include <map>

#include "algebra/Matriu.h"
#include "model/EulerAngles.h"
#include "programs/view/SvgSymbols.h"
#include "results/ElementLoads.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

constexpr double kSize = 13.0, kHalfWidth = 8.0;

/// The ground: a line with short strokes on its far side.
void DrawGround(SvgCanvas& canvas, SvgPoint a, SvgPoint b, SvgPoint away, const char* style) {
  canvas.Line(a, b, style);
  constexpr int kStrokes = 4;
  const SvgPoint step = (b - a) * (1.0 / kStrokes);
  for (int i = 0; i <= kStrokes; ++i) {
    const SvgPoint p = a + step * i;
    canvas.Line(p, p + away * 5.0 - step * 0.7, "supportline");
  }
}

void DrawTriangle(SvgCanvas& canvas, SvgPoint at, SvgPoint up, bool roller) {
  const SvgPoint side = Across(up), foot = at - up * kSize;
  canvas.Path({at, foot + side * kHalfWidth, foot - side * kHalfWidth}, true, "support");
  const SvgPoint ground = foot - up * (roller ? 4.0 : 0.0);
  DrawGround(canvas, ground + side * (kHalfWidth + 3.0), ground - side * (kHalfWidth + 3.0),
             up * -1.0, "supportline");
}

void DrawSpring(SvgCanvas& canvas, SvgPoint at, SvgPoint up) {
  const SvgPoint side = Across(up), end = at - up * 26.0;
  std::vector<SvgPoint> line = {at};
  for (int k = 1; k < 8; ++k) {
    const double swing = k == 1 || k == 7 ? 0.0 : k % 2 == 1 ? 4.0 : -4.0;
    line.push_back(at - up * (26.0 * k / 8.0) + side * swing);
  }
  line.push_back(end);
  canvas.Path(line, false, "supportline");
  DrawGround(canvas, end + side * 7.0, end - side * 7.0, up * -1.0, "supportline");
}

/// The mean direction in which beams leave each node.
std::map<const Node*, Vector3> BeamDirections(const PageModel& model) {
  std::map<const Node*, Vector3> directions;
  for (const PageMesh& mesh : model.meshes) {
    if (!mesh.IsBeams()) continue;
    for (const Elem* elem : mesh.elems) {
      const Vector3 along = Minus(PositionOf(*elem->nodes[1]), PositionOf(*elem->nodes[0]));
      if (Norm(along) == 0.0) continue;
      Vector3 &first = directions[elem->nodes[0]], &second = directions[elem->nodes[1]];
      first = Plus(first, Unit(along));
      second = Minus(second, Unit(along));
    }
  }
  return directions;
}

std::array<Vector3, 3> AxesOfSupport(const Constraint& support) {
  if (support.hasLocalAxes == 0)
    return {
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}
    };
  const Frame frame = FrameOf(EulerRotation(support.Euler1, support.Euler2, support.Euler3));
  return {frame.x, frame.y, frame.z};
}

void DrawPlaneSupport(SvgCanvas& canvas, const SvgView& view, const Constraint& support,
                      SvgPoint at, Vector3 beam) {
  const auto axes = AxesOfSupport(support);
  const auto holds = [&](int d) { return support.codes[d] == Prescribed; };
  const SvgPoint x = Unit(view.Direction(axes[0])), y = Unit(view.Direction(axes[1]));
  // On the side where no beam is: a support at the top of a column hangs.
  const SvgPoint up = Dot(beam, axes[1]) < -0.7 ? y * -1.0 : y;
  if (holds(0) && holds(1) && holds(2)) {
    const SvgPoint out = Norm(beam) > 0.3 ? Unit(view.Direction(beam)) : y, side = Across(out);
    DrawGround(canvas, at + side * 11.0, at - side * 11.0, out * -1.0, "wall");
  } else if (holds(0) && holds(1)) {
    DrawTriangle(canvas, at, up, false);
  } else if (holds(1)) {
    DrawTriangle(canvas, at, up, true);
  } else if (holds(0)) {
    DrawTriangle(canvas, at, Dot(beam, axes[0]) < 0.0 ? x * -1.0 : x, true);
  }
  for (int d = 0; d < 2; ++d)
    if (support.codes[d] == Spring) DrawSpring(canvas, at, d == 0 ? x : y);
  canvas.Take(at - up * 6.0, 14.0);
}

/// A cone for each held direction and a bar for each held rotation; a block where all are held.
void DrawSpaceSupport(SvgCanvas& canvas, const SvgView& view, const Constraint& support,
                      SvgPoint at) {
  const auto axes = AxesOfSupport(support);
  const auto holds = [&](int d) { return d < support.dofs && support.codes[d] == Prescribed; };
  int held = 0;
  for (int d = 0; d < support.dofs; ++d) held += holds(d) ? 1 : 0;
  if (held == 6) {
    canvas.Path(
        {
            at + SvgPoint{-5, -5},
              at + SvgPoint{5,  -5},
              at + SvgPoint{5,  5 },
              at + SvgPoint{-5, 5 }
    },
        true, "solid");
    return;
  }
  for (int d = 0; d < 3; ++d) {
    const SvgPoint full = view.Direction(axes[d]), dir = Unit(full), side = Across(dir);
    const double h = std::max(3.0, 11.0 * Length(full) / view.Pixels());
    if (holds(d))
      canvas.Path({at, at - dir * h + side * 4.0, at - dir * h - side * 4.0}, true, "support");
    if (holds(d + 3)) {
      const SvgPoint bar = at - dir * (h + 4.0);
      canvas.Line(bar + side * 5.0, bar - side * 5.0, "wall");
    }
    if (support.codes[d] == Spring) DrawSpring(canvas, at, dir);
  }
}

/// What a support prescribes that is not zero, and the stiffness of its springs.
std::string ValuesOf(const Constraint& support, const Project& project) {
  const bool plane = project.problemType == Plane;
  const std::string unit = UnitNamesOf(project.units).length;
  std::string text;
  for (int d = 0; d < support.dofs; ++d) {
    const bool isSpring = support.codes[d] == Spring;
    if (!support.IsConstrained(d) || support.values[d] == 0.0) continue;
    const bool turns = d >= (plane ? 2 : 3);
    text += text.empty() ? "" : ", ";
    text += isSpring ? "k " : "";
    text += turns ? "\u03b8" : "u";
    text += plane && turns ? 'z' : "xyz"[d % 3];
    text += ' ';
    text += ShortNumber(support.values[d]);
    if (!turns && !isSpring && !unit.empty()) text.append(" ").append(unit);
  }
  return text;
}

}  // namespace

void DrawSupports(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                  const PlaceOfNode& placeOf) {
  const auto beams = BeamDirections(model);
  for (const Node* node : model.places.Nodes()) {
    if (!node->constraint) continue;
    const SvgPoint at = view.At(placeOf(*node));
    const auto beam = beams.find(node);
    if (model.project.problemType == Plane) {
      DrawPlaneSupport(canvas, view, *node->constraint, at,
                       beam == beams.end() ? Vector3{} : beam->second);
    } else {
      DrawSpaceSupport(canvas, view, *node->constraint, at);
      canvas.Take(at + SvgPoint{0.0, 6.0}, 14.0);
    }
  }
}

void DrawSupportValues(SvgCanvas& canvas, const SvgView& view, const PageModel& model) {
  constexpr std::size_t kMost = 60;
  std::size_t written = 0;
  for (const Node* node : model.places.Nodes()) {
    if (!node->constraint || written == kMost) continue;
    const std::string text = ValuesOf(*node->constraint, model.project);
    if (text.empty()) continue;
    canvas.Label(view.At(PositionOf(*node)), {0.0, 1.0}, text, "supporttext", 22.0);
    ++written;
  }
}

void DrawHinges(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                const PlaceOfNode& placeOf) {
  for (const PageMesh& mesh : model.meshes) {
    if (!mesh.IsBeams()) continue;
    for (const Elem* elem : mesh.elems) {
      const BeamHinges hinges = HingesOf(model.project, *elem);
      const SvgPoint a = view.At(placeOf(*elem->nodes[0]));
      const SvgPoint b = view.At(placeOf(*elem->nodes[1])), along = Unit(b - a);
      if (hinges.end1) canvas.Circle(a + along * 9.0, 4.2, "hinge");
      if (hinges.end2) canvas.Circle(b - along * 9.0, 4.2, "hinge");
    }
  }
}

void DrawNodeNumbers(SvgCanvas& canvas, const SvgView& view, const PageModel& model) {
  constexpr int kMost = 60;
  if (model.places.DeckNodes() > kMost) return;
  const auto beams = BeamDirections(model);
  for (std::size_t i = 0; i < model.places.Nodes().size(); ++i) {
    const Node* const node = model.places.Nodes()[i];
    const int number = model.places.Numbers()[i];
    if (number == 0) continue;
    const auto beam = beams.find(node);
    SvgPoint away{-1.0, -1.0};
    if (beam != beams.end()) {
      const SvgPoint along = Unit(view.Direction(beam->second));
      const bool ends = std::abs(Norm(beam->second) - 1.0) < 1e-6;
      if (Norm(beam->second) > 0.1) away = along * -1.0;
      if (ends) away = away + Across(along) * (Across(along).y > 0.0 ? 0.8 : -0.8);
    }
    canvas.Label(view.At(PositionOf(*node)), away, std::to_string(number), "number",
                 node->constraint ? 20.0 : 9.0);
  }
}

void DrawAxes(SvgCanvas& canvas, const SvgView& view, bool plane) {
  const SvgPoint at{26.0, view.Height() - 26.0};
  for (int d = 0; d < (plane ? 2 : 3); ++d) {
    Vector3 e{};
    e[d] = 1.0;
    const SvgPoint tip = view.Direction(e) * (24.0 / view.Pixels());
    if (Length(tip) < 5.0) continue;
    canvas.Arrow(at, at + tip, "axis", 6.0);
    canvas.Text(at + tip + Unit(tip) * 8.0, std::string(1, "xyz"[d]), "number");
  }
}

}  // namespace kestol
