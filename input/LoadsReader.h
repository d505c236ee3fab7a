#pragma once

#include <string_view>

#include "model/Kinds.h"

namespace kestol {

class Project;
class SourceMap;
class TextInput;

/// Reads the nodal_point_loads section into the nodes of the first mesh.
void ReadNodalLoads(Project& project, TextInput& input, SourceMap* map = nullptr);

/// The sections of distributed loads.
struct LoadSection {
  std::string_view keyword;
  LoadKind kind;
};
inline constexpr LoadSection kLoadSections[] = {
    {"global_pressure_loads",           GlobalPressure },
    {"global_projected_pressure_loads", GlobalProjected},
    {"local_pressure_loads",            LocalPressure  },
    {"face_loads",                      FaceLoad       },
};

/// Reads one of them into project.loads. Gives -1, nothing read, when `keyword` (lower case) is
/// none of them; else 0.
int ReadPressureLoads(std::string_view keyword, Project& project, TextInput& input,
                      SourceMap* map = nullptr);

}  // namespace kestol
