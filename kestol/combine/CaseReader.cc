#include "kestol/combine/CaseReader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "input/ConstraintsReader.h"
#include "input/LoadsReader.h"
#include "input/NodeSections.h"
#include "input/Project.h"
#include "input/ReadOnlyFile.h"
#include "input/TextInput.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr std::size_t kPiece = 64 * 1024;

/// The text of a case, from which words and lines are taken; knows the line it has come to.
class Scanner {
public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  /// Passes over white space and comments, and over the signs that lists allow with `signs`.
  void SkipToWord(bool signs) {
    while (!rest_.empty()) {
      const char c = rest_.front();
      if (c == '#')
        TakeLine();
      else if (IsSpace(static_cast<unsigned char>(c)) || (signs && (c == '=' || c == ':')))
        Advance(1);
      else
        return;
    }
  }

  std::string_view PeekWord() const {
    const auto end = std::find_if(rest_.begin(), rest_.end(),
                                  [](char c) { return IsSpace(static_cast<unsigned char>(c)); });
    return rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
  }

  std::string_view TakeLine() {
    const std::string_view taken = rest_.substr(0, rest_.find('\n'));
    Advance(std::min(taken.size() + 1, rest_.size()));
    return taken;
  }

  void Advance(std::size_t count) {
    line += std::count(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(count), '\n');
    rest_.remove_prefix(count);
  }

  long line = 1;  ///< of the next character, from 1

private:
  std::string_view rest_;
};

bool BeginsWithInteger(std::string_view word) {
  if (!word.empty() && (word.front() == '+' || word.front() == '-')) word.remove_prefix(1);
  return !word.empty() && word.front() >= '0' && word.front() <= '9';
}

bool SameNumber(double a, double b) {
  constexpr double kSame = 1e-12;  // one value in two unit systems
  return std::abs(a - b) <= kSame * std::max(std::abs(a), std::abs(b));
}

class CaseReader {
public:
  CaseReader(Project& project, std::string_view text, const std::string& name)
      : project_(project), scanner_(text), name_(name), units_(project.units) {}

  CaseLoads Read() {
    for (scanner_.SkipToWord(false); !scanner_.PeekWord().empty(); scanner_.SkipToWord(false)) {
      line_ = scanner_.line;
      ReadStatement();
    }
    const ReaVec3 noWeight(0.0, 0.0, 0.0);
    project_.gravity = noWeight;
    std::map<int, std::array<double, 6>> settlements = std::move(settlements_);
    CaseLoads loads = TakeLoads(project_);
    loads.settlements = std::move(settlements);
    project_.units = units_;
    return loads;
  }

private:
  using ReadRecord = void (CaseReader::*)(const std::string& keyword, std::string_view record);

  template <class... Pieces>
  [[noreturn]] void Refuse(const Pieces&... pieces) const {
    error.SetPlace(name_, line_);
    Fatal("error: ", pieces..., "\n");
  }

  /// What a reader of the deck does with a part of the text; its refusals get their place.
  template <class Read>
  void ReadPart(const std::string& text, Read read) const {
    TextInput input(text);
    try {
      read(input);
    } catch (const FatalError&) {
      error.SetPlace(name_, line_);
      throw;
    }
  }

  void ReadStatement();
  void ReadUnits(std::string_view keyword, std::size_t length);
  void UseForLoads(const UnitSystem& system) const;
  void ReadUnitNames();
  void AddSystem(const UnitSystem& said) const;
  void ReadSection(const std::string& keyword, ReadRecord read);
  void ReadLoad(const std::string& keyword, std::string_view record);
  void ReadSettlement(const std::string& keyword, std::string_view record);
  void KeepSettlements(const Constraint& said, const Constraint* support, int nodeNumber);

  Project& project_;
  Scanner scanner_;
  const std::string& name_;
  const Units units_;  ///< of the model
  long line_ = 1;      ///< of the record or keyword being read
  std::map<int, std::array<double, 6>> settlements_;
};

void CaseReader::ReadStatement() {
  const std::string word = LowerCase(scanner_.PeekWord());
  const bool isOfElements = std::ranges::any_of(
      kLoadSections, [&](const LoadSection& section) { return section.keyword == word; });
  if (isOfElements || word == "nodal_point_loads") return ReadSection(word, &CaseReader::ReadLoad);
  if (word == "constraints") return ReadSection(word, &CaseReader::ReadSettlement);
  if (word == "units_names") return ReadUnitNames();
  for (const std::string_view keyword : {"units_mesh", "units_mat_and_load", "units_res"})
    if (StartsWith(word, keyword)) return ReadUnits(keyword, keyword.size());
  Refuse("'", scanner_.PeekWord(),
         "' does not belong in a load case, which holds load sections, constraints with "
         "settlements and units keywords");
}

// --- units ------------------------------------------------------------------------------------

/// The keyword's value is glued to it or the next word, as in a deck.
void CaseReader::ReadUnits(std::string_view keyword, std::size_t length) {
  std::string value(BehindSigns(scanner_.PeekWord().substr(length)));
  scanner_.Advance(scanner_.PeekWord().size());
  if (value.empty()) {
    scanner_.SkipToWord(false);
    const std::string_view next = scanner_.PeekWord();
    value = BehindSigns(next);
    scanner_.Advance(next.size());
  }
  ReadPart(value, [&](TextInput&) {
    if (keyword == "units_mesh") return;  // a case has no coordinates
    const UnitSystem& system = FindUnits(project_.units, value);
    if (keyword == "units_mat_and_load") return UseForLoads(system);
    if (system.facN != units_.resultForce || system.facM != units_.resultLength)
      Fatal("error: the units of the results are those of the model\n");
  });
}

void CaseReader::UseForLoads(const UnitSystem& system) const {
  FactorsOf(project_.units, system);  // refuses factors that are not positive
  project_.units.materialForce = system.facN;
  project_.units.materialLength = system.facM;
}

void CaseReader::ReadUnitNames() {
  scanner_.Advance(scanner_.PeekWord().size());
  for (;;) {
    scanner_.SkipToWord(true);
    const std::string word = LowerCase(scanner_.PeekWord());
    if (word.empty()) Refuse("'units_names' should finish with the 'end' word");
    line_ = scanner_.line;
    const std::string row(scanner_.TakeLine());
    if (StartsWith(word, "end")) return;
    ReadPart(row + "\nend\n", [&](TextInput& input) {
      Units said;
      ReadUnitsNames(said, input);
      for (const UnitSystem& system : said.table) AddSystem(system);
    });
  }
}

/// A name stands for one system: the units of the model's results and of its loads were chosen by
/// their names, and the sizes of all units are in the model's reference.
void CaseReader::AddSystem(const UnitSystem& said) const {
  std::vector<UnitSystem>& table = project_.units.table;
  const auto place = std::ranges::lower_bound(table, said.name, {}, &UnitSystem::name);
  if (place == table.end() || place->name != said.name)
    table.insert(place, said);
  else if (!SameNumber(place->facN, said.facN) || !SameNumber(place->facM, said.facM))
    Fatal("error: unit system '", said.name,
          "' is known with other factors: give it another name\n");
}

// --- sections ---------------------------------------------------------------------------------

void CaseReader::ReadSection(const std::string& keyword, ReadRecord read) {
  const long keywordLine = line_;
  scanner_.Advance(keyword.size());
  for (;;) {
    scanner_.SkipToWord(true);
    const std::string_view word = scanner_.PeekWord();
    line_ = scanner_.line;
    if (!BeginsWithInteger(word)) break;
    const std::string_view record = scanner_.TakeLine();
    (this->*read)(keyword, record);
  }
  const std::string word(scanner_.PeekWord());
  if (LowerCase(word).find("end") == std::string::npos) {
    if (word.empty()) line_ = keywordLine;
    Refuse("section '", keyword, "' of line ", keywordLine, " has no \"end\"",
           word.empty() ? "" : " before '" + word + "'");
  }
  scanner_.TakeLine();
}

void CaseReader::ReadLoad(const std::string& keyword, std::string_view record) {
  ReadPart(std::string(record) + "\nend\n", [&](TextInput& input) {
    if (keyword == "nodal_point_loads")
      ReadNodalLoads(project_, input);
    else
      ReadPressureLoads(keyword, project_, input);
  });
}

/// The line is read as if the node had no support, and then held against the one that it has.
void CaseReader::ReadSettlement(const std::string&, std::string_view record) {
  std::string_view text = record;
  const double number = TakeReal(text).value_or(0.0);
  constexpr double kLargest = std::numeric_limits<int>::max();
  const int nodeNumber = std::abs(number) <= kLargest ? static_cast<int>(number) : 0;
  Node* const node = FindNode(project_, nodeNumber);
  std::unique_ptr<Constraint> support;
  if (node != nullptr) support = std::move(node->constraint);
  ReadPart(std::string(record) + "\nend\n",
           [&](TextInput& input) { ReadConstraints(project_, input); });
  const std::unique_ptr<Constraint> said = std::exchange(node->constraint, std::move(support));
  KeepSettlements(*said, node->constraint.get(), nodeNumber);
}

void CaseReader::KeepSettlements(const Constraint& said, const Constraint* support,
                                 int nodeNumber) {
  if (support == nullptr) Refuse("node ", nodeNumber, " has no support in the model");
  const bool sameAxes = support->hasLocalAxes && SameNumber(said.Euler1, support->Euler1) &&
                        SameNumber(said.Euler2, support->Euler2) &&
                        SameNumber(said.Euler3, support->Euler3);
  if (said.hasLocalAxes && !sameAxes)
    Refuse("the axes of the support of node ", nodeNumber, " are not those of the model");
  for (int d = 0; d < said.dofs; ++d) {
    const int code = said.codes[d];
    if (code == Free) continue;
    if (code != support->codes[d])
      Refuse("code ", code, " of degree ", d + 1, " of node ", nodeNumber,
             " is not that of the model, ", support->codes[d]);
    if (code == Spring && !SameNumber(said.values[d], support->values[d]))
      Refuse("the spring on degree ", d + 1, " of node ", nodeNumber, " is not that of the model, ",
             support->values[d]);
    if (code == Prescribed) settlements_[nodeNumber][d] = said.values[d];
  }
}

/// All of the file. A stream would take a failed allocation for a failed read.
std::string TextOf(const std::string& path) {
  std::string text, piece(kPiece, '\0');
  const ReadOnlyFile file(std::fopen(path.c_str(), "r"));
  if (file)
    while (const std::size_t taken = std::fread(piece.data(), 1, piece.size(), file.get()))
      text.append(piece, 0, taken);
  if (!file || std::ferror(file.get()) != 0) Fatal("can't open file ", path, "\n");
  return text;
}

}  // namespace

CaseLoads ReadCaseText(Project& project, const std::string& text, const std::string& name) {
  error.Clear();
  return CaseReader(project, text, name).Read();
}

CaseLoads ReadCase(Project& project, const std::string& path) {
  error.Clear();
  return ReadCaseText(project, TextOf(path), path);
}

}  // namespace kestol
