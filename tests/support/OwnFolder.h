#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kestol {

/// The bytes of a file; empty without one.
inline std::string ContentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A new folder for the files of one test, removed with it. No two tests share a name in the
/// system's folder of temporary files: they run beside each other, each in a process.
class OwnFolder {
public:
  OwnFolder() {
    std::string name = std::filesystem::temp_directory_path() / "kestol-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder like " + name);
    path_ = name;
  }
  ~OwnFolder() { std::filesystem::remove_all(path_); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  /// The path of a file in it.
  std::string Path(std::string_view name) const { return path_ / name; }

  /// Writes a file and gives its path.
  std::string Put(std::string_view name, std::string_view text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

private:
  std::filesystem::path path_;
};

}  // namespace kestol
