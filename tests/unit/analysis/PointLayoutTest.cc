#include <gtest/gtest.h>

#include "analysis/PointLayout.h"
#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

struct Family {
  ProblemType problemType;
  int dofsPerNode, elemType, nnode;
  int points, values;
};

TEST(PointLayout, KnowsEveryFamilyOfElements) {
  for (const Family& family : {
           Family{Plane, 3, Linear,        2,  2, 3},
           {Space, 6, Linear,        2,  2, 6},
           {Space, 6, Triangle,      3,  1, 8},
           {Space, 6, Triangle,      6,  3, 8},
           {Space, 3, Tetrahedra,    4,  1, 6},
           {Space, 3, Tetrahedra,    10, 4, 6},
           {Space, 6, Quadrilateral, 4,  0, 0},
           {Space, 3, Hexahedra,     8,  0, 0}
  }) {
    SmallModel model(family.problemType, family.dofsPerNode);
    const Mesh& mesh = model.AddMesh(family.elemType, family.nnode);
    const PointLayout layout = PointLayoutOf(model.project, mesh);
    EXPECT_EQ(layout.points, family.points) << family.elemType << ' ' << family.nnode;
    EXPECT_EQ(layout.values, family.values) << family.elemType << ' ' << family.nnode;
    EXPECT_EQ(layout.PerElement(), family.points * family.values);
  }
}

}  // namespace

}  // namespace kestol
