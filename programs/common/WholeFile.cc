#include "programs/common/WholeFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

constexpr std::size_t kPiece = 64 * 1024;

[[noreturn]] void Fail(const std::string& what, const std::string& path, int reason) {
  throw ProgramError(what + path + ": " + std::strerror(reason));
}

}  // namespace

ReadOnlyFile OpenToRead(const std::string& path) {
  std::error_code unknown;
  const bool isFolder = std::filesystem::is_directory(path, unknown);
  ReadOnlyFile file(isFolder ? nullptr : std::fopen(path.c_str(), "r"));
  if (!file) Fail("can't open file ", path, isFolder ? EISDIR : errno);
  return file;
}

void RequireRead(std::FILE* file, const std::string& path) {
  if (std::ferror(file) != 0) Fail("failed reading ", path, errno);
}

std::string RestOf(std::FILE* file, const std::string& path) {
  std::string text;
  std::size_t size = 0, more = 0;
  do {
    if (text.size() < size + kPiece) text.resize(2 * size + kPiece);
    more = std::fread(text.data() + size, 1, text.size() - size, file);
    size += more;
  } while (more > 0);
  RequireRead(file, path);
  text.resize(size);
  return text;
}

std::string WholeFile(const std::string& path) {
  const ReadOnlyFile file = OpenToRead(path);
  return RestOf(file.get(), path);
}

}  // namespace kestol
