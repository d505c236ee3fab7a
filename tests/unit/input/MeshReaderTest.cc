#include "input/Words.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/MeshText.h"

namespace kestol {

namespace {

// --- heading ----------------------------------------------------------------------------------

TEST(MeshReader, ReadsABlockOfBeams) {
  const auto mesh = Read(Beams(kTwoNodes, " 7 1 2 3\n"));
  EXPECT_EQ(mesh->dimension, 2);
  EXPECT_EQ(mesh->nnode, 2);
  EXPECT_EQ(mesh->elemType, Linear);
  EXPECT_EQ(mesh->femviewType, 11);
  EXPECT_EQ(mesh->sharesNodes, 0);
  EXPECT_TRUE(mesh->renumberMap->empty());
  ASSERT_EQ(mesh->nodes->Highest(), 2);
  const Node& node = *mesh->nodes->Get(2);
  EXPECT_EQ(node.number, 2);
  EXPECT_EQ(node.dim, 2);
  EXPECT_EQ(node.x, 3.0);
  EXPECT_EQ(node.y, 4.0);
  EXPECT_EQ(node.z, 0.0);
  EXPECT_EQ(node.constraint, nullptr);
  EXPECT_EQ(node.load, nullptr);
  const Elem* elem = mesh->elems.Get(7);
  ASSERT_NE(elem, nullptr);
  EXPECT_EQ(elem->number, 7);
  EXPECT_EQ(elem->mesh, mesh.get());
  EXPECT_EQ(elem->nodes[0], mesh->nodes->Get(1));
  EXPECT_EQ(elem->nodes[1], mesh->nodes->Get(2));
  EXPECT_EQ(elem->materialNumber, 3);
  EXPECT_EQ(elem->material, nullptr);
  EXPECT_EQ(elem->attributes[0], 0);
  EXPECT_EQ(elem->attributes[1], 0);
}

TEST(MeshReader, AcceptsEveryRowOfTheElementTable) {
  const struct {
    const char* word;
    int nnode, type, femview;
  } rows[] = {
      {"Linear",        2,  1, 11},
      {"Triangle",      3,  2, 7 },
      {"Triangle",      6,  2, 8 },
      {"Quadrilateral", 4,  3, 9 },
      {"Quadrilateral", 8,  3, 10},
      {"Tetrahedra",    4,  4, 3 },
      {"Tetrahedra",    10, 4, 6 },
      {"Hexahedra",     8,  5, 1 },
      {"Hexahedra",     20, 5, 4 },
  };
  for (const auto& row : rows) {
    const auto mesh = ReadHeading(row.word, row.nnode);
    EXPECT_EQ(mesh->elemType, row.type) << row.word;
    EXPECT_EQ(mesh->femviewType, row.femview) << row.word << " " << row.nnode;
  }
}

TEST(MeshReader, RefusesEveryOtherNodeCount) {
  const struct {
    const char* word;
    std::vector<int> admissible;
  } rows[] = {
      {"l",  {2}    },
      {"tr", {3, 6} },
      {"q",  {4, 8} },
      {"te", {4, 10}},
      {"h",  {8, 20}},
  };
  for (const auto& row : rows)
    for (int nnode = 0; nnode <= 28; ++nnode) {
      SCOPED_TRACE(row.word + std::to_string(nnode));
      if (std::count(row.admissible.begin(), row.admissible.end(), nnode) == 0)
        EXPECT_FATAL(ReadHeading(row.word, nnode), "Unknown Femview type\n");
    }
}

TEST(MeshReader, TakesElementTypesByTheirFirstLetters) {
  EXPECT_EQ(Mesh::ParseElemType("Lin"), Linear);
  EXPECT_EQ(Mesh::ParseElemType("l"), Linear);
  EXPECT_EQ(Mesh::ParseElemType("Tri"), Triangle);
  EXPECT_EQ(Mesh::ParseElemType("tr"), Triangle);
  EXPECT_EQ(Mesh::ParseElemType("quad"), Quadrilateral);
  EXPECT_EQ(Mesh::ParseElemType("TETRA"), Tetrahedra);
  EXPECT_EQ(Mesh::ParseElemType("Hex8"), Hexahedra);
}

TEST(MeshReader, RefusesUnknownElementTypes) {
  const std::string text =
      "ElemType must be: Linear,Triangle,Quadrilateral, Tetrahedra or Hexahedra\n";
  for (const char* word : {"Tube", "t", "", "=", "beam", "\xc3\xa9"})
    EXPECT_FATAL(Mesh::ParseElemType(word), text);
  EXPECT_FATAL(Read("dimension = 2 ElemType = Triangle"), text);
  EXPECT_FATAL(Read("dimension = 2 ElemType"), text);
}

TEST(MeshReader, FindsKeywordsInAnyCaseBehindOtherWords) {
  const auto mesh = Read(
      "some words DIMENSION : 3 more ELEMTYPE LINEAR of NNODE -- 2 then Coordinates\n"
      "1 1 2 3\nEND of ELEMENTS\nEnd");
  EXPECT_EQ(mesh->dimension, 3);
  EXPECT_EQ(mesh->nodes->Get(1)->z, 3.0);
}

TEST(MeshReader, KeywordsMustStandAlone) {
  EXPECT_FATAL(Read("dimension=2 elemtype l nnode 2"),
               "can't find word ***dimension*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype:l nnode 2"),
               "can't find word ***elemtype*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode=2"),
               "can't find word ***nnode*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode 2 coordinates:\n1 0 0\n"),
               "can't find word ***coordinates*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode 2 coordinates\n1 0 0\nendcoordinates\n"),
               "can't find word ***end*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode 2 coordinates\n1 0 0\nend"),
               "can't find word ***elements*** in input file\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode 2 coordinates\n1 0 0\nend elements\n"),
               "can't find word ***end*** in input file\n");
}

TEST(MeshReader, TheFileMayEndBeforeADigit) {
  EXPECT_FATAL(Read("dimension = two"), "end of file and no digit found\n");
  EXPECT_FATAL(Read("dimension 2 elemtype l nnode"), "end of file and no digit found\n");
}

TEST(MeshReader, DropsASignBeforeTheNodeCount) {
  EXPECT_EQ(
      Read("dimension -2 elemtype tri nnode = -3 coordinates 1 0 0\n end elements end")->nnode, 3);
}

TEST(MeshReader, RefusesOtherDimensions) {
  for (const char* dimension : {"0", "1", "4", "22"})
    EXPECT_FATAL(Read(std::string("dimension ") + dimension),
                 "error: mesh dimension must be 2 or 3\n");
}

TEST(MeshReader, RefusesNumbersOver32Bits) {
  const std::string text = "error: number out of range in input file\n";
  EXPECT_FATAL(Read("dimension 99999999999"), text);
  EXPECT_FATAL(Read(Beams("2147483648 0 0\n", "")), text);
  EXPECT_FATAL(Read(Beams(kTwoNodes, "1 1 2147483648\n")), text);
  EXPECT_FATAL(Read(Beams(kTwoNodes, "1 1 2 2147483648\n")), text);
}

// --- coordinates ------------------------------------------------------------------------------

TEST(MeshReader, AcceptsNodesInAnyOrder) {
  const auto mesh = Read(Beams("3 3 0\n1 1 0\n2 2 0\n", ""));
  for (int n = 1; n <= 3; ++n) EXPECT_EQ(mesh->nodes->Get(n)->x, n);
}

TEST(MeshReader, RefusesGapsInTheNodeNumbers) {
  const std::string text = "error: list of nodes does not contain all numbers\n";
  EXPECT_FATAL(Read(Beams("1 0 0\n2 1 0\n4 2 0\n", "")), text);
  EXPECT_FATAL(Read(Beams("1 0 0\n3 1 0\n3 2 0\n", "")), text);
  EXPECT_FATAL(Read(Beams("1 0 0\n1 1 0\n", "")), text);
  EXPECT_FATAL(Read(Beams("2147483647 0 0\n", "")), text);
}

TEST(MeshReader, RefusesAListWithoutNodes) {
  EXPECT_FATAL(Read(Beams("", "")), "error: list of nodes does not contain any node\n");
}

TEST(MeshReader, RefusesNodeNumbersBelowOne) {
  EXPECT_FATAL(Read(Beams("0 0 0\n", "")), "Invalid void index 0");
  EXPECT_FATAL(Read(Beams("-3 0 0\n", "")), "Invalid void index -3");
}

TEST(MeshReader, RefusesCoordinatesThatAreNoFiniteNumbers) {
  const std::string text = "error: node: 2 has not correct coordinates\n";
  for (const char* bad : {"x 0", "0 y", "inf 0", "0 nan", "1e999 0", "0", ""})
    EXPECT_FATAL(Read(Beams(std::string("1 0 0\n2 ") + bad + "\n", "")), text);
}

TEST(MeshReader, ScalingMustLeaveCoordinatesFinite) {
  Units units;
  units.meshLength = 1e300;
  EXPECT_FATAL(Read(Beams("1 0 1e300\n", ""), &units),
               "error: node: 1 has not correct coordinates\n");
}

TEST(MeshReader, AMissingCoordinateTakesTheNextLinesNumber) {
  EXPECT_FATAL(Read("dimension 3 elemtype l nnode 2 coordinates\n1 0 0\n2 1 1 1\n3 2 2 2\nend"),
               "error: list of nodes does not contain all numbers\n");
}

TEST(MeshReader, DropsWhatStandsBehindTheCoordinates) {
  const auto mesh = Read(Beams("1 5 6 7 # corner\n2 8 9 " + std::string(3000, 'x') + "\n", ""));
  EXPECT_EQ(mesh->nodes->Get(1)->z, 0.0);
  EXPECT_EQ(mesh->nodes->Get(2)->y, 9.0);
  EXPECT_EQ(mesh->nodes->Highest(), 2);
}

TEST(MeshReader, ReadsNumbersThatContinueOnTheNextLine) {
  const auto mesh = Read(Beams("1 5\n6\n2\n8 9\n", "1\n1\n2 4\n"));
  EXPECT_EQ(mesh->nodes->Get(1)->y, 6.0);
  EXPECT_EQ(mesh->nodes->Get(2)->x, 8.0);
  EXPECT_EQ(mesh->elems.Get(1)->materialNumber, 4);
}

TEST(MeshReader, SkipsCommentsSignsAndEmptyLinesInBothLists) {
  const std::string comment = "# " + std::string(2000, '1') + " end\n";
  const auto mesh = Read(
      Beams(comment + "\n :1 0 0\r\n\t=2 1 0\n" + comment, comment + "\r\n : = 5 1 2\r\n#6 1 2\n"));
  EXPECT_EQ(mesh->nodes->Highest(), 2);
  EXPECT_EQ(mesh->elems.Lowest(), 5);
  EXPECT_EQ(mesh->elems.Highest(), 5);
}

TEST(MeshReader, ScalesCoordinatesIntoResultUnits) {
  Units units;
  units.meshLength = 0.5;
  units.resultLength = 0.25;
  const auto mesh =
      Read("dimension 3 elemtype l nnode 2 coordinates\n1 1 2 3\nend elements end", &units);
  EXPECT_EQ(mesh->nodes->Get(1)->x, 2.0);
  EXPECT_EQ(mesh->nodes->Get(1)->y, 4.0);
  EXPECT_EQ(mesh->nodes->Get(1)->z, 6.0);
}

TEST(MeshReader, AnyOtherWordEndsAList) {
  const auto mesh = Read(Beams("1 0 0\n2 1 0\nthat is all\n", "1 1 2\n-end of them\n"));
  EXPECT_EQ(mesh->nodes->Highest(), 2);
  EXPECT_EQ(mesh->elems.Highest(), 1);
}

}  // namespace

}  // namespace kestol
