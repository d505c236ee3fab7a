#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "programs/common/OutputFile.h"
#include "programs/common/ResultGrid.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

constexpr double kHeight = 0.1;     ///< of the model's size
constexpr double kRounding = 1e-9;  ///< a kind of values below this part of the largest is noise

/// The diagonal of the box around all nodes.
double SizeOf(const std::vector<const Node*>& nodes) {
  Vector3 low{}, high{};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const Vector3 x = PositionOf(*nodes[i]);
    for (std::size_t k = 0; k < 3; ++k) {
      low[k] = i == 0 ? x[k] : std::min(low[k], x[k]);
      high[k] = i == 0 ? x[k] : std::max(high[k], x[k]);
    }
  }
  return Norm(Minus(high, low));
}

double LargestOf(const std::vector<double>& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::abs(value));
  return largest;
}

}  // namespace

std::string DiagramsBeside(const std::string& vtu) {
  constexpr std::string_view kEnding = ".vtu";
  if (!HasPlace(vtu)) return {};
  std::string_view stem = vtu;
  if (stem.ends_with(kEnding)) stem.remove_suffix(kEnding.size());
  return std::string(stem) + "_diagrams.vtu";
}

DiagramGrid::DiagramGrid(const ResultData& data) : data_(data) {
  for (int v = 0; v < kBeamValues; ++v)
    if (StrengthOf(static_cast<BeamValue>(v), data.project.problemType) != 0)
      kinds_.push_back(static_cast<BeamValue>(v));
  TakeScales();
  AddGeometry();
  AddData();
}

/// Moments count as forces at the end of the model.
void DiagramGrid::TakeScales() {
  const double size = SizeOf(data_.nodes);
  std::array<double, kBeamValues> largest{};
  double overall = 0.0;
  for (const BeamValue kind : kinds_) {
    largest[kind] = LargestOf(data_.beams.values[kind]);
    overall = std::max(overall, kind < kT ? largest[kind] : largest[kind] / size);
  }
  for (const BeamValue kind : kinds_) {
    const double asForce = kind < kT ? largest[kind] : largest[kind] / size;
    if (asForce > kRounding * overall) scale_[kind] = kHeight * size / largest[kind];
  }
}

/// Calls action(kind, beam): value by value, beam by beam.
template <class Action>
void DiagramGrid::ForEachStrip(Action action) const {
  for (const BeamValue kind : kinds_)
    for (int beam = 0; beam < data_.beams.Count(); ++beam) action(kind, beam);
}

/// Each strip has the stations on the axis, then those at the value:
///
///     n ---- n+1 --- ...   2n - 1
///     |       |
///     0 ----  1  --- ...    n - 1
void DiagramGrid::AddGeometry() {
  const BeamTable& beams = data_.beams;
  const int n = beams.stations;
  const std::int64_t strips = static_cast<std::int64_t>(kinds_.size()) * beams.Count();
  const std::int64_t cells = strips * (n - 1), points = strips * 2 * n;
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  if (points > kMost || 4 * cells > kMost)
    throw ProgramError("the diagrams are too large for one VTU file; ask for fewer stations");

  grid_.points = {"Points", VtuType::Float64, 3, points, [this, n](VtuValues& out) {
                    std::vector<Vector3> axis(static_cast<std::size_t>(n)), drawn(axis);
                    ForEachStrip([&](BeamValue kind, int beam) {
                      const BeamTable& table = data_.beams;
                      const Vector3 direction =
                          Times(table.DiagramDirection(beam, kind, data_.project.problemType),
                                scale_[kind]);
                      const double* const values = table.values[kind].data() + table.Place(beam, 0);
                      for (int s = 0; s < n; ++s) {
                        const auto k = static_cast<std::size_t>(s);
                        axis[k] = table.PositionOf(beam, s);
                        drawn[k] = Plus(axis[k], Times(direction, values[s]));
                      }
                      for (const auto* row : {&axis, &drawn})
                        out.Add(std::span<const double>(row->front().data(), 3 * row->size()));
                    });
                  }};
  grid_.connectivity = {
      "connectivity", VtuType::Int32, 1, 4 * cells, [this, n](VtuValues& out) {
        std::int32_t first = 0;
        ForEachStrip([&](BeamValue, int) {
          for (int s = 0; s < n - 1; ++s, ++first)
            out.Add(std::array<std::int32_t, 4>{first, first + 1, first + n + 1, first + n});
          first += n + 1;
        });
      }};
  grid_.offsets = {"offsets", VtuType::Int32, 1, cells, [cells](VtuValues& out) {
                     for (std::int64_t c = 1; c <= cells; ++c)
                       out.Add(static_cast<std::int32_t>(4 * c));
                   }};
  grid_.types = {"types", VtuType::UInt8, 1, cells, [cells](VtuValues& out) {
                   for (std::int64_t c = 0; c < cells; ++c)
                     out.Add(static_cast<std::uint8_t>(kVtuQuad));
                 }};
}

void DiagramGrid::AddData() {
  const int n = data_.beams.stations;
  grid_.pointData.push_back(
      {"value", VtuType::Float64, 1, grid_.points.tuples, [this, n](VtuValues& out) {
         ForEachStrip([&](BeamValue kind, int beam) {
           const std::span<const double> values(
               data_.beams.values[kind].data() + data_.beams.Place(beam, 0),
               static_cast<std::size_t>(n));
           out.Add(values);
           out.Add(values);
         });
       }});
  const auto add = [this, n](const std::string& name, auto valueOf) {
    grid_.cellData.push_back(
        {name, VtuType::Int32, 1, grid_.types.tuples, [this, n, valueOf](VtuValues& out) {
           ForEachStrip([&](BeamValue kind, int beam) {
             const std::int32_t value = valueOf(kind, beam);
             for (int s = 0; s < n - 1; ++s) out.Add(value);
           });
         }});
  };
  add("component", [](BeamValue kind, int) { return static_cast<std::int32_t>(kind) + 1; });
  add("element", [this](BeamValue, int beam) {
    return std::int32_t{data_.beams.beams[static_cast<std::size_t>(beam)]->number};
  });
}

}  // namespace kestol
