#include <cmath>
#include <string>
#include <vector>

#include "tests/support/ExpectFatal.h"
#include "tests/support/LoadsFixture.h"

namespace kestol {

namespace {

using PressureLoadsTest = LoadsFixture;

constexpr int kBeam = 101, kTriangle = 201, kTetra = 401;
constexpr const char* kGlobal = "global_pressure_loads";
constexpr const char* kProjected = "global_projected_pressure_loads";
constexpr const char* kLocal = "local_pressure_loads";
constexpr const char* kFace = "face_loads";

TEST_F(PressureLoadsTest, TheKeywordGivesTheKind) {
  Model(Space, {Linear, Triangle});
  const struct {
    const char* keyword;
    int elem, kind;
  } sections[] = {
      {kGlobal,    kBeam,     GlobalPressure },
      {kProjected, kBeam,     GlobalProjected},
      {kLocal,     kBeam,     LocalPressure  },
      {kFace,      kTriangle, FaceLoad       },
  };
  for (const auto& [keyword, elem, kind] : sections) {
    EXPECT_EQ(Pressure(keyword, std::to_string(elem) + " 1 2 3\nend x\nnext"), 0);
    EXPECT_EQ(rest_, "next");
    const PreassureLT* last = &First(elem);
    while (last->next) last = last->next.get();
    EXPECT_EQ(last->kind, kind);
    EXPECT_EQ(last->face, -1);
  }
}

TEST_F(PressureLoadsTest, OtherKeywordsReadNothing) {
  Model(Plane, {Linear});
  for (const char* const keyword : {"loads", "global_pressure_load", "face_loadsx", ""}) {
    EXPECT_EQ(Pressure(keyword, "101 1 2\nend\n"), -1);
    EXPECT_EQ(rest_, "101");
  }
}

TEST_F(PressureLoadsTest, LoadsOfAnElementFormAChainInInputOrder) {
  Model(Plane, {Linear});
  Pressure(kGlobal, "101 1 0\n101 2 0\nend\n");
  Pressure(kLocal, "101 3 0\nend\n");
  const PreassureLT& first = First(kBeam);
  EXPECT_EQ(first.values(1), 1.0);
  EXPECT_EQ(first.next->values(1), 2.0);
  EXPECT_EQ(first.next->next->values(1), 3.0);
  EXPECT_EQ(first.next->next->next, nullptr);
}

TEST_F(PressureLoadsTest, ALoadOnAnUnknownElementIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Pressure(kGlobal, "7 1 2\nend\n"),
               "error: trying to assign load to element number 7 and it does not exist\n");
  project_->meshes.clear();
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2\nend\n"),
               "error: trying to assign load to element number 101 and it does not exist\n");
}

// --- numbers ----------------------------------------------------------------------------------

TEST_F(PressureLoadsTest, PlaneLoadsHaveTwoNumbers) {
  Model(Plane, {Linear, Tetrahedra});
  for (const char* const keyword : {kGlobal, kProjected, kLocal, kFace}) {
    Model(Plane, {Linear, Tetrahedra});
    EXPECT_EQ(Read(keyword, kBeam, "1 -2"), (Numbers{1, -2, 0}));
    EXPECT_EQ(Read(keyword, kTetra, "1 -2"), (Numbers{1, -2, 0}));
    EXPECT_EQ(First(kTetra).face, -1);
  }
}

TEST_F(PressureLoadsTest, LocalLoadsInSpaceMayHaveACouple) {
  Model(Space, {Linear, Triangle});
  EXPECT_EQ(Read(kLocal, kBeam, "1 2 3 4"), (Numbers{1, 2, 3, 4, 0, 0}));
  EXPECT_EQ(Read(kLocal, kTriangle, "1 2 3"), (Numbers{1, 2, 3, 0, 0, 0}));
}

TEST_F(PressureLoadsTest, GlobalLoadsInSpaceHaveThreeNumbers) {
  Model(Space, {Linear});
  EXPECT_EQ(Read(kGlobal, kBeam, "1 2 3 units km"), (Numbers{.001, .002, .003, 0, 0, 0}));
  Model(Space, {Linear});
  EXPECT_EQ(Read(kProjected, kBeam, "1 2 3"), (Numbers{1, 2, 3, 0, 0, 0}));
}

TEST_F(PressureLoadsTest, FaceLoadsOfTrianglesMayNameAnEdge) {
  Model(Space, {Triangle});
  EXPECT_EQ(Read(kFace, kTriangle, "2 1.5 2 3"), (Numbers{1.5, 2, 3, 0, 0, 0}));
  EXPECT_EQ(First(kTriangle).face, 2);
  Model(Space, {Triangle});
  EXPECT_EQ(Read(kFace, kTriangle, "0 0 -5"), (Numbers{0, 0, -5, 0, 0, 0}));
  EXPECT_EQ(First(kTriangle).face, -1);
  Model(Space, {Triangle});
  EXPECT_EQ(Read(kFace, kTriangle, "-1 1 2 3"), (Numbers{1, 2, 3, 0, 0, 0}));
  EXPECT_EQ(First(kTriangle).face, -1);
}

TEST_F(PressureLoadsTest, ANumberWithADecimalPointIsNoFace) {
  Model(Space, {Triangle, Tetrahedra});
  EXPECT_EQ(Read(kFace, kTriangle, "0.0 0.0 -5.0"), (Numbers{0, 0, -5, 0, 0, 0}));
  EXPECT_EQ(First(kTriangle).face, -1);
  EXPECT_FATAL(Read(kFace, kTetra, "0.0 0.0 -5.0"),
               "Not reading correctly preassure_loads. ElemNum=401\n");
  EXPECT_FATAL(Read(kFace, kTetra, "1. 0.0 0.0 -5.0"),
               "Not reading correctly preassure_loads. ElemNum=401\n");
}

TEST_F(PressureLoadsTest, TetrahedraNeedAFaceAndThreeNumbersInEverySection) {
  for (const char* const keyword : {kGlobal, kProjected, kLocal, kFace}) {
    Model(Space, {Tetrahedra});
    EXPECT_EQ(Read(keyword, kTetra, "3 1 2 3"), (Numbers{1, 2, 3}));
    EXPECT_EQ(First(kTetra).face, 3);
    EXPECT_FATAL(Read(keyword, kTetra, "3 1 2"),
                 "Not reading correctly preassure_loads. ElemNum=401\n");
  }
}

TEST_F(PressureLoadsTest, AFaceThatDoesNotExistIsRefusedBeforeTheKeys) {
  Model(Space, {Triangle, Tetrahedra});
  EXPECT_FATAL(Read(kFace, kTriangle, "3 1 2 3 junk"),
               "error: face 3 does not exist in element 201\n");
  EXPECT_FATAL(Read(kFace, kTriangle, "-2 1 2 3"),
               "error: face -2 does not exist in element 201\n");
  EXPECT_FATAL(Read(kFace, kTetra, "4 1 2 3"), "error: face 4 does not exist in element 401\n");
  EXPECT_FATAL(Read(kLocal, kTetra, "-2 1 2 3"), "error: face -2 does not exist in element 401\n");
}

TEST_F(PressureLoadsTest, AShellLoadOnABeamInSpaceIsRefused) {
  Model(Space, {Linear});
  EXPECT_FATAL(Read(kFace, kBeam, "1 2 3"),
               "error: applying a shell load to a beam element. ElemNum=101\n");
}

TEST_F(PressureLoadsTest, TooFewOrBadNumbersOfADistributedLoadAreRefused) {
  Model(Plane, {Linear});
  for (const char* const line : {"1", "", "x 1", "1 nan", "inf 1"})
    EXPECT_FATAL(Read(kGlobal, kBeam, line),
                 "Not reading correctly preassure_loads. ElemNum=101\n");
  EXPECT_FATAL(Pressure(kGlobal, "101"), "Not reading correctly preassure_loads. ElemNum=101\n");
  Model(Space, {Linear, Triangle});
  for (const char* const keyword : {kGlobal, kProjected, kLocal})
    EXPECT_FATAL(Read(keyword, kBeam, "1 2"),
                 "Not reading correctly preassure_loads. ElemNum=101\n");
  EXPECT_FATAL(Read(kLocal, kBeam, "1 2 3 inf"),
               "Not reading correctly preassure_loads. ElemNum=101\n");
  EXPECT_FATAL(Read(kFace, kTriangle, "1 2"),
               "Not reading correctly preassure_loads. ElemNum=201\n");
}

TEST_F(PressureLoadsTest, QuadrilateralsAndHexahedraCarryNoLoads) {
  for (const ProblemType type : {Plane, Space}) {
    Model(type, {Quadrilateral, Hexahedra});
    for (const int elem : {301, 501})
      for (const char* const line : {"1 2 3", "junk"})
        EXPECT_FATAL(Read(kGlobal, elem, line),
                     "error: Unknown elem type in PreassureLT::ReadYourLoad\n");
  }
}

// --- keys -------------------------------------------------------------------------------------

TEST_F(PressureLoadsTest, AKeyWithoutValueBehindADistributedLoadIsRefused) {
  Model(Plane, {Linear});
  for (const char* const rest : {"units", "Euler3=", "a=1 b", "0"})
    EXPECT_FATAL(Read(kGlobal, kBeam, std::string("1 2 ") + rest),
                 "Not reading correctly the preassure_loads. ElemNum=101\n");
}

TEST_F(PressureLoadsTest, AFourthNumberBehindAFaceIsRefused) {
  Model(Space, {Triangle, Tetrahedra});
  for (const int elem : {kTriangle, kTetra})
    EXPECT_FATAL(
        Read(kFace, elem, "1 0 0 -5 7"),
        "Not reading correctly the preassure_loads. ElemNum=" + std::to_string(elem) + "\n");
}

TEST_F(PressureLoadsTest, OtherKeysOfADistributedLoadAreIgnored) {
  Model(Plane, {Linear});
  EXPECT_EQ(Read(kGlobal, kBeam, "1 2 name=wind case: 3"), (Numbers{1, 2, 0}));
}

TEST_F(PressureLoadsTest, EulerAnglesTurnTheLoadInAnyCase) {
  const double c = std::cos(0.5), s = std::sin(0.5);
  for (const char* const key : {"Euler3", "euler3", "EULER3", "Euler3x"}) {
    Model(Plane, {Linear});
    const Numbers q = Read(kGlobal, kBeam, std::string("10 0 ") + key + "=0.5");
    EXPECT_DOUBLE_EQ(q[0], 10 * c);
    EXPECT_DOUBLE_EQ(q[1], 10 * s);
  }
}

TEST_F(PressureLoadsTest, EulerAnglesTurnAboutXThenYThenZAndLeaveTheCoupleAlone) {
  Model(Space, {Linear});
  // Quarter turns: z goes to -y about x, stays about y, goes to x about z.
  const Numbers q = Read(kLocal, kBeam,
                         "0 0 8 5 Euler1=1.5707963267948966 Euler2=1.5707963267948966 "
                         "Euler3=1.5707963267948966");
  EXPECT_NEAR(q[0], 8.0, 1e-12);
  EXPECT_NEAR(q[1], 0.0, 1e-12);
  EXPECT_NEAR(q[2], 0.0, 1e-12);
  EXPECT_EQ(q[3], 5.0);
}

TEST_F(PressureLoadsTest, OnlyThreeEulerAnglesExist) {
  Model(Space, {Linear});
  for (const char* const key : {"Euler4", "Euler", "euler0", "EulerX"})
    EXPECT_FATAL(Read(kGlobal, kBeam, std::string("1 2 3 ") + key + "=1"),
                 "error: Euler angles must be: Euler1,Euler2 or Euler3\n");
}

TEST_F(PressureLoadsTest, AxesThatLeaveThePlaneAreRefused) {
  for (const char* const key : {"Euler1=0.1", "Euler2=0.1", "Euler1=1e-9", "Euler2=1e-9"}) {
    Model(Plane, {Linear});
    EXPECT_FATAL(Read(kGlobal, kBeam, std::string("1 2 ") + key),
                 "error: Local z axe must be (0,0,1) for 2D problems.Element: 101\n");
  }
  Model(Plane, {Linear});
  const Numbers q = Read(kGlobal, kBeam, "1 2 Euler1=3.141592653589793");
  EXPECT_NEAR(q[1], -2.0, 1e-12);
}

// --- units of each kind -----------------------------------------------------------------------

/// Force unit 1000, length unit 0.001 against the results: powers of the length show as powers of
/// 1000.
TEST_F(PressureLoadsTest, UnitsFollowTheElementAndThePlaceOfTheLoad) {
  struct Row {
    const char* keyword;
    int elem;
    std::string line;
    double q, m;
  };
  const Row rows[] = {
      {kLocal,  kBeam,     "1 1 1 1 ",  1e6,  1e3},
      {kGlobal, kBeam,     "1 1 1 ",    1e6,  0  },
      {kLocal,  kTriangle, "1 1 1 1 ",  1e9,  1e6},
      {kFace,   kTriangle, "1 1 1 ",    1e9,  0  },
      {kFace,   kTriangle, "-1 1 1 1 ", 1e9,  0  },
      {kFace,   kTriangle, "0 1 1 1 ",  1e6,  0  },
      {kFace,   kTetra,    "-1 1 1 1 ", 1e12, 0  },
      {kFace,   kTetra,    "0 1 1 1 ",  1e9,  0  },
  };
  for (const Row& row : rows) {
    Model(Space, {Linear, Triangle, Tetrahedra});
    const Numbers q = Read(row.keyword, row.elem, row.line + "units=kN-mm");
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(q[i] / row.q, 1.0, 1e-12) << row.line;
    if (row.m > 0) {
      EXPECT_NEAR(q[3] / row.m, 1.0, 1e-12) << row.line;
    }
  }
}

}  // namespace

}  // namespace kestol
