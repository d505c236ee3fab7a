#include <array>
#include <cmath>
#include <string>

#include "algebra/Matriu.h"
#include "model/Elem.h"
#include "model/Material.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

constexpr double kL = 2.5;

Material Given() {
  Material material;
  material.E1 = 7.0;
  material.A = 3.0;
  material.Iz = 0.5;
  material.Iy = 1.25;
  material.Gxy = 2.0;
  material.J = 0.75;
  return material;
}

struct Stiffness {
  Matriu ii, ij, jj;

  Stiffness(const Material& material, double L, ProblemType problemType, int endCode) {
    material.ConstructLocalK(9, L * L, problemType, endCode, ii, ij, jj);
  }
  Stiffness(ProblemType problemType, int endCode) : Stiffness(Given(), kL, problemType, endCode) {}

  /// Entry of the whole matrix of both ends, from 0.
  double At(int i, int j) const {
    const int d = ii.nrows;
    if (i < d) return j < d ? ii(i + 1, j + 1) : ij(i + 1, j - d + 1);
    return j < d ? ij(j + 1, i - d + 1) : jj(i - d + 1, j - d + 1);
  }
  int Size() const { return 2 * ii.nrows; }
};

TEST(BeamStiffness, OfTheUnitPlaneBeamHasTheHandbookValues) {
  Material unit;
  unit.E1 = unit.A = unit.Iz = 1.0;
  const Stiffness K(unit, 2.0, Plane, 11);
  EXPECT_DOUBLE_EQ(K.ii(1, 1), 0.5);
  EXPECT_DOUBLE_EQ(K.ii(2, 2), 1.5);
  EXPECT_DOUBLE_EQ(K.ii(2, 3), 1.5);
  EXPECT_DOUBLE_EQ(K.ii(3, 3), 2.0);
  EXPECT_DOUBLE_EQ(K.ij(3, 3), 1.0);
}

TEST(BeamStiffness, OfTheFixedSpaceBeamHasEveryTermInItsPlace) {
  const Stiffness K(Space, 11);
  const double E = 7.0, G = 2.0, A = 3.0, Iz = 0.5, Iy = 1.25, J = 0.75, L = kL;
  double ii[6][6] = {}, ij[6][6] = {}, jj[6][6] = {};
  const double diagonal[6] = {E * A / L,
                              12 * E * Iz / (L * L * L),
                              12 * E * Iy / (L * L * L),
                              G * J / L,
                              4 * E * Iy / L,
                              4 * E * Iz / L};
  for (int d = 0; d < 6; ++d) {
    ii[d][d] = jj[d][d] = diagonal[d];
    ij[d][d] = d < 4 ? -diagonal[d] : diagonal[d] / 2;
  }
  const double z = 6 * E * Iz / (L * L), y = 6 * E * Iy / (L * L);
  ii[1][5] = ii[5][1] = z;
  ii[2][4] = ii[4][2] = -y;
  jj[1][5] = jj[5][1] = -z;
  jj[2][4] = jj[4][2] = y;
  ij[1][5] = z;
  ij[5][1] = -z;
  ij[2][4] = -y;
  ij[4][2] = y;
  for (int i = 0; i < 6; ++i)
    for (int j = 0; j < 6; ++j) {
      EXPECT_NEAR(K.ii(i + 1, j + 1), ii[i][j], 1e-13) << i << j;
      EXPECT_NEAR(K.ij(i + 1, j + 1), ij[i][j], 1e-13) << i << j;
      EXPECT_NEAR(K.jj(i + 1, j + 1), jj[i][j], 1e-13) << i << j;
    }
}

TEST(BeamStiffness, InThePlaneIsThePartUVThetaOfTheSpaceBeam) {
  const int inSpace[3] = {1, 2, 6};
  for (const int code : {11, 10, 1, 0}) {
    const Stiffness plane(Plane, code), space(Space, code);
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        EXPECT_EQ(plane.ii(i + 1, j + 1), space.ii(inSpace[i], inSpace[j]));
        EXPECT_EQ(plane.ij(i + 1, j + 1), space.ij(inSpace[i], inSpace[j]));
        EXPECT_EQ(plane.jj(i + 1, j + 1), space.jj(inSpace[i], inSpace[j]));
      }
  }
}

/// Condenses degree r (from 0) of the whole matrix: K_ij - K_ir K_rj / K_rr.
template <std::size_t N>
void Release(std::array<std::array<double, N>, N>& K, int r) {
  const auto old = K;
  for (std::size_t i = 0; i < N; ++i)
    for (std::size_t j = 0; j < N; ++j) K[i][j] -= old[i][r] * old[r][j] / old[r][r];
}

TEST(BeamStiffness, OfHingedBeamsIsTheFixedOneStaticallyCondensed) {
  struct Case {
    int code;
    std::array<int, 4> released;  ///< rotations y and z at ends 1 and 2; -1 is none
  };
  for (const auto& [code, released] : {
           Case{HingeAtEnd1, {4, 5, -1, -1}  },
           Case{HingeAtEnd2, {10, 11, -1, -1}},
           Case{BothHinged,  {4, 5, 10, 11}  }
  }) {
    const Stiffness fixed(Space, 11), hinged(Space, code);
    std::array<std::array<double, 12>, 12> wanted;
    for (int i = 0; i < 12; ++i)
      for (int j = 0; j < 12; ++j) wanted[i][j] = fixed.At(i, j);
    for (const int r : released)
      if (r >= 0) Release(wanted, r);
    for (int i = 0; i < 12; ++i)
      for (int j = 0; j < 12; ++j)
        EXPECT_NEAR(hinged.At(i, j), wanted[i][j], 1e-13) << code << ": " << i << ' ' << j;
  }
}

TEST(BeamStiffness, LeavesExactZerosAtHingedRotations) {
  const Stiffness hingeAt1(Space, 1), hingeAt2(Space, 10), both(Space, 0);
  for (const int r : {5, 6})
    for (int d = 1; d <= 6; ++d) {
      EXPECT_EQ(hingeAt1.ii(r, d), 0.0);
      EXPECT_EQ(hingeAt1.ij(r, d), 0.0);
      EXPECT_EQ(hingeAt2.jj(r, d), 0.0);
      EXPECT_EQ(hingeAt2.ij(d, r), 0.0);
      EXPECT_EQ(both.ii(r, d), 0.0);
      EXPECT_EQ(both.jj(r, d), 0.0);
    }
}

TEST(BeamStiffness, GivesNoForceForRigidMotionsWhateverTheEnds) {
  for (const int code : {11, 10, 1, 0}) {
    const Stiffness K(Space, code);
    // Rotations about local y and z move end 2 by -L and +L along z and y.
    const double motions[6][12] = {
        {1, 0, 0, 0, 0, 0, 1, 0,  0,   0, 0, 0},
        {0, 1, 0, 0, 0, 0, 0, 1,  0,   0, 0, 0},
        {0, 0, 1, 0, 0, 0, 0, 0,  1,   0, 0, 0},
        {0, 0, 0, 1, 0, 0, 0, 0,  0,   1, 0, 0},
        {0, 0, 0, 0, 1, 0, 0, 0,  -kL, 0, 1, 0},
        {0, 0, 0, 0, 0, 1, 0, kL, 0,   0, 0, 1}
    };
    for (const auto& motion : motions)
      for (int i = 0; i < 12; ++i) {
        double force = 0.0;
        for (int j = 0; j < 12; ++j) force += K.At(i, j) * motion[j];
        EXPECT_NEAR(force, 0.0, 1e-12) << code;
      }
  }
}

TEST(BeamStiffness, OfAnUnknownEndCodeIsZeroInTheRightSize) {
  const Stiffness K(Space, 12);
  ASSERT_EQ(K.Size(), 12);
  for (int i = 0; i < 12; ++i)
    for (int j = 0; j < 12; ++j) EXPECT_EQ(K.At(i, j), 0.0);
}

TEST(BeamStiffness, OverwritesWhatTheBlocksHeld) {
  Matriu ii(3, 3), ij(3, 3), jj(3, 3);
  for (Matriu* const K : {&ii, &ij, &jj}) K->Fill(99.0);
  Given().ConstructLocalK(1, 4.0, Plane, 0, ii, ij, jj);
  EXPECT_EQ(ii(2, 2), 0.0);
  EXPECT_EQ(ij(2, 3), 0.0);
  EXPECT_EQ(jj(3, 3), 0.0);
}

struct Missing {
  double Material::*value;
  bool inPlane;  ///< whether a plane beam needs it as well
  std::string text;
};
const Missing kMissing[] = {
    {&Material::E1,  true,  "error: material parameter E is 0 for element 9\n"},
    {&Material::A,   true,  "error: section parameter A is 0 for element 9\n" },
    {&Material::Iz,  true,  "error: section parameter Iz is 0 for element 9\n"},
    {&Material::Iy,  false, "error: section parameter Iy is 0 for element 9\n"},
    {&Material::Gxy, false, "error: material parameter G is 0 for element 9\n"},
    {&Material::J,   false, "error: section parameter J is 0 for element 9\n" },
};

TEST(BeamStiffness, RefusesEveryMissingValueForEveryEndCode) {
  for (const Missing& missing : kMissing)
    for (const int code : {11, 10, 1, 0, 12})
      for (const double bad : {-1.0, 0.0, 9e-16, std::nan("")}) {
        Material material = Given();
        material.*missing.value = bad;
        EXPECT_FATAL(Stiffness(material, kL, Space, code), missing.text);
        if (missing.inPlane) EXPECT_FATAL(Stiffness(material, kL, Plane, code), missing.text);
      }
}

TEST(BeamStiffness, AcceptsValuesFromAQuadrillionthOn) {
  for (const Missing& missing : kMissing) {
    Material material = Given();
    material.*missing.value = 1e-15;
    EXPECT_EQ(Stiffness(material, kL, Space, 11).Size(), 12);
  }
}

TEST(BeamStiffness, NeedsNothingOfTheThirdDirectionInThePlane) {
  Material material = Given();
  material.Iy = material.Gxy = material.J = -1.0;
  const Stiffness K(material, kL, Plane, 11);
  EXPECT_GT(K.ii(3, 3), 0.0);
}

TEST(BeamStiffness, TestsTheValuesInTheirOrder) {
  Material material = Given();
  for (int last = 5; last >= 0; --last) {
    material.*kMissing[last].value = 0.0;
    EXPECT_FATAL(Stiffness(material, kL, Space, 11), kMissing[last].text);
  }
}

TEST(BeamStiffness, RefusesAnUnknownProblemType) {
  EXPECT_FATAL(Stiffness(Given(), kL, static_cast<ProblemType>(2), 11),
               "error in Material::ConstructLocalK. Unknown problem type\n");
}

}  // namespace

}  // namespace kestol
