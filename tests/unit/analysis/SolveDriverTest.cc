#include <algorithm>
#include <sstream>
#include <string>

#include "analysis/SolveDriver.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/FlushCounter.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A chain of beams along x, clamped at its first node.
FrameDeck Chain(int dimension, int nodes) {
  FrameDeck deck(dimension);
  for (int n = 1; n <= nodes; ++n) deck.Node(n, n - 1, 0, 0);
  for (int n = 1; n < nodes; ++n) deck.Beam(n, n, n + 1);
  return deck.Material(1, "E=1 A=1 Iz=1 Iy=1 G=1 J=1").Clamp(1);
}

/// A square of two triangles, clamped along one side, with a load on the free corner.
std::string Shell(const std::string& keys, int nnode = 3) {
  return "problem s\ntype 3d\n" + keys + "\nmesh dimension 3 elemtype Triangle nnode " +
         std::to_string(nnode) +
         "\ncoordinates\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n"
         "5 .5 0 0\n6 1 .5 0\n7 .5 .5 0\n8 .5 1 0\n9 0 .5 0\nend\nelements\n" +
         (nnode == 3 ? "1 1 5 9 1\n2 5 7 9 1\n3 5 2 6 1\n4 5 6 7 1\n5 7 6 3 1\n6 7 3 8 1\n"
                       "7 9 7 8 1\n8 9 8 4 1\n"
                     : "1 1 2 3 5 6 7 1\n2 1 3 4 7 8 9 1\n") +
         "end\nmaterials\n1 E=1000 nu=.3 G=400 t=.1\nend\nconstraints\n"
         "1 111111 0 0 0 0 0 0\n4 111111 0 0 0 0 0 0\n9 111111 0 0 0 0 0 0\nend\n"
         "nodal_point_loads\n3 0 0 1 0 0 0\nend\n";
}

const std::string kTetra =
    "mesh dimension 3 elemtype tetra nnode 4\ncoordinates\n"
    "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 0 0 1\nend\nelements\n1 1 2 3 4 1\nend\n"
    "materials\n1 E=1000 nu=.3\nend\nconstraints\n1 111 0 0 0\n2 111 0 0 0\n3 111 0 0 0\nend\n";

std::string InfoOf(const std::string& deck, int renumber = 1) {
  const auto project = ReadDeck(deck);
  std::ostringstream info;
  SolveProject(*project, {.renumber = renumber != 0, .info = &info});
  return info.str();
}

void Solve(const std::string& deck) {
  SolveProject(*ReadDeck(deck), {});
}

bool IsRenumbered(const Project& project) {
  const auto& map = project.meshes[0]->renumberMap;
  return map && !map->empty();
}

int ChoiceOf(const FrameDeck& deck) {
  const auto project = ReadDeck(deck.Text());
  SolveProject(*project, {});
  return project->solverChoice;
}

// --- choice of the solver ---------------------------------------------------------------------

TEST(SolveDriver, AutomaticTakesSkyLineBelow5000Equations) {
  EXPECT_EQ(ChoiceOf(Chain(3, 833)), SolveSkyLine);  // 4998
  EXPECT_EQ(ChoiceOf(Chain(2, 1666)), SolveSkyLine);
}

TEST(SolveDriver, AutomaticTakesSparseFrom5000EquationsOn) {
  EXPECT_EQ(ChoiceOf(Chain(3, 834)), SolveSparse);   // 5004
  EXPECT_EQ(ChoiceOf(Chain(2, 1667)), SolveSparse);  // 5001
}

TEST(SolveDriver, AutomaticCountsTheNodesBeforeTheConversion) {
  // A strip of 800 nodes: 4800 equations as read, three times as many with mid-side nodes.
  std::string coordinates, elements;
  for (int i = 0; i < 400; ++i) {
    const std::string x = std::to_string(i);
    coordinates += std::to_string(2 * i + 1) + ' ' + x + " 0 0\n";
    coordinates += std::to_string(2 * i + 2) + ' ' + x + " 1 0\n";
    if (i == 0) continue;
    const auto node = [i](int k) { return ' ' + std::to_string(2 * i + k); };
    elements += std::to_string(2 * i - 1) + node(-1) + node(1) + node(2) + " 1\n";
    elements += std::to_string(2 * i) + node(-1) + node(2) + node(0) + " 1\n";
  }
  const auto project = ReadDeck(
      "problem s\ntype 3d\nConvertTo6Nodes\nmesh dimension 3 elemtype Triangle nnode 3\n"
      "coordinates\n" +
      coordinates + "end\nelements\n" + elements +
      "end\nmaterials\n1 E=1 nu=0 G=.5 t=1\nend\n"
      "constraints\n1 111111 0 0 0 0 0 0\n2 111111 0 0 0 0 0 0\nend\n");
  SolveProject(*project, {});
  EXPECT_GT(project->numNodes * project->dofsPerNode, 5000);
  EXPECT_EQ(project->solverChoice, SolveSkyLine);
}

TEST(SolveDriver, UsesTheSolverThatTheDeckNames) {
  EXPECT_THAT(InfoOf(Chain(2, 3).Key("Solver SkyLine").Text()),
              HasSubstr("Sky matrix storage with Txolesky\n"));
  EXPECT_THAT(InfoOf(Chain(2, 3).Key("Solver Sparse 1e-10 1e-8 500").Text()),
              AllOf(HasSubstr("Sparse matrix storage with Conjugate gradients\n"),
                    Not(HasSubstr("Sky matrix storage"))));
}

TEST(SolveDriver, RefusesAnUnknownSolver) {
  const auto project = ReadDeck(Chain(2, 3).Text());
  project->solverChoice = static_cast<SolverChoice>(7);
  EXPECT_FATAL(SolveProject(*project, {}), "error: unknown solver\n");
}

// --- first scan -------------------------------------------------------------------------------

TEST(SolveDriver, RefusesAnElementWithAnUnknownNode) {
  EXPECT_FATAL(Solve(Chain(2, 3).Beam(8, 3, 99).Text()), "error: element: 8 has an unknown node\n");
}

TEST(SolveDriver, LooksForUnknownNodesBeforeAnythingElse) {
  EXPECT_FATAL(Solve(Chain(2, 3).Beam(8, 99, 3, 55).Key("Solver Double").Rotule(3).Text()),
               "error: element: 8 has an unknown node\n");
}

TEST(SolveDriver, RefusesTrianglesInAPlaneProblem) {
  EXPECT_FATAL(Solve("problem a\ntype 2d\nmesh dimension 2 elemtype tri nnode 3\ncoordinates\n"
                     "1 0 0\n2 1 0\n3 0 1\nend\nelements\n1 1 2 3 1\nend\n"),
               "error: triangle elements need a problem of type 3d\n");
}

TEST(SolveDriver, RefusesQuadrilateralsOnlyWhenItMeetsThem) {
  const auto project = ReadDeck(
      "problem a\ntype 3d\nmesh dimension 3 elemtype quad nnode 4\ncoordinates\n"
      "1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\nend\nelements\n1 1 2 3 4 1\nend\n");
  std::ostringstream info;
  EXPECT_FATAL(SolveProject(*project, {.info = &info}), "error: elemtype unknown\n");
  EXPECT_THAT(info.str(), testing::EndsWith("Just before filling global stiffness matrix\n"));
}

// --- supports ---------------------------------------------------------------------------------

TEST(SolveDriver, AModelWithoutSupportsEndsWithWarningsAndTheError) {
  FrameDeck deck(3);
  deck.Node(1, 0, 0, 0).Node(2, 1, 2, 3).Beam(1, 1, 2);
  deck.Material(1, "E=2e11 A=1e-2 Iz=1e-5 Iy=1e-5 G=8e10 J=1e-5");
  for (const char* const solver : {"SkyLine", "Sparse 1e-10 1e-8 500"}) {
    FrameDeck copy = deck;
    try {
      Solve(copy.Key(std::string("Solver ") + solver).Text());
      ADD_FAILURE() << "solved";
    } catch (const FatalError& refusal) {
      EXPECT_THAT(refusal.what(),
                  testing::StartsWith("There are no prescribed nodes in the model!!!\n"
                                      "error when solving system"));
    }
    error.Clear();
  }
}

TEST(SolveDriver, AZeroDiagonalAtEquation8ReportsNode2AndDegree2From6) {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Node(3, 5, 5).Beam(1, 1, 2).Material(1, "E=1 A=1 Iz=1");
  const auto project = ReadDeck(deck.Clamp(1).Support(3, "101 0 0 0").Key("Solver SkyLine").Text());
  EXPECT_FATAL(SolveProject(*project, {.renumber = false}),
               "error when solving system(8). One diagonal=0 in node=2. Degree of freedom 2 from "
               "6\nCould not solve system. Probably conditions are not correct\n");
}

TEST(SolveDriver, AnIsolatedNodeThatIsFullyHeldDoesNoHarm) {
  for (const char* const solver : {"SkyLine", "Sparse 1e-10 1e-8 500"}) {
    FrameDeck deck = Chain(2, 3).Node(4, 9, 9).Support(4, "111 .5 0 0").Load(3, {1, 0, 0});
    const auto project = RunDeck(deck.Key(std::string("Solver ") + solver).Text());
    EXPECT_NEAR(Displacement(*project, 3, 1), 2.0, 1e-6) << solver;
    EXPECT_EQ(Displacement(*project, 4, 1), 0.5) << solver;
  }
}

TEST(SolveDriver, AFreeIsolatedNodeCannotBeSolved) {
  FrameDeck deck = Chain(2, 3).Node(4, 9, 9);
  FrameDeck sparse = deck;
  const auto project = ReadDeck(deck.Key("Solver SkyLine").Text());
  EXPECT_FATAL(SolveProject(*project, {.renumber = false}),
               "error when solving system(10). One diagonal=0 in node=2. Degree of freedom 4 from "
               "6\nCould not solve system. Probably conditions are not correct\n");
  EXPECT_FATAL(Solve(sparse.Key("Solver Sparse 1e-10 1e-8 500").Text()),
               "error when solving system. Probably conditions are not correct\n");
}

// --- renumbering ------------------------------------------------------------------------------

TEST(SolveDriver, RenumbersForSkyLineUnlessInhibited) {
  const std::string sky = Chain(2, 4).Key("Solver SkyLine").Text();
  const std::string sparse = Chain(2, 4).Key("Solver Sparse 1e-10 1e-8 500").Text();
  const auto isRenumbered = [](const std::string& deck, int renumber) {
    const auto project = ReadDeck(deck);
    SolveProject(*project, {.renumber = renumber != 0});
    return IsRenumbered(*project);
  };
  EXPECT_TRUE(isRenumbered(sky, 1));
  EXPECT_FALSE(isRenumbered(sky, 0));
  EXPECT_FALSE(isRenumbered(sparse, 1));
}

TEST(SolveDriver, RotulesGetTheirEndCodes) {
  const auto project = ReadDeck(Chain(2, 3).Rotule(2).Clamp(3).Text());
  SolveProject(*project, {});
  EXPECT_EQ(project->EndCodeOf(1), BothFixed);
  EXPECT_EQ(project->EndCodeOf(2), HingeAtEnd1);
}

// --- information ------------------------------------------------------------------------------

TEST(SolveDriver, WritesTheLinesOfABeamModelInOrder) {
  EXPECT_EQ(InfoOf(Chain(2, 3).Key("Solver SkyLine").Text(), 0),
            "\nINFORMATION ABOUT STIFFNESS MATRIX\n"
            "Sky matrix storage with Txolesky\n"
            "Degrees of freedom= 9\n"
            "Average column size= 4\n"
            "Total number of positions= 36\n"
            "Amount of memory= 0.0Mb\n\n"
            "Just before filling global stiffness matrix\n"
            "Stiffness matrix filled\n"
            "Load vector constructed\n"
            "Beginning to apply constraints\n"
            "Just before Solver\n"
            "Txolesky finished\n"
            "Beginning 1st substitution in LU system\n"
            "Beginning 2nd substitution in LU system\n"
            "Solver finished\n");
}

TEST(SolveDriver, FlushesEachTextAsItIsWritten) {
  const auto project = ReadDeck(Chain(2, 3).Key("Solver SkyLine").Text());
  FlushCounter info;
  SolveProject(*project, {.renumber = false, .info = &info});
  const std::string text = info.Text();
  const std::string behindReport = text.substr(text.find("Just before filling"));
  EXPECT_EQ(info.Flushes(), 1 + std::count(behindReport.begin(), behindReport.end(), '\n'));
}

/// The lines of `info` that are among `wanted`, in their order.
std::string Among(const std::string& info, const std::vector<std::string>& wanted) {
  std::istringstream lines(info);
  std::string found, line;
  while (std::getline(lines, line))
    for (const std::string& text : wanted)
      if (line == text) found += line + '\n';
  return found;
}

TEST(SolveDriver, ASingleShellRunCountsItsCoplanarNodes) {
  EXPECT_THAT(InfoOf(Shell("Solver SkyLine")),
              testing::StartsWith("9 out of 9 nodes are coplanar\n\nINFORMATION"));
}

TEST(SolveDriver, AConvertedShellSaysSoBeforeItCounts) {
  EXPECT_THAT(InfoOf(Shell("Solver SkyLine\nConvertTo6Nodes")),
              testing::StartsWith("Mesh converted to internal 6-noded representation\n"
                                  "25 out of 25 nodes are coplanar\n\nINFORMATION"));
}

TEST(SolveDriver, AMeshReadWithSixNodesIsNotConverted) {
  EXPECT_THAT(InfoOf(Shell("Solver SkyLine\nConvertTo6Nodes", 6)),
              testing::StartsWith("9 out of 9 nodes are coplanar\n\nINFORMATION"));
}

TEST(SolveDriver, DoubleRunsTwoAssembliesAndCountsCoplanarNodesOnce) {
  const std::string info = InfoOf(Shell("Solver Double"));
  EXPECT_EQ(
      Among(info,
            {"Running a pre-solver to prepare initial values", "Stiffness matrix filled",
             "Mesh converted to internal 6-noded representation", "25 out of 25 nodes are coplanar",
             "9 out of 9 nodes are coplanar", "Solver finished"}),
      "Running a pre-solver to prepare initial values\n"
      "Stiffness matrix filled\n"
      "Solver finished\n"
      "Mesh converted to internal 6-noded representation\n"
      "25 out of 25 nodes are coplanar\n"
      "Stiffness matrix filled\n"
      "Solver finished\n");
}

// --- Double -----------------------------------------------------------------------------------

TEST(SolveDriver, DoubleGivesWhatTheConvertedModelGives) {
  const auto twice = RunDeck(Shell("Solver Double"));
  const auto once = RunDeck(Shell("Solver SkyLine\nConvertTo6Nodes"));
  EXPECT_EQ(twice->solverChoice, SolveSparse);
  EXPECT_EQ(twice->ConvertTo6Nodes, 1);
  for (const int node : {2, 3, 5, 6, 7, 8})
    for (int d = 1; d <= 6; ++d)
      EXPECT_NEAR(Displacement(*twice, node, d), Displacement(*once, node, d),
                  1e-6 * std::abs(Displacement(*once, 3, 3)))
          << node << ' ' << d;
}

TEST(SolveDriver, DoubleKeepsItsRenumberingForTheSecondPass) {
  const auto inOrder = RunDeck(Shell("Solver Double"), 0);
  const auto renumbered = RunDeck(Shell("Solver Double"), 1);
  EXPECT_TRUE(IsRenumbered(*renumbered));
  EXPECT_FALSE(IsRenumbered(*inOrder));
  EXPECT_NEAR(Displacement(*inOrder, 3, 3), Displacement(*renumbered, 3, 3),
              1e-6 * Displacement(*inOrder, 3, 3));
}

/// Unit squares of two triangles, one above the other, each a mesh of its own and pulled by 7 along
/// x: their displacements are linear, so the pre-solve and the means of its corners are the answer.
/// A mesh with 'b' in `kinds` has one beam between clamped nodes instead.
std::string PulledSquares(const std::string& kinds, const std::string& supports = "") {
  std::string coordinates, meshes, constraints, loads;
  for (int m = 0; m < static_cast<int>(kinds.size()); ++m) {
    const bool isBeam = kinds[m] == 'b';
    const auto node = [m](int k) { return std::to_string(4 * m + k) + ' '; };
    const std::string z = ' ' + std::to_string(m) + '\n', number = std::to_string(2 * m + 1) + ' ';
    coordinates +=
        node(1) + "0 0" + z + node(2) + "1 0" + z + node(3) + "0 1" + z + node(4) + "1 1" + z;
    if (m > 0)
      meshes += std::string("mesh dimension 3 elemtype ") +
                (isBeam ? "Linear nnode 2" : "Triangle nnode 3") + "\ncoordinates\nend\nelements\n";
    meshes += isBeam ? number + node(1) + node(2) + "2\nend\n"
                     : number + node(1) + node(2) + node(4) + "1\n" + std::to_string(2 * m + 2) +
                           ' ' + node(1) + node(4) + node(3) + "1\nend\n";
    const char* const held = isBeam ? "111111 " : "001111 ";
    const char* const noDisplacement = "0 0 0 0 0 0\n";
    constraints += node(1) + "111111 " + noDisplacement + node(2) + held + noDisplacement +
                   node(3) + (isBeam ? held : "101111 ") + noDisplacement + node(4) + held +
                   noDisplacement;
    if (!isBeam) loads += number + "1 7 0 0\n";
  }
  return "problem s\ntype 3d\nSolver Double\nmesh dimension 3 elemtype Triangle nnode 3\n"
         "coordinates\n" +
         coordinates + "end\nelements\n" + meshes +
         "materials\n1 E=1000 nu=.3 G=400 t=.1\n2 E=1 A=1 Iz=1 Iy=1 G=1 J=1\nend\nconstraints\n" +
         constraints + supports + "end\nface_loads\n" + loads + "end\n";
}

const char* const kStartsAtTheAnswer = "iteration number 0 OK resid=";

TEST(SolveDriver, DoubleHasNothingToIterateWhereTheMeansOfCornersAreTheAnswer) {
  EXPECT_THAT(InfoOf(PulledSquares("t")), HasSubstr(kStartsAtTheAnswer));
  EXPECT_THAT(InfoOf(PulledSquares("tbbbt")), HasSubstr(kStartsAtTheAnswer));
}

TEST(SolveDriver, DoubleStartsTheMidSidesOfTheSecondToFourthMeshFromZero) {
  for (const char* const kinds : {"tt", "tbt", "tbbt"})
    EXPECT_THAT(InfoOf(PulledSquares(kinds)),
                AllOf(HasSubstr("Converged it number. "), Not(HasSubstr(kStartsAtTheAnswer))))
        << kinds;
}

TEST(SolveDriver, DoubleStartsInTheAxesOfInclinedSupports) {
  // The support of node 4 leaves both directions of the plane free: only its axes are turned.
  const char* const held = "4 001111 0 0 0 0 0 0 Euler3=0.6\n";
  EXPECT_THAT(InfoOf(PulledSquares("t", held)), HasSubstr(kStartsAtTheAnswer));
}

TEST(SolveDriver, DoubleRefusesTrianglesReadWithSixNodesBeforeItWrites) {
  const auto project = ReadDeck(Shell("Solver Double", 6));
  std::ostringstream info;
  EXPECT_FATAL(SolveProject(*project, {.info = &info}),
               "error: Solver DOUBLE needs a shell mesh of 3-noded triangles\n");
  EXPECT_EQ(info.str(), "");
}

TEST(SolveDriver, DoubleSolvesTetrahedraOnceAndThenRefusesThem) {
  const auto project = ReadDeck("problem a\ntype 3d\nSolver Double\n" + kTetra);
  std::ostringstream info;
  EXPECT_FATAL(SolveProject(*project, {.info = &info}),
               "error: Double solver not implemented for tetrahedras\n");
  EXPECT_THAT(info.str(), testing::EndsWith("Solver finished\n"));
}

TEST(SolveDriver, DoubleOnBeamsAloneStartsFromTheDirectSolution) {
  const auto project = RunDeck(Chain(2, 5).Key("Solver Double").Load(5, {0, 1, 0}).Text());
  EXPECT_NEAR(Displacement(*project, 5, 2), 64.0 / 3.0, 1e-8);
}

TEST(SolveDriver, MarksOfCoplanarNodesMoveWithTheirNodes) {
  // A fold along y leaves the nodes on it without drilling stiffness; renumbering before the
  // pre-solve must not give their marks to others.
  const std::string deck =
      "problem s\ntype 3d\nSolver Double\n"
      "mesh dimension 3 elemtype Triangle nnode 3\ncoordinates\n"
      "1 0 0 0\n2 1 0 0\n3 0 1 0\n4 1 1 0\n5 2 0 1\n6 2 1 1\n7 3 0 2\n8 3 1 2\nend\nelements\n"
      "1 1 2 4 1\n2 1 4 3 1\n3 2 5 6 1\n4 2 6 4 1\n5 5 7 8 1\n6 5 8 6 1\nend\n"
      "materials\n1 E=1000 nu=.3 G=400 t=.1\nend\nconstraints\n"
      "7 111111 0 0 0 0 0 0\n8 111111 0 0 0 0 0 0\nend\nnodal_point_loads\n1 0 0 1 0 0 0\nend\n";
  const auto inOrder = RunDeck(deck, 0);
  const auto renumbered = RunDeck(deck, 1);
  for (int node = 1; node <= 6; ++node)
    for (int d = 1; d <= 6; ++d)
      EXPECT_NEAR(Displacement(*renumbered, node, d), Displacement(*inOrder, node, d),
                  1e-6 * std::abs(Displacement(*inOrder, 1, 3)));
}

TEST(SolveDriver, ASolverThatStopsEarlySaysAfterHowManyIterations) {
  FrameDeck deck(3);  // a grid, which incomplete factors do not solve at once
  const auto node = [](int i, int j) { return 20 * j + i + 1; };
  int beam = 0;
  for (int j = 0; j < 20; ++j)
    for (int i = 0; i < 20; ++i) deck.Node(node(i, j), i, j, 0);
  for (int j = 0; j < 20; ++j)
    for (int i = 0; i < 20; ++i) {
      if (i < 19) deck.Beam(++beam, node(i, j), node(i + 1, j));
      if (j < 19) deck.Beam(++beam, node(i, j), node(i, j + 1));
    }
  deck.Material(1, "E=1 A=1 Iz=1 Iy=1 G=1 J=1").Clamp(1).Load(400, {0, 0, 1, 0, 0, 0});
  EXPECT_FATAL(Solve(deck.Key("Solver Sparse 1e-14 1e-14 10").Text()),
               "error when solving system. Stopped after 10 iterations.Probably conditions are "
               "not correct\n");
}

}  // namespace

}  // namespace kestol
