#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "algebra/FixedMatrix.h"
#include "algebra/Vector3.h"
#include "input/Project.h"
#include "tests/support/MeshDeck.h"

namespace kestol {

struct SolvedProject;

// A spatial structure as data, so that it can be turned, numbered anew and written in other units
// as a whole before it becomes the text of a deck.

/// The 3x3 rotation that three angles stand for.
using Rotation = FixedMatrix<3, 3>;
Vector3 Turn(const Rotation& R, const Vector3& v);

/// How many of its units make 1 N and 1 m.
struct UnitSizes {
  double force = 1.0, length = 1.0;
};

struct MeshModel {
  static constexpr int kNoFace = -99;  ///< the load line has no selector

  struct Element {
    int number;
    std::vector<int> nodes;
    int material;
  };
  struct Block {
    std::string elemType;
    std::vector<Element> elements;
  };
  using Values = std::vector<std::pair<std::string, double>>;  ///< by key
  struct Material {
    Values values;
    std::optional<Vector3> angles;  ///< Euler1 to Euler3

    bool Has(const std::string& key) const;
    double operator[](const std::string& key) const;
  };
  struct Support {
    int node;
    std::string codes;
    std::array<double, 6> values;
    std::optional<Vector3> angles;
  };
  struct NodeLoad {
    int node;
    Vector3 force, moment;
  };
  struct ElementLoad {
    std::string section;
    int element;
    int face;
    Vector3 q;
    double couple;
    std::optional<Vector3> angles;
  };

  std::vector<Vector3> nodes;  ///< of number place + 1
  std::vector<Block> blocks;   ///< one mesh each
  std::map<int, Material> materials;
  std::vector<Support> supports;
  std::vector<NodeLoad> nodeLoads;
  std::vector<ElementLoad> elementLoads;
  Vector3 gravity{0.0, 0.0, 1.0};
  std::string keys;        ///< lines of the problem section
  std::string lineUnits;   ///< unit system named on every line that can name one
  bool backwards = false;  ///< nodes and elements are listed from the last to the first

  MeshModel& Hold(int node, const std::string& codes, const std::array<double, 6>& values = {},
                  const std::optional<Vector3>& angles = {}) {
    supports.push_back({node, codes, values, angles});
    return *this;
  }
  MeshModel& Load(int node, const Vector3& force, const Vector3& moment = {}) {
    nodeLoads.push_back({node, force, moment});
    return *this;
  }
  MeshModel& Load(const std::string& section, int element, int face, const Vector3& q,
                  double couple = 0.0, const std::optional<Vector3>& angles = {}) {
    elementLoads.push_back({section, element, face, q, couple, angles});
    return *this;
  }

  bool IsSolid() const { return blocks[0].elemType == "Tetrahedra"; }
  const Vector3& At(int node) const { return nodes[node - 1]; }
  const Element& ElementOf(int number) const;
  const Material& MaterialOf(const Element& element) const {
    return materials.at(element.material);
  }
  std::vector<int> Where(const std::function<bool(const Vector3&)>& test) const;
  std::string Text() const;
};

/// The mesh as a model of one block, all of material 1.
MeshModel ModelOf(const TestMesh& mesh);

/// The model turned by R about the origin, then moved: nodes, loads, supports, given axes, gravity.
MeshModel Turned(MeshModel model, const Rotation& R, const Vector3& shift);

/// The new number of every node: a fixed shuffle of 1..count at place number - 1.
std::vector<int> Shuffle(int count);

/// The model with node n called newNumber[n - 1], element e called 3 e + 5, everything listed
/// backwards, and the first block split into `pieces` meshes.
MeshModel Renumbered(const MeshModel& model, const std::vector<int>& newNumber, int pieces);
constexpr int NewElementNumber(int number) {
  return 3 * number + 5;
}

/// The model of N and m with the numbers of other units: coordinates in `mesh`, lines in `lines`,
/// for a deck that answers in `results`.
MeshModel InUnits(MeshModel model, const UnitSizes& mesh, const UnitSizes& lines,
                  const UnitSizes& results);

/// The deck with further lines of keywords, solved.
std::unique_ptr<SolvedProject> Solved(MeshModel model, const std::string& keys = "",
                                      int renumber = 1);

}  // namespace kestol
