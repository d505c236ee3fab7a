#include "tests/support/RandomCases.h"

#include <set>
#include <utility>

#include "tests/support/MeshDeck.h"

namespace kestol {

namespace {

/// What stands in front of the keywords.
std::string Head(bool space) {
  std::string head = "PROBLEM random\nTYPE ";
  head += space ? "3d\n" : "2d\n";
  return head.append(
      "units_names\nkN-m kN m kPa 1000 1\nN-mm N mm MPa 1 0.001\nend\n"
      "units_mesh=m\nunits_mat_and_load=kN-m\nunits_res=kN-m\nSolver SkyLine\n");
}

std::string MeshText(const TestMesh& mesh, bool withNodes, int firstElement, int dimension) {
  std::string text = "mesh dimension " + std::to_string(dimension) + " elemtype " + mesh.elemType +
                     " nnode " + std::to_string(mesh.elems[0].size()) + "\ncoordinates\n";
  if (withNodes)
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i) {
      text += Print("%d %.17g %.17g", static_cast<int>(i) + 1, mesh.nodes[i][0], mesh.nodes[i][1]);
      text += dimension == 3 ? Print(" %.17g\n", mesh.nodes[i][2]) : "\n";
    }
  text += "end coordinates\nelements\n";
  int number = firstElement;
  for (const auto& elem : mesh.elems) {
    text += std::to_string(number++);
    for (const int node : elem) text += ' ' + std::to_string(node);
    text += " 1\n";
  }
  return text + "end elements\n";
}

}  // namespace

RandomCases::RandomCases(unsigned seed) : state_(seed * 2654435761u + 12345u) {
  for (int k = 0; k < 8; ++k) Next();
  cases_.resize(static_cast<std::size_t>(2 + Below(3)));
  switch (seed % 8) {
    case 0:
    case 1:
      MakeFrame(false);
      break;
    case 2:
    case 3:
      MakeFrame(true);
      break;
    case 4:
      MakeShells(3, false);
      break;
    case 5:
      MakeShells(Below(2) == 0 ? 3 : 6, true);
      break;
    case 6:
      MakeSolids(false);
      break;
    default:
      MakeSolids(true);
      break;
  }
}

double RandomCases::Next() {
  state_ = state_ * 1664525u + 1013904223u;
  return static_cast<double>(state_ >> 8) / (1 << 23) - 1.0;
}

int RandomCases::Below(int n) {
  return static_cast<int>((Next() + 1.0) / 2.0 * n) % n;
}

std::vector<double> RandomCases::Factors() {
  std::vector<double> factors;
  for (int k = 0; k < CaseCount(); ++k) factors.push_back(Below(5) == 0 ? 0.0 : 1.6 * Next());
  return factors;
}

// --- models -------------------------------------------------------------------------------------

/// Storeys and bays with columns from node to node; beams meet some nodes of the top by hinges.
void RandomCases::MakeFrame(bool space) {
  const int bays = 1 + Below(3), storeys = 1 + Below(3), rows = space ? 2 : 1;
  TestMesh mesh{"Linear", {}, {}};
  const auto at = [&](int i, int j, int r) { return (r * (storeys + 1) + j) * (bays + 1) + i + 1; };
  for (int r = 0; r < rows; ++r)
    for (int j = 0; j <= storeys; ++j)
      for (int i = 0; i <= bays; ++i) {
        const double x = Near(5.0) + 5.0 * i, up = 3.5 * j + (j > 0 ? 0.2 * Next() : 0.0);
        mesh.nodes.push_back(space ? Vector3{x, 4.0 * r, up} : Vector3{x, up, 0.0});
      }
  for (int r = 0; r < rows; ++r)
    for (int j = 0; j < storeys; ++j)
      for (int i = 0; i <= bays; ++i) mesh.elems.push_back({at(i, j, r), at(i, j + 1, r)});
  for (int r = 0; r < rows; ++r)
    for (int j = 1; j <= storeys; ++j)
      for (int i = 0; i < bays; ++i) mesh.elems.push_back({at(i, j, r), at(i + 1, j, r)});
  for (int j = 1; j <= storeys && space; ++j)
    for (int i = 0; i <= bays; ++i) mesh.elems.push_back({at(i, j, 0), at(i, j, 1)});

  // The first beam keeps a hinged node; later ones are hinged there, at their second end.
  std::set<int> hinged, claimed;
  if (Below(2) == 0) hinged.insert(at(bays, storeys, 0));
  for (auto& elem : mesh.elems) {
    const auto released = [&](int node) {
      return hinged.count(node) != 0 && !claimed.insert(node).second;
    };
    const bool first = released(elem[0]), second = released(elem[1]);
    if (first && !second) std::swap(elem[0], elem[1]);
  }
  for (const int node : hinged) rotules_ += std::to_string(node) + '\n';

  plane_ = !space;
  dofs_ = space ? 6 : 3;
  head_ = Head(space);
  if (space) gravity_ = {0.0, 0.0, -1.0};
  meshes_ = MeshText(mesh, true, 1, space ? 3 : 2);
  material_ = space ? "E=210e6 G=80e6 A=1e-2 Iy=1e-4 Iz=2e-4 J=1e-4" : "E=210e6 A=1e-2 Iz=1e-4";
  weight_ = Below(2) == 0 ? 78.5 : 0.0;
  for (int r = 0; r < rows; ++r)
    for (int i = 0; i <= bays; ++i) {
      Support support;
      support.codes = space ? "111111" : "111";
      if (i > 0 && Below(3) == 0) {
        support.codes.back() = '2';
        support.springs[static_cast<std::size_t>(dofs_ - 1)] = Near(3000.0);
      }
      if (Below(3) == 0) support.keys = Print(" Euler3=%.6f", 0.6 * Next());
      supports_[at(i, 0, r)] = support;
    }
  const int nodes = static_cast<int>(mesh.nodes.size()),
            beams = static_cast<int>(mesh.elems.size());
  for (Case& loads : cases_) AddFrameLoads(loads, nodes, beams, space);
}

void RandomCases::MakeShells(int nnode, bool withBeams) {
  const int nx = 2 + Below(2), ny = 2 + Below(2);
  const double rise = 0.4 * Next(), side = Near(3.0);
  TestMesh mesh =
      Grid(nx, ny, Below(2) == 0 ? Cut::Right : Cut::Cross, [&](double x, double y, double) {
        return Vector3{side * x, 2.0 * y, rise * x * (1.0 - x)};
      });
  const int corners = static_cast<int>(mesh.nodes.size());
  const bool convert = nnode == 3 && Below(3) == 0;
  if (nnode == 6) ToSix(mesh);
  plane_ = false;
  dofs_ = 6;
  gravity_ = {0.0, 0.0, -1.0};
  head_ = Head(true);
  if (convert) head_ += "ConvertTo6Nodes\n";
  if (Below(2) == 0) head_ += Below(2) == 0 ? "MainStresses\n" : "MainAndLocalStresses\n";
  if (Below(2) == 0) head_ += "DoSmoothing=0.8\n";
  meshes_ = MeshText(mesh, true, 1, 3);
  int beams = 0;
  if (withBeams && nnode == 3 && !convert) {
    TestMesh edge{"Linear", {}, {}};
    for (int j = 0; j < ny; ++j) edge.elems.push_back({j * (nx + 1) + 1, (j + 1) * (nx + 1) + 1});
    beams = ny;
    meshes_ += MeshText(edge, false, 1001, 3);
  }
  material_ = "E=30e6 nu=0.2 t=0.15 G=12.5e6 A=0.02 Iy=1e-4 Iz=1e-4 J=1e-4";
  weight_ = 25.0;
  for (int i = 0; i <= nx; ++i)
    for (const int node : {i + 1, ny * (nx + 1) + i + 1}) {
      Support support;
      support.codes = Below(2) == 0 ? "111111" : "111000";
      if (Below(4) == 0) support.keys = Print(" Euler3=%.6f", 0.6 * Next());
      supports_[node] = support;
    }
  for (Case& loads : cases_)
    AddShellLoads(loads, corners, static_cast<int>(mesh.elems.size()), beams);
}

void RandomCases::MakeSolids(bool ten) {
  const int nx = 1 + Below(2);
  const double length = Near(2.0), twist = 0.3 * Next();
  const TestMesh mesh = Box(nx, 1, 1 + Below(2), ten, [&](double x, double y, double z) {
    return Vector3{length * x, y + twist * x * z, z};
  });
  plane_ = false;
  dofs_ = 3;
  gravity_ = {0.0, 0.0, -1.0};
  head_ = Head(true);
  meshes_ = MeshText(mesh, true, 1, 3);
  material_ = "E=30e6 nu=0.2";
  weight_ = 25.0;
  for (const int node : mesh.Where([](const Vector3& p) { return p[0] < 1e-9; })) {
    Support support;
    support.codes = "111";
    if (Below(4) == 0) support.keys = Print(" Euler2=%.6f", 0.6 * Next());
    supports_[node] = support;
  }
  for (Case& loads : cases_)
    AddSolidLoads(loads, static_cast<int>(mesh.nodes.size()), static_cast<int>(mesh.elems.size()));
}

// --- loads --------------------------------------------------------------------------------------

void RandomCases::AddNodal(Case& loads, int node) {
  std::vector<double> values;
  for (int d = 0; d < dofs_; ++d) values.push_back(20.0 * Next());
  loads.lines.push_back({"nodal_point_loads", std::to_string(node), values, ""});
}

void RandomCases::AddSettlements(Case& loads) {
  if (Below(2) == 0) return;
  for (const auto& [node, support] : supports_) {
    if (Below(3) != 0) continue;
    std::array<double, 6> values{};
    for (std::size_t d = 0; d < support.codes.size(); ++d)
      if (support.codes[d] == '1') values[d] = 0.01 * Next();
    loads.settlements[node] = values;
  }
}

void RandomCases::AddFrameLoads(Case& loads, int nodes, int beams, bool space) {
  for (int n = Below(3); n >= 0; --n) AddNodal(loads, 1 + Below(nodes));
  for (int n = Below(4); n >= 0; --n) {
    const char* const sections[] = {"global_pressure_loads", "global_projected_pressure_loads",
                                    "local_pressure_loads"};
    const int kind = Below(3);
    std::vector<double> q = {10.0 * Next(), 10.0 * Next()};
    if (space) q.push_back(10.0 * Next());
    if (space && kind == 2) q.push_back(Next());
    loads.lines.push_back(
        {sections[kind], std::to_string(1 + Below(beams)), q, Below(4) == 0 ? " Units N-mm" : ""});
  }
  AddSettlements(loads);
}

void RandomCases::AddShellLoads(Case& loads, int nodes, int shells, int beams) {
  AddNodal(loads, 1 + Below(nodes));
  for (int n = Below(4); n >= 0; --n) {
    const char* const sections[] = {"global_pressure_loads", "global_projected_pressure_loads",
                                    "local_pressure_loads"};
    loads.lines.push_back({
        sections[Below(3)],
        std::to_string(1 + Below(shells)),
        {5.0 * Next(), 5.0 * Next(), 5.0 * Next()},
        ""
    });
  }
  loads.lines.push_back({
      "face_loads",
      std::to_string(1 + Below(shells)) + " " + std::to_string(Below(3)),
      {Next(), Next(), Next()},
      ""
  });
  if (beams > 0)
    loads.lines.push_back({
        "global_pressure_loads",
        std::to_string(1001 + Below(beams)),
        {Next(), Next(), Next()},
        ""
    });
  AddSettlements(loads);
}

void RandomCases::AddSolidLoads(Case& loads, int nodes, int solids) {
  AddNodal(loads, 1 + Below(nodes));
  for (int n = Below(4); n >= 0; --n)
    loads.lines.push_back({
        Below(2) == 0 ? "global_pressure_loads" : "local_pressure_loads",
        std::to_string(1 + Below(solids)) + " " + std::to_string(Below(5) - 1),
        {30.0 * Next(), 30.0 * Next(), 30.0 * Next()},
        ""
    });
  AddSettlements(loads);
}

// --- texts --------------------------------------------------------------------------------------

std::string RandomCases::Numbers(const std::vector<double>& values, double factor) const {
  std::string text;
  for (const double value : values) text += Print(" %.17g", factor * value);
  return text;
}

std::string RandomCases::SectionsOf(const Case& loads, double factor) const {
  std::string text;
  for (const auto& [section, before, values, behind] : loads.lines)
    text += section + '\n' + before + Numbers(values, factor) + behind + "\nend\n";
  return text;
}

std::string RandomCases::ConstraintLine(int node, const Support& support,
                                        const std::array<double, 6>& values,
                                        bool settlementsOnly) const {
  std::string codes = support.codes, numbers;
  for (std::size_t d = 0; d < codes.size(); ++d) {
    if (settlementsOnly && codes[d] == '2') codes[d] = '0';
    numbers += Print(" %.17g", codes[d] == '2' ? support.springs[d] : values[d]);
  }
  return std::to_string(node) + ' ' + codes + numbers + support.keys + '\n';
}

std::string RandomCases::CaseText(int k) const {
  const Case& loads = cases_[static_cast<std::size_t>(k)];
  std::string text = "# a case\n" + SectionsOf(loads, 1.0);
  if (loads.settlements.empty()) return text;
  text += "constraints\n";
  for (const auto& [node, values] : loads.settlements)
    text += ConstraintLine(node, supports_.at(node), values, true);
  return text + "end constraints\n";
}

std::string RandomCases::Deck(const std::vector<double>& factors) const {
  const double own = factors[0], sign = own < 0.0 ? -1.0 : 1.0;
  std::string text = head_;
  text += Print("GravityDirection %g %g %g\n", sign * gravity_[0], sign * gravity_[1],
                sign * gravity_[2]);
  text += meshes_ + "materials\n1 " + material_;
  if (weight_ * own != 0.0) text += Print(" Weight=%.17g", weight_ * own * sign);
  text += "\nend materials\n";
  if (!rotules_.empty()) text += "rotules\n" + rotules_ + "end rotules\n";
  std::map<int, std::array<double, 6>> settlements;
  for (std::size_t k = 0; k < factors.size(); ++k)
    for (const auto& [node, values] : cases_[k].settlements)
      for (std::size_t d = 0; d < values.size(); ++d)
        settlements[node][d] += factors[k] * values[d];
  text += "constraints\n";
  for (const auto& [node, support] : supports_)
    text += ConstraintLine(node, support, settlements[node], false);
  text += "end constraints\n";
  for (std::size_t k = 0; k < factors.size(); ++k)
    if (factors[k] != 0.0) text += SectionsOf(cases_[k], factors[k]);
  return text;
}

}  // namespace kestol
