#include <string>
#include <utility>

#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "tests/support/ExpectFatal.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

/// The place of the refusal of `text`: "name:line".
std::string PlaceOf(const std::string& text) {
  try {
    ReadDeckText(text, "a.dat");
  } catch (const FatalError& refusal) {
    return std::string(refusal.File()) + ":" + std::to_string(refusal.Line());
  }
  return "not refused";
}

TEST(ReadDeck, TextBecomesAModelThatCanBeMoved) {
  Project read = ReadDeckText(kHeader + kMesh + "materials\n3 E=2\nend\n", "a.dat");
  const Project project = std::move(read);
  EXPECT_EQ(project.meshes[0]->nodes->Highest(), 4);
  EXPECT_EQ(project.materials.Get(3)->E1, 2.0);
  EXPECT_EQ(read.materials.Get(3), nullptr);
}

TEST(ReadDeck, RefusalNamesTheLineOfItsRecord) {
  EXPECT_EQ(PlaceOf(kHeader + ("# comment\n" + kMesh) + "materials\n3 E=2\n\n4 Q=2\nend\n"),
            "a.dat:17");
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "\nSolver none\n"), "a.dat:14");
}

TEST(ReadDeck, RefusalOfTheTypeNamesItsLine) {
  EXPECT_EQ(PlaceOf("problem\n\ntype 4d"), "a.dat:3");
}

TEST(ReadDeck, RefusalInAMeshBlockNamesTheLineOfTheWord) {
  EXPECT_EQ(PlaceOf("problem type 2d\nmesh\ndimension 3\nelemtype Beam"), "a.dat:4");
}

TEST(ReadDeck, SectionWithoutEndNamesItsKeyword) {
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "materials\n3 E=2\n\n"), "a.dat:13");
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "constraints\n1 110 0 0 0\n"), "a.dat:13");
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "rotules\n1\n"), "a.dat:13");
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "nodal_point_loads\n1 0 0 0\n"), "a.dat:13");
  EXPECT_EQ(PlaceOf(kHeader + kMesh + "face_loads\n1 0 0\n"), "a.dat:13");
}

TEST(ReadDeck, ListOfAMeshNamesItsWord) {
  EXPECT_EQ(PlaceOf("problem type 2d\nmesh dimension 2 elemtype Linear\nnnode 2\ncoordinates\n"
                    "1 0 0\n3 1 0\nend\n"),
            "a.dat:4");
  EXPECT_EQ(PlaceOf("problem type 2d\nmesh dimension 2 elemtype Linear\nnnode 2\ncoordinates\n"
                    "1 0 0\n2 1 0\nend\nelements\n\n1 1 2\n"),
            "a.dat:8");
}

TEST(ReadDeck, RefusalOfTheWholeModelHasNoLine) {
  EXPECT_EQ(PlaceOf("problem type 2d\n"), "a.dat:0");
}

TEST(ReadDeck, FileThatCannotBeOpenedIsNamed) {
  EXPECT_FATAL(ReadDeck("missing/deck.dat"), "can't open file missing/deck.dat\n");
}

TEST(ReadDeck, RefusalOfAFileNamesItsLineAndIsForgottenByTheNextCall) {
  const OwnFolder folder;
  const std::string path = folder.Put("a.dat", "problem type 2d\nmaterials\n1 E=1\n1 E=1\nend\n");
  try {
    ReadDeck(path);
    ADD_FAILURE();
  } catch (const FatalError& refusal) {
    EXPECT_EQ(refusal.File(), path);
    EXPECT_EQ(refusal.Line(), 4);
  }
  ReadDeckText(kHeader + kMesh, "b.dat");
  EXPECT_STREQ(error.Text(), "");
  EXPECT_EQ(error.line, 0);
}

}  // namespace

}  // namespace kestol
