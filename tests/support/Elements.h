#pragma once

#include <initializer_list>
#include <vector>

#include "algebra/Vector3.h"
#include "model/Elem.h"
#include "model/Node.h"

namespace kestol {

/// One element with nodes of its own, numbered from 1, for tests of geometry.
class LoneElement {
public:
  explicit LoneElement(std::initializer_list<Vector3> points, Mesh* mesh = nullptr, int dim = 3)
      : nodes(points.size()), elem(mesh, static_cast<int>(points.size())) {
    int place = 0;
    for (const Vector3& point : points) {
      Node& node = nodes[place];
      node.x = point[0];
      node.y = point[1];
      node.z = point[2];
      node.dim = dim;
      node.number = place + 1;
      elem.nodes[place++] = &node;
    }
    elem.number = 7;
  }

  std::vector<Node> nodes;
  Elem elem;
};

}  // namespace kestol
