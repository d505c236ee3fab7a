#include "kestol/mechanisms/ElementEnergies.h"

#include "algebra/Matriu.h"
#include "algebra/StiffnessMatrix.h"
#include "analysis/Assembly.h"
#include "analysis/MeshPart.h"

namespace kestol {

namespace {

/// Stands where a matrix is assembled and adds up the energies of the blocks instead. Elements
/// come one after the other, each with a block for every pair of its nodes.
class EnergyCounter final : public BlockSink {
public:
  EnergyCounter(const Project& project, const ReaVecT& z) : z_(z) {
    for (const auto& mesh : project.meshes)
      for (const auto [number, elem] : mesh->elems) {
        energies.push_back({number, 0.0});
        blocks_.push_back(elem->nnode * (elem->nnode + 1) / 2);
      }
  }

  void AddBlock(int firstRow, int firstCol, const Matriu& block) override {
    double energy = 0.0;
    for (int i = 1; i <= block.nrows; ++i)
      for (int j = 1; j <= block.ncols; ++j)
        energy += z_(firstRow + i - 1) * block(i, j) * z_(firstCol + j - 1);
    energies[element_].energy += firstRow == firstCol ? energy : 2.0 * energy;
    if (++seen_ < blocks_[element_]) return;
    seen_ = 0;
    ++element_;
  }

  std::vector<ElementEnergy> energies;

private:
  const ReaVecT& z_;
  std::vector<int> blocks_;  // of each element
  std::size_t element_ = 0;
  int seen_ = 0;
};

}  // namespace

std::vector<ElementEnergy> ElementEnergiesOf(const Project& project, const ReaVecT& z) {
  EnergyCounter counter(project, z);
  AddStiffness(project, WholeMeshes(project), counter, BlockAxes::Global);
  return std::move(counter.energies);
}

}  // namespace kestol
