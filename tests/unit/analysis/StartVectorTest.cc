#include "analysis/StartVector.h"
#include "input/Project.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

/// Meshes of one 6-noded triangle each (or none), every triangle with nodes of its own: corners
/// c, c+1, c+2 and mid-sides c+3, c+4, c+5 with c = 6 m + 1.
class StartVectorTest : public testing::Test {
protected:
  StartVectorTest() : project_(100) {
    project_.problemType = Space;
    project_.dofsPerNode = 6;
  }

  void AddMesh(int elemType, int nnode, bool withElement = true) {
    const int m = static_cast<int>(project_.meshes.size());
    project_.meshes.push_back(m == 0 ? std::make_unique<Mesh>()
                                     : std::make_unique<Mesh>(*project_.meshes[0]));
    Mesh& mesh = *project_.meshes.back();
    mesh.elemType = elemType;
    mesh.nnode = nnode;
    Plex<Node>& nodes = *project_.meshes[0]->nodes;
    for (int n = 6 * m + 1; n <= 6 * m + 6; ++n) {
      auto node = std::make_unique<Node>();
      node->number = n;
      nodes.Insert(n, std::move(node));
    }
    if (withElement) {
      auto elem = std::make_unique<Elem>(&mesh, nnode);
      for (int i = 0; i < nnode; ++i) elem->nodes[i] = nodes.Get(6 * m + 1 + i);
      mesh.elems.Insert(m + 1, std::move(elem));
    }
    project_.numNodes = 6 * (m + 1);
  }

  /// Entry d of node n pre-solved as 100 n + d at corners, 0 elsewhere.
  ReaVecT Start() {
    ReaVecT preSolved(project_.numNodes * 6);
    for (int n = 1; n <= project_.numNodes; ++n)
      if ((n - 1) % 6 < 3)
        for (int d = 1; d <= 6; ++d) preSolved(6 * (n - 1) + d) = 100 * n + d;
    return StartVector(project_, preSolved);
  }
  static bool IsFilled(const ReaVecT& start, int mesh) {
    return start(6 * (6 * mesh + 3) + 1) != 0.0;
  }

  Project project_;
};

TEST_F(StartVectorTest, MidSidesGetTheMeanOfTheirCorners) {
  AddMesh(Triangle, 6);
  const ReaVecT start = Start();
  const double wanted[] = {150, 250, 200};  // edges 1-2, 2-3, 3-1
  for (int k = 0; k < 3; ++k)
    for (int d = 1; d <= 6; ++d) EXPECT_EQ(start(6 * (k + 3) + d), wanted[k] + d);
  EXPECT_EQ(start(1), 101.0);
}

TEST_F(StartVectorTest, TheCornerCounterIsTheMeshCounterToo) {
  for (int m = 0; m < 6; ++m) AddMesh(Triangle, 6);
  const ReaVecT start = Start();
  for (const int m : {0, 4, 5}) EXPECT_TRUE(IsFilled(start, m)) << m;
  for (const int m : {1, 2, 3}) EXPECT_FALSE(IsFilled(start, m)) << m;
}

TEST_F(StartVectorTest, MeshesWithoutTrianglesDoNotMoveTheCounter) {
  AddMesh(Linear, 2);
  AddMesh(Triangle, 6, false);
  AddMesh(Triangle, 6);
  AddMesh(Triangle, 6);
  const ReaVecT start = Start();
  EXPECT_TRUE(IsFilled(start, 2));
  EXPECT_FALSE(IsFilled(start, 3));
}

TEST_F(StartVectorTest, RefusesTetrahedra) {
  AddMesh(Tetrahedra, 4);
  EXPECT_FATAL(Start(), "error: Double solver not implemented for tetrahedras\n");
}

TEST_F(StartVectorTest, IsShorterForThePreSolveThanForTheConvertedModel) {
  AddMesh(Triangle, 6);
  ReaVecT preSolved(18);
  for (int i = 1; i <= 18; ++i) preSolved(i) = i;
  const ReaVecT start = StartVector(project_, preSolved);
  EXPECT_EQ(start.n, 36);
  EXPECT_EQ(start(18), 18.0);
  EXPECT_EQ(start(19), 4.0);  // between 1 and 7
}

TEST_F(StartVectorTest, MeansAreGlobalAndThenTurnedIntoInclinedSupports) {
  AddMesh(Triangle, 6);
  Node& middle = *project_.meshes[0]->nodes->Get(4);
  middle.constraint = std::make_unique<Constraint>(6);
  middle.constraint->hasLocalAxes = 1;
  middle.constraint->Euler3 = 1.5707963267948966;  // local x is global y
  const ReaVecT start = Start();
  EXPECT_NEAR(start(19), 152.0, 1e-12);
  EXPECT_NEAR(start(20), -151.0, 1e-12);
  EXPECT_NEAR(start(22), 155.0, 1e-12);
}

}  // namespace

}  // namespace kestol
