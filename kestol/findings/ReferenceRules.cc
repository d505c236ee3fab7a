#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kestol/findings/Geometry.h"
#include "kestol/findings/Inspection.h"
#include "kestol/findings/ReaderRules.h"

namespace kestol {

using Cause = SourceMap::Cause;
using Refusal = SourceMap::Refusal;

namespace {

/// The findings about missing numbers of one kind: one per number, where it is first asked for.
class MissingNumbers {
public:
  MissingNumbers(Inspection& deck, RecordKind kind, std::string_view what)
      : deck_(deck),
        kind_(kind),
        what_(what),
        mesh_(deck.PlaceOfKeyword("mesh").offset),
        spare_(deck.Unnumbered(kind)) {
    if (kind == RecordKind::Node && !deck.project.meshes.empty())
      highest_ = deck.project.meshes[0]->nodes->Highest() + spare_;
  }

  /// `who` asks for `number` in the record at `offset`. False where that follows from another
  /// finding.
  bool Ask(int number, std::uint64_t offset, const std::string& who, int element) {
    if (deck_.IsSpoilt(kind_, number) || deck_.IsSpoiltAt(offset)) return false;
    if (offset < mesh_ && mesh_ != Finding::kNowhere) {
      early_.push_back({number, offset, who});
      return false;
    }
    auto found = asked_.find(number);
    if (found == asked_.end()) {
      // A record whose number could not be read may be this one.
      if (spare_ > 0 && number >= 1 && number <= highest_) {
        --spare_;
        deck_.Spoil(kind_, number, Finding::kNowhere);
        return false;
      }
      found = asked_.emplace(number, Asked{offset, {}, {}}).first;
    }
    Asked& asked = found->second;
    asked.offset = std::min(asked.offset, offset);
    if (element == 0)
      ++asked.others[who];
    else if (asked.elements.empty() || asked.elements.back() != element)
      asked.elements.push_back(element);
    deck_.Spoil(RecordKind::Element, element, offset);
    return true;
  }

  bool Any() const { return !asked_.empty(); }
  std::vector<int> Numbers() const {
    std::vector<int> numbers;
    for (const auto& [number, asked] : asked_) numbers.push_back(number);
    return numbers;
  }
  /// Where the first of them is asked for.
  Place First() const {
    const auto first = std::min_element(
        asked_.begin(), asked_.end(),
        [](const auto& a, const auto& b) { return a.second.offset < b.second.offset; });
    return {first->second.offset, 0};
  }

  void Report() {
    if (!early_.empty()) ReportEarly();
    for (const auto& [number, asked] : asked_) {
      std::string text = what_ + " " + std::to_string(number) + " does not exist: asked for by ";
      if (!asked.elements.empty())
        text += (asked.elements.size() == 1 ? "element " : "elements ") + ListText(asked.elements);
      for (const auto& [who, count] : asked.others) {
        if (text.back() != ' ') text += ", ";
        text += count == 1 ? "a " + who : std::to_string(count) + " " + who + "s";
      }
      Finding& finding = deck_.Add({asked.offset, 0}, text);
      finding.elements = asked.elements;
      if (kind_ == RecordKind::Node) finding.nodes = {number};
    }
  }

private:
  /// What stands before the mesh is one mistake.
  void ReportEarly() {
    const Early& first = early_.front();
    Finding& finding = deck_.Add(
        {first.offset, 0}, what_ + " " + std::to_string(first.number) + " does not exist yet: a " +
                               first.who + " stands before the mesh on line " + LineOfMention());
    finding.mentions.push_back(mesh_);
    for (const Early& record : early_)
      if (kind_ == RecordKind::Node) finding.nodes.push_back(record.number);
  }

  struct Early {
    int number;
    std::uint64_t offset;
    std::string who;
  };
  struct Asked {
    std::uint64_t offset;
    std::vector<int> elements;
    std::map<std::string, int> others;  ///< what asks beside elements, and how often
  };
  Inspection& deck_;
  RecordKind kind_;
  std::string what_;
  std::uint64_t mesh_;  ///< where the first one begins
  int spare_;
  int highest_ = std::numeric_limits<int>::max();  // number that a record that is lost may have
  std::map<int, Asked> asked_;
  std::vector<Early> early_;
};

}  // namespace

void FindUnknownNodes(Inspection& deck) {
  MissingNumbers missing(deck, RecordKind::Node, "node");
  std::uint64_t lastElement = Finding::kNowhere;
  for (const Refusal& refusal : deck.map.Refusals()) {
    const auto& [kind, number, offset] = refusal.record;
    if (refusal.cause == Cause::UnknownNode) {
      if (offset == lastElement) continue;  // one finding for one element
      if (missing.Ask(std::atoi(refusal.message.c_str()), offset, {}, number)) lastElement = offset;
    } else if (refusal.message.find("to unknown node") != std::string::npos) {
      const char* const who = kind == RecordKind::Support ? "support"
                              : kind == RecordKind::Hinge ? "hinge"
                                                          : "load";
      missing.Ask(number, offset, who, 0);
    }
  }
  missing.Report();
}

void FindUnknownElements(Inspection& deck) {
  MissingNumbers missing(deck, RecordKind::Element, "element");
  for (const Refusal& refusal : deck.map.Refusals())
    if (refusal.message.starts_with("error: trying to assign load to element number"))
      missing.Ask(refusal.record.number, refusal.record.offset, "load", 0);
  missing.Report();
  int highest = 0;
  for (const auto& mesh : deck.project.meshes) highest = std::max(highest, mesh->elems.Highest());
  // A number among those of the elements: its record is missing, and its nodes have one less.
  for (const int number : missing.Numbers())
    if (number >= 1 && number <= highest + 1) deck.AddUnnumbered(RecordKind::Element);
}

namespace {

void AddNoMaterials(Inspection& deck, const Place& first) {
  deck.Add(first, "no element has a material: the deck has no section materials");
  deck.AddUnnumbered(RecordKind::Material);
}

}  // namespace

namespace {

/// Whether the deck ends within a section.
bool EndsInASection(const Inspection& deck) {
  const std::vector<Refusal>& all = deck.map.Refusals();
  return std::any_of(all.begin(), all.end(), [](const Refusal& refusal) {
    return refusal.cause == Cause::MissingEnd && refusal.message.empty();
  });
}

void AddWithoutMaterial(Inspection& deck, const std::vector<int>& without) {
  Finding& finding =
      deck.Add(deck.PlaceOfRecord(RecordKind::Element, without.front()),
               std::string(without.size() == 1 ? "element " : "elements ") + ListText(without) +
                   (without.size() == 1 ? " has" : " have") + " no material");
  finding.elements = without;
  for (const int number : without) deck.Spoil(RecordKind::Element, number, Finding::kNowhere);
}

}  // namespace

void FindUnknownMaterials(Inspection& deck) {
  const std::unordered_set<int>& used = deck.map.UsedMaterials();
  if (std::all_of(used.begin(), used.end(),
                  [&](int number) { return deck.project.materials.Get(number) != nullptr; }))
    return;
  MissingNumbers missing(deck, RecordKind::Material, "material");
  std::vector<int> without;
  for (const auto& mesh : deck.project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      if (CornerCount(mesh->elemType) == 0) break;  // read, but not analysed
      if (elem->GetMaterial(deck.project.materials) != nullptr) continue;
      if (deck.IsSpoilt(RecordKind::Element, number)) continue;
      if (elem->materialNumber == 0)
        without.push_back(number);
      else
        missing.Ask(elem->materialNumber, deck.PlaceOfRecord(RecordKind::Element, number).offset,
                    {}, number);
    }
  if (missing.Any() && deck.project.materials.Highest() == 0 &&
      !deck.AnySpoilt(RecordKind::Material)) {
    if (EndsInASection(deck)) return;  // before the materials
    return AddNoMaterials(deck, missing.First());
  }
  missing.Report();
  if (missing.Any()) deck.AddUnnumbered(RecordKind::Material);
  if (!without.empty()) AddWithoutMaterial(deck, without);
}

}  // namespace kestol
