#include <cctype>
#include <cmath>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

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
  FindWordExactly(deck.input, kMeshWords[which]);
  deck.input.BeginRecord(deck.input.Offset() - kMeshWords[which].size());
  if (deck.map != nullptr) deck.map->Add(RecordKind::MeshWord, which, deck.input.RecordOffset());
}

void ReadHeading(Mesh& mesh, const MeshInput& deck) {
  TextInput& input = deck.input;
  FindMeshWord(deck, DimensionWord);
  mesh.dimension = ReadAtDigit(input);
  if (mesh.dimension != 2 && mesh.dimension != 3) Fatal("error: mesh dimension must be 2 or 3\n");
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
  const std::uint64_t list = input.RecordOffset();
  const double lengthFactor = deck.units == nullptr ? 1.0 : MeshLengthFactor(*deck.units);
  int nodeCount = 0;
  ReadRecords({input, deck.map, RecordKind::Node}, [&](int number) {
    ReadNode(mesh, number, input, lengthFactor);
    ++nodeCount;
  });
  input.BeginRecord(list);
  if (deck.map == nullptr) {
    CheckNodes(*mesh.nodes, nodeCount);
  } else {
    RefuseInto(*deck.map, {RecordKind::MeshWord, CoordinatesWord, list},
               [&] { CheckNodes(*mesh.nodes, nodeCount); });
  }
  FindWordExactly(input, "end");
}

// --- elements ---------------------------------------------------------------------------------

void ReadElemNodes(Elem& elem, const Mesh& mesh, TextInput& input) {
  int nodeNumber = 0, previous = 0;
  for (int i = 0; i < mesh.nnode; ++i) {
    previous = nodeNumber;
    const std::optional<int> read = ReadInteger(input);
    if (!read) Fatal("error: element: ", elem.number, " has not correct nodes\n");
    nodeNumber = *read;
    elem.nodes[i] = mesh.nodes->Get(nodeNumber);
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

void ReadElem(Mesh& mesh, int number, TextInput& input, const Units* units) {
  auto elem = std::make_unique<Elem>(&mesh, mesh.nnode);
  elem->number = number;
  ReadElemNodes(*elem, mesh, input);
  if (const auto rest = ReadRestOfLine(input)) ReadElemMaterial(*elem, *rest, units);
  mesh.elems.Insert(number, std::move(elem));
}

void ReadElems(Mesh& mesh, const MeshInput& deck) {
  TextInput& input = deck.input;
  FindMeshWord(deck, ElementsWord);
  const std::uint64_t list = input.RecordOffset();
  ReadRecords({input, deck.map, RecordKind::Element},
              [&](int number) { ReadElem(mesh, number, input, deck.units); });
  input.BeginRecord(list);
  FindWordExactly(input, "end");
  SkipRestOfLine(input);
}

}  // namespace

void Mesh::ReadMesh(TextInput& input, const Units* units, SourceMap* map) {
  const MeshInput deck{input, map, units};
  ReadHeading(*this, deck);
  ReadNodes(*this, deck);
  ReadElems(*this, deck);
}

}  // namespace kestol
