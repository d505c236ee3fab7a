#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kestol/findings/Inspection.h"
#include "kestol/findings/ReaderRules.h"

namespace kestol {

using Cause = SourceMap::Cause;
using Refusal = SourceMap::Refusal;

namespace {

void AddDuplicate(Inspection& deck, RecordKind kind, std::string_view what, int number,
                  std::uint64_t first, std::uint64_t second) {
  Finding& finding = deck.Add({second, 0}, std::string(what) + " " + std::to_string(number) +
                                               " is given twice: first on line " + LineOfMention());
  finding.mentions.push_back(first);
  deck.AddUnnumbered(kind);
  deck.Spoil(kind, number, second);
}

/// The node lists of the deck, one after the other.
template <class Look>
void ForEachNodeList(const SourceMap& map, Look look) {
  std::vector<SourceMap::Record> list;
  for (std::size_t i = 0; i <= map.RecordCount(); ++i) {
    const bool isNode = i < map.RecordCount() && map.At(i).kind == RecordKind::Node;
    if (isNode) {
      list.push_back(map.At(i));
    } else if (!list.empty() && (i == map.RecordCount() || map.At(i).kind == RecordKind::MeshWord ||
                                 map.At(i).kind == RecordKind::Keyword)) {
      look(list);
      list.clear();
    }
  }
}

/// Whether the reader missed node numbers: only then the lists are looked at.
bool ListsAreIncomplete(const Inspection& deck) {
  const std::vector<Refusal>& all = deck.map.Refusals();
  return std::any_of(all.begin(), all.end(), [](const Refusal& refusal) {
    return refusal.message.starts_with("error: list of nodes does not contain all");
  });
}

void ByNumber(std::vector<SourceMap::Record>& list) {
  std::stable_sort(list.begin(), list.end(),
                   [](const auto& a, const auto& b) { return a.number < b.number; });
}

/// A hinge that is listed again changes nothing.
void FindDoubleHinges(Inspection& deck) {
  std::map<int, std::uint64_t> first;
  for (std::size_t i = 0; i < deck.map.RecordCount(); ++i) {
    const SourceMap::Record record = deck.map.At(i);
    if (record.kind != RecordKind::Hinge || deck.IsRefusedAt(record.offset)) continue;
    const auto [found, isNew] = first.emplace(record.number, record.offset);
    if (isNew) continue;
    deck.AddAs(Severity::Warning, {record.offset, 0},
               "node " + std::to_string(record.number) + " is a hinge on line " + LineOfMention() +
                   " already")
        .mentions.push_back(found->second);
  }
}

/// Numbers of elements that two meshes use.
void FindDoubleElements(Inspection& deck) {
  const auto& meshes = deck.project.meshes;
  for (std::size_t m = 1; m < meshes.size(); ++m)
    for (const auto [number, elem] : meshes[m]->elems)
      for (std::size_t earlier = 0; earlier < m; ++earlier) {
        if (meshes[earlier]->elems.Get(number) == nullptr) continue;
        const std::vector<std::uint64_t> records = deck.RecordsOf(RecordKind::Element, number);
        if (records.size() < 2 || deck.IsSpoiltAt(records[1])) continue;
        AddDuplicate(deck, RecordKind::Element, "element", number, records[0], records[1]);
        break;
      }
}

}  // namespace

void FindDuplicateNumbers(Inspection& deck) {
  for (const Refusal& refusal : deck.map.Refusals()) {
    if (refusal.cause != Cause::Reader || !refusal.message.starts_with("Repeated index")) continue;
    const auto& [kind, number, offset] = refusal.record;
    if (deck.IsSpoiltAt(offset)) continue;
    AddDuplicate(deck, kind, kind == RecordKind::Material ? "material" : "element", number,
                 deck.PlaceOfRecord(kind, number).offset, offset);
  }
  if (ListsAreIncomplete(deck))
    ForEachNodeList(deck.map, [&](std::vector<SourceMap::Record>& list) {
      ByNumber(list);
      for (std::size_t i = 1; i < list.size(); ++i)
        if (list[i].number == list[i - 1].number && !deck.IsSpoiltAt(list[i].offset) &&
            !deck.IsSpoiltAt(list[i - 1].offset))
          AddDuplicate(deck, RecordKind::Node, "node", list[i].number, list[i - 1].offset,
                       list[i].offset);
    });
  FindDoubleHinges(deck);
  FindDoubleElements(deck);
}

// --- gaps -------------------------------------------------------------------------------------

namespace {

/// Missing numbers `first` to `last`, and the record of the number behind them.
struct Gap {
  int first, last;
  std::uint64_t offset;
};

std::vector<Gap> GapsOf(std::vector<SourceMap::Record>& list) {
  ByNumber(list);
  std::vector<Gap> gaps;
  int expected = 1;
  for (const SourceMap::Record& record : list) {
    if (record.number > expected) gaps.push_back({expected, record.number - 1, record.offset});
    expected = std::max(expected, record.number + 1);
  }
  return gaps;
}

std::string RangeText(const Gap& gap) {
  std::string first = std::to_string(gap.first);
  if (gap.first == gap.last) return first;
  return first + (gap.last == gap.first + 1 ? " and " : " to ") + std::to_string(gap.last);
}

void AddGaps(Inspection& deck, const std::vector<Gap>& gaps) {
  constexpr std::size_t kSingle = 5;  // more than that is a numbering of another kind: one finding
  constexpr std::size_t kShown = 4;
  for (const Gap& gap : gaps) {
    constexpr int kMost = 100000;
    // The number behind a gap may be meant to fill it.
    for (int n = gap.first; n <= gap.last + 1 && n - gap.first < kMost; ++n)
      deck.Spoil(RecordKind::Node, n, Finding::kNowhere);
  }
  if (gaps.size() <= kSingle) {
    for (const Gap& gap : gaps)
      deck.Add({gap.offset, 0}, "node numbers must be 1, 2, 3 ...: " + RangeText(gap) +
                                    (gap.first == gap.last ? " is missing" : " are missing"));
    return;
  }
  std::string text = "node numbers must be 1, 2, 3 ...: ";
  for (std::size_t i = 0; i < kShown; ++i) text += (i > 0 ? ", " : "") + RangeText(gaps[i]);
  deck.Add({gaps.front().offset, 0}, text + " and more are missing");
}

/// Takes out of a list, in the order of the deck, what stands where another number should and is
/// beyond all others: 1, 2, 400, 4. These are findings of their own.
void TakeMisnumbered(Inspection& deck, std::vector<SourceMap::Record>& list) {
  const auto count = static_cast<int>(list.size());
  for (std::size_t i = 0; i + 1 < list.size(); ++i) {
    const int expected = i == 0 ? 1 : list[i - 1].number + 1;
    const int number = list[i].number;
    if (number <= count || number == expected || list[i + 1].number != expected + 1) continue;
    deck.Add({list[i].offset, 0}, "node numbers must be 1, 2, 3 ...: " + std::to_string(expected) +
                                      " is missing, " + std::to_string(number) +
                                      " stands in its place");
    deck.Spoil(RecordKind::Node, number, list[i].offset);
    deck.Spoil(RecordKind::Node, expected, Finding::kNowhere);
    list[i].number = expected;
  }
}

/// Nodes beyond a gap are those that were meant to be before it.
void SpoilBeyond(Inspection& deck, const std::vector<SourceMap::Record>& list) {
  const auto count = static_cast<int>(list.size());
  for (const SourceMap::Record& record : list)
    if (record.number > count) deck.Spoil(RecordKind::Node, record.number, Finding::kNowhere);
}

}  // namespace

void FindNumberGaps(Inspection& deck) {
  if (!ListsAreIncomplete(deck)) return;
  const std::size_t before = deck.findings.size();
  ForEachNodeList(deck.map, [&](std::vector<SourceMap::Record>& list) {
    TakeMisnumbered(deck, list);
    const std::vector<Gap> gaps = GapsOf(list);
    std::int64_t missing = 0;
    for (const Gap& gap : gaps) missing += gap.last - gap.first + 1;
    if (missing == 0) return;
    SpoilBeyond(deck, list);
    if (missing > deck.Unnumbered(RecordKind::Node)) return AddGaps(deck, gaps);
    for (const Gap& gap : gaps)
      for (int n = gap.first; n <= gap.last; ++n)
        deck.Spoil(RecordKind::Node, n, Finding::kNowhere);
  });
  if (deck.findings.size() > before || deck.AnySpoilt(RecordKind::Node)) return;
  // A later mesh that lists some of the nodes of an earlier one only.
  for (const Refusal& refusal : deck.map.Refusals())
    if (refusal.message.starts_with("error: list of nodes does not contain all"))
      deck.Add(At(refusal), WithoutLineEnd(refusal.message));
}

}  // namespace kestol
