#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/support/SmallModel.h"

namespace kestol {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

SmallModel Solid(int nnode) {
  SmallModel model(Space, 3);
  model.AddMesh(Tetrahedra, nnode);
  model.AddNode(1, 0, 0, 0);
  model.AddNode(2, 1, 0, 0);
  model.Size();
  model.Displace(2, {0.25, 0, -3});
  model.Support(1, {1, 2, 3});
  return model;
}

SmallModel Smoothed() {
  SmallModel model = Solid(4);
  model.project.DoSmoothing = 1;
  model.results.nodalStresses =
      SmallModel::VectorOf({0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 50.0, 20.0, 10.0, 1.0, 2.0, 3.0});
  return model;
}

const char* const kTail =
    "Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n"
    "1  0 0 0\n"
    "2  0.25 0 -3\n"
    "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
    "1 1 2 3 \n"
    "2 0 0 0\n";

TEST(VemoTetrahedra, WithoutSmoothingThePointsLineAndTheDisplacementsAreAll) {
  EXPECT_EQ(Solid(4).Vemo(), std::string("gausspoints     0  1  1  0  0\n") + kTail);
  EXPECT_EQ(Solid(10).Vemo(), std::string("gausspoints     0  4  1  0  0\n") + kTail);
}

TEST(VemoTetrahedra, SmoothedModelsAreWrittenWhole) {
  // Von Mises: 0.5 (30^2 + 10^2 + 40^2 + 6 14) = 1342.
  EXPECT_EQ(Smoothed().Vemo(),
            "Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n"
            "1  0 0 0\n"
            "2  0.25 0 -3\n"
            "Strengths      4 1.0 Estatic 3 1 1\nSx\nSy\nSz\nTxy\nTyz\nTxz\n"
            "1  0 0 0 0 0 0\n"
            "2  50 20 10 1 2 3\n"
            "Von Misses     4 1.0 Estatic 1 1 1\nVon_Misses\n"
            "1  0\n"
            "2  36.6333\n"
            "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n"
            "1 1 2 3 \n"
            "2 0 0 0\n");
  EXPECT_NEAR(std::sqrt(1342.0), 36.6333, 5e-5);
}

TEST(VemoTetrahedra, ShearsStandInTheOrderOfTheArrayWhateverTheNamesSay) {
  SmallModel model = Smoothed();
  // xy, xz, yz.
  for (int i = 0; i < 3; ++i) model.results.nodalStresses(4 + i) = 7.0 + i;
  EXPECT_THAT(model.Vemo(), HasSubstr("Txy\nTyz\nTxz\n1  0 0 0 7 8 9\n"));
}

TEST(VemoTetrahedra, VonMisesOfPureShearIsTheRootOfThree) {
  for (const int shear : {4, 5, 6}) {
    SmallModel model = Smoothed();
    model.results.nodalStresses(shear) = 1.0;
    EXPECT_THAT(model.Vemo(), HasSubstr("Von_Misses\n1  1.73205\n"));
  }
}

TEST(VemoTetrahedra, VonMisesOfUniaxialStressIsItsSize) {
  for (const int direction : {1, 2, 3}) {
    SmallModel model = Smoothed();
    model.results.nodalStresses(direction) = -8.0;
    EXPECT_THAT(model.Vemo(), HasSubstr("Von_Misses\n1  8\n"));
  }
}

TEST(VemoTetrahedra, StressesAreStoredByIndexAndPrintedByNumber) {
  SmallModel model = Smoothed();
  model.Renumber({2, 1});
  const std::string text = model.Vemo();
  EXPECT_THAT(text, HasSubstr("Txz\n1  50 20 10 1 2 3\n2  0 0 0 0 0 0\n"));
  EXPECT_THAT(text, HasSubstr("Von_Misses\n1  36.6333\n2  0\n"));
}

TEST(VemoTetrahedra, NodesThatWereNotReadAreNotListed) {
  SmallModel model = Smoothed();
  model.project.nodesAsRead = 1;
  const std::string text = model.Vemo();
  EXPECT_THAT(text, StartsWith("Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n1  0 0 0\nS"));
  EXPECT_THAT(text, HasSubstr("Txz\n1  0 0 0 0 0 0\nVon"));
  EXPECT_THAT(text, HasSubstr("Von_Misses\n1  0\nReactions"));
}

}  // namespace

}  // namespace kestol
