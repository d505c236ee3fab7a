#include "programs/view/SvgDrawings.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

#include "programs/view/SvgSymbols.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

constexpr double kWidth = 760.0, kMargin = 100.0;

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

/// Shells and the outer faces of solids, the far ones first.
void DrawFaces(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
               const Motion& motion) {
  std::vector<FlatFace> faces;
  for (std::size_t m = 0; m < model.meshes.size(); ++m) {
    const PageMesh& mesh = model.meshes[m];
    if (mesh.IsBeams()) continue;
    const auto add = [&](const Elem& elem, int face) {
      std::vector<Vector3> corners;
      for (int k = 0; k < 3; ++k)
        corners.push_back(motion.PlaceOf(*elem.nodes[mesh.IsShells() ? k : (face + k) % 4]));
      AddFace(view, corners, faces);
    };
    if (mesh.IsShells())
      for (const Elem* elem : mesh.elems) add(*elem, 0);
    for (const std::uint32_t code : model.FacesOf(m))
      add(*mesh.elems[code / 4], static_cast<int>(code % 4));
  }
  std::stable_sort(faces.begin(), faces.end(),
                   [](const FlatFace& a, const FlatFace& b) { return a.depth < b.depth; });
  for (const FlatFace& face : faces) {
    const int grey = static_cast<int>(std::lround(190.0 + 50.0 * face.light));
    const std::string shade = std::to_string(grey);
    canvas.Path(face.corners, true,
                "face\" fill=\"rgb(" + shade + "," + shade + "," + std::to_string(grey + 6) + ")");
  }
}

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

struct Component {
  BeamValue value;
  const char* name;
};

/// The components of a drawing; the second one has no meaning in the plane.
std::vector<Component> ComponentsOf(DiagramOf what, bool plane) {
  switch (what) {
    case DiagramOf::AxialForce:
      return {
          {kN, "N"}
      };
    case DiagramOf::Shear:
      return plane ? std::vector<Component>{{kVy, "V"}}
                   : std::vector<Component>{{kVy, "Vy"}, {kVz, "Vz"}};
    default:
      return plane ? std::vector<Component>{{kMz, "M"}}
                   : std::vector<Component>{{kMy, "My"}, {kMz, "Mz"}};
  }
}

std::string HeadingOf(const PageModel& model, DiagramOf what, bool plane) {
  const UnitNames units = UnitNamesOf(model.project.units);
  std::string heading = what == DiagramOf::AxialForce ? "Axial force N"
                        : what == DiagramOf::Shear    ? "Shear force V"
                                                      : "Bending moment M";
  if (!plane && what != DiagramOf::AxialForce)
    heading += what == DiagramOf::Shear ? " (Vy, Vz)" : " (My, Mz)";
  if (units.Known())
    heading += " [" + units.force + (what == DiagramOf::Moment ? " " + units.length : "") + "]";
  if (what == DiagramOf::AxialForce) heading += ", tension positive";
  if (what == DiagramOf::Moment) heading += ", drawn on the tension side";
  return heading;
}

/// A value that is worth a word.
struct Peak {
  SvgPoint foot, tip;
  double value;
};

/// Strips of the diagrams over all beams.
class DiagramDrawer {
public:
  DiagramDrawer(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                const BeamTable& beams)
      : canvas_(canvas), view_(view), model_(model), beams_(beams) {}

  void Draw(const std::vector<Component>& components) {
    double largest = 0.0;
    for (const Component& c : components)
      for (const double v : beams_.values[c.value]) largest = std::max(largest, std::abs(v));
    if (largest == 0.0) return;
    factor_ = 0.1 * view_.ModelSize() / largest;
    for (const Component& c : components)
      for (int b = 0; b < beams_.Count(); ++b) AddBeam(b, c.value, 1e-6 * largest);
    WritePeaks();
  }

private:
  struct Place {
    SvgPoint foot, tip;
    double value;
  };

  Place At(int beam, int station, BeamValue value) const {
    const Vector3 x = beams_.PositionOf(beam, station);
    const double v = beams_.values[value][beams_.Place(beam, station)];
    const Vector3 d = beams_.DiagramDirection(beam, value, model_.project.problemType);
    return {view_.At(x), view_.At(Plus(x, Times(d, v * factor_))), v};
  }

  /// One part of a strip without a change of sign.
  void DrawPart(const std::vector<Place>& part) {
    if (part.size() < 2) return;
    double sum = 0.0;
    std::vector<SvgPoint> outline, area;
    for (const Place& p : part) {
      outline.push_back(p.tip);
      sum += p.value;
    }
    if (sum == 0.0) return;
    area = outline;
    for (auto p = part.rbegin(); p != part.rend(); ++p) area.push_back(p->foot);
    canvas_.Path(area, true, sum < 0.0 ? "minus" : "plus");
    canvas_.Path(outline, false, sum < 0.0 ? "minusline" : "plusline");
  }

  void AddBeam(int beam, BeamValue value, double noise) {
    std::vector<Place> part;
    int low = 0, high = 0;
    const int last = beams_.stations - 1;
    std::vector<Place> places;
    for (int s = 0; s <= last; ++s) {
      const Place place = At(beam, s, value);
      if (!part.empty() && part.back().value * place.value < 0.0) {
        const double t = part.back().value / (part.back().value - place.value);
        const SvgPoint zero = part.back().foot + (place.foot - part.back().foot) * t;
        part.push_back({zero, zero, 0.0});
        DrawPart(part);
        part = {
            {zero, zero, 0.0}
        };
      }
      part.push_back(place);
      places.push_back(place);
      if (place.value < places[low].value) low = s;
      if (place.value > places[high].value) high = s;
    }
    DrawPart(part);
    for (const int s : {0, last}) {
      const char* const style = places[s].value < 0.0 ? "minusline" : "plusline";
      if (std::abs(places[s].value) > noise) canvas_.Line(places[s].foot, places[s].tip, style);
    }
    for (const int s : std::set{low, high, 0, last})
      if (std::abs(places[s].value) > noise)
        peaks_.push_back({places[s].foot, places[s].tip, places[s].value});
  }

  /// The largest and the smallest first, in bold.
  void WritePeaks() {
    if (peaks_.empty()) return;
    std::stable_sort(peaks_.begin(), peaks_.end(), [](const Peak& a, const Peak& b) {
      return std::abs(a.value) > std::abs(b.value);
    });
    const auto [low, high] =
        std::minmax_element(peaks_.begin(), peaks_.end(),
                            [](const Peak& a, const Peak& b) { return a.value < b.value; });
    // Beams that meet say the same of their common node: one word is enough.
    std::set<std::pair<std::string, std::pair<int, int>>> written;
    const auto write = [&](const Peak& peak, const char* extreme) {
      const std::pair<int, int> cell = {static_cast<int>(peak.foot.x / 24.0),
                                        static_cast<int>(peak.foot.y / 24.0)};
      if (!written.insert({ShortNumber(std::abs(peak.value)), cell}).second) return;
      const std::string style = std::string(peak.value < 0.0 ? "minustext" : "plustext") + extreme;
      canvas_.Label(peak.tip, peak.tip - peak.foot, ShortNumber(peak.value), style, 4.0);
    };
    const Peak lowest = *low, highest = *high;
    write(highest, " extreme");
    if (lowest.value != highest.value) write(lowest, " extreme");
    for (const Peak& peak : peaks_)
      if (peak.value != lowest.value && peak.value != highest.value) write(peak, "");
  }

  SvgCanvas& canvas_;
  const SvgView& view_;
  const PageModel& model_;
  const BeamTable& beams_;
  double factor_ = 0.0;
  std::vector<Peak> peaks_;
};

}  // namespace

std::string ModelDrawing(const PageModel& model) {
  const SvgView view(model, kWidth, kMargin);
  SvgCanvas canvas(view.Width(), view.Height());
  DrawFaces(canvas, view, model, {});
  DrawBeams(canvas, view, model, "beam");
  DrawSupports(canvas, view, model);
  DrawHinges(canvas, view, model, PositionOf);
  DrawLoads(canvas, view, model);
  DrawNodeNumbers(canvas, view, model);
  DrawAxes(canvas, view, model.project.problemType == Plane);
  return canvas.File("Model with supports and loads");
}

std::string DeformedDrawing(const PageModel& model, const Results& results) {
  const SvgView view(model, kWidth, kMargin);
  SvgCanvas canvas(view.Width(), view.Height());
  const std::optional<BeamTable> beams = BeamsOf(model, results);
  const double largest = LargestMotion(model, results, beams);
  const double factor = largest > 0.0 ? RoundUp(0.05 * view.ModelSize() / largest) : 0.0;
  const Motion motion(model, results, factor);
  DrawFaces(canvas, view, model, motion);
  DrawBeams(canvas, view, model, "ghost");
  for (int b = 0; beams && b < beams->Count(); ++b) {
    std::vector<SvgPoint> line;
    for (int s = 0; s < beams->stations; ++s)
      line.push_back(view.At(
          Plus(beams->PositionOf(b, s), Times(beams->displacements[beams->Place(b, s)], factor))));
    canvas.Path(line, false, "moved");
  }
  DrawSupports(canvas, view, model);
  DrawHinges(canvas, view, model, [&](const Node& node) { return motion.PlaceOf(node); });
  DrawAxes(canvas, view, model.project.problemType == Plane);
  const std::string unit = UnitNamesOf(model.project.units).length;
  canvas.Heading({16.0, 24.0},
                 "Deformed shape, \u00d7 " + ShortNumber(factor) + "; largest displacement " +
                     ShortNumber(largest) + (unit.empty() ? "" : " ") + unit,
                 "title");
  return canvas.File("Deformed shape");
}

std::string DiagramDrawing(const PageModel& model, const Results& results, DiagramOf what) {
  const SvgView view(model, kWidth, kMargin + 16.0);
  SvgCanvas canvas(view.Width(), view.Height());
  const bool plane = model.project.problemType == Plane;
  if (const std::optional<BeamTable> beams = BeamsOf(model, results))
    DiagramDrawer(canvas, view, model, *beams).Draw(ComponentsOf(what, plane));
  DrawBeams(canvas, view, model, "beam");
  DrawSupports(canvas, view, model);
  DrawHinges(canvas, view, model, PositionOf);
  DrawAxes(canvas, view, plane);
  const std::string heading = HeadingOf(model, what, plane);
  canvas.Heading({16.0, 24.0}, heading, "title");
  return canvas.File(heading);
}

}  // namespace kestol
