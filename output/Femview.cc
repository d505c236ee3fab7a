#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <string_view>

#include "model/Mesh.h"

namespace kestol {

namespace {

constexpr std::size_t kTitleLength = 6;
constexpr int kNodesOnCard = 15;
constexpr int kNumberWidth = 5;

/// The end of the file's name without its folders. Only '/' separates folders.
std::string_view TitleOf(const char* fileName) {
  std::string_view name = fileName == nullptr ? "" : fileName;
  name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
  if (name.size() > kTitleLength) name.remove_prefix(name.size() - kTitleLength);
  return name;
}

// Fields grow with their values, nothing is cut.

void WriteNodeCard(std::ostream& stream, const Node& node, int dimension) {
  char card[128];
  std::snprintf(card, sizeof card, " -1%5i%12.5e%12.5e%12.5e \n", node.number, node.x, node.y,
                dimension == 3 ? node.z : 0.0);
  stream << card;
}

void WriteNodeNumbers(std::ostream& stream, const Elem& elem, int from, int to) {
  for (int i = from; i < to; ++i)
    stream << std::setw(kNumberWidth) << (elem.nodes[i] == nullptr ? 0 : elem.nodes[i]->number);
  stream << "\n";
}

void WriteElemCards(std::ostream& stream, const Elem& elem, int nnode, int femviewType) {
  stream << " -1" << std::setw(kNumberWidth) << elem.number << std::setw(kNumberWidth)
         << femviewType << "    1    1\n";
  stream << " -2";
  WriteNodeNumbers(stream, elem, 0, std::min(nnode, kNodesOnCard));
  // Deliberate: the line that goes on with the nodes has no card key in front.
  if (nnode > kNodesOnCard) WriteNodeNumbers(stream, elem, kNodesOnCard, nnode);
}

}  // namespace

void Mesh::WriteFemview(std::ostream& stream, const char* fileName) const {
  stream << std::left << "    1C" << TitleOf(fileName) << "\n" << std::right;
  stream << "    2CCOORDE\n";
  for (auto [key, node] : *nodes) WriteNodeCard(stream, *node, dimension);
  stream << " -3\n";
  stream << "    3CCONECT\n";
  for (auto [number, elem] : elems) WriteElemCards(stream, *elem, nnode, femviewType);
  stream << " -3\n 9999\n";
}

}  // namespace kestol
