#pragma once

#include <string>

#include "main/ErrorChannel.h"
#include "programs/common/OutputFile.h"
#include "programs/common/RunProgram.h"

namespace kestol {

/// Runs write(path) of the solver's own writers for the file, with its name before what they
/// refuse: they know the temporary one at best.
template <class Write>
void WriteOwnFile(const OutputFile& file, Write write) {
  try {
    write(file.Path());
  } catch (const FatalError& refusal) {
    throw ProgramError(file.ShownName() + ": " + std::string(PlainWords(refusal.what())));
  }
}

}  // namespace kestol
