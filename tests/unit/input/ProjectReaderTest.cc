#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/ExpectFatal.h"
#include "tests/support/ReadDeck.h"

namespace kestol {

namespace {

// --- meshes -----------------------------------------------------------------------------------

TEST(Meshes, ShareTheNodesOfTheFirst) {
  const auto project =
      Read(kHeader + MeshOf("Linear", 2, "1 1 2 1\n2 2 3 1") + MeshOf("Linear", 2, "5 3 4 1"));
  ASSERT_EQ(project->meshes.size(), 2U);
  EXPECT_EQ(project->meshes[0]->nodes, project->meshes[1]->nodes);
  EXPECT_EQ(project->meshes[0]->sharesNodes, 0);
  EXPECT_EQ(project->meshes[1]->sharesNodes, 1);
  EXPECT_EQ(project->meshes[0]->elems.Get(5), nullptr);
  EXPECT_EQ(project->numElements[0], 2);
  EXPECT_EQ(project->numElements[1], 1);
  EXPECT_EQ(project->numNodes, 4);
  EXPECT_EQ(project->nodesAsRead, 4);
}

TEST(Meshes, LaterMeshMayAddNodes) {
  const auto project = Read(kHeader + kMesh +
                            "mesh dimension 2 elemtype Linear nnode 2 coordinates\n"
                            "1 0 0\n2 1 0\n3 2 0\n4 3 0\n5 4 0\nend\nelements\n2 4 5 1\nend\n");
  EXPECT_EQ(project->numNodes, 5);
  EXPECT_EQ(project->nodesAsRead, 5);
}

TEST(Meshes, MayBeTenAtMost) {
  std::string deck = kHeader;
  for (int i = 1; i <= 10; ++i) deck += MeshOf("Linear", 2, std::to_string(i) + " 1 2 1");
  EXPECT_EQ(Read(deck)->meshes.size(), 10U);
  EXPECT_FATAL(Read(deck + "mesh"), "error: maximum number of meshes is: 10\n");
}

TEST(Meshes, ThereMustBeOne) {
  EXPECT_FATAL(Read(kHeader), "error: it is necessary at least one mesh\n");
}

TEST(Meshes, ElementNumbersAreUniqueOverAllMeshes) {
  EXPECT_FATAL(Read(kHeader + MeshOf("Linear", 2, "9 1 2 1\n4 2 3 1\n3 1 3 1") +
                    MeshOf("Linear", 2, "10 1 2 1") +
                    MeshOf("Linear", 2, "10 1 2 1\n9 1 3 1\n4 2 4 1\n1 2 4 1")),
               "error: All elements must have different number. Check elm num: 4\n");
}

TEST(Meshes, EarliestMeshThatRepeatsANumberIsNamed) {
  EXPECT_FATAL(Read(kHeader + MeshOf("Linear", 2, "8 1 2 1\n2 2 3 1") +
                    MeshOf("Linear", 2, "8 1 2 1") + MeshOf("Linear", 2, "2 1 2 1")),
               "error: All elements must have different number. Check elm num: 8\n");
}

TEST(Meshes, TetrahedraStandAlone) {
  EXPECT_FATAL(Read(kHeader + kMesh + MeshOf("Tetrahedra", 4, "2 1 2 3 4 1")),
               "error: Element tetrahedra cannot be mixed with any other element type");
  EXPECT_FATAL(Read(kHeader + MeshOf("Tetrahedra", 4, "2 1 2 3 4 1") + kMesh),
               "error: Element tetrahedra cannot be mixed with any other element type");
}

TEST(Meshes, RepeatedNumbersAreFoundBeforeMixedTypes) {
  EXPECT_FATAL(Read(kHeader + kMesh + MeshOf("Tetrahedra", 4, "1 1 2 3 4 1")),
               "error: All elements must have different number. Check elm num: 1\n");
}

TEST(Meshes, TetrahedraSetTheDegreesPerNodeForTheSectionsBehindThem) {
  const auto project = Read("problem type 3d\n" + MeshOf("Tetrahedra", 4, "2 1 2 3 4 1") +
                            "constraints\n1 111 0 0 0\nend\nnodal_point_loads\n2 5 6 7\nend\n");
  EXPECT_EQ(project->meshes[0]->nodes->Get(1)->constraint->dofs, 3);
  EXPECT_EQ(project->meshes[0]->nodes->Get(2)->load->n, 3);
}

TEST(Meshes, MaterialsMayBeMissingOrOutOfRange) {
  const auto project = Read(kHeader + MeshOf("Linear", 2, "1 1 2 0\n2 2 3 99\n3 3 4 -1\n4 1 3 7") +
                            "materials\n7 E=2\nend\n");
  const Plex<Elem>& elems = project->meshes[0]->elems;
  for (int e = 1; e <= 3; ++e) EXPECT_EQ(elems.Get(e)->GetMaterial(project->materials), nullptr);
  EXPECT_EQ(elems.Get(4)->GetMaterial(project->materials), project->materials.Get(7));
  EXPECT_EQ(elems.Get(4)->material, nullptr);
}

TEST(Meshes, TetrahedraAreSmoothedAndHaveThreeDegreesPerNode) {
  const auto project = Read("problem type 3d\n" + MeshOf("Tetrahedra", 4, "2 1 2 3 4 1") +
                            MeshOf("Tetrahedra", 4, "3 1 2 3 4 1"));
  EXPECT_EQ(project->DoSmoothing, 1);
  EXPECT_EQ(project->dofsPerNode, 3);
  EXPECT_EQ(project->problemType, Space);
}

// --- sections before any mesh -----------------------------------------------------------------

TEST(SectionsBeforeAnyMesh, AreAcceptedWhenEmpty) {
  for (const char* section :
       {"constraints\nend\n", "rotules\nend\n", "nodal_point_loads\nend\n",
        "global_pressure_loads\nend\n", "global_projected_pressure_loads\nend\n",
        "local_pressure_loads\nend\n", "face_loads\nend\n", "materials\nend\n",
        "units_names\nend\n"}) {
    EXPECT_EQ(Read(kHeader + std::string(section) + kMesh)->meshes.size(), 1U) << section;
  }
}

TEST(SectionsBeforeAnyMesh, FindNothing) {
  for (const char* section :
       {"constraints\n1 111 0 0 0\nend\n", "rotules\n1\nend\n", "nodal_point_loads\n1 0 0 0\nend\n",
        "global_pressure_loads\n1 0 0\nend\n"}) {
    EXPECT_THROW(Read(kHeader + std::string(section) + kMesh), FatalError) << section;
    error.Clear();
  }
}

}  // namespace

}  // namespace kestol
