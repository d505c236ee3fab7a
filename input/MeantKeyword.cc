#include "input/MeantKeyword.h"

#include <string>
#include <vector>

#include "input/NearestWord.h"
#include "input/ProjectReader.h"
#include "input/TextInput.h"
#include "input/Words.h"

namespace kestol {

namespace {

// Words for what the deck calls otherwise.
struct Synonym {
  std::string_view word, keyword;
};
constexpr Synonym kSynonyms[] = {
    {"hinges",          "rotules"              },
    {"releases",        "rotules"              },
    {"supports",        "constraints"          },
    {"restraints",      "constraints"          },
    {"sections",        "materials"            },
    {"nodal_loads",     "nodal_point_loads"    },
    {"point_loads",     "nodal_point_loads"    },
    {"beam_loads",      "global_pressure_loads"},
    {"gravity",         "GravityDirection"     },
    {"units",           "units_names"          },
    {"units_mat_load",  "units_mat_and_load"   },
    {"units_materials", "units_mat_and_load"   },
    {"units_loads",     "units_mat_and_load"   },
    {"dimension",       "mesh"                 },
};

// The keyword that was probably meant; empty when it cannot be told.
std::string_view NearestKeyword(std::string_view word) {
  const std::string lower = LowerCase(word);
  for (const Synonym& synonym : kSynonyms)
    if (lower == synonym.word) return synonym.keyword;
  return NearestWord(word, KeywordNames());
}

}  // namespace

int MeantKeyword(std::string_view word, const SourceMap::Record& record, SourceMap& map) {
  const int row = KeywordOf(word);
  if (row >= 0) return row;
  const std::string_view nearest = NearestKeyword(word);
  map.Refuse(record, SourceMap::Cause::UnknownWord, nearest, word);
  return nearest.empty() ? -1 : KeywordOf(nearest);
}

bool IsLongerWord(TextInput& input, std::string_view glued) {
  const std::string first = LowerCase(glued.substr(0, 1));
  if (first < "a" || first > "z") return false;
  std::string_view rest = input.PeekLine();
  const std::string_view next = TakeValue(rest);
  return !next.empty() && next[0] != '#';
}

void SkipToKeyword(TextInput& input) {
  const std::vector<std::string_view> names = KeywordNames();
  while (SkipRestOfLine(input)) {
    SkipSpace(input);
    const std::string_view word = input.PeekWord();
    if (IsKeyword(word) || !NearestWord(word, names, 1).empty()) return;
  }
}

void SkipValue(TextInput& input) {
  input.Rewind();
  for (;;) {
    SkipRestOfLine(input);
    SkipSpace(input);
    std::string_view word = input.PeekWord();
    if (!TakeReal(word)) return;
  }
}

}  // namespace kestol
