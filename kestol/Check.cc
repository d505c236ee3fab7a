#include "kestol/Check.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "kestol/Condition.h"
#include "kestol/findings/Catalogue.h"
#include "kestol/findings/DeckLines.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/SolutionRules.h"
#include "kestol/findings/TextRules.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

// --- the text ---------------------------------------------------------------------------------

/// Whether the words of the record may hold a mistake. Most records of large decks are plain.
bool NeedsALook(const RecordShape& shape, RecordKind kind, std::string_view text) {
  if (kind == RecordKind::Node) return !IsPlainRecord(text, shape.numbers, 1, false);
  if (kind == RecordKind::Element) return !IsPlainRecord(text, shape.numbers, shape.numbers, true);
  return true;
}

bool HasWords(RecordKind kind) {
  return kind == RecordKind::Keyword || kind == RecordKind::UnitSystem ||
         (kind >= RecordKind::Node && kind < RecordKind::ListStop);
}

void LookAtRecord(Inspection& deck, const RecordFields& record) {
  for (const Rule& rule : Rules()) {
    if (rule.stage != Stage::Text) continue;
    deck.Begin(rule.code, rule.severity);
    rule.lookAtRecord(deck, record);
  }
  KeepWrittenValues(deck, record);
  KeepNodeLines(deck, record);
}

void LookAtText(Inspection& deck) {
  DeckLines lines(deck.map);
  RecordShape shape{&deck.project};
  RecordFields fields;
  const std::size_t count = deck.map.RecordCount();
  for (std::size_t i = 0; i < count; ++i) {
    const SourceMap::Record record = deck.map.At(i);
    if (record.kind == RecordKind::Keyword) shape.section = record.number;
    if (record.kind == RecordKind::List) shape.numbers = record.number;
    if (!HasWords(record.kind)) continue;
    std::string_view text = lines.From(record.offset);
    if (!NeedsALook(shape, record.kind, text)) continue;
    if (i + 1 < count) {
      const std::uint64_t end = deck.map.At(i + 1).offset;
      text = lines.From(record.offset, end);
      text = text.substr(0, static_cast<std::size_t>(end - record.offset));
    }
    SplitRecord(shape, record, text, fields);
    LookAtRecord(deck, fields);
  }
}

// --- the rules --------------------------------------------------------------------------------

void Run(Inspection& deck, Stage stage) {
  for (const Rule& rule : Rules()) {
    if (rule.stage != stage) continue;
    deck.Begin(rule.code, rule.severity);
    rule.look(deck);
  }
}

/// Does something that the solver may refuse; then its words are a finding.
template <class Action>
bool Succeeds(Inspection& deck, Action action) {
  try {
    action();
    return true;
  } catch (const FatalError& refusal) {
    const std::string text = refusal.what();
    error.Clear();
    AddRefusal(deck, text);
    return false;
  }
}

/// Assembles the model and looks for motions without resistance. False where nothing can be solved.
bool Assemble(Inspection& deck, const CheckOptions& options) {
  SolvedModel& solution = *deck.solution;
  const SolverName solver = SuitableSolver(deck.project);
  const bool isAssembled = Succeeds(deck, [&] {
    solution.system = std::make_unique<LinearSystem>(deck.project, SolveOptions{.solver = solver});
    if (solver == SolverName::Deck) {
      solution.mechanisms = FindRigidMotions(deck.project, options.mechanisms);
      solution.mechanisms->isComplete = false;
      return;
    }
    solution.scaled = std::make_unique<ScaledSystem>(*solution.system, solver);
    MechanismOptions how;
    how.explained = options.mechanisms;
    how.solver = solver;
    how.useFactor = options.solve;
    solution.mechanisms = FindMechanisms(*solution.system, *solution.scaled, how);
  });
  if (!isAssembled) return false;
  if (solution.scaled) Run(deck, Stage::Assembled);
  return solution.mechanisms->count == 0;
}

void Solve(Inspection& deck, const CheckOptions& options) {
  SolvedModel& solution = *deck.solution;
  const bool isSolved = Succeeds(deck, [&] { solution.results = solution.system->SolveDeck(); });
  if (!isSolved || !solution.scaled) return;
  if (options.condition) solution.condition = EstimateCondition(*solution.system, *solution.scaled);
  Run(deck, Stage::Solved);
}

// --- what is given back -----------------------------------------------------------------------

/// Findings in the order of the deck; those without a place stand behind, as they were found.
void Order(std::vector<Finding>& findings) {
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.offset < b.offset; });
}

/// "line 5", "lines 22-24, 30".
std::string LinesText(std::vector<long> lines) {
  std::sort(lines.begin(), lines.end());
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  std::vector<std::string> ranges;
  for (std::size_t first = 0, last = 0; first < lines.size(); first = ++last) {
    while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1) ++last;
    ranges.push_back(std::to_string(lines[first]));
    if (last > first) ranges.back().append("-").append(std::to_string(lines[last]));
  }
  std::string text = lines.size() == 1 ? "line " : "lines ";
  for (std::size_t i = 0; i < ranges.size(); ++i) text += (i > 0 ? ", " : "") + ranges[i];
  return text;
}

/// Puts lines where a text mentions places.
void FillMentions(const SourceMap& map, std::vector<Finding>& findings) {
  std::vector<Finding> places;
  for (const Finding& finding : findings)
    for (const std::uint64_t offset : finding.mentions) {
      places.emplace_back();
      places.back().offset = offset;
    }
  if (places.empty()) return;
  Order(places);
  PlaceFindings(map, places);
  const auto lineAt = [&](std::uint64_t offset) {
    const auto found =
        std::lower_bound(places.begin(), places.end(), offset,
                         [](const Finding& place, std::uint64_t o) { return place.offset < o; });
    return found == places.end() ? 0L : found->line;
  };
  const auto fill = [&](std::string& text, const std::vector<std::uint64_t>& mentions) {
    for (std::size_t at = text.find(kLineNumber); at != std::string::npos;
         at = text.find(kLineNumber)) {
      const auto which = static_cast<std::size_t>(text[at + 1] - '0');
      text.replace(at, 2, std::to_string(lineAt(mentions[which])));
    }
    const std::size_t begin = text.find(kLines), end = text.find(kLines, begin + 1);
    if (begin == std::string::npos || end == std::string::npos) return;
    std::vector<long> lines;
    for (std::size_t i = begin + 1; i < end; ++i)
      lines.push_back(lineAt(mentions[static_cast<std::size_t>(text[i] - '0')]));
    text.replace(begin, end + 1 - begin, LinesText(std::move(lines)));
  };
  for (Finding& finding : findings) {
    if (finding.mentions.empty()) continue;
    fill(finding.text, finding.mentions);
    for (std::string& line : finding.more) fill(line, finding.mentions);
  }
}

}  // namespace

int Findings::Count(Severity severity) const {
  return static_cast<int>(std::count_if(
      list.begin(), list.end(), [severity](const Finding& f) { return f.severity == severity; }));
}

Findings Check(Project& project, const SourceMap& map, const CheckOptions& options) {
  Inspection deck(project, map);
  deck.disabled.insert(options.disabled.begin(), options.disabled.end());
  SolvedModel solution;
  deck.solution = &solution;
  LookAtText(deck);
  Run(deck, Stage::Reading);
  if (!options.syntaxOnly) {
    Run(deck, Stage::Model);
    if (options.assemble && !deck.AnyError() && Assemble(deck, options) && !deck.AnyError() &&
        options.solve)
      Solve(deck, options);
  }
  Order(deck.findings);
  PlaceFindings(map, deck.findings);
  FillMentions(map, deck.findings);
  Findings found;
  found.list = std::move(deck.findings);
  found.mechanisms = std::move(solution.mechanisms);
  found.condition = solution.condition;
  found.system = std::move(solution.system);
  found.results = std::move(solution.results);
  return found;
}

std::vector<FindingKind> FindingKinds() {
  std::vector<FindingKind> kinds;
  for (const Rule& rule : Rules())
    if (!rule.explain.empty()) kinds.push_back({rule.code, rule.severity, rule.explain});
  return kinds;
}

bool IsFindingCode(const std::string& code) {
  const std::vector<FindingKind> kinds = FindingKinds();
  return std::any_of(kinds.begin(), kinds.end(),
                     [&](const FindingKind& kind) { return kind.code == code; });
}

}  // namespace kestol
