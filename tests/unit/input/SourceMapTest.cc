#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/SourceMap.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Reads `deck` with a map.
SourceMap MapOf(const std::string& deck) {
  SourceMap map;
  Project project(100);
  TextInput input(deck);
  ReadProject(project, input, &map);
  return map;
}

/// What stands at the records of one kind, up to the next blank.
std::vector<std::string> WordsAt(const std::string& deck, const SourceMap& map, RecordKind kind) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < map.RecordCount(); ++i) {
    const SourceMap::Record record = map.At(i);
    if (record.kind != kind) continue;
    const std::string rest = deck.substr(record.offset);
    words.push_back(rest.substr(0, rest.find_first_of(" \n")));
  }
  return words;
}

std::vector<std::string> Messages(const SourceMap& map) {
  std::vector<std::string> messages;
  for (const SourceMap::Refusal& refusal : map.Refusals()) messages.push_back(refusal.message);
  return messages;
}

const std::string kSections =
    "materials\n 3 E=2\n 5 E=1\nend\nconstraints\n 2 111 0 0 0\nend\nrotules\n 4\nend\n"
    "nodal_point_loads\n 3 0 0 0\nend\nglobal_pressure_loads\n 1 0 0\nend\n";

TEST(SourceMap, KnowsWhereEachRecordBegins) {
  const std::string deck = kHeader + kMesh + kSections;
  const SourceMap map = MapOf(deck);
  EXPECT_THAT(Messages(map), IsEmpty());
  EXPECT_THAT(WordsAt(deck, map, RecordKind::MeshWord),
              ElementsAre("dimension", "elemtype", "nnode", "coordinates", "elements"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Node), ElementsAre("1", "2", "3", "4"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Element), ElementsAre("1"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Material), ElementsAre("3", "5"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Support), ElementsAre("2"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Hinge), ElementsAre("4"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::NodalLoad), ElementsAre("3"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::ElementLoad), ElementsAre("1"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::Keyword),
              ElementsAre("mesh", "materials", "constraints", "rotules", "nodal_point_loads",
                          "global_pressure_loads"));
  EXPECT_THAT(WordsAt(deck, map, RecordKind::ListStop),
              ElementsAre("end", "end", "end", "end", "end", "end", "end"));
}

TEST(SourceMap, KeepsOffsetsBeyondFourGigabytes) {
  SourceMap map;
  map.Add(RecordKind::NodalLoad, -7, 0x123456789abcdU);
  EXPECT_EQ(map.At(0).kind, RecordKind::NodalLoad);
  EXPECT_EQ(map.At(0).number, -7);
  EXPECT_EQ(map.At(0).offset, 0x123456789abcdU);
}

TEST(SourceMap, RefusedRecordOfAListIsGivenUpAlone) {
  Project project(100);
  SourceMap map;
  const std::string deck = kHeader + kMesh +
                           "materials\n1 E=2\n2 Q=1\n3 E=3\nend\n"
                           "constraints\n9 111 0 0 0\n1 11 0 0 0\n2 111 0 0 0\nend\n";
  TextInput input(deck);
  ReadProject(project, input, &map);
  EXPECT_THAT(Messages(map), ElementsAre("Input of materials not correct. Unknown char: 'Q'\n",
                                         "error: Trying to assign constrain to unknown node\n",
                                         "Not reading correctly the constraints. Number=1\n"));
  EXPECT_EQ(map.Refusals()[0].record.number, 2);
  EXPECT_EQ(deck.substr(map.Refusals()[1].record.offset, 5), "9 111");
  // It stays for the elements that refer to it, without the value that was refused.
  ASSERT_NE(project.materials.Get(2), nullptr);
  EXPECT_EQ(project.materials.Get(2)->E1, -1.0);  // not given
  EXPECT_EQ(project.materials.Get(3)->E1, 3.0);
  EXPECT_NE(project.meshes[0]->nodes->Get(2)->constraint, nullptr);
}

// The element that refers to the node has no mistake of its own.
TEST(SourceMap, RecordThatRunsIntoTheNextLineIsGivenUpFromItsOwn) {
  const SourceMap map = MapOf(std::string(kHeader) +
                              "mesh dimension 2 elemtype Linear nnode 2\ncoordinates\n"
                              "1 0 0\n2 0\nend coordinates\nelements\n1 1 2\nend\n");
  EXPECT_THAT(Messages(map), ElementsAre("error: node: 2 has not correct coordinates\n"));
  EXPECT_EQ(map.Refusals()[0].record.number, 2);
}

TEST(SourceMap, ReadingGoesOnAtTheNextKeyword) {
  Project project(100);
  SourceMap map;
  TextInput input(kHeader + kMesh + "loads\n1 0 0 0\nSolver none\nMainStresses\n");
  ReadProject(project, input, &map);
  EXPECT_THAT(
      Messages(map),
      ElementsAre("", "error: type of solver must be: Automatic, SkyLine, Double or Sparse\n"));
  EXPECT_EQ(map.Refusals()[0].cause, SourceMap::Cause::UnknownWord);
  EXPECT_EQ(project.stressOption, MainStresses);
}

TEST(SourceMap, ChecksOfTheWholeModelAreNotedToo) {
  EXPECT_THAT(Messages(MapOf("problem type 2d\n")),
              ElementsAre("error: it is necessary at least one mesh\n"));
}

}  // namespace

}  // namespace kestol
