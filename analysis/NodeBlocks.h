#pragma once

#include "algebra/Matriu.h"

class Project;
struct Node;

/// In which axes node blocks go into the matrix: the local axes of constrained nodes (the system to
/// solve) or global axes (the reaction pass).
enum class BlockAxes { Global = 0, Constraint = 1 };

/// Hands node blocks of element stiffnesses to the project's solver: in upper order, turned into
/// the axes of inclined supports where asked.
class NodeBlocks {
public:
  NodeBlocks(Project& project, BlockAxes axes);

  /// Adds the block K (dofsPerNode square, global axes) of rows of node `a` and columns of node
  /// `b`. Call it once for each pair of an element's nodes, in either order; K is used up.
  void Add(const Node& a, const Node& b, Matriu& K);

private:
  void Turn(const Node& a, const Node& b, Matriu& K);

  Project& project_;
  BlockAxes axes_;
  int dofs_;
  Matriu axesMatrix_, work_;
};
