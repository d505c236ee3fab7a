#pragma once

class Project;

/// Appends to the message stream what is suspicious about the supports of a model that could not
/// be solved: too few prescribed nodes, a possible rotation about the line through two.
void CheckSupports(const Project& project);
