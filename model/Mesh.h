#pragma once

#include <memory>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "algebra/Plex.h"
#include "algebra/ReaVecT.h"
#include "model/Elem.h"
#include "model/Node.h"

class TextInput;
class Units;

/// Element families, with the codes of the files.
enum ElemType { Linear = 1, Triangle, Quadrilateral, Tetrahedra, Hexahedra };

/// One homogeneous set of elements: one type, one node count. All meshes of a model share the node
/// container of the first one.
///
/// Five numberings meet here. A node's key is its number in the input and never changes; its
/// `number` becomes the internal index when the first mesh is renumbered; external(index) gives the
/// number in the input back.
class Mesh {
public:
  /// A mesh with a node container of its own.
  Mesh();
  /// A mesh on the nodes of `first`.
  explicit Mesh(const Mesh& first);
  Mesh& operator=(const Mesh&) = delete;
  virtual ~Mesh();

  /// Reads one mesh block. `units` null: no scaling.
  void ReadMesh(TextInput& input, const Units* units);

  /// Type code of a word by its first one or two letters; ends the run for any other.
  static int ParseElemType(std::string_view word);

  /// Sets femviewType from elemType and nnode; ends the run with "Unknown Femview type\n" for a
  /// pair that is not admissible.
  void SetFemviewType();

  // Merging. `other` must have the same dimension, nnode and elemType. No stage of the run calls
  // these.
  void AddMesh(Mesh& other);
  void AddMeshAllNew(const Mesh& other);
  void AddMeshAllNewReverse(const Mesh& other);
  void AddMeshNewReverseElms(Mesh& other);

  /// Numbers the nodes by their distance from a peripheral one, for a small profile; fills
  /// renumberMap.
  void Renumber();

  /// Changes the nodes per element; new places are null.
  void SetNnode(int n);

  /// Text form of the mesh; see docs/output-formats.md.
  void WriteMesh(std::ostream& stream, int externalNumbers, int compact) const;

  /// Geometry as a Femview neutral file. No stage of the run calls it.
  void WriteFemview(std::ostream& stream, const char* fileName) const;

  /// The number in the input of a node; 0 for null.
  int ExternalNumber(const Node* node) const;
  /// The number in the input of an internal index.
  int ExternalNumber(int index) const;

  /// Edges of all elements as pairs of node numbers, smaller first, sorted. No stage of the run
  /// calls it.
  std::vector<std::pair<int, int>> CalcEdges() const;

  int dimension = 0;                  ///< 2 or 3
  int nnode = 0;                      ///< nodes per element
  int elemType = 0;                   ///< ElemType
  int femviewType = 0;                ///< Femview code of (elemType, nnode)
  std::shared_ptr<Plex<Node>> nodes;  ///< keyed by the number in the input
  Plex<Elem> elems;                   ///< keyed by element number
  ReaVecT cached;                     ///< released whenever nnode changes
  int sharesNodes = 0;                ///< 1 when the container is the first mesh's
  /// [index-1] is the number in the input; empty before renumbering. One map for all meshes that
  /// share the nodes.
  std::shared_ptr<std::vector<int>> renumberMap;
};
