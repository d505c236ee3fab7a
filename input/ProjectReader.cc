#include "input/ProjectReader.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "input/ConstraintsReader.h"
#include "input/HingesReader.h"
#include "input/LoadsReader.h"
#include "input/MappedWords.h"
#include "input/MaterialReader.h"
#include "input/MeantKeyword.h"
#include "input/ProblemSettings.h"
#include "input/Project.h"
#include "input/ProjectCheck.h"
#include "input/SourceMap.h"
#include "input/Statement.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// --- values -----------------------------------------------------------------------------------

// The value of a keyword, given what is glued to it.
// Deliberate: only one further word is read, so the value of "key = 1" is empty.
std::string ReadValue(const Statement& s, std::string_view glued) {
  const std::string_view value = BehindSigns(glued);
  if (!value.empty()) return std::string(value);
  const std::string word = ReadWord(s.input);
  const std::string_view read = BehindSigns(word);
  if (!read.empty() || s.map == nullptr) return std::string(read);
  s.map->Refuse({RecordKind::Keyword, KeywordOf(s.keyword), s.input.RecordOffset()},
                SourceMap::Cause::EmptyValue, s.keyword);
  return ReadWord(s.input);
}

// --- the sections -----------------------------------------------------------------------------

int CountOf(const Plex<Elem>& elems) {
  int count = 0;
  for ([[maybe_unused]] auto elem : elems) ++count;
  return count;
}

void ReadMeshBlock(Statement& s) {
  Project& project = s.project;
  auto& meshes = project.meshes;
  if (meshes.size() == kMaxMeshes) Fatal("error: maximum number of meshes is: ", kMaxMeshes, "\n");
  meshes.push_back(meshes.empty() ? std::make_unique<Mesh>() : std::make_unique<Mesh>(*meshes[0]));
  Mesh& mesh = *meshes.back();
  try {
    mesh.ReadMesh(s.input, &project.units, s.map);
  } catch (...) {
    s.record.offset = s.input.RecordOffset();
    if (s.map != nullptr) meshes.pop_back();
    throw;
  }
  if (s.map != nullptr && s.map->dimension == 0) {
    s.map->dimension = mesh.dimension;
    SetProblemType(project, mesh.dimension == 2 ? "2d" : "3d");
  }

  project.nodesAsRead = project.numNodes = mesh.nodes->Highest();
  project.numElements[meshes.size() - 1] = CountOf(mesh.elems);
  if (mesh.elemType == Tetrahedra) project.dofsPerNode = 3;
}

void ReadMaterialSection(Statement& s) {
  ReadMaterials(s.project.materials, s.input, &s.project.units, s.map);
}

void ReadUnitSystems(Statement& s) {
  ReadUnitsNames(s.project.units, s.input, s.map);
}

void ReadSupports(Statement& s) {
  ReadConstraints(s.project, s.input, s.map);
}

void ReadHingeNodes(Statement& s) {
  ReadHinges(s.project, s.input, s.map);
}

void ReadNodeLoads(Statement& s) {
  ReadNodalLoads(s.project, s.input, s.map);
}

void ReadElementLoads(Statement& s) {
  ReadPressureLoads(s.keyword, s.project, s.input, s.map);
}

// --- the keyword table ------------------------------------------------------------------------

enum class Match { Whole, Prefix };
enum class Value { None, One };

struct Keyword {
  std::string_view name;
  Match match;
  Value value;
  void (*read)(Statement&);
};

// Matched from the top, in any case; the order is part of the format.
constexpr Keyword kKeywords[] = {
    {"mesh",                            Match::Whole,  Value::None, ReadMeshBlock          },
    {"units_mesh",                      Match::Prefix, Value::One,  SetUnitsMesh           },
    {"units_mat_and_load",              Match::Prefix, Value::One,  SetUnitsMatAndLoad     },
    {"units_res",                       Match::Prefix, Value::One,  SetUnitsRes            },
    {"ConvertTo6Nodes",                 Match::Prefix, Value::None, SetConvertTo6Nodes     },
    {"MainStresses",                    Match::Prefix, Value::None, SetMainStresses        },
    {"MainAndLocalStresses",            Match::Prefix, Value::None, SetMainAndLocalStresses},
    {"NumOfDivisions",                  Match::Prefix, Value::One,  SetNumOfDivisions      },
    {"DoSmoothing",                     Match::Prefix, Value::One,  SetDoSmoothing         },
    {"CoplanarityAngle",                Match::Prefix, Value::One,  SetCoplanarityAngle    },
    {"Solver",                          Match::Prefix, Value::One,  SetSolver              },
    {"GravityDirection",                Match::Prefix, Value::One,  SetGravityDirection    },
    {"units_names",                     Match::Whole,  Value::None, ReadUnitSystems        },
    {"materials",                       Match::Whole,  Value::None, ReadMaterialSection    },
    {"constraints",                     Match::Whole,  Value::None, ReadSupports           },
    {"nodal_point_loads",               Match::Whole,  Value::None, ReadNodeLoads          },
    {"rotules",                         Match::Whole,  Value::None, ReadHingeNodes         },
    {"global_pressure_loads",           Match::Whole,  Value::None, ReadElementLoads       },
    {"global_projected_pressure_loads", Match::Whole,  Value::None, ReadElementLoads       },
    {"local_pressure_loads",            Match::Whole,  Value::None, ReadElementLoads       },
    {"face_loads",                      Match::Whole,  Value::None, ReadElementLoads       },
};

bool Matches(const Keyword& keyword, std::string_view word) {
  return StartsWithAnyCase(word, keyword.name) &&
         (keyword.match == Match::Prefix || word.size() == keyword.name.size());
}

void ReadKeyword(int row, Statement& statement, std::string_view glued) {
  const Keyword& keyword = kKeywords[row];
  statement.keyword = keyword.name;
  if (keyword.value == Value::One) statement.value = ReadValue(statement, glued);
  keyword.read(statement);
}

// --- the order of a deck ----------------------------------------------------------------------

// What may stand between "type" and its value. Deliberate: one '#' is dropped and ends it, so that
// "type #2d" is a type and no comment.
void SkipToType(TextInput& input) {
  for (int c = input.Peek(); IsSpace(c) || c == ':' || c == '=' || c == '#'; c = input.Peek()) {
    input.Get();
    if (c == '#') return;
  }
}

// --- with a map -------------------------------------------------------------------------------

void ReadMappedKeyword(Project& project, TextInput& input, std::string_view word, SourceMap& map) {
  SourceMap::Record record{RecordKind::Keyword, -1, input.RecordOffset()};
  const int row = MeantKeyword(word, record, map);
  if (row < 0) return SkipToKeyword(input);
  map.Add(RecordKind::Keyword, row, record.offset);
  record.number = row;
  if (HasValue(row)) input.Mark();
  std::string_view glued;
  if (IsKeyword(word)) glued = word.substr(kKeywords[row].name.size());
  if (HasValue(row) && kKeywords[row].read != SetSolver && IsLongerWord(input, glued)) {
    map.Refuse(record, SourceMap::Cause::UnknownWord, kKeywords[row].name, word);
    glued = {};
  }
  Statement statement{project, input, {}, {}, &map, record};
  const bool accepted =
      RefuseInto(map, statement.record, [&] { ReadKeyword(row, statement, glued); });
  if (!accepted) {
    if (HasValue(row))
      SkipValue(input);
    else
      SkipToKeyword(input);
  }
  input.Unmark();
}

// --- the whole deck ---------------------------------------------------------------------------

void ReadStatement(Project& project, TextInput& input, const std::string& word, SourceMap* map) {
  if (map != nullptr) return ReadMappedKeyword(project, input, word, *map);
  const int row = KeywordOf(word);
  if (row < 0) Fatal("Unknown key name=", word, "\n");
  Statement statement{project, input, {}, {}, nullptr};
  ReadKeyword(row, statement, std::string_view(word).substr(kKeywords[row].name.size()));
}

// Deliberate: the type is searched for in all of the text, titles and comments included.
void ReadHeading(Project& project, TextInput& input) {
  FindWord(input, "problem");
  FindWord(input, "type");
  input.BeginRecord();
  SetProblemType(project, LowerCase(TypeValue(input)));
}

}  // namespace

std::vector<std::string_view> KeywordNames() {
  std::vector<std::string_view> names;
  for (const Keyword& keyword : kKeywords) names.push_back(keyword.name);
  return names;
}

int KeywordOf(std::string_view word) {
  const auto* const found =
      std::find_if(std::begin(kKeywords), std::end(kKeywords),
                   [word](const Keyword& keyword) { return Matches(keyword, word); });
  return found == std::end(kKeywords) ? -1 : static_cast<int>(found - kKeywords);
}

bool HasValue(int keyword) {
  return kKeywords[keyword].value == Value::One;
}

std::string TypeValue(TextInput& input) {
  SkipToType(input);
  std::string type = ReadWord(input);
  return LowerCase(type) == "reticulat" ? ReadWord(input) : type;
}

void SetProblemType(Project& project, std::string_view type) {
  if (type == "2d") {
    project.problemType = Plane;
    project.dofsPerNode = 3;
  } else if (type == "3d") {
    project.problemType = Space;
    project.dofsPerNode = 6;
  } else {
    Fatal("Type of problem unknown. Only 2d and 3d\n");
  }
}

void ReadKeywords(Project& project, TextInput& input, SourceMap* map) {
  for (;;) {
    SkipSpace(input);
    input.BeginRecord();
    const std::string word(input.PeekWord());
    if (word.empty()) return;
    // The first word of a mesh block whose keyword is missing is read again as such.
    const bool isOfMesh = LowerCase(word) == kMeshWords[DimensionWord];
    if (map == nullptr || !isOfMesh) input.Advance(word.size());
    if (word[0] == '#')
      SkipRestOfLine(input);
    else
      ReadStatement(project, input, word, map);
  }
}

void ReadProject(Project& project, TextInput& input, SourceMap* map) {
  if (map == nullptr)
    ReadHeading(project, input);
  else
    ReadMappedHeading(project, input, *map);
  ReadKeywords(project, input, map);
  input.BeginRecord(TextInput::kNowhere);
  if (map == nullptr)
    CheckProject(project);
  else
    RefuseInto(*map, {RecordKind::Problem, 0, TextInput::kNowhere}, [&] { CheckProject(project); });
}

}  // namespace kestol
