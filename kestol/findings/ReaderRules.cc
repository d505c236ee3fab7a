#include "kestol/findings/ReaderRules.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "input/ProjectReader.h"
#include "kestol/findings/Inspection.h"

namespace kestol {

using Cause = SourceMap::Cause;
using Refusal = SourceMap::Refusal;

Place At(const Refusal& refusal) {
  return {refusal.record.offset, refusal.word.size()};
}

std::string WithoutLineEnd(std::string text) {
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

Finding& AddLines(Inspection& deck, std::string_view code, const Place& place,
                  const std::string& text) {
  const std::size_t end = text.find('\n');
  Finding& finding = deck.AddCode(code, Severity::Error, place, text.substr(0, end));
  for (std::size_t begin = end; begin != std::string::npos;) {
    const std::size_t next = text.find('\n', ++begin);
    finding.more.push_back(text.substr(begin, next - begin));
    begin = next;
  }
  return finding;
}

namespace {

/// Refusals of the reader that another kind names, by what their text says. Those without a
/// kind are found by a rule of their own.
struct NamedRefusal {
  std::string_view text;
  std::string_view code;
};
constexpr std::string_view kOwnRule = "", kBothEqual = "have both nodes equal",
                           kUnknownType = "Unknown elem type in PreassureLT";
constexpr NamedRefusal kNamedRefusals[] = {
    {"error: Trying to assign constrain to unknown node",   kOwnRule      },
    {"error: Trying to assign rotule to unknown node",      kOwnRule      },
    {"error: Trying to assign Load to unknown node",        kOwnRule      },
    {"error: trying to assign load to element number",      kOwnRule      },
    {"error: list of nodes does not contain all numbers",   kOwnRule      },
    {"error: All elements must have different number",      kOwnRule      },
    {"Repeated index",                                      kOwnRule      },
    {kBothEqual,                                            kOwnRule      },
    {"Unknown char: '#",                                    "syntax"      },
    {"Input of materials not correct. Unknown char",        "unknown-word"},
    {"error in materials. Young Modulus can only be",       "unknown-word"},
    {"error in materials. Inertia modules cannot be for X", "unknown-word"},
    {"error in materials. G can be",                        "unknown-word"},
    {"error: Euler angles must be: Euler1",                 "unknown-word"},
    {kUnknownType,                                          kOwnRule      },
};

const NamedRefusal* NameOf(const Refusal& refusal) {
  const auto* const found = std::find_if(
      std::begin(kNamedRefusals), std::end(kNamedRefusals),
      [&](const NamedRefusal& row) { return refusal.message.find(row.text) != std::string::npos; });
  return found == std::end(kNamedRefusals) ? nullptr : found;
}

/// What helps to understand a text of the reader.
struct Hint {
  std::string_view text, hint;
};
constexpr Hint kHints[] = {
    {"Type of problem unknown",                          "write TYPE 2d or TYPE 3d, with a blank"        },
    {"can't find word ***problem",                       "the first word must be PROBLEM"                },
    {"can't find word ***type",                          "a line TYPE 2d or TYPE 3d is missing"          },
    {"can't find word ***",                              "in a mesh block it must stand between blanks"  },
    {"Invalid void index",                               "numbers begin at 1"                            },
    {"Not reading correctly the constraints. -B-",       "a value or a key stands alone at the end"      },
    {"Not reading correctly the constraints",            "one code per degree, then one value per degree"},
    {"Not reading correctly the loads. -D-",             "a value or a key stands alone at the end"      },
    {"Not reading correctly the loads",                  "one number per degree of freedom"              },
    {"error in materials. Key without value",            "every key needs a value: key=value"            },
    {"Input of materials not correct. Unknown char: '#", "no comment stands behind values"               },
};

/// What is said of the factors of a unit system.
constexpr std::string_view kFactors = "two positive numbers";

/// A mesh that was given up may have held any node and element.
void SpoilMesh(Inspection& deck) {
  for (const RecordKind kind : {RecordKind::Node, RecordKind::Element, RecordKind::Material})
    for (int i = 0; i < 1000; ++i) deck.AddUnnumbered(kind);
}

/// Where the reader's text belongs: a unit system's factors are refused where it is used, and are
/// wrong where it is defined.
Place PlaceOfText(const Inspection& deck, const Refusal& refusal) {
  const bool isOfFactors = refusal.message.find(kFactors) != std::string::npos;
  if (!isOfFactors && !refusal.message.starts_with("error: Units_mesh must be")) return At(refusal);
  for (const UnitSystem& system : deck.project.units.table) {
    if (IsUnitFactor(system.facN) && IsUnitFactor(system.facM)) continue;
    const auto defined = deck.unitSystems.find(system.name);
    if (defined != deck.unitSystems.end()) return {defined->second, system.name.size()};
  }
  return At(refusal);
}

/// Whether the refusal follows from a unit system that could not be read, or that is not defined
/// before its first use, which is said once.
bool IsOfUnits(const Inspection& deck, const Refusal& refusal) {
  constexpr std::string_view kUndefined = "has not been previously defined";
  const std::string& message = refusal.message;
  const bool isOfFactors = message.find(kFactors) != std::string::npos;
  if (!isOfFactors && message.find(kUndefined) == std::string::npos) return false;
  if (deck.AnySpoilt(RecordKind::UnitSystem)) return true;
  // Before the first definition all names are one mistake, behind it each is one.
  const bool areDefined = deck.PlaceOfKeyword("units_names").offset < refusal.record.offset;
  const std::size_t name = isOfFactors ? 0 : message.find('\'');
  const std::string same = isOfFactors  ? std::string(kFactors)
                           : areDefined ? WithoutLineEnd(message.substr(name))
                                        : std::string(kUndefined);
  return std::any_of(deck.findings.begin(), deck.findings.end(), [&](const Finding& finding) {
    return finding.text.find(same) != std::string::npos;
  });
}

void AddReaderText(Inspection& deck, const Refusal& refusal) {
  if (IsOfUnits(deck, refusal)) return;
  // The end of the deck is missing for everybody behind a list without an end.
  const std::vector<Refusal>& all = deck.map.Refusals();
  const bool atEnd = std::any_of(all.begin(), all.end(), [](const Refusal& other) {
    return other.cause == Cause::MissingEnd && other.message.empty();
  });
  const bool notFound = refusal.message.starts_with("can't find word");
  const bool noMesh = refusal.message.starts_with("error: it is necessary at least one mesh");
  if (notFound && atEnd) return;
  if (noMesh && deck.AnyError()) return;
  const bool noNode = refusal.message.starts_with("error: list of nodes does not contain any node");
  if (noNode && deck.AnySpoilt(RecordKind::Node)) return;
  if (noNode) SpoilMesh(deck);
  if (atEnd && refusal.message.starts_with("Not reading correctly the loads A")) return;
  Finding& finding =
      AddLines(deck, "syntax", PlaceOfText(deck, refusal), WithoutLineEnd(refusal.message));
  const auto* const hint = std::find_if(std::begin(kHints), std::end(kHints), [&](const Hint& row) {
    return refusal.message.starts_with(row.text);
  });
  if (hint != std::end(kHints)) finding.more.emplace_back(hint->hint);
}

/// How many records the list that was swallowed has: the one behind the list that begins at
/// `begin`. A list of unit systems has no stop of its own.
int RecordsBehind(const SourceMap& map, std::uint64_t begin, bool isOfUnits) {
  std::size_t i = 0;
  while (i < map.RecordCount() && map.At(i).offset < begin) ++i;
  bool stopped = isOfUnits;
  int count = 0;
  for (; i < map.RecordCount(); ++i) {
    const RecordKind kind = map.At(i).kind;
    if (kind == RecordKind::ListStop) {
      if (stopped) break;
      stopped = true;
    } else if (stopped &&
               (kind >= RecordKind::Node || (kind == RecordKind::UnitSystem && !isOfUnits))) {
      ++count;
    }
  }
  return count;
}

std::string MissingEndText(const Inspection& deck, const Refusal& refusal) {
  if (refusal.message.empty()) return "the section has no end: the deck ends first";
  const SourceMap::Record& record = refusal.record;
  const int count = RecordsBehind(deck.map, record.offset, record.kind == RecordKind::UnitSystem);
  return "the section has no end: " + Quoted(refusal.message) + " and " + std::to_string(count) +
         (count == 1 ? " record are swallowed" : " records are swallowed");
}

std::string KeywordText(const Refusal& refusal) {
  if (refusal.word == refusal.message) return Quoted(refusal.word) + " is taken as a keyword";
  return Quoted(refusal.word) + " is taken as the keyword " + Quoted(refusal.message);
}

std::string UnknownWordText(const Refusal& refusal) {
  std::string text = Quoted(refusal.word) + " is not known";
  if (!refusal.message.empty()) text += ": did you mean " + Quoted(refusal.message) + "?";
  return text;
}

/// A section of no known kind is lost: it may have held any of these records.
void SpoilSections(Inspection& deck) {
  deck.hasLostSection = true;
  for (const RecordKind kind :
       {RecordKind::Material, RecordKind::Support, RecordKind::Hinge, RecordKind::NodalLoad,
        RecordKind::ElementLoad, RecordKind::UnitSystem})
    for (int i = 0; i < 1000; ++i) deck.AddUnnumbered(kind);
}

bool IsNumbered(RecordKind kind) {
  return kind == RecordKind::Node || kind == RecordKind::Element || kind == RecordKind::Material;
}

/// The record before `offset`.
std::optional<SourceMap::Record> RecordBefore(const SourceMap& map, std::uint64_t offset) {
  std::size_t low = 0, high = map.RecordCount();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (map.At(middle).offset < offset)
      low = middle + 1;
    else
      high = middle;
  }
  return low == 0 ? std::nullopt : std::optional(map.At(low - 1));
}

/// A material that goes on on the next line: what it lacks stands there. Whether the refusal is of
/// a further line of the same one.
bool IsContinued(Inspection& deck, const Refusal& refusal) {
  const bool isPair = refusal.word.find('=') != std::string::npos;
  if (refusal.record.kind != RecordKind::Material || !isPair) return false;
  const std::optional<SourceMap::Record> before = RecordBefore(deck.map, refusal.record.offset);
  if (!before) return false;
  if (before->kind == RecordKind::Material)
    deck.Spoil(before->kind, before->number, before->offset);
  return before->kind == RecordKind::ListStop;
}

/// A load on elements that are read, but not analysed: their type is what is wrong.
void RefuseElemType(Inspection& deck, int element) {
  const auto& meshes = deck.project.meshes;
  for (std::size_t m = 0; m < meshes.size(); ++m) {
    if (meshes[m]->elems.Get(element) == nullptr) continue;
    const Place place = PlaceOfMeshWord(deck, m, ElemtypeWord);
    if (deck.IsSpoiltAt(place.offset)) return;
    deck.AddCode("model", Severity::Error, place, "error: elemtype unknown");
    return deck.Spoil(RecordKind::MeshWord, ElemtypeWord, place.offset);
  }
}

/// What the reader said of a record that it gave up.
void AddReaderRefusal(Inspection& deck, const Refusal& refusal) {
  const auto& [kind, number, offset] = refusal.record;
  const NamedRefusal* const name = NameOf(refusal);
  const std::string_view code = name == nullptr ? "syntax" : name->code;
  if (code == "syntax")
    AddReaderText(deck, refusal);
  else if (code != kOwnRule)
    AddLines(deck, code, At(refusal), WithoutLineEnd(refusal.message));
  if (code != kOwnRule || name->text == kBothEqual) deck.Spoil(kind, number, offset);
  if (number < 1 && IsNumbered(kind)) deck.AddUnnumbered(kind);
  if (name != nullptr && name->text == kUnknownType) RefuseElemType(deck, number);
}

/// A list that runs into the next section, or to the end of the deck.
void AddMissingEnd(Inspection& deck, const Refusal& refusal) {
  // Without supports the deck is cut off: nobody knows what was to come.
  if (refusal.message.empty() && !deck.HasKeyword("constraints")) {
    SpoilMesh(deck);
    SpoilSections(deck);
  }
  deck.AddCode("missing-end", Severity::Error, At(refusal), MissingEndText(deck, refusal));
}

void AddRefusal(Inspection& deck, const Refusal& refusal) {
  const auto& [kind, number, offset] = refusal.record;
  const bool isSaid = deck.IsSpoiltAt(offset);
  switch (refusal.cause) {
    case Cause::UnknownNode:
      return;
    case Cause::Reader:
      if (kind == RecordKind::Keyword && number == KeywordOf("mesh")) SpoilMesh(deck);
      if (!isSaid) AddReaderRefusal(deck, refusal);
      return;
    case Cause::TooFewValues:
      if (isSaid) return;
      deck.AddCode("syntax", Severity::Error, At(refusal),
                   "too few values: what stands on the next line is taken for the rest");
      return deck.Spoil(kind, number, offset);
    case Cause::NoNumber:
      if (IsContinued(deck, refusal)) return;
      deck.AddCode("node-number", Severity::Error, At(refusal),
                   Quoted(refusal.word) + " is no number: the list would end here");
      return deck.AddUnnumbered(kind);
    case Cause::UnknownWord:
      if (refusal.message.empty()) SpoilSections(deck);
      deck.AddCode("unknown-word", Severity::Error, At(refusal), UnknownWordText(refusal));
      if (kind == RecordKind::MeshWord) deck.Spoil(kind, number, offset);
      return;
    case Cause::MissingEnd:
      return AddMissingEnd(deck, refusal);
    case Cause::WordInText:
      deck.AddCode("keyword-in-text", Severity::Warning, At(refusal), KeywordText(refusal));
      return;
    case Cause::TextAsKeyword:
      deck.AddCode("keyword-in-text", Severity::Error, At(refusal),
                   KeywordText(refusal) + ": put it elsewhere");
      return;
    case Cause::OtherType:
      deck.AddCode("syntax", Severity::Error, At(refusal),
                   "the type of the problem is " + refusal.message +
                       ", but no support fits it; the mesh has the other dimension");
      return;
    case Cause::OtherHeading:
      deck.AddCode("syntax", Severity::Error, At(refusal), refusal.message);
      return;
    case Cause::EmptyValue:
      deck.AddCode(
          "empty-value", Severity::Error, At(refusal),
          "no value is read behind " + refusal.message + ": write " + refusal.message + "=value");
      return;
  }
}

}  // namespace

bool IsOfTypedSection(RecordKind kind) {
  return kind == RecordKind::Support || kind == RecordKind::NodalLoad ||
         kind == RecordKind::ElementLoad;
}

void FindRefusals(Inspection& deck) {
  if (deck.project.meshes.empty()) SpoilMesh(deck);
  for (const Refusal& refusal : deck.map.Refusals()) AddRefusal(deck, refusal);
}

}  // namespace kestol
