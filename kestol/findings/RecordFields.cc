#include "kestol/findings/RecordFields.h"

#include <algorithm>

#include "input/ProjectReader.h"
#include "input/Units.h"
#include "input/Words.h"

namespace kestol {

namespace {

bool IsSign(char c) {
  return c == ':' || c == '=';
}

std::size_t LineLength(std::string_view text) {
  return std::min(text.find('\n'), text.size());
}

/// Takes the words of one record one after the other.
class Splitter {
public:
  Splitter(std::string_view text, std::uint64_t offset, std::vector<Field>& fields)
      : begin_(text.data()),
        offset_(offset),
        all_(text),
        line_(text.substr(0, LineLength(text))),
        fields_(fields) {}

  void Add(Role role, std::string_view text, std::string_view key = {}) {
    fields_.push_back({role, text, key, offset_ + static_cast<std::size_t>(text.data() - begin_)});
  }

  /// The next word of the line; empty at its end.
  std::string_view Peek() const {
    std::string_view rest = line_;
    return TakeValue(rest);
  }
  std::string_view Take() { return TakeValue(line_); }

  /// The next word, on this line or, when it has ended, on a later one.
  std::string_view TakeAcrossLines() {
    while (Peek().empty()) {
      const std::size_t next = static_cast<std::size_t>(line_.data() - all_.data()) + line_.size();
      if (next >= all_.size()) return {};
      const std::string_view rest = all_.substr(next + 1);
      line_ = rest.substr(0, LineLength(rest));
    }
    return Take();
  }

  /// Numbers up to the first word that is none, at most `count`; false when there are fewer.
  bool TakeReals(Role role, int count) {
    for (; count > 0; --count) {
      const std::string_view word = Peek();
      if (word.empty() || !BeginsLikeNumber(word)) return false;
      Add(role, Take());
    }
    return true;
  }

  /// What is left: surplus numbers, or a comment.
  void TakeSurplus() {
    for (std::string_view word = Take(); !word.empty(); word = Take()) {
      if (word[0] == '#') return Add(Role::Comment, word);
      Add(Role::Surplus, word);
    }
  }

  /// Pairs of keys and values, as in materials, supports and loads.
  void TakePairs() {
    for (std::string_view key = TakeKey(line_); !key.empty(); key = TakeKey(line_)) {
      if (key[0] == '#') return Add(Role::Comment, key);
      TakePair(key);
    }
  }

  std::string_view& Line() { return line_; }

private:
  static bool BeginsLikeNumber(std::string_view word) {
    return TakeReal(word).has_value() || word[0] == '.' || word[0] == ',';
  }

  void TakePair(std::string_view key) {
    Add(Role::Key, key);
    if (IsUnitsKey(key)) {
      line_ = BehindSigns(line_);
      if (const std::string_view name = Take(); !name.empty()) Add(Role::Name, name, key);
      return;
    }
    std::string_view value = Take();
    if (!value.empty() && IsSign(value[0])) {
      Add(Role::Sign, value, key);
      value = BehindSigns(value);
      if (value.empty()) value = Take();
    }
    if (!value.empty()) Add(Role::Value, value, key);
  }

  const char* begin_;
  std::uint64_t offset_;
  std::string_view all_, line_;
  std::vector<Field>& fields_;
};

/// The word with the number of a record; materials may have a sign or a key glued to it.
void TakeNumber(Splitter& splitter, RecordKind kind) {
  std::string_view& line = splitter.Line();
  const std::string_view word = splitter.Peek();
  std::size_t length = word.size();
  if (kind == RecordKind::Material) length = std::min(word.find_first_of(":="), length);
  const std::size_t before = static_cast<std::size_t>(word.data() - line.data());
  splitter.Add(Role::Number, word.substr(0, length));
  line.remove_prefix(before + length);
}

void SplitElement(Splitter& splitter, int nodes) {
  for (int i = 0; i < nodes; ++i)
    if (const std::string_view word = splitter.TakeAcrossLines(); !word.empty())
      splitter.Add(Role::NodeNumber, word);
  const std::string_view material = TakeKey(splitter.Line());
  if (material.empty()) return;
  if (material[0] == '#') return splitter.Add(Role::Comment, material);
  splitter.Add(Role::Reference, material);
  splitter.TakePairs();
}

void SplitNode(Splitter& splitter, int coordinates) {
  for (int i = 0; i < coordinates; ++i)
    if (const std::string_view word = splitter.TakeAcrossLines(); !word.empty())
      splitter.Add(Role::Real, word);
  splitter.TakeSurplus();
}

/// The digits of the codes may stand apart; false when there are other than `degrees` of them.
bool SplitCodes(Splitter& splitter, int degrees) {
  int digits = 0;
  while (digits < degrees) {
    const std::string_view word = splitter.Peek();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (word.empty() || !std::all_of(word.begin(), word.end(), isDigit)) return false;
    splitter.Add(Role::Codes, splitter.Take());
    digits += static_cast<int>(word.size());
  }
  return digits == degrees;
}

const Mesh* MeshOfElement(const Project& project, int number) {
  for (const auto& mesh : project.meshes)
    if (mesh->elems.Get(number) != nullptr) return mesh.get();
  return nullptr;
}

void SplitElementLoad(Splitter& splitter, const RecordShape& shape, int number) {
  const Project& project = *shape.project;
  const Mesh* const mesh = MeshOfElement(project, number);
  const std::string_view section = KeywordNames()[shape.section];
  bool complete = true;
  if (project.problemType == Plane) {
    complete = splitter.TakeReals(Role::Real, 2);
  } else if (mesh != nullptr && mesh->elemType == Tetrahedra) {
    complete = splitter.TakeReals(Role::Reference, 1) && splitter.TakeReals(Role::Real, 3);
  } else {
    complete = splitter.TakeReals(Role::Real, 3);
    const bool hasFourth = section == "local_pressure_loads" || section == "face_loads";
    if (complete && hasFourth) splitter.TakeReals(Role::Real, 1);
  }
  if (complete) splitter.TakePairs();
}

void SplitUnitSystem(Splitter& splitter) {
  for (int i = 0; i < 4; ++i)
    if (const std::string_view name = splitter.Take(); !name.empty())
      splitter.Add(Role::Name, name);
  for (int i = 0; i < 2; ++i)
    if (const std::string_view factor = splitter.Take(); !factor.empty())
      splitter.Add(Role::Real, factor);
  splitter.TakeSurplus();
}

/// What the words of a keyword's value are.
struct ValueShape {
  std::string_view keyword;
  Role role;
  int count;
};
constexpr ValueShape kValueShapes[] = {
    {"NumOfDivisions",   Role::Whole, 1},
    {"DoSmoothing",      Role::Real,  1},
    {"CoplanarityAngle", Role::Real,  1},
    {"GravityDirection", Role::Real,  3},
};

void SplitKeyword(Splitter& splitter, int row) {
  const std::string_view name = KeywordNames()[row];
  std::string_view& line = splitter.Line();
  const std::string_view word = splitter.Peek();
  const bool isWritten = KeywordOf(word) == row;
  splitter.Add(Role::Name, word.substr(0, isWritten ? name.size() : word.size()));
  line.remove_prefix(static_cast<std::size_t>(word.data() - line.data()) +
                     (isWritten ? name.size() : word.size()));
  if (!HasValue(row)) return;
  line = BehindSigns(line);
  if (name == "Solver") {
    const std::string_view solver = splitter.Take();
    splitter.Add(Role::Name, solver);
    if (!StartsWithAnyCase(solver, "Sparse")) return;
    if (splitter.TakeReals(Role::Real, 2)) splitter.TakeReals(Role::Whole, 1);
    return;
  }
  for (const ValueShape& shape : kValueShapes)
    if (shape.keyword == name) {
      splitter.TakeReals(shape.role, shape.count);
      return;
    }
  if (const std::string_view system = splitter.Take(); !system.empty())
    splitter.Add(Role::Name, system);
}

}  // namespace

bool IsNumber(std::string_view word) {
  return TakeReal(word) && word.empty();
}

bool IsEuler(std::string_view key) {
  return StartsWithAnyCase(key, "Euler");
}

bool HasMaterialKeys(RecordKind kind) {
  return kind == RecordKind::Material || kind == RecordKind::Element;
}

bool HasPairs(RecordKind kind) {
  return kind == RecordKind::Support || kind == RecordKind::NodalLoad ||
         kind == RecordKind::ElementLoad;
}

void SplitRecord(const RecordShape& shape, const SourceMap::Record& record, std::string_view text,
                 RecordFields& fields) {
  fields.record = record;
  fields.section = shape.section;
  fields.fields.clear();
  Splitter splitter(text, record.offset, fields.fields);
  const int degrees = shape.project->dofsPerNode;
  switch (record.kind) {
    case RecordKind::Keyword:
      return SplitKeyword(splitter, record.number);
    case RecordKind::UnitSystem:
      return SplitUnitSystem(splitter);
    case RecordKind::Node:
      TakeNumber(splitter, record.kind);
      return SplitNode(splitter, shape.numbers - 1);
    case RecordKind::Element:
      TakeNumber(splitter, record.kind);
      return SplitElement(splitter, shape.numbers - 1);
    case RecordKind::Material:
      TakeNumber(splitter, record.kind);
      return splitter.TakePairs();
    case RecordKind::Support:
      TakeNumber(splitter, record.kind);
      if (SplitCodes(splitter, degrees) && splitter.TakeReals(Role::Real, degrees))
        splitter.TakePairs();
      return;
    case RecordKind::Hinge:
      TakeNumber(splitter, record.kind);
      return splitter.TakeSurplus();
    case RecordKind::NodalLoad:
      TakeNumber(splitter, record.kind);
      if (splitter.TakeReals(Role::Real, degrees)) splitter.TakePairs();
      return;
    case RecordKind::ElementLoad:
      TakeNumber(splitter, record.kind);
      return SplitElementLoad(splitter, shape, record.number);
    default:
      return;
  }
}

}  // namespace kestol
