#include <limits>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

enum class NodeOrder { Kept, Reversed };

bool AreAlike(const Mesh& a, const Mesh& b) {
  return a.dimension == b.dimension && a.nnode == b.nnode && a.elemType == b.elemType;
}

/// Where a node of the other mesh is to be found in this one.
using NodeMap = std::unordered_map<const Node*, Node*>;

/// The numbers in use, as a list that does not change while the container does.
template <class T>
std::vector<int> NumbersOf(const Plex<T>& plex) {
  std::vector<int> numbers;
  for (auto [number, object] : plex) numbers.push_back(number);
  return numbers;
}

/// The number behind all those in use.
template <class T>
int NumberBehind(const Plex<T>& plex) {
  constexpr int kLast = std::numeric_limits<int>::max();
  if (plex.Highest() == kLast) Fatal("error: There is no number behind ", kLast, "\n");
  return plex.Highest() + 1;
}

std::unique_ptr<Node> CopyOf(const Node& node) {
  auto copy = std::make_unique<Node>();
  copy->x = node.x;
  copy->y = node.y;
  copy->z = node.z;
  copy->dim = node.dim;
  return copy;
}

/// Adds to `mesh` the nodes of `other` whose numbers are free; `give(key)` is the record to store
/// for the one under `key`.
template <class Give>
NodeMap AddNodes(Mesh& mesh, const Mesh& other, Give give) {
  NodeMap places;
  for (const int key : NumbersOf(*other.nodes)) {
    const Node* source = other.nodes->Get(key);
    const int number = source->number == 0 ? NumberBehind(*mesh.nodes) : key;
    Node* node = mesh.nodes->Get(number);
    if (node == nullptr) {
      node = mesh.nodes->Insert(number, give(key));
      node->number = number;
    }
    places.emplace(source, node);
  }
  return places;
}

NodeMap TakeNodes(Mesh& mesh, Mesh& other) {
  return AddNodes(mesh, other, [&other](int key) { return other.nodes->Take(key); });
}

NodeMap CopyNodes(Mesh& mesh, const Mesh& other) {
  return AddNodes(mesh, other, [&other](int key) { return CopyOf(*other.nodes->Get(key)); });
}

/// Stores an element under its own number if that is free, else under the next one.
void StoreElem(Mesh& mesh, std::unique_ptr<Elem> elem) {
  if (elem->number == 0 || mesh.elems.Get(elem->number) != nullptr)
    elem->number = NumberBehind(mesh.elems);
  elem->mesh = &mesh;
  const int number = elem->number;
  mesh.elems.Insert(number, std::move(elem));
}

Node* NodeHere(const NodeMap& places, const Node* node) {
  const auto place = places.find(node);
  return place == places.end() ? nullptr : place->second;
}

void TakeElems(Mesh& mesh, Mesh& other, const NodeMap& places) {
  for (const int number : NumbersOf(other.elems)) {
    std::unique_ptr<Elem> elem = other.elems.Take(number);
    for (int i = 0; i < elem->nnode; ++i) elem->nodes[i] = NodeHere(places, elem->nodes[i]);
    StoreElem(mesh, std::move(elem));
  }
}

void CopyElems(Mesh& mesh, const Mesh& other, const NodeMap& places, NodeOrder order) {
  for (const int number : NumbersOf(other.elems)) {
    const Elem& source = *other.elems.Get(number);
    auto elem = std::make_unique<Elem>(&mesh, mesh.nnode);
    elem->number = source.number;
    for (int i = 0; i < mesh.nnode; ++i) {
      const int from = order == NodeOrder::Kept ? i : mesh.nnode - 1 - i;
      elem->nodes[i] = NodeHere(places, source.nodes[from]);
    }
    StoreElem(mesh, std::move(elem));
  }
}

}  // namespace

void Mesh::AddMesh(Mesh& other) {
  if (!AreAlike(*this, other)) Fatal("error in Mesh::AddMesh. Mesh are different\n");
  const NodeMap places = TakeNodes(*this, other);
  TakeElems(*this, other, places);
}

void Mesh::AddMeshAllNew(const Mesh& other) {
  if (!AreAlike(*this, other)) Fatal("error in Mesh::AddMeshAllNew. Mesh are different\n");
  const NodeMap places = CopyNodes(*this, other);
  CopyElems(*this, other, places, NodeOrder::Kept);
}

void Mesh::AddMeshAllNewReverse(const Mesh& other) {
  if (!AreAlike(*this, other)) Fatal("error in Mesh::AddMeshAllNewReverse. Mesh are different\n");
  if (nnode != 2) Fatal("error in Mesh::AddMeshAllNewReverse. Only implemented Nnode=2\n");
  const NodeMap places = CopyNodes(*this, other);
  CopyElems(*this, other, places, NodeOrder::Reversed);
}

void Mesh::AddMeshNewReverseElms(Mesh& other) {
  if (!AreAlike(*this, other)) Fatal("error in Mesh::AddMeshNewReverseElms. Mesh are different\n");
  if (nnode != 2) Fatal("error in Mesh::AddMeshNewReverseElms. Only implemented Nnode=2\n");
  const NodeMap places = TakeNodes(*this, other);
  CopyElems(*this, other, places, NodeOrder::Reversed);
}

}  // namespace kestol
