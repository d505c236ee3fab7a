#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "input/Project.h"
#include "output/PrintProject.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

/// Two nodes and one beam in the plane.
std::unique_ptr<Project> Beam() {
  auto project = std::make_unique<Project>(100);
  auto mesh = std::make_unique<Mesh>();
  mesh->dimension = 2;
  mesh->elemType = Linear;
  mesh->nnode = 2;
  auto elem = std::make_unique<Elem>(mesh.get(), 2);
  elem->number = 1;
  elem->materialNumber = 4;
  for (int n = 1; n <= 2; ++n) {
    auto node = std::make_unique<Node>();
    node->number = n;
    node->x = n == 1 ? 0.0 : 3.0;
    elem->nodes[n - 1] = mesh->nodes->Insert(n, std::move(node));
  }
  mesh->elems.Insert(1, std::move(elem));
  project->meshes.push_back(std::move(mesh));
  project->numNodes = 2;
  return project;
}

Node& NodeOf(Project& project, int key) {
  return *project.meshes[0]->nodes->Get(key);
}

std::string Dump(const Project& project) {
  std::ostringstream stream;
  PrintProject(project, stream);
  return stream.str();
}

const std::string kHead = "\nProblemType=0\nFreeDegrees=3\nNumNodes=2\n";
const std::string kMesh =
    "MESH    dimension = 2 ElemType Linear  Nnode = 2\n"
    "Coordinates\n"
    "    1              0              0\n"
    "    2              3              0\n"
    "end coordinates\n"
    "\n"
    "Elements\n"
    "    1       1    2  Mat: 4\n"
    "end elements\n";

TEST(PrintProject, PrintsTheHeadAndTheMeshes) {
  EXPECT_EQ(Dump(*Beam()), kHead + kMesh);
}

TEST(PrintProject, PrintsEveryMaterial) {
  const auto project = Beam();
  auto material = std::make_unique<Material>();
  material->number = 4;
  material->E1 = 2e11;
  project->materials.Insert(4, std::move(material));
  EXPECT_EQ(Dump(*project), kHead + kMesh +
                                "4 E1=2e+11 E2=0 nuXY=0 nuYX=0 Iy=0 Iz=0 Gxy=0 Gxz=0 "
                                "Gyz=0 J=0 A=0 Weight=0 t=0\n");
}

TEST(PrintProject, PrintsConstraintsThenLoads) {
  const auto project = Beam();
  for (int n = 1; n <= 2; ++n) {
    NodeOf(*project, n).load = std::make_unique<ReaVecT>(3);
    NodeOf(*project, n).load->Fill(0.0);
  }
  (*NodeOf(*project, 2).load)(2) = -1000.5;
  NodeOf(*project, 1).constraint = std::make_unique<Constraint>(3);
  NodeOf(*project, 1).constraint->codes = {1, 0, 2};
  NodeOf(*project, 1).constraint->values = {0.25, 0.0, 1e6};
  EXPECT_EQ(Dump(*project), kHead + kMesh +
                                "1 CT  deg=1 1 val=0.25 deg=2 0 val=0 deg=3 2 val=1e+06\n"
                                "1 LD  0 0 0\n"
                                "2 LD  0 -1000.5 0\n");
}

TEST(PrintProject, PrintsRotulesAndCodesThatAreNotRigid) {
  const auto project = Beam();
  NodeOf(*project, 2).isHinge = 1;
  project->hasHinges = true;
  project->endCodes = {HingeAtEnd1, BothFixed, BothHinged, HingeAtEnd2};
  EXPECT_EQ(Dump(*project), kHead + kMesh +
                                "nodes with rotule:\n2\n"
                                "elements rotule:\n"
                                "elm 1 code=1\nelm 3 code=0\nelm 4 code=10\n");
}

TEST(PrintProject, RotulesWithoutCodesPrintNoElements) {
  const auto project = Beam();
  project->hasHinges = true;
  EXPECT_EQ(Dump(*project), kHead + kMesh + "nodes with rotule:\nelements rotule:\n");
}

TEST(PrintProject, PrintsCoplanarityFlagsByIndex) {
  const auto project = Beam();
  project->coplanar = {1, 0};
  EXPECT_EQ(Dump(*project), kHead + kMesh + "Coplanarity vector:\n1 1\n2 0\n");
}

TEST(PrintProject, PrintsNodeNumbersOfTheInput) {
  const auto project = Beam();
  project->hasHinges = true;
  NodeOf(*project, 1).isHinge = 1;
  NodeOf(*project, 1).constraint = std::make_unique<Constraint>(3);
  NodeOf(*project, 1).load = std::make_unique<ReaVecT>(1);
  NodeOf(*project, 1).load->Fill(5.0);
  const std::string before = Dump(*project);
  NodeOf(*project, 1).number = 2;
  NodeOf(*project, 2).number = 1;
  *project->meshes[0]->renumberMap = {2, 1};
  EXPECT_EQ(Dump(*project), before);
}

TEST(PrintProject, AnEmptyProjectHasOnlyItsHead) {
  Project project(100);
  EXPECT_EQ(Dump(project), "\nProblemType=0\nFreeDegrees=3\nNumNodes=0\n");
}

}  // namespace

}  // namespace kestol
