#pragma once

#include <array>
#include <memory>
#include <ostream>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "algebra/Plex.h"
#include "algebra/ReaVecT.h"
#include "model/Elem.h"
#include "model/Node.h"

namespace kestol {

class SourceMap;
class TextInput;
class Units;

/// One homogeneous set of elements: one type, one node count. All meshes of a model share the node
/// container of the first one.
///
/// Three numbers belong to a node. Its key in the container is the number written in the input and
/// never changes; its `number` is the same until Renumber makes it the internal index;
/// ExternalNumber gives the number of the input back.
///
/// Nodes and elements are held by pointer: renumbering, merging and changing the node count never
/// move a record that stays in its mesh.
class Mesh {
public:
  /// A mesh with a node container of its own.
  Mesh();
  /// A mesh without elements on the nodes of `first`.
  explicit Mesh(const Mesh& first);
  Mesh& operator=(const Mesh&) = delete;
  virtual ~Mesh();

  /// Reads one mesh block, up to and with the line of its last "end". `units` null: coordinates and
  /// inline materials are not scaled. Node numbers that do not exist become null nodes. Later
  /// blocks on the same nodes may list all of them anew, moved or with more behind, or none.
  void ReadMesh(TextInput& input, const Units* units, SourceMap* map = nullptr);

  /// Type code of a word by its first one or two letters, in any case; ends the run for any other.
  static int ParseElemType(std::string_view word);

  /// The word of a type code, as decks write it; empty for any other code.
  static const char* NameOfElemType(int elemType);

  /// Sets femviewType from elemType and nnode; ends the run with "Unknown Femview type\n" for a
  /// pair that is not in the table of ElemType.
  void SetFemviewType();

  // Merging. `other` must have the same dimension, nnode and elemType, else the run ends; the
  // Reverse forms turn 2-noded elements around. A node whose number is in use here stays out: its
  // elements take the node of that number. Node number 0, element number 0 and element numbers in
  // use become highest + 1. No stage of the run calls these.

  /// Takes over the nodes and the elements of `other`.
  void AddMesh(Mesh& other);
  /// Adds copies: of nodes without their supports and loads, of elements without material.
  void AddMeshAllNew(const Mesh& other);
  /// The same with the two nodes of each element exchanged.
  void AddMeshAllNewReverse(const Mesh& other);
  /// Takes over the nodes and adds copies of the elements, their two nodes exchanged.
  void AddMeshNewReverseElms(Mesh& other);

  /// Numbers the nodes by increasing distance from the one that is farthest from the centroid, for
  /// a small profile of the stiffness matrix; ties keep the order of their keys. Fills renumberMap.
  /// One sort: n log n.
  void Renumber();

  /// Changes the nodes per element: new places are null, excess ones are kept out of sight.
  /// Releases `cached`. Ends the run for a count that the type does not have.
  void SetNnode(int n);

  /// The mesh as text: heading, "Coordinates", "Elements". Numbers are those of the input with
  /// `externalNumbers`, else internal; 0 for null nodes. `compact` leaves the "Mat:" word and
  /// inline materials out.
  void WriteMesh(std::ostream& stream, bool externalNumbers, bool compact) const;

  /// Nodes and elements as cards of a Femview neutral file, in internal numbers; the title is the
  /// last six characters of the base name of `fileName` (null: empty). No stage of the run calls
  /// it.
  void WriteFemview(std::ostream& stream, const char* fileName) const;

  /// The number in the input of a node; 0 for null.
  int ExternalNumber(const Node* node) const;
  /// The number in the input of an internal index; the index itself where the map has no entry.
  int ExternalNumber(int index) const;

  /// Edges between corners of all elements as pairs of internal node numbers, smaller first (0 for
  /// null), sorted, so that an edge of several elements stands there as often, side by side. No
  /// stage of the run calls it.
  std::vector<std::pair<int, int>> CalcEdges() const;

  int dimension = 0;                  ///< 2 or 3
  int nnode = 0;                      ///< nodes per element
  int elemType = 0;                   ///< ElemType
  int femviewType = 0;                ///< Femview code of (elemType, nnode)
  std::shared_ptr<Plex<Node>> nodes;  ///< keyed by the number in the input
  Plex<Elem> elems;                   ///< keyed by element number
  ReaVecT cached;                     ///< released whenever nnode changes
  bool sharesNodes = false;           ///< the container is the first mesh's
  /// [index-1] is the number in the input; empty before renumbering. One map for all meshes that
  /// share the nodes.
  std::shared_ptr<std::vector<int>> renumberMap;
};

/// Places (from 0) of the two corners of each edge of an element of this ElemType; empty for what
/// is none. Mid-sides do not count.
std::span<const std::array<int, 2>> EdgesOf(int elemType);

}  // namespace kestol
