#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "model/Mesh.h"

namespace {

constexpr std::size_t kTitleLength = 6;
constexpr int kNodesOnCard = 15;

/// The end of the file's name without its folders. Only '/' separates folders.
std::string_view TitleOf(const char* fileName) {
  std::string_view name = fileName == nullptr ? "" : fileName;
  name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
  if (name.size() > kTitleLength) name.remove_prefix(name.size() - kTitleLength);
  return name;
}

/// Writes one printf-style piece of a card. Fields grow, nothing is cut.
[[gnu::format(printf, 2, 3)]] void Write(std::ostream& stream, const char* format, ...) {
  char text[128];
  std::va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  stream << text;
}

void WriteNodeCard(std::ostream& stream, const Node& node, int dimension) {
  Write(stream, " -1%5i%12.5e%12.5e%12.5e \n", node.number, node.x, node.y,
        dimension == 3 ? node.z : 0.0);
}

void WriteNodeNumbers(std::ostream& stream, const Elem& elem, int from, int to) {
  for (int i = from; i < to; ++i)
    Write(stream, "%5i", elem.nodes[i] == nullptr ? 0 : elem.nodes[i]->number);
  stream << "\n";
}

void WriteElemCards(std::ostream& stream, const Elem& elem, int nnode, int femviewType) {
  Write(stream, " -1%5i%5i    1    1\n", elem.number, femviewType);
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
