#include <algorithm>
#include <set>

#include "algebra/Matriu.h"
#include "programs/view/LoadGroups.h"
#include "programs/view/SvgSymbols.h"
#include "results/BeamResults.h"
#include "results/ElementLoads.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

constexpr double kShortest = 16.0, kLongest = 44.0;

double ArrowLength(double value, double largest) {
  return kShortest + (kLongest - kShortest) * (largest > 0.0 ? value / largest : 1.0);
}

std::string WithUnit(double value, const std::string& unit) {
  return ShortNumber(value) + (unit.empty() ? "" : " ") + unit;
}

/// Draws the loads of one model.
class LoadDrawing {
public:
  LoadDrawing(SvgCanvas& canvas, const SvgView& view, const PageModel& model)
      : canvas_(canvas), view_(view), model_(model), units_(UnitNamesOf(model.project.units)) {}

  void OnElements() {
    double largest = 0.0;
    for (const PageMesh& mesh : model_.meshes)
      for (const Elem* elem : mesh.elems)
        largest = std::max(largest, Norm(SpreadOf(mesh, *elem).load));
    for (const PageMesh& mesh : model_.meshes)
      for (const Elem* elem : mesh.elems) {
        const Spread spread = SpreadOf(mesh, *elem);
        const double value = Norm(spread.load);
        if (value == 0.0) continue;
        const double length = 0.7 * ArrowLength(value, largest);
        if (mesh.IsBeams()) {
          OnBeam(*elem, spread, length);
        } else {
          OnSurface(mesh, *elem, spread, length);
        }
      }
  }

  void OnNodes() {
    double largest = 0.0;
    const auto of = [&](const Node& node) { return SixComponents(*node.load, model_.project); };
    for (const Node* node : model_.places.Nodes())
      if (node->load) largest = std::max(largest, Norm(ForceIn(of(*node))));
    for (const Node* node : model_.places.Nodes()) {
      if (!node->load) continue;
      const auto six = of(*node);
      const SvgPoint at = view_.At(PositionOf(*node));
      DrawForce(at, ForceIn(six), largest);
      DrawMoment(at, {six[3], six[4], six[5]});
    }
  }

private:
  static Vector3 ForceIn(const std::array<double, 6>& six) { return {six[0], six[1], six[2]}; }

  /// What is spread over the element, in global axes, and over what: its dimension.
  struct Spread {
    Vector3 load;
    int dimension;
  };

  Spread SpreadOf(const PageMesh& mesh, const Elem& elem) const {
    const ElementLoads loads = LoadsOnElement(model_.project, elem);
    if (mesh.IsBeams()) return {loads.perLength, 1};
    if (Norm(loads.perArea) > 0.0) return {loads.perArea, 2};
    return mesh.IsShells() ? Spread{loads.perLength, 1} : Spread{loads.perVolume, 3};
  }

  std::string UnitPer(int dimension) const {
    if (!units_.Known()) return {};
    return units_.force + "/" + units_.length +
           (dimension == 1   ? ""
            : dimension == 2 ? "\u00b2"
                             : "\u00b3");
  }

  std::string TextOf(const Spread& spread) const {
    return WithUnit(Norm(spread.load), UnitPer(spread.dimension));
  }

  void DrawForce(SvgPoint at, const Vector3& force, double largest) {
    const double value = Norm(force);
    if (value == 0.0) return;
    const SvgPoint back = view_.Direction(kestol::Unit(force)) *
                          (-(ArrowLength(value, largest) + 8.0) / view_.Pixels());
    canvas_.Arrow(at + back, at, "load");
    canvas_.Label(at + back, back, WithUnit(value, units_.force), "loadtext");
  }

  void DrawMoment(SvgPoint at, const Vector3& moment) {
    const double value = Norm(moment);
    if (value == 0.0) return;
    canvas_.TurningArrow(at, 13.0, Dot(moment, view_.Eye()) > 0.0, "load");
    canvas_.Label(at, {-1.0, -1.0},
                  WithUnit(value, units_.Known() ? units_.force + " " + units_.length : ""),
                  "loadtext", 16.0);
  }

  void OnBeam(const Elem& elem, const Spread& spread, double length) {
    const SvgPoint a = view_.At(PositionOf(*elem.nodes[0]));
    const SvgPoint b = view_.At(PositionOf(*elem.nodes[1])), along = b - a;
    const SvgPoint back = view_.Direction(kestol::Unit(spread.load)) * (-length / view_.Pixels());
    const SvgPoint side = Across(Unit(along));
    const bool across = std::abs(back.x * side.x + back.y * side.y) > 4.0;
    const int count = std::max(1, static_cast<int>(Length(along) / (across ? 26.0 : 44.0)));
    for (int i = 0; i <= count; ++i) {
      const SvgPoint p = a + along * (static_cast<double>(i) / count);
      if (across) {
        canvas_.Arrow(p + back, p, "load", 6.0);
      } else if (i < count) {
        const SvgPoint from = p + side * 7.0, step = Unit(back) * -(Length(along) / count * 0.7);
        canvas_.Arrow(from, from + step, "load", 6.0);
      }
    }
    if (across) canvas_.Line(a + back, b + back, "load");
    const SvgPoint middle = (a + b) * 0.5 + (across ? back : side * 10.0);
    canvas_.Label(middle, across ? back : side, TextOf(spread), "loadtext");
  }

  void OnSurface(const PageMesh& mesh, const Elem& elem, const Spread& spread, double length) {
    const int corners = mesh.IsShells() ? 3 : 4;
    Vector3 centre{};
    for (int k = 0; k < corners; ++k)
      centre = Plus(centre, Times(PositionOf(*elem.nodes[k]), 1.0 / corners));
    const SvgPoint at = view_.At(centre);
    // A field of arrows with room between them, and one word for it.
    const std::pair<int, int> cell = {static_cast<int>(at.x / 30.0), static_cast<int>(at.y / 30.0)};
    if (!cells_.insert(cell).second) return;
    const SvgPoint back = view_.Direction(kestol::Unit(spread.load)) * (-length / view_.Pixels());
    canvas_.Arrow(at + back, at, "load", 6.0);
    const std::string text = TextOf(spread);
    if (texts_.insert(text).second && texts_.size() <= 6)
      canvas_.Label(at + back, back, text, "loadtext");
  }

  SvgCanvas& canvas_;
  const SvgView& view_;
  const PageModel& model_;
  UnitNames units_;
  std::set<std::pair<int, int>> cells_;
  std::set<std::string> texts_;
};

}  // namespace

void DrawLoads(SvgCanvas& canvas, const SvgView& view, const PageModel& model) {
  LoadDrawing drawing(canvas, view, model);
  drawing.OnElements();
  drawing.OnNodes();
}

}  // namespace kestol
