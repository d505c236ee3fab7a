#include <cctype>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "input/MappedMesh.h"
#include "input/RecordList.h"
#include "input/Units.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

// The mesh block:
//
//     dimension = 2   ElemType Linear   Nnode = 2
//     coordinates
//       number x y [z]
//     end coordinates
//     elements
//       number node... [material number [inline material]]
//     end elements

namespace {

/// Where a mesh block is read from.
struct MeshInput {
  TextInput& input;
  SourceMap* map;
  const Units* units;
};

/// The integer at the next decimal digit; a sign before it is dropped.
int ReadAtDigit(TextInput& input) {
  for (int c = input.Peek(); c != TextInput::kEnd; c = input.Peek()) {
    if (std::isdigit(c)) return *ReadInteger(input);
    input.Get();
  }
  Fatal("end of file and no digit found\n");
}

/// Finds a word of the block; what is refused until the next one stands behind it.
void FindMeshWord(const MeshInput& deck, MeshWordNumber which) {
  if (deck.map != nullptr) return FindMappedMeshWord(deck.input, *deck.map, which);
  FindWordExactly(deck.input, kMeshWords[which]);
  deck.input.BeginRecord(deck.input.Offset() - kMeshWords[which].size());
}

void ReadDimension(Mesh& mesh, TextInput& input) {
  mesh.dimension = ReadAtDigit(input);
  if (mesh.dimension != 2 && mesh.dimension != 3) Fatal("error: mesh dimension must be 2 or 3\n");
}

/// The heading of a block, gone on with as far as what was meant can be told.
class MappedHeading {
public:
  MappedHeading(Mesh& mesh, const MeshInput& deck) : mesh_(mesh), deck_(deck), map_(*deck.map) {}

  void Read() {
    if (!Take(DimensionWord, [&] { ReadDimension(mesh_, deck_.input); }))
      mesh_.dimension = map_.dimension == 2 ? 2 : 3;
    const bool isTyped =
        Take(ElemtypeWord, [&] { mesh_.elemType = Mesh::ParseElemType(ReadWord(deck_.input)); });
    const bool isCounted = Take(NnodeWord, [&] { mesh_.nnode = ReadAtDigit(deck_.input); });
    if (!isCounted) mesh_.nnode = isTyped ? FewestNodes(mesh_.elemType) : 2;
    if (!isTyped) mesh_.elemType = UsualElemType(mesh_.nnode);
    SetType();
  }

private:
  /// A type that cannot have so many nodes: the number is believed, if there are elements of it.
  void SetType() {
    const SourceMap::Record record{RecordKind::MeshWord, NnodeWord, deck_.input.RecordOffset()};
    if (RefuseInto(map_, record, [&] { mesh_.SetFemviewType(); })) return;
    mesh_.elemType = UsualElemType(mesh_.nnode);
    if (mesh_.nnode != 10 && mesh_.nnode != 6) mesh_.nnode = FewestNodes(mesh_.elemType);
    mesh_.SetFemviewType();
  }

  /// Reads the value of a word; false when it is missing or its value is refused.
  template <class Reader>
  bool Take(MeshWordNumber which, Reader reader) {
    const bool isFound = RefuseInto(map_, {RecordKind::MeshWord, which, deck_.input.RecordOffset()},
                                    [&] { Find(which); });
    if (!isFound) return false;
    const bool accepted =
        RefuseInto(map_, {RecordKind::MeshWord, which, deck_.input.RecordOffset()}, reader);
    // At the end of the deck there is nothing more to say.
    if (!accepted && deck_.input.Peek() == TextInput::kEnd)
      throw GivenUp{SourceMap::Cause::Reader, {}};
    return accepted;
  }
  /// One word that is missing is said; with more of them there is no block.
  void Find(MeshWordNumber which) {
    try {
      FindMeshWord(deck_, which);
    } catch (const GivenUp& refusal) {
      if (std::exchange(isRefused_, true)) throw GivenUp{refusal.cause, {}};
      throw;
    }
  }

  Mesh& mesh_;
  const MeshInput& deck_;
  SourceMap& map_;
  bool isRefused_ = false;
};

void ReadHeading(Mesh& mesh, const MeshInput& deck) {
  if (deck.map != nullptr) return MappedHeading(mesh, deck).Read();
  TextInput& input = deck.input;
  FindMeshWord(deck, DimensionWord);
  ReadDimension(mesh, input);
  FindMeshWord(deck, ElemtypeWord);
  mesh.elemType = Mesh::ParseElemType(ReadWord(input));
  FindMeshWord(deck, NnodeWord);
  mesh.nnode = ReadAtDigit(input);
  mesh.SetFemviewType();
}

// --- coordinates ------------------------------------------------------------------------------

double ReadCoordinate(TextInput& input, int nodeNumber, double lengthFactor) {
  const std::optional<double> value = ReadReal(input);
  if (!value || !std::isfinite(*value * lengthFactor))
    Fatal("error: node: ", nodeNumber, " has not correct coordinates\n");
  return *value * lengthFactor;
}

/// The node of that number, created if there is none. A node that is listed again keeps its record:
/// elements of earlier meshes point to it, supports and loads hang on it.
Node& NodeToFill(Mesh& mesh, int number) {
  Node* node = mesh.nodes->Get(number);
  if (node == nullptr) node = mesh.nodes->Insert(number, std::make_unique<Node>());
  node->number = number;
  return *node;
}

void ReadNode(Mesh& mesh, int number, TextInput& input, double lengthFactor) {
  Node read;
  read.x = ReadCoordinate(input, number, lengthFactor);
  read.y = ReadCoordinate(input, number, lengthFactor);
  if (mesh.dimension == 3) read.z = ReadCoordinate(input, number, lengthFactor);
  SkipRestOfLine(input);

  Node& node = NodeToFill(mesh, number);
  node.dim = mesh.dimension;
  node.x = read.x;
  node.y = read.y;
  node.z = read.z;
}

/// Whether the container holds each of the numbers 1..highest.
bool HoldsAllNumbers(const Plex<Node>& nodes) {
  int expected = 0;
  for (auto [number, node] : nodes)
    if (number != ++expected) return false;
  return true;
}

void CheckNodes(const Plex<Node>& nodes, int nodeCount) {
  if (nodeCount != 0 && (nodeCount != nodes.Highest() || !HoldsAllNumbers(nodes)))
    Fatal("error: list of nodes does not contain all numbers\n");
  if (nodes.Highest() == 0) Fatal("error: list of nodes does not contain any node\n");
}

void ReadNodes(Mesh& mesh, const MeshInput& deck) {
  TextInput& input = deck.input;
  FindMeshWord(deck, CoordinatesWord);
  if (deck.map != nullptr) CorrectDimension(mesh, input, *deck.map);
  const RecordList list{input, deck.map, RecordKind::Node, input.RecordOffset(),
                        1 + mesh.dimension};
  const double lengthFactor = deck.units == nullptr ? 1.0 : MeshLengthFactor(*deck.units);
  int nodeCount = 0;
  ReadRecords(list, [&](int number) {
    ++nodeCount;
    // A node that is given up exists: what refers to it is read on.
    if (deck.map != nullptr) NodeToFill(mesh, number);
    ReadNode(mesh, number, input, lengthFactor);
  });
  input.BeginRecord(list.begin);
  if (deck.map == nullptr) {
    CheckNodes(*mesh.nodes, nodeCount);
  } else {
    RefuseInto(*deck.map, {RecordKind::MeshWord, CoordinatesWord, list.begin},
               [&] { CheckNodes(*mesh.nodes, nodeCount); });
  }
  TakeEnd(list);
}

// --- elements ---------------------------------------------------------------------------------

void ReadElemNodes(Elem& elem, const Mesh& mesh, const MeshInput& deck) {
  int nodeNumber = 0, previous = 0;
  for (int i = 0; i < mesh.nnode; ++i) {
    previous = nodeNumber;
    const std::optional<int> read = ReadInteger(deck.input);
    if (!read) Fatal("error: element: ", elem.number, " has not correct nodes\n");
    nodeNumber = *read;
    elem.nodes[i] = mesh.nodes->Get(nodeNumber);
    if (elem.nodes[i] == nullptr && deck.map != nullptr) {
      deck.map->Refuse({RecordKind::Element, elem.number, deck.input.RecordOffset()},
                       SourceMap::Cause::UnknownNode, std::to_string(nodeNumber));
    }
  }
  // The numbers are compared, not the nodes: two unknown ones may differ.
  if (mesh.nnode == 2 && nodeNumber == previous)
    Fatal("error: element: ", elem.number, "  have both nodes equal\n");
}

/// The rest of an element line: a material number, then perhaps a material of the element's own.
void ReadElemMaterial(Elem& elem, std::string_view text, const Units* units) {
  elem.materialNumber = IntegerOf(TakeKey(text));
  if (text.empty()) return;
  auto material = std::make_unique<Material>();
  if (material->ReadDefinition(text, units)) elem.material = std::move(material);
}

void FillElem(Elem& elem, const Mesh& mesh, const MeshInput& deck) {
  ReadElemNodes(elem, mesh, deck);
  if (const auto rest = ReadRestOfLine(deck.input)) ReadElemMaterial(elem, *rest, deck.units);
}

void ReadElem(Mesh& mesh, int number, const MeshInput& deck) {
  auto read = std::make_unique<Elem>(&mesh, mesh.nnode);
  Elem& elem = *read;
  elem.number = number;
  if (deck.map == nullptr) {
    FillElem(elem, mesh, deck);
    mesh.elems.Insert(number, std::move(read));
    return;
  }
  // An element that is given up exists: what refers to it is read on.
  mesh.elems.Insert(number, std::move(read));
  FillElem(elem, mesh, deck);
  if (!elem.material) deck.map->AddUse(elem.materialNumber);
}

void ReadElems(Mesh& mesh, const MeshInput& deck) {
  TextInput& input = deck.input;
  FindMeshWord(deck, ElementsWord);
  if (deck.map != nullptr) CorrectNodesPerElement(mesh, input, *deck.map);
  const RecordList list{input, deck.map, RecordKind::Element, input.RecordOffset(), 1 + mesh.nnode};
  ReadRecords(list, [&](int number) { ReadElem(mesh, number, deck); });
  TakeEnd(list);
}

}  // namespace

void Mesh::ReadMesh(TextInput& input, const Units* units, SourceMap* map) {
  const MeshInput deck{input, map, units};
  ReadHeading(*this, deck);
  ReadNodes(*this, deck);
  ReadElems(*this, deck);
}

}  // namespace kestol
