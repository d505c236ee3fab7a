#pragma once

#include <ostream>

namespace kestol {

class Project;

/// Diagnostic text of the whole model. No stage of the run calls it; tests do.
void PrintProject(const Project& project, std::ostream& stream);

}  // namespace kestol
