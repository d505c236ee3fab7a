#include "programs/view/SvgDrawings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

#include "programs/view/SvgSymbols.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

/// The displacement of every node times a factor; none without results.
class Motion {
public:
  Motion() = default;
  Motion(const PageModel& model, const Results& results, double factor)
      : model_(&model), results_(&results), factor_(factor) {}

  Vector3 PlaceOf(const Node& node) const {
    if (model_ == nullptr) return PositionOf(node);
    const NodeDisplacement at = DisplacementOf(model_->project, *results_, node);
    return Plus(PositionOf(node), Times(at.u, factor_));
  }

private:
  const PageModel* model_ = nullptr;
  const Results* results_ = nullptr;
  double factor_ = 0.0;
};

struct FlatFace {
  std::vector<SvgPoint> corners;
  double depth, light;
};

void AddFace(const SvgView& view, const std::vector<Vector3>& corners,
             std::vector<FlatFace>& faces) {
  FlatFace face{{}, 0.0, 1.0};
  for (const Vector3& x : corners) {
    face.corners.push_back(view.At(x));
    face.depth += view.Depth(x) / static_cast<double>(corners.size());
  }
  const Vector3 normal = Cross(Minus(corners[1], corners[0]), Minus(corners[2], corners[0]));
  const double size = Norm(normal);
  if (size > 0.0) face.light = std::abs(Dot(normal, view.Eye())) / size;
  faces.push_back(std::move(face));
}

/// Corners of each shell and each outer face of a solid.
template <typename Take>
void ForEachFace(const PageModel& model, const Take& take) {
  for (std::size_t m = 0; m < model.meshes.size(); ++m) {
    const PageMesh& mesh = model.meshes[m];
    if (mesh.IsShells())
      for (const Elem* elem : mesh.elems) take({elem->nodes[0], elem->nodes[1], elem->nodes[2]});
    for (const std::uint32_t code : model.FacesOf(m)) {
      const Elem& elem = *mesh.elems[code / 4];
      const std::uint32_t face = code % 4;
      take({elem.nodes[face], elem.nodes[(face + 1) % 4], elem.nodes[(face + 2) % 4]});
    }
  }
}

/// The undeformed edges where a surface ends or bends by more than 30 degrees.
void DrawOutline(SvgCanvas& canvas, const SvgView& view, const PageModel& model) {
  constexpr double kFlat = 0.866;
  struct Edge {
    int faces = 0;
    Vector3 normal{};
    bool bends = false;
  };
  std::map<std::pair<int, int>, Edge> edges;
  std::map<int, Vector3> places;
  ForEachFace(model, [&](const std::array<const Node*, 3>& corners) {
    const Vector3 a = PositionOf(*corners[0]);
    const Vector3 normal =
        kestol::Unit(Cross(Minus(PositionOf(*corners[1]), a), Minus(PositionOf(*corners[2]), a)));
    for (std::size_t k = 0; k < 3; ++k) {
      const auto [low, high] = std::minmax(corners[k]->number, corners[(k + 1) % 3]->number);
      places[corners[k]->number] = PositionOf(*corners[k]);
      Edge& edge = edges[{low, high}];
      if (++edge.faces == 1) edge.normal = normal;
      edge.bends = edge.bends || std::abs(Dot(edge.normal, normal)) < kFlat;
    }
  });
  for (const auto& [ends, edge] : edges)
    if (edge.faces == 1 || edge.bends)
      canvas.Line(view.At(places[ends.first]), view.At(places[ends.second]), "ghost");
}

/// A grey with a little blue, the lighter the more the face looks to the light.
std::string ShadeOf(const FlatFace& face) {
  const int grey = static_cast<int>(std::lround(190.0 + 50.0 * face.light));
  const std::string shade = std::to_string(grey);
  return "rgb(" + shade + "," + shade + "," + std::to_string(grey + 6) + ")";
}

/// Shells and the outer faces of solids, the far ones first.
void DrawFaces(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
               const Motion& motion) {
  std::vector<FlatFace> faces;
  ForEachFace(model, [&](const std::array<const Node*, 3>& nodes) {
    std::vector<Vector3> corners;
    corners.reserve(nodes.size());
    for (const Node* node : nodes) corners.push_back(motion.PlaceOf(*node));
    AddFace(view, corners, faces);
  });
  std::stable_sort(faces.begin(), faces.end(),
                   [](const FlatFace& a, const FlatFace& b) { return a.depth < b.depth; });
  for (const FlatFace& face : faces)
    canvas.Path(face.corners, true, "face\" fill=\"" + ShadeOf(face));
}

double LargestMotion(const PageModel& model, const Results& results,
                     const std::optional<BeamTable>& beams) {
  double largest = 0.0;
  for (const Node* node : model.places.Nodes())
    largest = std::max(largest, Norm(DisplacementOf(model.project, results, *node).u));
  if (beams)
    for (const Vector3& u : beams->displacements) largest = std::max(largest, Norm(u));
  return largest;
}

/// 1, 2 or 5 times a power of ten, not below `value`.
double RoundUp(double value) {
  const double power = std::pow(10.0, std::floor(std::log10(value)));
  for (const double m : {1.0, 2.0, 5.0})
    if (m * power >= value * (1.0 - 1e-12)) return m * power;
  return 10.0 * power;
}

}  // namespace

void DrawBeams(SvgCanvas& canvas, const SvgView& view, const PageModel& model, const char* style) {
  for (const PageMesh& mesh : model.meshes) {
    if (!mesh.IsBeams()) continue;
    for (const Elem* elem : mesh.elems)
      canvas.Line(view.At(PositionOf(*elem->nodes[0])), view.At(PositionOf(*elem->nodes[1])),
                  style);
  }
}

std::optional<BeamTable> BeamsOf(const PageModel& model, const Results& results) {
  for (const PageMesh& mesh : model.meshes)
    if (mesh.IsBeams())
      return TableOfBeams(model.project, results, static_cast<int>(mesh.stations.size()));
  return std::nullopt;
}

std::string ModelDrawing(const PageModel& model) {
  const SvgView view(model, kSvgWidth, kSvgMargin);
  SvgCanvas canvas(view.Width(), view.Height());
  DrawFaces(canvas, view, model, {});
  DrawBeams(canvas, view, model, "beam");
  DrawSupports(canvas, view, model, PositionOf);
  DrawHinges(canvas, view, model, PositionOf);
  DrawLoads(canvas, view, model);
  DrawSupportValues(canvas, view, model);
  DrawNodeNumbers(canvas, view, model);
  DrawAxes(canvas, view, model.project.problemType == Plane);
  return canvas.File("Model with supports and loads");
}

std::string DeformedDrawing(const PageModel& model, const Results& results) {
  const std::optional<BeamTable> beams = BeamsOf(model, results);
  const double largest = LargestMotion(model, results, beams);
  const double size = SvgView(model, kSvgWidth, kSvgMargin).ModelSize();
  const double factor = largest > 0.0 ? RoundUp(0.05 * size / largest) : 0.0;
  const Motion motion(model, results, factor);
  const auto placeOf = [&](const Node& node) { return motion.PlaceOf(node); };
  const SvgView view(model, kSvgWidth, kSvgMargin, placeOf);
  SvgCanvas canvas(view.Width(), view.Height());
  DrawFaces(canvas, view, model, motion);
  DrawOutline(canvas, view, model);
  DrawBeams(canvas, view, model, "ghost");
  for (int b = 0; beams && b < beams->Count(); ++b) {
    std::vector<SvgPoint> line;
    line.reserve(beams->stations);
    for (int s = 0; s < beams->stations; ++s)
      line.push_back(view.At(
          Plus(beams->PositionOf(b, s), Times(beams->displacements[beams->Place(b, s)], factor))));
    canvas.Path(line, false, "moved");
  }
  DrawSupports(canvas, view, model, placeOf);
  DrawHinges(canvas, view, model, placeOf);
  DrawAxes(canvas, view, model.project.problemType == Plane);
  const std::string unit = UnitNamesOf(model.project.units).length;
  canvas.Heading({16.0, 24.0},
                 "Deformed shape, \u00d7 " + ShortNumber(factor) + "; largest displacement " +
                     ShortNumber(largest) + (unit.empty() ? "" : " ") + unit,
                 "title");
  return canvas.File("Deformed shape");
}

}  // namespace kestol
