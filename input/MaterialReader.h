#pragma once

#include "algebra/Plex.h"
#include "model/Material.h"

namespace kestol {

class SourceMap;
class TextInput;
class Units;

/// Reads the materials section, lines of a number and a definition, up to and with the line that
/// ends it. A number that is in use is refused. `units` null: no scaling.
void ReadMaterials(Plex<Material>& materials, TextInput& input, const Units* units,
                   SourceMap* map = nullptr);

}  // namespace kestol
