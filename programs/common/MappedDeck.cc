#include "programs/common/MappedDeck.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "kestol/ReadDeck.h"
#include "programs/common/RunProgram.h"
#include "programs/common/WholeFile.h"

namespace kestol {

namespace {

constexpr std::size_t kPiece = 64 * 1024;

void RequireText(const std::string& deck, const char* begin, std::size_t size) {
  if (size == 0) throw ProgramError(deck + " is empty");
  if (std::memchr(begin, 0, size) != nullptr) throw ProgramError(deck + " is not a text file");
}

}  // namespace

Project ReadMappedDeck(const std::string& deck, SourceMap& map) {
  const ReadOnlyFile file = OpenToRead(deck);
  std::error_code unknown;
  if (!std::filesystem::is_regular_file(deck, unknown)) {
    std::string text = RestOf(file.get(), deck);
    RequireText(deck, text.data(), text.size());
    return ReadDeckText(std::move(text), deck, &map);
  }
  char begin[kPiece];
  const std::size_t size = std::fread(begin, 1, sizeof begin, file.get());
  RequireRead(file.get(), deck);
  RequireText(deck, begin, size);
  return ReadDeck(deck, &map);
}

}  // namespace kestol
