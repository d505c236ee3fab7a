#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "kestol/CopyModel.h"
#include "kestol/ReadDeck.h"
#include "kestol/WriteDeck.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

std::string Written(const Project& project) {
  std::ostringstream stream;
  WriteDeck(project, stream);
  return stream.str();
}

/// Everything that a model says, in words of our own: numbers by their bits.
class Said {
public:
  static std::string By(const Project& project) {
    Said said;
    said.Options(project);
    for (const auto& mesh : project.meshes) said.OfMesh(*mesh);
    for (const auto [number, material] : project.materials) said.Of(number, *material);
    for (const auto [number, first] : project.loads) said.Loads(number, *first);
    return said.text_.str();
  }

private:
  void Number(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    text_ << std::hex << bits << std::dec << ' ';
  }
  void Options(const Project& p) {
    text_ << p.problemType << ' ' << p.dofsPerNode << ' ' << p.ConvertTo6Nodes << ' '
          << p.stressOption << ' ' << p.nodesAsRead << ' ' << p.numNodes << ' ' << p.solverChoice
          << ' ' << p.MaxIterations << ' ' << p.NumOfDivisions << ' ' << p.DoSmoothing << ' '
          << p.hasHinges << '\n';
    for (const int count : p.numElements) text_ << count << ' ';
    for (const double value : {p.tolerance1, p.tolerance2, p.gravity(1), p.gravity(2), p.gravity(3),
                               p.CoplanarityAngle, p.smoothingAngle})
      Number(value);
    const Units& u = p.units;
    for (const UnitSystem& row : u.table) {
      text_ << row.name << ' ' << row.nameN << ' ' << row.nameM << ' ' << row.namePa << ' ';
      Number(row.facN);
      Number(row.facM);
    }
    text_ << u.resultForceName << ' ' << u.resultLengthName << ' ' << u.resultPressureName << '\n';
    Number(u.resultForce);
    Number(u.resultLength);
  }
  void OfMesh(const Mesh& mesh) {
    text_ << "\nmesh " << mesh.dimension << ' ' << mesh.elemType << ' ' << mesh.nnode << ' '
          << mesh.femviewType << '\n';
    for (const auto [number, node] : *mesh.nodes) Of(number, *node);
    for (const auto [number, elem] : mesh.elems) {
      text_ << "elem " << number << ' ' << elem->number << ' ' << elem->materialNumber << ": ";
      for (int i = 0; i < elem->nnode; ++i)
        text_ << (elem->nodes[i] != nullptr ? elem->nodes[i]->number : 0) << ' ';
      if (elem->material) Of(0, *elem->material);
    }
  }
  void Of(int number, const Node& node) {
    text_ << "node " << number << ' ' << node.number << ' ' << node.dim << ' ' << node.isHinge
          << ' ';
    for (const double x : {node.x, node.y, node.z}) Number(x);
    if (node.load)
      for (const double f : *node.load) Number(f);
    if (const Constraint* const c = node.constraint.get()) {
      text_ << "held " << c->dofs << ' ' << c->hasLocalAxes << ' ';
      for (const int code : c->codes) text_ << code;
      for (const double value : c->values) Number(value);
      for (const double angle : {c->Euler1, c->Euler2, c->Euler3}) Number(angle);
    }
    text_ << '\n';
  }
  void Of(int number, const Material& m) {
    text_ << "material " << number << ' ' << m.number << ' ' << m.hasEuler << ' ';
    for (const double value : {m.E1, m.E2, m.nuXY, m.nuYX, m.Iy, m.Iz, m.Gxy, m.Gxz, m.Gyz, m.J,
                               m.A, m.Weight, m.t, m.Euler1, m.Euler2, m.Euler3})
      Number(value);
    text_ << '\n';
  }
  void Loads(int number, const PreassureLT& first) {
    for (const PreassureLT* load = &first; load != nullptr; load = load->next.get()) {
      text_ << "load " << number << ' ' << load->kind << ' ' << load->face << ' ';
      for (const double value : load->values) Number(value);
    }
    text_ << '\n';
  }

  std::ostringstream text_;
};

/// The model of a deck, of its copy and of what is written of it say the same.
void ExpectIdentity(const Project& project) {
  const std::string said = Said::By(project);
  EXPECT_EQ(Said::By(CopyModel(project)), said);
  const std::string text = Written(project);
  const Project again = ReadDeckText(text, "again.dat");
  EXPECT_EQ(Said::By(again), said) << text;
  EXPECT_EQ(Written(again), text);
}

void ExpectIdentity(const std::string& deck) {
  ExpectIdentity(ReadDeckText(deck, "a.dat"));
}

std::string Space(const std::string& behind) {
  return "problem p\ntype 3d\nmesh dimension = 3 elemtype Triangle nnode = 3\ncoordinates\n"
         "1 0 0 0\n2 1 0 0\n3 0 1 0.1\n4 1 1 0.3\nend coordinates\nelements\n1 1 2 3 1\n2 2 4 3 1\n"
         "end elements\nmesh dimension = 3 elemtype Linear nnode = 2\ncoordinates\nend "
         "coordinates\nelements\n7 1 2 2 E=3 A=0.1 Iy=1 Iz=-1 J=2 G=1 Euler2=0.25\n8 2 3 2\nend "
         "elements\n" +
         behind;
}

class DecksOf : public testing::TestWithParam<const char*> {};

TEST_P(DecksOf, TheRepositoryAreReadAsTheyWereWritten) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(GetParam())) {
    if (entry.path().extension() != ".dat") continue;
    SCOPED_TRACE(entry.path());
    ExpectIdentity(ReadDeck(entry.path().string()));
    ++count;
  }
  EXPECT_GE(count, 20);
}

INSTANTIATE_TEST_SUITE_P(WriteDeck, DecksOf,
                         testing::Values(KESTOL_SOURCE_DIR "/examples",
                                         KESTOL_SOURCE_DIR "/verification/decks"));

TEST(WriteDeck, KeepsEveryOption) {
  for (const char* option :
       {"Solver SkyLine", "Solver Double", "Solver Sparse 1e-7 0.1 77", "ConvertTo6Nodes",
        "MainStresses", "MainAndLocalStresses", "DoSmoothing 0.3", "CoplanarityAngle 0.01",
        "NumOfDivisions 7", "GravityDirection 0.3 -0.7 0.11"}) {
    SCOPED_TRACE(option);
    ExpectIdentity(Space(option));
    EXPECT_NE(Written(ReadDeckText(Space(option), "a")), Written(ReadDeckText(Space(""), "a")));
  }
}

TEST(WriteDeck, KeepsTheLastBitOfGravity) {
  for (const char* direction : {"1 1 0", "1 2 3", "-0.1 0.7 0.3", "1e-9 1 5", "3 3 1e5",
                                "0 0 -9.81", "0.123456789 7.1 -2.2", "1 1e-300 0", "13 -17 19"}) {
    SCOPED_TRACE(direction);
    ExpectIdentity(Space("GravityDirection " + std::string(direction)));
  }
}

TEST(WriteDeck, KeepsMaterialsSupportsHingesAndNodalLoads) {
  ExpectIdentity(
      Space("materials\n1 Ex=3 Ey=4 nuXY=0.1 nuYX=0.2 Gxy=1 Gxz=2 Gyz=3 t=0.1 Weight=5\n"
            "2 widthY=0.3 widthZ=0.7 Euler1=1 Euler3=-2\n3\n4 E=-1\nend\n"
            "constraints\n1 111111 0 0 0.25 0 0 0\n2 020010 0 1e7 0 0 0 1\n"
            "3 300000 7 0 0 0 0 0 Euler2=0.5\n4 000000 1 1 1 1 1 1\nend\n"
            "rotules\n2\n3\nend\nnodal_point_loads\n2 1 2 3 4 5 6\n2 0.1 0 0 0 0 0\n"
            "4 0 0 0 0 0 0\nend\n"));
}

TEST(WriteDeck, KeepsTheOrderOfTheLoadsOfAnElement) {
  ExpectIdentity(
      Space("face_loads\n1 0 1 2 3\n1 -1 4 5 6\n1 7 8 9\nend\n"
            "local_pressure_loads\n7 1 2 3 4\n1 1 2 3\nend\n"
            "global_pressure_loads\n1 1 2 3\n7 0.1 0 0 Euler1=0.3\nend\n"
            "global_projected_pressure_loads\n8 0 0 -5\n7 1 0 0\nend\n"
            "global_pressure_loads\n7 9 9 9\nend\n"));
}

TEST(WriteDeck, KeepsElementsOnNodesThatAreNot) {
  ExpectIdentity("problem p\ntype 2d\n" + MeshOf("Linear", 2, "1 1 9\n2 8 9\n3 1 2 1"));
}

TEST(WriteDeck, KeepsNodesThatALaterMeshListsInAnotherDimension) {
  const std::string elements = "\nend coordinates\nelements\nend elements\n";
  const std::string plane =
      "mesh dimension 2 elemtype Linear nnode 2\ncoordinates\n1 0 1\n2 1 5" + elements;
  const std::string space =
      "mesh dimension 3 elemtype Triangle nnode 3\ncoordinates\n1 0 0 1\n2 1 0 2\n3 5 5 5" +
      elements;
  ExpectIdentity("problem p\ntype 3d\n" + plane + space);
}

TEST(WriteDeck, WritesInTheUnitsOfTheResults) {
  const std::string units = "units_mesh mm\nunits_mat_and_load N-mm\nunits_res kN-m\n";
  const std::string deck = kHeader + kSystems + units + kMesh +
                           "materials\n1 E=210 A=7 Iz=3\nend\nconstraints\n1 112 3 0 7\nend\n"
                           "nodal_point_loads\n2 1 3 7\nend\nglobal_pressure_loads\n1 3 7\nend\n";
  ExpectIdentity(deck);
  const std::string text = Written(ReadDeckText(deck, "a"));
  EXPECT_NE(text.find("units_mesh m\nunits_mat_and_load kN-m\nunits_res kN-m\n"),
            std::string::npos);
}

TEST(WriteDeck, WritesMeshesFirstWhereAnotherSystemHasTheNameOfTheLength) {
  ExpectIdentity(
      "problem p\ntype 2d\nunits_names\nA N m Pa 1 3\nB kN m Pa 1000 7\nend\n"
      "units_mesh m\nunits_mat_and_load A\nunits_res B\n" +
      kMesh + "materials\n1 E=3\nend\n");
}

TEST(WriteDeck, LeavesUnitsOutThatTheResultsDoNotName) {
  ExpectIdentity(kHeader + kSystems + "units_mat_and_load N-mm\n" + kMesh +
                 "materials\n1 E=3 A=0.1\nend\n");
}

}  // namespace

}  // namespace kestol
