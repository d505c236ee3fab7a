#include "python/Solution.h"

#include <algorithm>
#include <utility>

#include "programs/common/OutputFiles.h"
#include "programs/common/ResultCsv.h"
#include "programs/common/ResultGrid.h"
#include "programs/common/ResultJson.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

Six Joined(const Vector3& a, const Vector3& b) {
  return {a[0], a[1], a[2], b[0], b[1], b[2]};
}

Six Joined(const NodeForces& forces) {
  return Joined(forces.force, forces.moment);
}

VtuEncoding EncodingOf(const std::string& name) {
  constexpr std::pair<const char*, VtuEncoding> kNames[] = {
      {"raw",    VtuEncoding::Raw   },
      {"base64", VtuEncoding::Base64},
      {"ascii",  VtuEncoding::Ascii },
  };
  for (const auto& [known, encoding] : kNames)
    if (name == known) return encoding;
  throw std::invalid_argument("encoding is \"raw\", \"base64\" or \"ascii\", not \"" + name + '"');
}

}  // namespace

Solution::Solution(std::shared_ptr<Project> model, Results answer, int stations,
                   std::function<void()> carry)
    : project(std::move(model)),
      results(std::move(answer)),
      data(*project, results, stations),
      equilibrium(EquilibriumOf(*project, results)),
      carry_(std::move(carry)) {
  TakeNodes();
  TakeBeams();
  TakeShells();
  TakeSolids();
  TakeReactions();
}

void Solution::TakeNodes() {
  ForEachNode(*project, [&](int number, const Node& node) {
    const NodeDisplacement at = DisplacementOf(*project, results, node);
    nodeNumbers.push_back(number);
    coordinates.push_back(PositionOf(node));
    displacements.push_back(Joined(at.u, at.rotation));
    loads.push_back(Joined(LoadOn(*project, results, node)));
  });
}

void Solution::TakeBeams() {
  const BeamTable& table = data.beams;
  for (int b = 0; b < table.Count(); ++b) {
    const Elem& elem = *table.beams[static_cast<std::size_t>(b)];
    beamNumbers.push_back(elem.number);
    beamMaterials.push_back(elem.materialNumber);
    beamNodes.push_back({data.NumberOf(*elem.nodes[0]), data.NumberOf(*elem.nodes[1])});
    for (int s = 0; s < table.stations; ++s)
      stationX.push_back(table.XiOf(s) * table.lengths[static_cast<std::size_t>(b)]);
  }
}

void Solution::TakeShells() {
  ForEachShell(*project, &results, [&](const ShellView& shell) {
    for (int p = 0; p < shell.pointCount; ++p) {
      const auto& [x, forces] = shell.points[static_cast<std::size_t>(p)];
      shells.elements.push_back(shell.elem->number);
      shells.x.push_back(x);
      shells.n.push_back(forces.n);
      shells.m.push_back(forces.m);
      shells.q.push_back(forces.q);
      shells.top.push_back(FaceStress(forces, shell.thickness, ShellFace::Top, shell.axes));
      shells.bottom.push_back(FaceStress(forces, shell.thickness, ShellFace::Bottom, shell.axes));
      shells.axes.push_back(shell.axes);
    }
  });
}

void Solution::TakeSolids() {
  ForEachSolid(*project, results, [&](const SolidView& solid) {
    for (int p = 0; p < solid.pointCount; ++p) {
      const auto& [x, stress] = solid.points[static_cast<std::size_t>(p)];
      solids.elements.push_back(solid.elem->number);
      solids.x.push_back(x);
      solids.stress.push_back(stress);
      solids.vonMises.push_back(VonMises(stress));
    }
  });
  const NodalStresses stresses(*project, results);
  if (!stresses.Exist()) return;
  ForEachNode(*project, [&](int, const Node& node) {
    nodalStresses.push_back(stresses.Of(node.number));
    nodalVonMises.push_back(VonMises(nodalStresses.back()));
  });
}

void Solution::TakeReactions() {
  for (const SupportedNode& support : SupportedNodes(*project)) {
    const NodeForces force = SupportForce(*project, results, *support.node);
    const Reaction* const printed = FindReaction(results, support.node->number);
    reactions.nodes.push_back(support.number);
    reactions.between.push_back(support.between);
    reactions.values.push_back(Joined(force));
    reactions.inSupportAxes.push_back(
        Joined(SupportForceInItsAxes(*project, results, *support.node)));
    reactions.printed.push_back(printed != nullptr ? printed->values : Six{});
  }
}

void Solution::WriteVtuFile(const std::string& path, const std::string& encoding, bool diagrams,
                            const std::vector<std::string>& inputs) {
  const VtuEncoding how = EncodingOf(encoding);
  Carry();
  OutputFiles files(inputs);
  OutputFile& file = files.Open(path);
  const std::string besideIt = diagrams && data.HasBeams() ? DiagramsBeside(path) : "";
  OutputFile* const beside = besideIt.empty() ? nullptr : &files.Open(besideIt);
  WriteVtu(file, ResultGrid(data).Grid(), how);
  if (beside != nullptr) WriteVtu(*beside, DiagramGrid(data).Grid(), how);
  files.Commit();
}

std::string Solution::Json(const std::string& deck) {
  Carry();
  OutputString text;
  WriteResultJson(text, deck, data);
  return std::move(text.Text());
}

std::string Solution::Csv(const std::string& table) {
  Carry();
  const auto tables = CsvTables();
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&](const CsvTable& row) { return table == row.name; });
  if (found == tables.end()) {
    std::string names;
    for (const CsvTable& row : tables)
      names += names.empty() ? row.name : ", " + std::string(row.name);
    throw std::invalid_argument("there is no table \"" + table + "\"; tables are " + names);
  }
  OutputString text;
  found->write(text, data);
  return std::move(text.Text());
}

}  // namespace kestol
