#include "programs/view/PageResult.h"

#include "results/BeamResults.h"
#include "results/NodeResults.h"
#include "results/SolidResults.h"

namespace kestol {

namespace {

template <class Values>
void Append(std::vector<double>& list, const Values& values) {
  list.insert(list.end(), values.begin(), values.end());
}

bool HasRotations(const Project& project) {
  return project.problemType == Plane || project.dofsPerNode == 6;
}

/// Displacements and, where nodes have them, rotations.
void AddNodeBlocks(const PageModel& model, const Results& results, const std::string& prefix,
                   std::vector<PageBlock>& blocks) {
  std::vector<double> u, rotation;
  for (const Node* node : model.places.Nodes()) {
    const NodeDisplacement at = DisplacementOf(model.project, results, *node);
    Append(u, at.u);
    Append(rotation, at.rotation);
  }
  blocks.push_back(PageBlock::Reals(prefix + "u", 3, std::move(u)));
  if (HasRotations(model.project))
    blocks.push_back(PageBlock::Reals(prefix + "rotation", 3, std::move(rotation), true));
}

/// The beams of one mesh: N Vy Vz T My Mz of each station, and its displacement. `first` is the
/// place of the mesh's first beam in the table.
void AddBeamBlocks(const PageMesh& mesh, const BeamTable& table, int first,
                   const std::string& prefix, std::vector<PageBlock>& blocks) {
  std::vector<double> values, displacements;
  for (int b = first; b < first + static_cast<int>(mesh.elems.size()); ++b)
    for (int s = 0; s < table.stations; ++s) {
      const std::size_t place = table.Place(b, s);
      for (const std::vector<double>& component : table.values) values.push_back(component[place]);
      Append(displacements, table.displacements[place]);
    }
  blocks.push_back(PageBlock::Reals(prefix + "values", kBeamValues, std::move(values)));
  blocks.push_back(PageBlock::Reals(prefix + "u", 3, std::move(displacements)));
}

void AddShellBlocks(const PageMesh& mesh, const Results& results, const std::string& prefix,
                    std::vector<PageBlock>& blocks) {
  const ReaVecT& local = results.meshes[mesh.meshIndex].local;
  blocks.push_back(PageBlock::Reals(prefix + "values", 8, {local.begin(), local.end()}, true));
}

void AddSolidBlocks(const PageMesh& mesh, const Results& results, const std::string& prefix,
                    std::vector<PageBlock>& blocks) {
  std::vector<double> values;
  const ReaVecT& local = results.meshes[mesh.meshIndex].local;
  for (const double* point = local.begin(); point != local.end(); point += 6)
    Append(values, FromSolverOrder(point));
  blocks.push_back(PageBlock::Reals(prefix + "values", 6, std::move(values), true));
}

void AddNodalStresses(const PageModel& model, const Results& results, const std::string& prefix,
                      std::vector<PageBlock>& blocks) {
  const NodalStresses stresses(model.project, results);
  if (!stresses.Exist()) return;
  std::vector<double> values;
  for (const Node* node : model.places.Nodes()) Append(values, stresses.Of(node->number));
  blocks.push_back(PageBlock::Reals(prefix + "nodalStress", 6, std::move(values), true));
}

void AddReactions(const PageModel& model, const Results& results, const std::string& prefix,
                  std::vector<PageBlock>& blocks) {
  std::vector<std::uint32_t> nodes;
  std::vector<double> forces;
  for (const SupportedNode& supported : SupportedNodes(model.project)) {
    nodes.push_back(model.places.Of(*supported.node));
    const NodeForces at = SupportForce(model.project, results, *supported.node);
    Append(forces, at.force);
    Append(forces, at.moment);
  }
  if (nodes.empty()) return;
  blocks.push_back(PageBlock::Indices(prefix + "reactionNode", std::move(nodes)));
  blocks.push_back(PageBlock::Reals(prefix + "reaction", 6, std::move(forces)));
}

int StationsOf(const PageModel& model) {
  for (const PageMesh& mesh : model.meshes)
    if (mesh.IsBeams()) return static_cast<int>(mesh.stations.size());
  return 0;
}

}  // namespace

std::vector<PageBlock> ResultBlocks(const PageModel& model, const Results& results, int number) {
  const std::string prefix = NumberedPrefix('r', number);
  std::vector<PageBlock> blocks;
  AddNodeBlocks(model, results, prefix, blocks);
  const int stations = StationsOf(model);
  const BeamTable table =
      stations > 0 ? TableOfBeams(model.project, results, stations) : BeamTable{};
  int firstBeam = 0;
  for (std::size_t m = 0; m < model.meshes.size(); ++m) {
    const PageMesh& mesh = model.meshes[m];
    const std::string own = prefix + NumberedPrefix('m', m);
    if (mesh.IsBeams()) {
      AddBeamBlocks(mesh, table, firstBeam, own, blocks);
      firstBeam += static_cast<int>(mesh.elems.size());
    } else if (mesh.IsShells()) {
      AddShellBlocks(mesh, results, own, blocks);
    } else {
      AddSolidBlocks(mesh, results, own, blocks);
    }
  }
  AddNodalStresses(model, results, prefix, blocks);
  AddReactions(model, results, prefix, blocks);
  return blocks;
}

}  // namespace kestol
