#pragma once

#include <cstdio>
#include <string>

#include "input/ReadOnlyFile.h"

namespace kestol {

/// Opens a file to be read; ProgramError with the system's reason when it cannot be.
ReadOnlyFile OpenToRead(const std::string& path);

/// Refuses, as ProgramError with the system's reason, a file of which the last read failed.
void RequireRead(std::FILE* file, const std::string& path);

/// All that is left of it. What cannot be read to the end is a ProgramError, not a shorter text.
std::string RestOf(std::FILE* file, const std::string& path);

std::string WholeFile(const std::string& path);

}  // namespace kestol
