#include <vector>

#include "model/Elem.h"
#include "model/Mesh.h"
#include "tests/support/Elements.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

std::unique_ptr<Mesh> MeshOf(ElemType type, int nnode) {
  auto mesh = std::make_unique<Mesh>();
  mesh->elemType = type;
  mesh->nnode = nnode;
  mesh->dimension = 3;
  return mesh;
}

std::vector<int> NodeNumbers(const Elem& elem) {
  std::vector<int> numbers;
  for (int i = 0; i < elem.nnode; ++i) numbers.push_back(elem.nodes[i]->number);
  return numbers;
}

TEST(Elem, NewElementHasNullNodesAndZeroFields) {
  const std::unique_ptr<Mesh> mesh = MeshOf(Triangle, 3);
  const Elem elem(mesh.get(), 3);
  EXPECT_EQ(elem.nnode, 3);
  EXPECT_EQ(elem.mesh, mesh.get());
  for (int i = 0; i < 3; ++i) EXPECT_EQ(elem.nodes[i], nullptr);
  EXPECT_EQ(elem.number, 0);
  EXPECT_EQ(elem.materialNumber, 0);
  EXPECT_EQ(elem.material, nullptr);
  EXPECT_EQ(elem.alpha, 0.0);
  EXPECT_EQ(elem.attributes[0], 0);
  EXPECT_EQ(elem.attributes[1], 0);
}

TEST(Elem, LengthIsThatOfTheChord) {
  const LoneElement beam{
      {1, 2, 3},
      {3, 5, 9}
  };
  EXPECT_DOUBLE_EQ(beam.elem.Length(), 7.0);
}

// --- faces ------------------------------------------------------------------------------------

TEST(Elem, FacesOfATriangleAreItsSidesInTurn) {
  const std::unique_ptr<Mesh> mesh = MeshOf(Triangle, 3);
  LoneElement triangle(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0}
  },
      mesh.get());
  EXPECT_EQ(NodeNumbers(Elem(&triangle.elem, 0)), (std::vector{1, 2}));
  EXPECT_EQ(NodeNumbers(Elem(&triangle.elem, 1)), (std::vector{2, 3}));
  EXPECT_EQ(NodeNumbers(Elem(&triangle.elem, 2)), (std::vector{3, 1}));
}

TEST(Elem, FacesOfATetrahedronAreThreeNodesInTurn) {
  const std::unique_ptr<Mesh> mesh = MeshOf(Tetrahedra, 4);
  LoneElement solid(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0},
          {0, 0, 1}
  },
      mesh.get());
  EXPECT_EQ(NodeNumbers(Elem(&solid.elem, 0)), (std::vector{1, 2, 3}));
  EXPECT_EQ(NodeNumbers(Elem(&solid.elem, 1)), (std::vector{2, 3, 4}));
  EXPECT_EQ(NodeNumbers(Elem(&solid.elem, 2)), (std::vector{3, 4, 1}));
  EXPECT_EQ(NodeNumbers(Elem(&solid.elem, 3)), (std::vector{4, 1, 2}));
}

TEST(Elem, FaceIsInNoMeshAndHasFacesItself) {
  const std::unique_ptr<Mesh> mesh = MeshOf(Tetrahedra, 4);
  LoneElement solid(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0},
          {0, 0, 1}
  },
      mesh.get());
  Elem face(&solid.elem, 1);
  EXPECT_EQ(face.mesh, nullptr);
  Elem side(&face, 2);
  EXPECT_EQ(NodeNumbers(side), (std::vector{4, 2}));
  EXPECT_FATAL(Elem(&side, 0), "error in Elem::Elem(Elem* el,int face). Linear has no faces\n");
}

TEST(Elem, LinearHasNoFaces) {
  const std::unique_ptr<Mesh> mesh = MeshOf(Linear, 2);
  LoneElement beam(
      {
          {0, 0, 0},
          {1, 0, 0}
  },
      mesh.get());
  EXPECT_FATAL(Elem(&beam.elem, 0),
               "error in Elem::Elem(Elem* el,int face). Linear has no faces\n");
}

TEST(Elem, OnlyTrianglesAndTetrahedraOfCornersHaveFaces) {
  const char* const text =
      "error in Elem::Elem(Elem* el,int face). Only Triang. and Tetr. implemented\n";
  const struct {
    ElemType type;
    int nnode;
  } others[] = {
      {Quadrilateral, 4 },
      {Quadrilateral, 8 },
      {Hexahedra,     8 },
      {Hexahedra,     20},
      {Triangle,      6 },
      {Tetrahedra,    10}
  };
  for (const auto& [type, nnode] : others) {
    const std::unique_ptr<Mesh> mesh = MeshOf(type, nnode);
    Elem elem(mesh.get(), nnode);
    EXPECT_FATAL(Elem(&elem, 0), text);
  }
}

TEST(Elem, FaceThatTheElementDoesNotHaveEndsTheRun) {
  const std::unique_ptr<Mesh> triangles = MeshOf(Triangle, 3), solids = MeshOf(Tetrahedra, 4);
  LoneElement triangle(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0}
  },
      triangles.get());
  LoneElement solid(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0},
          {0, 0, 1}
  },
      solids.get());
  EXPECT_FATAL(Elem(&triangle.elem, 3), "error: face 3 does not exist in element 7\n");
  EXPECT_FATAL(Elem(&triangle.elem, -1), "error: face -1 does not exist in element 7\n");
  EXPECT_FATAL(Elem(&solid.elem, 4), "error: face 4 does not exist in element 7\n");
}

// --- material ---------------------------------------------------------------------------------

TEST(Elem, OwnMaterialComesBeforeTheNumberedOne) {
  Plex<Material> materials(10);
  Material* const numbered = materials.Insert(3, std::make_unique<Material>());
  LoneElement beam{
      {0, 0, 0},
      {1, 0, 0}
  };
  beam.elem.materialNumber = 3;
  EXPECT_EQ(beam.elem.GetMaterial(materials), numbered);
  beam.elem.material = std::make_unique<Material>();
  EXPECT_EQ(beam.elem.GetMaterial(materials), beam.elem.material.get());
}

TEST(Elem, ElementWithoutMaterialGetsNone) {
  Plex<Material> materials(10);
  LoneElement beam{
      {0, 0, 0},
      {1, 0, 0}
  };
  EXPECT_EQ(beam.elem.GetMaterial(materials), nullptr);
  materials.Insert(3, std::make_unique<Material>());
  EXPECT_EQ(beam.elem.GetMaterial(materials), nullptr);
  beam.elem.materialNumber = 4;
  EXPECT_EQ(beam.elem.GetMaterial(materials), nullptr);
}

// --- crossing ---------------------------------------------------------------------------------

TEST(Elem, PlaneSegmentsCrossWhereBothReach) {
  const LoneElement line(
      {
          {0, 0, 0},
          {2, 2, 0}
  },
      nullptr, 2);
  EXPECT_EQ(line.elem.IsCutted({0, 2, 0}, {2, 0, 0}), 1);
  EXPECT_EQ(line.elem.IsCutted({2, 0, 0}, {0, 2, 0}), 1);
  EXPECT_EQ(line.elem.IsCutted({0, 2, 0}, {0.5, 1.5, 0}), 0);  // ends before
  EXPECT_EQ(line.elem.IsCutted({1.5, 0.5, 0}, {2, 0, 0}), 0);  // begins behind
  EXPECT_EQ(line.elem.IsCutted({3, 2, 0}, {2, 3, 0}), 0);      // passes the end
  EXPECT_EQ(line.elem.IsCutted({-1, 0, 0}, {0, -1, 0}), 0);    // passes the beginning
}

TEST(Elem, PlaneSegmentsThatTouchCross) {
  const LoneElement line(
      {
          {0, 0, 0},
          {2, 0, 0}
  },
      nullptr, 2);
  EXPECT_EQ(line.elem.IsCutted({0, 0, 0}, {0, 1, 0}), 1);
  EXPECT_EQ(line.elem.IsCutted({2, -1, 0}, {2, 0, 0}), 1);
}

/// The determinants of these crossings are 1 and -1.
TEST(Elem, SegmentsOfUnitLengthCross) {
  const LoneElement line(
      {
          {0, 0, 0},
          {1, 0, 0}
  },
      nullptr, 2);
  EXPECT_EQ(line.elem.IsCutted({0.5, -0.5, 0}, {0.5, 0.5, 0}), 1);
  EXPECT_EQ(line.elem.IsCutted({0.5, 0.5, 0}, {0.5, -0.5, 0}), 1);
  const LoneElement triangle{
      {0, 0, 0},
      {1, 0, 0},
      {0, 1, 0}
  };
  EXPECT_EQ(triangle.elem.IsCutted({0.25, 0.25, -0.5}, {0.25, 0.25, 0.5}), 1);
  EXPECT_EQ(triangle.elem.IsCutted({0.25, 0.25, 0.5}, {0.25, 0.25, -0.5}), 1);
}

TEST(Elem, PlaneSegmentMayHaveTwoCoordinates) {
  const LoneElement line(
      {
          {0, 0, 0},
          {2, 0, 0}
  },
      nullptr, 2);
  ReaVec3 from(2), to(2);
  from(1) = to(1) = 1.0;
  from(2) = -1.0;
  to(2) = 1.0;
  EXPECT_EQ(line.elem.IsCutted(from, to), 1);
}

TEST(Elem, ParallelSegmentsDoNotCross) {
  const LoneElement line(
      {
          {0, 0, 0},
          {2, 0, 0}
  },
      nullptr, 2);
  EXPECT_EQ(line.elem.IsCutted({0, 1, 0}, {2, 1, 0}), 0);
  EXPECT_EQ(line.elem.IsCutted({0, 0, 0}, {2, 0, 0}), 0);
  EXPECT_EQ(line.elem.IsCutted({1, 0, 0}, {1, 0, 0}), 0);
}

TEST(Elem, SegmentCrossesATriangleInsideOnly) {
  const LoneElement triangle{
      {0, 0, 1},
      {4, 0, 1},
      {0, 4, 1}
  };
  EXPECT_EQ(triangle.elem.IsCutted({1, 1, 0}, {1, 1, 2}), 1);
  EXPECT_EQ(triangle.elem.IsCutted({0.5, 1.5, 3}, {1.5, 0.5, -1}), 1);
  EXPECT_EQ(triangle.elem.IsCutted({1, 1, 0}, {1, 1, 1}), 1);    // ends on it
  EXPECT_EQ(triangle.elem.IsCutted({1, 1, 1}, {1, 1, 2}), 1);    // begins on it
  EXPECT_EQ(triangle.elem.IsCutted({1, 1, 0}, {1, 1, 0.9}), 0);  // ends before
  EXPECT_EQ(triangle.elem.IsCutted({1, 1, 1.1}, {1, 1, 2}), 0);  // begins behind
  EXPECT_EQ(triangle.elem.IsCutted({3, 3, 0}, {3, 3, 2}), 0);    // beyond the long side
  EXPECT_EQ(triangle.elem.IsCutted({-1, 1, 0}, {-1, 1, 2}), 0);
  EXPECT_EQ(triangle.elem.IsCutted({1, -1, 0}, {1, -1, 2}), 0);
}

TEST(Elem, TriangleIsNotCrossedOnItsBorder) {
  const LoneElement triangle{
      {0, 0, 1},
      {4, 0, 1},
      {0, 4, 1}
  };
  EXPECT_EQ(triangle.elem.IsCutted({2, 0, 0}, {2, 0, 2}), 0);
  EXPECT_EQ(triangle.elem.IsCutted({0, 2, 0}, {0, 2, 2}), 0);
  EXPECT_EQ(triangle.elem.IsCutted({2, 2, 0}, {2, 2, 2}), 0);
}

TEST(Elem, SegmentInThePlaneOfATriangleDoesNotCross) {
  const LoneElement triangle{
      {0, 0, 1},
      {4, 0, 1},
      {0, 4, 1}
  };
  EXPECT_EQ(triangle.elem.IsCutted({-1, 1, 1}, {5, 1, 1}), 0);
  EXPECT_EQ(triangle.elem.IsCutted({-1, 1, 2}, {5, 1, 2}), 0);
}

TEST(Elem, CrossingIsDefinedForPlaneLinesAndTrianglesInSpaceOnly) {
  const char* const text = "in Elem::IsCutted only 2D implemented\n";
  const LoneElement bar{
      {0, 0, 0},
      {1, 0, 0}
  };
  const LoneElement plane(
      {
          {0, 0, 0},
          {1, 0, 0},
          {0, 1, 0}
  },
      nullptr, 2);
  const LoneElement four{
      {0, 0, 0},
      {1, 0, 0},
      {0, 1, 0},
      {0, 0, 1}
  };
  LoneElement unknown(
      {
          {0, 0, 0},
          {1, 0, 0}
  },
      nullptr, 2);
  unknown.elem.nodes[1] = nullptr;
  for (const LoneElement* lone : {&bar, &plane, &four, static_cast<const LoneElement*>(&unknown)})
    EXPECT_FATAL(lone->elem.IsCutted({0, 0, 0}, {1, 1, 1}), text);
}

}  // namespace

}  // namespace kestol
