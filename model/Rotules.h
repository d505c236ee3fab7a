#pragma once

class Project;
class TextInput;

/// Reads the rotules section, one node number per line, up to and with the line that ends it: marks
/// nodes where beams meet through a hinge, and the project as having such nodes.
void ReadRotules(Project& project, TextInput& input);

/// Derives the release codes (EndCode) of all elements into project.rotuleCodes. At every rotule
/// node the first beam met, over the meshes in order, keeps its rigid connection and every later
/// one is hinged; elements of other than 2 nodes are fixed at both ends and claim no node.
void PrepareRotules(Project& project);
