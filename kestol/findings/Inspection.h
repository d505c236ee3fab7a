#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "input/Project.h"
#include "input/SourceMap.h"
#include "kestol/findings/Finding.h"
#include "kestol/findings/RecordFields.h"

namespace kestol {

struct SolvedModel;

/// Where a finding stands: a word of the deck.
struct Place {
  std::uint64_t offset = Finding::kNowhere;
  std::size_t length = 0;
};

inline Place PlaceOf(const Field& field) {
  return {field.offset, field.text.size()};
}

/// The deck under inspection: what was read of it, and what was found so far.
///
/// A record with an error is *spoilt*: what is noticed later about its node, element, material
/// follows from that error and is not said again.
class Inspection {
public:
  Inspection(Project& project, const SourceMap& map);

  Project& project;
  const SourceMap& map;

  std::set<std::string, std::less<>> disabled;  ///< codes that are left out
  SolvedModel* solution = nullptr;              ///< once there is one; not owned

  /// The rule that runs from now on.
  void Begin(std::string_view ruleCode, Severity usual) {
    code = ruleCode;
    severity = usual;
  }

  /// Where the record of a node, element, ... begins; the first one of that number.
  Place PlaceOfRecord(RecordKind kind, int number) const;
  /// All records of the kind with that number, in order.
  std::vector<std::uint64_t> RecordsOf(RecordKind kind, int number) const;
  /// The first keyword of that name; no place without one.
  Place PlaceOfKeyword(std::string_view name) const;
  bool HasKeyword(std::string_view name) const {
    return PlaceOfKeyword(name).offset != Finding::kNowhere;
  }

  /// Adds a finding of the kind of the rule that is running.
  Finding& Add(const Place& place, std::string_view text);
  Finding& AddAs(Severity severity, const Place& place, std::string_view text);
  /// Adds one of another kind: what a refusal of the reader turns out to be.
  Finding& AddCode(std::string_view code, Severity severity, const Place& place,
                   std::string_view text);

  void Spoil(RecordKind kind, int number, std::uint64_t offset);
  void Spoil(const RecordFields& record) {
    Spoil(record.record.kind, record.record.number, record.record.offset);
  }
  bool IsSpoilt(RecordKind kind, int number) const;
  bool IsSpoiltAt(std::uint64_t offset) const { return spoiltRecords_.contains(offset); }
  /// Whether any record of the kind is spoilt, so that it is not known what is there.
  bool AnySpoilt(RecordKind kind) const { return anySpoilt_[static_cast<std::size_t>(kind)]; }
  /// Records of the kind whose number is not known.
  int Unnumbered(RecordKind kind) const { return unnumbered_[static_cast<std::size_t>(kind)]; }
  void AddUnnumbered(RecordKind kind) {
    ++unnumbered_[static_cast<std::size_t>(kind)];
    anySpoilt_[static_cast<std::size_t>(kind)] = true;
  }
  /// Whether an element is lost, or some of its nodes, so that it is not known what it joins.
  bool AnyLostElement() const;
  bool AnyError() const { return anyError_; }
  /// Whether the reader gave up the record at that offset.
  bool IsRefusedAt(std::uint64_t offset) const { return refused_.contains(offset); }

  std::vector<Finding> findings;
  std::string_view code;  ///< of the rule that is running
  Severity severity = Severity::Error;

  /// Pairs of nodes that another finding says are apart by mistake.
  std::vector<std::pair<const Node*, const Node*>> joined;

  /// Values of the materials as the deck says them: by number, and of elements by element number.
  struct WrittenValue {
    std::string prefix;  ///< MaterialKeyPrefix
    std::string key;
    double value;
    Place place;
  };
  std::map<std::pair<RecordKind, int>, std::vector<WrittenValue>> written;

  /// Lines of the support and nodal load sections as written, in order; those that were read.
  struct NodeLine {
    int node;
    std::uint64_t offset;
    std::array<int, 6> codes{};
    std::array<double, 6> values{};
    std::array<Place, 6> places{};  ///< of the values
    bool hasEuler = false;
    std::array<double, 3> euler{};
  };
  std::vector<NodeLine> supports, nodalLoads;

  /// A section of no known name was left out: it may have been any.
  bool hasLostSection = false;

  /// Where the surplus of a node begins.
  std::set<std::uint64_t> surplusNodes;
  /// The unit systems and their records.
  std::map<std::string, std::uint64_t, std::less<>> unitSystems;

private:
  static constexpr std::size_t kKinds = 16;
  using Index = std::vector<std::pair<int, std::uint64_t>>;
  const Index& IndexOf(RecordKind kind) const;

  std::set<std::pair<RecordKind, int>> spoilt_;
  std::set<std::uint64_t> spoiltRecords_, refused_;
  std::array<bool, kKinds> anySpoilt_{};
  std::array<int, kKinds> unnumbered_{};
  bool anyError_ = false;
  Finding disabled_;  // takes what is left out
  mutable std::array<std::optional<Index>, kKinds> index_;
};

/// The word of the `index`-th mesh block with that number.
Place PlaceOfMeshWord(const Inspection& deck, std::size_t index, MeshWordNumber which);

/// Findings of one kind beyond that many are one: a whole interface that was not joined is one
/// mistake.
constexpr std::size_t kMostSingle = 8;

/// A number as the reports write it.
std::string NumberText(double value);
/// "1, 2, 3" or, with more than `most`, "1, 2, 3 and 9 more".
std::string ListText(const std::vector<int>& numbers, std::size_t most = 6);
/// `word` between quotation marks, cut when it is long.
std::string Quoted(std::string_view word);

}  // namespace kestol
