#pragma once

#include <string>

#include "analysis/Results.h"
#include "programs/common/OutputFiles.h"
#include "programs/mpi/Team.h"

namespace kestol {

class Project;

/// The piece of one process: NAME_RANK.vtu for the index NAME.pvtu.
std::string PieceName(const std::string& index, int rank);

/// Writes the piece of this process, which holds its own part of the model, and on the first one
/// the index of all pieces that have elements. All pieces get the same arrays, those without the
/// kind of element zeros. They are complete, and named when `files` are.
void WritePieces(const Project& project, const Results& results, Team& team,
                 const std::string& index, OutputFiles& files);

}  // namespace kestol
