#pragma once

#include <string>

#include "kestol/combine/CaseLoads.h"

namespace kestol {

class Project;

/// Reads a load case from a file of load sections, constraints that give settlements, and units
/// keywords. It sees the nodes, elements and unit systems of the model; unit systems and
/// units_mat_and_load of its own hold within the file.
///
/// Everything else is refused, with the file and the line: other keywords, sections without their
/// "end", a unit system that is known with other factors, and supports that the model has not:
/// codes must be 0 or those of the model, springs and axes the same.
///
/// The model must be without loads (TakeLoads) and not yet prepared for a solution. After a refusal
/// it is of no further use.
CaseLoads ReadCase(Project& project, const std::string& path);

/// The same for a text in memory, which refusals call `name`.
CaseLoads ReadCaseText(Project& project, const std::string& text, const std::string& name);

}  // namespace kestol
