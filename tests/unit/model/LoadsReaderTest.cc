#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "input/Project.h"
#include "input/TextInput.h"
#include "model/LoadsReader.h"
#include "tests/support/FatalExit.h"

namespace {

/// A bare model: nodes 1 to 10, and one element, number 100 x type + 1, of every type asked for.
class LoadsReaderTest : public testing::Test {
protected:
  void Model(int problemType, std::initializer_list<int> elemTypes) {
    project_ = std::make_unique<Project>(100);
    project_->problemType = problemType;
    project_->dofsPerNode = problemType == Plane ? 3 : 6;
    for (const int elemType : elemTypes) {
      if (elemType == Tetrahedra) project_->dofsPerNode = 3;
      auto& meshes = project_->meshes;
      meshes.push_back(meshes.empty() ? std::make_unique<Mesh>()
                                      : std::make_unique<Mesh>(*meshes[0]));
      Mesh& mesh = *meshes.back();
      mesh.elemType = elemType;
      mesh.nnode = elemType;
      mesh.elems.Insert(100 * elemType + 1, std::make_unique<Elem>(&mesh, mesh.nnode));
    }
    for (int n = 1; n <= 10; ++n) {
      auto node = std::make_unique<Node>();
      node->number = n;
      project_->meshes[0]->nodes->Insert(n, std::move(node));
    }
    project_->units.table = {
        {"kN-mm", "kN", "mm", "GPa", 1000.0, 0.001 },
        {"km",    "N",  "km", "Pa",  1.0,    1000.0}
    };
  }

  void Nodal(const std::string& text) {
    TextInput input(text);
    ReadNodalLoads(*project_, input);
    rest_ = input.PeekWord();
  }
  int Pressure(const std::string& keyword, const std::string& text) {
    TextInput input(text);
    const int result = ReadPressureLoads(keyword, *project_, input);
    rest_ = input.PeekWord();
    return result;
  }

  std::vector<double> LoadOf(int nodeNumber) {
    const ReaVecT& load = *project_->meshes[0]->nodes->Get(nodeNumber)->load;
    return {load.begin(), load.end()};
  }
  const PreassureLT& First(int elemNumber) { return *project_->loads.Get(elemNumber); }
  std::vector<double> Values(const PreassureLT& load) {
    return {load.values.begin(), load.values.end()};
  }
  /// The values of one line of a section.
  std::vector<double> Read(const std::string& keyword, int elemNumber, const std::string& line) {
    Pressure(keyword, std::to_string(elemNumber) + " " + line + "\nend\n");
    return Values(First(elemNumber));
  }

  std::unique_ptr<Project> project_;
  std::string rest_;
};

using Numbers = std::vector<double>;
constexpr int kBeam = 101, kTriangle = 201, kTetra = 401;
constexpr const char* kGlobal = "global_pressure_loads";
constexpr const char* kProjected = "global_projected_pressure_loads";
constexpr const char* kLocal = "local_pressure_loads";
constexpr const char* kFace = "face_loads";

// --- nodal_point_loads ------------------------------------------------------------------------

TEST_F(LoadsReaderTest, NodalLoadsHaveOneNumberPerDegreeOfFreedom) {
  Model(Plane, {Linear});
  Nodal("4 1 -2.5e1 3\nend nodal_point_loads\nnext");
  EXPECT_EQ(LoadOf(4), (Numbers{1, -25, 3}));
  EXPECT_EQ(rest_, "next");
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3, 4, 5, 6}));
}

TEST_F(LoadsReaderTest, TwoLinesForTheSameNodeAddUp) {
  Model(Plane, {Linear});
  Nodal("4 1 2 3\n4 10 20 30\nend\n");
  Nodal("4 100 200 300\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{111, 222, 333}));
}

TEST_F(LoadsReaderTest, NodalLoadsSkipCommentsSignsAndBlankLines) {
  Model(Plane, {Linear});
  Nodal("# 3 9 9 9\n\n : = \t\r\n 4 1 2 3\r\n#end\n  end # of loads\nnext");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3}));
  EXPECT_EQ(project_->meshes[0]->nodes->Get(3)->load, nullptr);
  EXPECT_EQ(rest_, "next");
}

TEST_F(LoadsReaderTest, TheUnitsOfALineScaleForcesAndMoments) {
  Model(Plane, {Linear});
  Nodal("4 1 2 3 units km\n5 1 2 3 Units: kN-mm\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3000}));
  EXPECT_EQ(LoadOf(5), (Numbers{1000, 2000, 3}));
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6 UNITS = km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3, 4000, 5000, 6000}));
}

TEST_F(LoadsReaderTest, TheUnitsOfTheProblemScaleNodalLoads) {
  Model(Space, {Linear});
  project_->units.materialForce = 1000.0;
  project_->units.materialLength = 3.0;
  project_->units.resultForce = 10.0;
  project_->units.resultLength = 2.0;
  Nodal("4 1 1 1 1 1 1\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{100, 100, 100, 150, 150, 150}));
}

TEST_F(LoadsReaderTest, TheThirdForceOfASolidScalesLikeAMoment) {
  // Deliberate.
  Model(Space, {Tetrahedra});
  Nodal("4 1 2 3 units km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 2, 3000}));
}

TEST_F(LoadsReaderTest, OtherKeysAndSurplusPairsOfNodalLoadsAreIgnored) {
  Model(Plane, {Linear});
  Nodal("4 1 0 0 -5 0 name=top uNits km\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{1, 0, 0}));
}

TEST_F(LoadsReaderTest, ALoadOnAnUnknownNodeStopsAtItsLine) {
  Model(Plane, {Linear});
  for (const char* const number : {"11", "0", "-4"})
    EXPECT_FATAL(Nodal(std::string(number) + " 1 2 3\n4 junk\nend\n"),
                 "error: Trying to assign Load to unknown node\n");
}

TEST_F(LoadsReaderTest, ALoadBeforeAnyMeshIsOnAnUnknownNode) {
  project_ = std::make_unique<Project>(100);
  project_->dofsPerNode = 3;
  EXPECT_FATAL(Nodal("1 1 2 3\nend\n"), "error: Trying to assign Load to unknown node\n");
}

TEST_F(LoadsReaderTest, ANodalLoadCutByTheEndOfTheTextIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4"), "Not reading correctly the loads A. Number=4\n");
}

TEST_F(LoadsReaderTest, TooFewOrBadNumbersOfANodalLoadAreRefused) {
  for (const char* const line : {"4 1 2\n", "4\n", "4 1 x 3\n", "4 1 nan 3\n", "4 1 inf 3\n"}) {
    Model(Plane, {Linear});
    EXPECT_FATAL(Nodal(std::string(line) + "end\n"),
                 "Not reading correctly the loads B. Number=4\n");
  }
  for (const char* const line : {"4 1 2 3 4 5\n", "4 1 2 3 4 5 1e999\n"}) {
    Model(Space, {Linear});
    EXPECT_FATAL(Nodal(std::string(line) + "end\n"),
                 "Not reading correctly the loads C. Number=4\n");
  }
}

TEST_F(LoadsReaderTest, AKeyWithoutValueBehindANodalLoadIsRefused) {
  Model(Plane, {Linear});
  for (const char* const rest : {"units", "0", "a=1 b", "name = top"})
    EXPECT_FATAL(Nodal(std::string("4 1 2 3 ") + rest + "\nend\n"),
                 "Not reading correctly the loads. -D- Number=4\n");
}

TEST_F(LoadsReaderTest, AnUnknownUnitSystemBehindALoadIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4 1 2 3 units=kip\nend\n"),
               "error: Unit name 'kip' has not been previously defined\n");
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2 units=kip\nend\n"),
               "error: Unit name 'kip' has not been previously defined\n");
}

TEST_F(LoadsReaderTest, ASectionWithoutEndIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Nodal("4 1 2 3\n"), "can't find word ***end*** in input file\n");
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2\n"), "can't find word ***end*** in input file\n");
}

TEST_F(LoadsReaderTest, EmptySectionsAreAccepted) {
  Model(Plane, {Linear});
  Nodal("end\n");
  EXPECT_EQ(Pressure(kFace, "end face_loads\nnext"), 0);
  EXPECT_EQ(rest_, "next");
  EXPECT_EQ(project_->loads.Highest(), 0);
}

TEST_F(LoadsReaderTest, ARecordOfSixEntriesKeepsItsLengthWhenTheModelTurnsOutSolid) {
  Model(Space, {Linear});
  Nodal("4 1 2 3 4 5 6\nend\n");
  project_->dofsPerNode = 3;
  Nodal("4 10 20 30\nend\n");
  EXPECT_EQ(LoadOf(4), (Numbers{11, 22, 33, 4, 5, 6}));
}

// --- the four sections ------------------------------------------------------------------------

TEST_F(LoadsReaderTest, TheKeywordGivesTheKind) {
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

TEST_F(LoadsReaderTest, OtherKeywordsReadNothing) {
  Model(Plane, {Linear});
  for (const char* const keyword : {"loads", "global_pressure_load", "face_loadsx", ""}) {
    EXPECT_EQ(Pressure(keyword, "101 1 2\nend\n"), -1);
    EXPECT_EQ(rest_, "101");
  }
}

TEST_F(LoadsReaderTest, LoadsOfAnElementFormAChainInInputOrder) {
  Model(Plane, {Linear});
  Pressure(kGlobal, "101 1 0\n101 2 0\nend\n");
  Pressure(kLocal, "101 3 0\nend\n");
  const PreassureLT& first = First(kBeam);
  EXPECT_EQ(first.values(1), 1.0);
  EXPECT_EQ(first.next->values(1), 2.0);
  EXPECT_EQ(first.next->next->values(1), 3.0);
  EXPECT_EQ(first.next->next->next, nullptr);
}

TEST_F(LoadsReaderTest, ALoadOnAnUnknownElementIsRefused) {
  Model(Plane, {Linear});
  EXPECT_FATAL(Pressure(kGlobal, "7 1 2\nend\n"),
               "error: trying to assign load to element number 7 and it does not exist\n");
  project_->meshes.clear();
  EXPECT_FATAL(Pressure(kGlobal, "101 1 2\nend\n"),
               "error: trying to assign load to element number 101 and it does not exist\n");
}

// --- numbers ----------------------------------------------------------------------------------

TEST_F(LoadsReaderTest, PlaneLoadsHaveTwoNumbers) {
  Model(Plane, {Linear, Tetrahedra});
  for (const char* const keyword : {kGlobal, kProjected, kLocal, kFace}) {
    Model(Plane, {Linear, Tetrahedra});
    EXPECT_EQ(Read(keyword, kBeam, "1 -2"), (Numbers{1, -2, 0}));
    EXPECT_EQ(Read(keyword, kTetra, "1 -2"), (Numbers{1, -2, 0}));
    EXPECT_EQ(First(kTetra).face, -1);
  }
}

TEST_F(LoadsReaderTest, LocalLoadsInSpaceMayHaveACouple) {
  Model(Space, {Linear, Triangle});
  EXPECT_EQ(Read(kLocal, kBeam, "1 2 3 4"), (Numbers{1, 2, 3, 4, 0, 0}));
  EXPECT_EQ(Read(kLocal, kTriangle, "1 2 3"), (Numbers{1, 2, 3, 0, 0, 0}));
}

TEST_F(LoadsReaderTest, GlobalLoadsInSpaceHaveThreeNumbers) {
  Model(Space, {Linear});
  EXPECT_EQ(Read(kGlobal, kBeam, "1 2 3 units km"), (Numbers{.001, .002, .003, 0, 0, 0}));
  Model(Space, {Linear});
  EXPECT_EQ(Read(kProjected, kBeam, "1 2 3"), (Numbers{1, 2, 3, 0, 0, 0}));
}

TEST_F(LoadsReaderTest, FaceLoadsOfTrianglesMayNameAnEdge) {
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

TEST_F(LoadsReaderTest, ANumberWithADecimalPointIsNoFace) {
  Model(Space, {Triangle, Tetrahedra});
  EXPECT_EQ(Read(kFace, kTriangle, "0.0 0.0 -5.0"), (Numbers{0, 0, -5, 0, 0, 0}));
  EXPECT_EQ(First(kTriangle).face, -1);
  EXPECT_FATAL(Read(kFace, kTetra, "0.0 0.0 -5.0"),
               "Not reading correctly preassure_loads. ElemNum=401\n");
  EXPECT_FATAL(Read(kFace, kTetra, "1. 0.0 0.0 -5.0"),
               "Not reading correctly preassure_loads. ElemNum=401\n");
}

TEST_F(LoadsReaderTest, TetrahedraNeedAFaceAndThreeNumbersInEverySection) {
  for (const char* const keyword : {kGlobal, kProjected, kLocal, kFace}) {
    Model(Space, {Tetrahedra});
    EXPECT_EQ(Read(keyword, kTetra, "3 1 2 3"), (Numbers{1, 2, 3}));
    EXPECT_EQ(First(kTetra).face, 3);
    EXPECT_FATAL(Read(keyword, kTetra, "3 1 2"),
                 "Not reading correctly preassure_loads. ElemNum=401\n");
  }
}

TEST_F(LoadsReaderTest, AFaceThatDoesNotExistIsRefusedBeforeTheKeys) {
  Model(Space, {Triangle, Tetrahedra});
  EXPECT_FATAL(Read(kFace, kTriangle, "3 1 2 3 junk"),
               "error: face 3 does not exist in element 201\n");
  EXPECT_FATAL(Read(kFace, kTriangle, "-2 1 2 3"),
               "error: face -2 does not exist in element 201\n");
  EXPECT_FATAL(Read(kFace, kTetra, "4 1 2 3"), "error: face 4 does not exist in element 401\n");
  EXPECT_FATAL(Read(kLocal, kTetra, "-2 1 2 3"), "error: face -2 does not exist in element 401\n");
}

TEST_F(LoadsReaderTest, AShellLoadOnABeamInSpaceIsRefused) {
  Model(Space, {Linear});
  EXPECT_FATAL(Read(kFace, kBeam, "1 2 3"),
               "error: applying a shell load to a beam element. ElemNum=101\n");
}

TEST_F(LoadsReaderTest, TooFewOrBadNumbersOfADistributedLoadAreRefused) {
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

TEST_F(LoadsReaderTest, QuadrilateralsAndHexahedraCarryNoLoads) {
  for (const int type : {Plane, Space}) {
    Model(type, {Quadrilateral, Hexahedra});
    for (const int elem : {301, 501})
      for (const char* const line : {"1 2 3", "junk"})
        EXPECT_FATAL(Read(kGlobal, elem, line),
                     "error: Unknown elem type in PreassureLT::ReadYourLoad\n");
  }
}

// --- keys -------------------------------------------------------------------------------------

TEST_F(LoadsReaderTest, AKeyWithoutValueBehindADistributedLoadIsRefused) {
  Model(Plane, {Linear});
  for (const char* const rest : {"units", "Euler3=", "a=1 b", "0"})
    EXPECT_FATAL(Read(kGlobal, kBeam, std::string("1 2 ") + rest),
                 "Not reading correctly the preassure_loads. ElemNum=101\n");
}

TEST_F(LoadsReaderTest, OtherKeysOfADistributedLoadAreIgnored) {
  Model(Plane, {Linear});
  EXPECT_EQ(Read(kGlobal, kBeam, "1 2 name=wind case: 3"), (Numbers{1, 2, 0}));
}

TEST_F(LoadsReaderTest, EulerAnglesTurnTheLoadInAnyCase) {
  const double c = std::cos(0.5), s = std::sin(0.5);
  for (const char* const key : {"Euler3", "euler3", "EULER3", "Euler3x"}) {
    Model(Plane, {Linear});
    const Numbers q = Read(kGlobal, kBeam, std::string("10 0 ") + key + "=0.5");
    EXPECT_DOUBLE_EQ(q[0], 10 * c);
    EXPECT_DOUBLE_EQ(q[1], 10 * s);
  }
}

TEST_F(LoadsReaderTest, EulerAnglesTurnAboutXThenYThenZAndLeaveTheCoupleAlone) {
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

TEST_F(LoadsReaderTest, OnlyThreeEulerAnglesExist) {
  Model(Space, {Linear});
  for (const char* const key : {"Euler4", "Euler", "euler0", "EulerX"})
    EXPECT_FATAL(Read(kGlobal, kBeam, std::string("1 2 3 ") + key + "=1"),
                 "error: Euler angles must be: Euler1,Euler2 or Euler3\n");
}

TEST_F(LoadsReaderTest, AxesThatLeaveThePlaneAreRefused) {
  for (const char* const key : {"Euler1=0.1", "Euler2=0.1", "Euler1=1e-9"}) {
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
TEST_F(LoadsReaderTest, UnitsFollowTheElementAndThePlaceOfTheLoad) {
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
