#pragma once

#include <string_view>

namespace kestol {

class Project;
class SourceMap;
class TextInput;

/// Reads the nodal_point_loads section into the nodes of the first mesh.
void ReadNodalLoads(Project& project, TextInput& input, SourceMap* map = nullptr);

/// Reads one of the four sections of distributed loads into project.loads. Gives -1, nothing read,
/// when `keyword` (lower case) is none of them; else 0.
int ReadPressureLoads(std::string_view keyword, Project& project, TextInput& input,
                      SourceMap* map = nullptr);

}  // namespace kestol
