#include <algorithm>
#include <cmath>
#include <set>

#include "programs/view/SvgDrawings.h"
#include "programs/view/SvgSymbols.h"
#include "results/BeamResults.h"
#include "results/UnitNames.h"

namespace kestol {

namespace {

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

constexpr double kRounding = 1e-9;  ///< of the largest force of the model

/// Strips of the diagrams over all beams.
class DiagramDrawer {
public:
  DiagramDrawer(SvgCanvas& canvas, const SvgView& view, const PageModel& model,
                const BeamTable& beams)
      : canvas_(canvas), view_(view), model_(model), beams_(beams) {}

  /// False, and nothing drawn, when all values are zero or rounding.
  bool DrawStrips(DiagramOf what, const std::vector<Component>& components) {
    double largest = 0.0;
    for (const Component& c : components) largest = std::max(largest, LargestOf(c.value));
    const double lever = what == DiagramOf::Moment ? view_.ModelSize() : 1.0;
    if (largest <= kRounding * lever * LargestForce()) return false;
    factor_ = 0.1 * view_.ModelSize() / largest;
    for (const Component& c : components)
      for (int b = 0; b < beams_.Count(); ++b) AddBeam(b, c.value, 1e-6 * largest);
    return true;
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

private:
  struct Place {
    SvgPoint foot, tip;
    double value;
  };

  double LargestOf(BeamValue value) const {
    double largest = 0.0;
    for (const double v : beams_.values[value]) largest = std::max(largest, std::abs(v));
    return largest;
  }

  /// Of forces, and of moments by forces as far apart as the model is large.
  double LargestForce() const {
    double largest = 0.0;
    for (const BeamValue force : {kN, kVy, kVz}) largest = std::max(largest, LargestOf(force));
    for (const BeamValue moment : {kT, kMy, kMz})
      largest = std::max(largest, LargestOf(moment) / view_.ModelSize());
    return largest;
  }

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
      }
      // A part ends where the value is 0, between two stations or at one.
      if (part.size() > 1 && part.back().value == 0.0) {
        DrawPart(part);
        part = {part.back()};
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

  SvgCanvas& canvas_;
  const SvgView& view_;
  const PageModel& model_;
  const BeamTable& beams_;
  double factor_ = 0.0;
  std::vector<Peak> peaks_;
};

}  // namespace

std::string DiagramDrawing(const PageModel& model, const Results& results, DiagramOf what) {
  const SvgView view(model, kSvgWidth, kSvgMargin + 32.0);
  SvgCanvas canvas(view.Width(), view.Height());
  const bool plane = model.project.problemType == Plane;
  std::string heading = HeadingOf(model, what, plane);
  if (const std::optional<BeamTable> beams = BeamsOf(model, results)) {
    DiagramDrawer drawer(canvas, view, model, *beams);
    if (!drawer.DrawStrips(what, ComponentsOf(what, plane))) heading += ": 0 everywhere";
    DrawBeams(canvas, view, model, "beam");
    DrawSupports(canvas, view, model, PositionOf);
    DrawHinges(canvas, view, model, PositionOf);
    drawer.WritePeaks();  // words stand clear of the symbols
  }
  DrawAxes(canvas, view, plane);
  canvas.Heading({16.0, 24.0}, heading, "title");
  return canvas.File(heading);
}

}  // namespace kestol
