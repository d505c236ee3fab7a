#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "model/Mesh.h"
#include "tests/support/ExpectFatal.h"

namespace kestol {

namespace {

/// One element on nodes 1..nnode.
std::unique_ptr<Mesh> OneElem(int dimension, int elemType, int nnode) {
  auto mesh = std::make_unique<Mesh>();
  mesh->dimension = dimension;
  mesh->elemType = elemType;
  mesh->nnode = nnode;
  mesh->SetFemviewType();
  auto elem = std::make_unique<Elem>(mesh.get(), nnode);
  for (int n = 1; n <= nnode; ++n) {
    auto node = std::make_unique<Node>();
    node->number = n;
    node->x = -n;
    node->y = 1e-3 * n;
    node->z = 7.0;
    elem->nodes[n - 1] = mesh->nodes->Insert(n, std::move(node));
  }
  elem->number = 42;
  mesh->elems.Insert(42, std::move(elem));
  return mesh;
}

std::string Written(const Mesh& mesh, const char* fileName) {
  std::ostringstream stream;
  mesh.WriteFemview(stream, fileName);
  return stream.str();
}

std::string Title(const char* fileName) {
  const std::string text = Written(Mesh(), fileName);
  return text.substr(0, text.find('\n') + 1);
}

TEST(Femview, WritesAWholeFile) {
  EXPECT_EQ(Written(*OneElem(3, Linear, 2), "out/run/beam_example"),
            "    1Cxample\n"
            "    2CCOORDE\n"
            " -1    1-1.00000e+00 1.00000e-03 7.00000e+00 \n"
            " -1    2-2.00000e+00 2.00000e-03 7.00000e+00 \n"
            " -3\n"
            "    3CCONECT\n"
            " -1   42   11    1    1\n"
            " -2    1    2\n"
            " -3\n"
            " 9999\n");
}

TEST(Femview, TheTitleIsTheEndOfTheBaseName) {
  EXPECT_EQ(Title("out/run/beam_example"), "    1Cxample\n");
  EXPECT_EQ(Title("beam"), "    1Cbeam\n");
  EXPECT_EQ(Title("a/b"), "    1Cb\n");
  EXPECT_EQ(Title("123456"), "    1C123456\n");
  EXPECT_EQ(Title("1234567"), "    1C234567\n");
  EXPECT_EQ(Title("dir/"), "    1C\n");
  EXPECT_EQ(Title(""), "    1C\n");
  EXPECT_EQ(Title(nullptr), "    1C\n");
}

TEST(Femview, BackslashesDoNotSeparateFolders) {
  EXPECT_EQ(Title("out\\a"), "    1Cout\\a\n");
  EXPECT_EQ(Title("output\\a"), "    1Ctput\\a\n");
}

TEST(Femview, APlaneMeshHasZeroZ) {
  EXPECT_THAT(Written(*OneElem(2, Linear, 2), "x"),
              testing::HasSubstr(" -1    1-1.00000e+00 1.00000e-03 0.00000e+00 \n"));
}

TEST(Femview, FifteenNodesFitOnOneCardAndTheRestFollowsBare) {
  EXPECT_THAT(Written(*OneElem(3, Hexahedra, 20), "x"),
              testing::HasSubstr(
                  " -1   42    4    1    1\n"
                  " -2    1    2    3    4    5    6    7    8    9   10   11   12   13   14   15\n"
                  "   16   17   18   19   20\n"
                  " -3\n"));
}

TEST(Femview, WritesTheCodeOfEveryElement) {
  const struct {
    int type, nnode;
    const char* card;
  } rows[] = {
      {Linear,        2,  " -1   42   11    1    1\n"},
      {Triangle,      3,  " -1   42    7    1    1\n"},
      {Triangle,      6,  " -1   42    8    1    1\n"},
      {Quadrilateral, 4,  " -1   42    9    1    1\n"},
      {Quadrilateral, 8,  " -1   42   10    1    1\n"},
      {Tetrahedra,    4,  " -1   42    3    1    1\n"},
      {Tetrahedra,    10, " -1   42    6    1    1\n"},
      {Hexahedra,     8,  " -1   42    1    1    1\n"},
      {Hexahedra,     20, " -1   42    4    1    1\n"},
  };
  for (const auto& row : rows)
    EXPECT_THAT(Written(*OneElem(3, row.type, row.nnode), "x"), testing::HasSubstr(row.card));
}

TEST(Femview, WritesInternalNumbersAndNullNodesAsZero) {
  const auto mesh = OneElem(3, Triangle, 3);
  mesh->nodes->Get(2)->x = 100.0;
  mesh->Renumber();  // node 2 is 1, then 1 and 3
  mesh->elems.Get(42)->nodes[2] = nullptr;
  EXPECT_THAT(Written(*mesh, "x"), testing::HasSubstr(" -2    2    1    0\n"));
  EXPECT_THAT(Written(*mesh, "x"), testing::HasSubstr(" -1    1 1.00000e+02"));
}

TEST(Femview, WideNumbersAreNotCut) {
  const auto mesh = OneElem(3, Linear, 2);
  mesh->nodes->Get(1)->number = 1234567;
  mesh->nodes->Get(1)->x = -1e-100;
  const std::string text = Written(*mesh, "x");
  EXPECT_THAT(text, testing::HasSubstr(" -11234567-1.00000e-100 1.00000e-03 7.00000e+00 \n"));
  EXPECT_THAT(text, testing::HasSubstr(" -21234567    2\n"));
}

TEST(Femview, LeavesTheStreamRightAdjusted) {
  std::ostringstream stream;
  Mesh().WriteFemview(stream, "x");
  EXPECT_EQ(stream.flags() & std::ios::adjustfield, std::ios::right);
}

}  // namespace

}  // namespace kestol
