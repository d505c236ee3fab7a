#pragma once

#include <span>
#include <string_view>

#include "kestol/findings/Finding.h"

namespace kestol {

class Inspection;
struct RecordFields;

/// When a rule can look.
enum class Stage {
  Text,       ///< at each record of the deck
  Reading,    ///< at what the reader noted
  Model,      ///< at the model as it was read
  Assembled,  ///< at the stiffness
  Solved,     ///< at the solution
  Never,      ///< a kind that rules of other kinds find
};

/// One kind of finding, and who looks for it.
struct Rule {
  std::string_view code;
  Severity severity;
  Stage stage;
  void (*look)(Inspection&);                               ///< null at Stage::Text
  void (*lookAtRecord)(Inspection&, const RecordFields&);  ///< only at Stage::Text
  std::string_view explain;
};

/// All kinds in the order in which they are looked for. A kind may have several rows.
std::span<const Rule> Rules();

}  // namespace kestol
