#pragma once

#include <span>
#include <string_view>

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

/// The beginning by which a key of a definition is known; empty for a key that is refused.
std::string_view MaterialKeyPrefix(std::string_view key);

/// The spellings of the keys of a definition as they are documented, units aside.
std::span<const std::string_view> MaterialKeys();

}  // namespace kestol
