#include "programs/common/MappedDeck.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

#include "kestol/ReadDeck.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

constexpr std::size_t kPiece = 64 * 1024;

void RequireText(const std::string& deck, const char* begin, std::size_t size) {
  if (size == 0) throw ProgramError(deck + " is empty");
  if (std::memchr(begin, 0, size) != nullptr) throw ProgramError(deck + " is not a text file");
}

std::string WholeText(std::FILE* file) {
  std::string text;
  std::size_t size = 0, more = 0;
  do {
    text.resize(size + kPiece);
    more = std::fread(text.data() + size, 1, kPiece, file);
    size += more;
  } while (more > 0);
  text.resize(size);
  return text;
}

}  // namespace

Project ReadMappedDeck(const std::string& deck, SourceMap& map) {
  std::error_code unknown;
  const bool isFolder = std::filesystem::is_directory(deck, unknown);
  const File file(isFolder ? nullptr : std::fopen(deck.c_str(), "r"));
  if (!file)
    throw ProgramError("can't open file " + deck + ": " + std::strerror(isFolder ? EISDIR : errno));
  if (!std::filesystem::is_regular_file(deck, unknown)) {
    std::string text = WholeText(file.get());
    RequireText(deck, text.data(), text.size());
    return ReadDeckText(std::move(text), deck, &map);
  }
  char begin[kPiece];
  RequireText(deck, begin, std::fread(begin, 1, sizeof begin, file.get()));
  return ReadDeck(deck, &map);
}

}  // namespace kestol
