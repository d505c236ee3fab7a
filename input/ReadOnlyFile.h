#pragma once

#include <cstdio>
#include <memory>

namespace kestol {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A file that is only read: that closing it fails takes nothing away.
using ReadOnlyFile = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace kestol
