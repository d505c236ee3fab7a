#include "programs/common/KeptText.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "kestol/ReadDeck.h"
#include "programs/common/WholeFile.h"

namespace kestol {

namespace {

std::map<std::string, std::string>& Texts() {
  static std::map<std::string, std::string> texts;
  return texts;
}

}  // namespace

void KeepText(const std::string& path) {
  std::error_code unknown;
  const std::filesystem::file_status status = std::filesystem::status(path, unknown);
  if (std::filesystem::is_regular_file(status) || std::filesystem::is_directory(status)) return;
  Texts()[path] = WholeFile(path);
}

const std::string* KeptText(const std::string& path) {
  const auto found = Texts().find(path);
  return found == Texts().end() ? nullptr : &found->second;
}

std::string KeptOrWhole(const std::string& path) {
  const std::string* const text = KeptText(path);
  return text != nullptr ? *text : WholeFile(path);
}

Project ReadKeptDeck(const std::string& deck, SourceMap* map) {
  const std::string* const text = KeptText(deck);
  return text != nullptr ? ReadDeckText(*text, deck, map) : ReadDeck(deck, map);
}

}  // namespace kestol
