#include <vector>

#include "algebra/StiffnessMatrix.h"
#include "analysis/Assembly.h"
#include "analysis/MeshPart.h"
#include "analysis/Reactions.h"
#include "analysis/Strengths.h"
#include "tests/support/FrameDeck.h"
#include "tests/support/RunDeck.h"

namespace kestol {

namespace {

/// Three bars of which each has its own load, the second one with twice the stiffness.
auto Bars() {
  FrameDeck deck(2);
  deck.Node(1, 0, 0).Node(2, 1, 0).Node(3, 2, 0).Node(4, 3, 0);
  deck.Beam(10, 1, 2).Beam(20, 2, 3, 2).Beam(30, 3, 4);
  deck.Material(1, "E=1 A=1 Iz=1").Material(2, "E=2 A=1 Iz=1").Support(1, "101 0 0 0");
  deck.LineLoad("global_pressure_loads", 10, "2 0").LineLoad("global_pressure_loads", 20, "4 0");
  return ReadDeck(deck.Load(4, {5, 0, 0}).Text());
}

std::vector<int> NumbersOf(const MeshPart& part) {
  std::vector<int> numbers;
  for (const auto [number, elem] : part.elems) numbers.push_back(number);
  return numbers;
}

/// Keeps where blocks fall and their first entries.
class Blocks : public BlockSink {
public:
  void AddBlock(int firstRow, int firstCol, const Matriu& block) override {
    rows.push_back(firstRow);
    columns.push_back(firstCol);
    entries.push_back(block(1, 1));
  }
  std::vector<int> rows, columns;
  std::vector<double> entries;
};

using Numbers = std::vector<int>;

TEST(MeshPart, OfAWholeMeshHasAllItsElements) {
  const auto project = Bars();
  const MeshPart part = *project->meshes[0];
  EXPECT_EQ(NumbersOf(part), (Numbers{10, 20, 30}));
  EXPECT_EQ(part.nnode, 2);
  EXPECT_EQ(part.elemType, Linear);
}

TEST(MeshPart, OfChosenElementsHasThese) {
  const auto project = Bars();
  const Mesh& mesh = *project->meshes[0];
  const std::vector<Elem*> chosen = {mesh.elems.Get(10), mesh.elems.Get(30)};
  EXPECT_EQ(NumbersOf(MeshPart(mesh, chosen)), (Numbers{10, 30}));
  EXPECT_EQ(NumbersOf(MeshPart(mesh, std::span<Elem* const>())), Numbers());
}

TEST(MeshPart, GivesStiffnessLoadsAndValuesOfItsElementsAlone) {
  const auto project = Bars();
  const Mesh& mesh = *project->meshes[0];
  const std::vector<Elem*> chosen = {mesh.elems.Get(20)};
  const MeshPart parts[] = {MeshPart(mesh, chosen)};

  Blocks blocks;
  AddStiffness(*project, parts, blocks, BlockAxes::Global);
  EXPECT_EQ(blocks.rows, (Numbers{4, 4, 7}));
  EXPECT_EQ(blocks.columns, (Numbers{4, 7, 7}));
  EXPECT_EQ(blocks.entries, (std::vector<double>{2, -2, 2}));

  const ReaVecT f = LoadsOf(*project, parts);
  EXPECT_EQ(f(1), 0.0);
  EXPECT_EQ(f(4), 2.0);
  EXPECT_EQ(f(7), 2.0);
  EXPECT_EQ(f(10), 5.0);  // at a node: every part has it

  ReaVecT u(12);
  u(7) = 1.0;
  const ReaVecT values = ValuesAtPoints(*project, parts[0], u);
  ASSERT_EQ(values.n, 6);
  EXPECT_EQ(values(1), -2.0);
  EXPECT_EQ(values(4), 2.0);
  EXPECT_EQ(ValuesAtPoints(*project, MeshPart(mesh, std::span<Elem* const>()), u).n, 0);
}

TEST(MeshPart, WholeMeshesGiveTheLoadsOfTheDeck) {
  const auto project = Bars();
  const ReaVecT all = LoadsOfDeck(*project), parts = LoadsOf(*project, WholeMeshes(*project));
  ASSERT_EQ(all.n, parts.n);
  for (int i = 1; i <= all.n; ++i) EXPECT_EQ(all(i), parts(i));
  EXPECT_EQ(all(4), 3.0);
}

TEST(Reactions, ComeFromForcesThatAreKnown) {
  const auto project = Bars();
  ReaVecT forces(12);
  for (int i = 1; i <= 12; ++i) forces(i) = i;
  const std::vector<Reaction> reactions = ReactionsOf(*project, forces);
  ASSERT_EQ(reactions.size(), 1u);
  EXPECT_EQ(reactions[0].nodeIndex, 1);
  EXPECT_EQ(reactions[0].values, (std::array<double, 6>{1, 0, 3, 0, 0, 0}));
}

}  // namespace

}  // namespace kestol
