#pragma once

class Project;
class TextInput;

/// Reads the rotules section: marks nodes where beams meet through a hinge.
void ReadRotules(Project& project, TextInput& input);

/// Derives the release codes of all beams: the first beam met at a rotule node keeps its rigid
/// connection, every later one is hinged there. Fills project.rotuleCodes.
void PrepareRotules(Project& project);
