#pragma once

namespace kestol {

class Project;

/// Appends to the message stream what is suspicious about the supports of a model that could not
/// be solved: too few nodes with supports, or a possible rotation about the line through the only
/// two. The caller adds its own text and ends the run. Nothing for plane models of one mesh of
/// beams, and nothing from three nodes with supports on.
void CheckSupports(const Project& project);

}  // namespace kestol
