#include "programs/combine/TextTable.h"

#include <algorithm>

namespace kestol {

namespace {

/// Characters on the terminal: bytes that continue one do not count.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xc0u) != 0x80u;
  }));
}

}  // namespace

void TextTable::Write(OutputBuffer& output) const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t c = 0; c < row.size(); ++c)
      widths[c] = std::max(widths[c], WidthOf(row[c].text));
  }
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t c = 0; c < row.size(); ++c) {
      const std::string blanks(widths[c] - WidthOf(row[c].text), ' ');
      line += row[c].right ? blanks + row[c].text : row[c].text + blanks;
      line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    output << line << '\n';
  }
}

}  // namespace kestol
