#include "python/Arrays.h"

#include <algorithm>
#include <initializer_list>
#include <type_traits>

namespace py = pybind11;

namespace kestol {

namespace {

/// `rows` x the inner sizes of T, all doubles or ints, from `first` on.
template <class Scalar>
py::array View(const void* first, std::size_t rows, std::initializer_list<py::ssize_t> inner,
               const py::object& owner) {
  std::vector<py::ssize_t> shape = {static_cast<py::ssize_t>(rows)};
  shape.insert(shape.end(), inner);
  // An empty vector has no memory; the array then takes some of its own.
  const auto* const data = static_cast<const Scalar*>(first);
  py::array array = rows == 0 || data == nullptr
                        ? py::array(py::dtype::of<Scalar>(), shape)
                        : py::array(py::dtype::of<Scalar>(), shape, data, owner);
  array.attr("setflags")(py::arg("write") = false);
  return array;
}

py::array ViewOf(const std::vector<double>& v, const py::object& owner) {
  return View<double>(v.data(), v.size(), {}, owner);
}
py::array ViewOf(const std::vector<int>& v, const py::object& owner) {
  return View<int>(v.data(), v.size(), {}, owner);
}
template <class T, std::size_t N>
py::array ViewOf(const std::vector<std::array<T, N>>& v, const py::object& owner) {
  return View<T>(v.data(), v.size(), {static_cast<py::ssize_t>(N)}, owner);
}
py::array ViewOf(const std::vector<Frame>& v, const py::object& owner) {
  static_assert(sizeof(Frame) == 9 * sizeof(double));
  return View<double>(v.data(), v.size(), {3, 3}, owner);
}
py::array ViewOf(const std::vector<BeamEndForces>& v, const py::object& owner) {
  static_assert(sizeof(BeamEndForces) == 12 * sizeof(double));
  return View<double>(v.data(), v.size(), {2, 6}, owner);
}

/// A vector over beams and their stations, as rows of stations.
template <class T>
py::array OverStations(const Solution& s, const std::vector<T>& v, const py::object& owner) {
  const auto rows = static_cast<std::size_t>(s.data.beams.Count());
  const auto stations = static_cast<py::ssize_t>(s.data.beams.stations);
  if constexpr (std::is_same_v<T, double>)
    return View<double>(v.data(), rows, {stations}, owner);
  else
    return View<double>(v.data(), rows, {stations, 3}, owner);
}

template <BeamValue value>
py::array BeamValues(const Solution& s, const py::object& owner) {
  return OverStations(s, s.data.beams.values[value], owner);
}

struct Table {
  const char* name;
  py::array (*view)(const Solution&, const py::object&);
};

// clang-format off
#define KESTOL_TABLE(name, vector) \
  {name, [](const Solution& s, const py::object& owner) { return ViewOf(s.vector, owner); }}
#define KESTOL_STATION_TABLE(name, vector) \
  {name, [](const Solution& s, const py::object& owner) { \
     return OverStations(s, s.vector, owner); }}
constexpr Table kTables[] = {
    KESTOL_TABLE("node_numbers", nodeNumbers),
    KESTOL_TABLE("coordinates", coordinates),
    KESTOL_TABLE("displacements", displacements),
    KESTOL_TABLE("loads", loads),
    KESTOL_TABLE("beam_numbers", beamNumbers),
    KESTOL_TABLE("beam_materials", beamMaterials),
    KESTOL_TABLE("beam_nodes", beamNodes),
    KESTOL_TABLE("beam_lengths", data.beams.lengths),
    KESTOL_TABLE("beam_axes", data.beams.axes),
    KESTOL_TABLE("beam_end_forces", data.beams.ends),
    KESTOL_STATION_TABLE("beam_x", stationX),
    KESTOL_STATION_TABLE("beam_u", data.beams.displacements),
    KESTOL_STATION_TABLE("beam_rotations", data.beams.rotations),
    {"beam_N", BeamValues<kN>},
    {"beam_Vy", BeamValues<kVy>},
    {"beam_Vz", BeamValues<kVz>},
    {"beam_T", BeamValues<kT>},
    {"beam_My", BeamValues<kMy>},
    {"beam_Mz", BeamValues<kMz>},
    KESTOL_TABLE("shell_elements", shells.elements),
    KESTOL_TABLE("shell_x", shells.x),
    KESTOL_TABLE("shell_n", shells.n),
    KESTOL_TABLE("shell_m", shells.m),
    KESTOL_TABLE("shell_q", shells.q),
    KESTOL_TABLE("shell_top", shells.top),
    KESTOL_TABLE("shell_bottom", shells.bottom),
    KESTOL_TABLE("shell_axes", shells.axes),
    KESTOL_TABLE("solid_elements", solids.elements),
    KESTOL_TABLE("solid_x", solids.x),
    KESTOL_TABLE("solid_stress", solids.stress),
    KESTOL_TABLE("solid_von_mises", solids.vonMises),
    KESTOL_TABLE("nodal_stresses", nodalStresses),
    KESTOL_TABLE("nodal_von_mises", nodalVonMises),
    KESTOL_TABLE("reaction_nodes", reactions.nodes),
    KESTOL_TABLE("reaction_between", reactions.between),
    KESTOL_TABLE("reactions", reactions.values),
    KESTOL_TABLE("reactions_in_support_axes", reactions.inSupportAxes),
    KESTOL_TABLE("reactions_as_printed", reactions.printed),
};
#undef KESTOL_TABLE
#undef KESTOL_STATION_TABLE
// clang-format on

}  // namespace

py::array ArrayOf(const Solution& solution, const std::string& name, const py::object& owner) {
  for (const Table& table : kTables)
    if (name == table.name) return table.view(solution, owner);
  throw py::key_error(name);
}

}  // namespace kestol
