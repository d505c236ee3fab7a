#pragma once

#include <optional>
#include <unordered_map>

#include "algebra/FixedMatrix.h"
#include "algebra/Matriu.h"

namespace kestol {

class BlockSink;
class Project;
struct Node;

/// In which axes node blocks go into the matrix: those of inclined supports (the system to solve)
/// or global axes (the reaction pass).
enum class BlockAxes { Global = 0, Support = 1 };

/// The axes of a node's inclined support as columns, the same for translations and rotations; none
/// for any other node. Ends the run for axes that leave the plane of a plane problem.
std::optional<FixedMatrix<3, 3>> SupportAxes(const Project& project, const Node& node);

/// Hands node blocks of element stiffnesses to a matrix: in upper order, turned into the axes of
/// inclined supports where asked.
class NodeBlocks {
public:
  NodeBlocks(const Project& project, BlockSink& matrix, BlockAxes axes);

  /// Adds the block K (dofsPerNode square, global axes) of rows of node `a` and columns of node
  /// `b`. Call it once for each pair of an element's nodes, in either order; K is used up.
  void Add(const Node& a, const Node& b, Matriu& K);

private:
  void Turn(const Node& a, const Node& b, Matriu& K);
  const FixedMatrix<3, 3>& ToSupport(const Node& node);

  const Project& project_;
  BlockSink& matrix_;
  BlockAxes axes_;
  int dofs_;
  std::unordered_map<const Node*, FixedMatrix<3, 3>> toSupport_;  ///< of the inclined ones so far
};

}  // namespace kestol
