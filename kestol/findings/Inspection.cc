#include "kestol/findings/Inspection.h"

#include <algorithm>

#include "input/ProjectReader.h"
#include "main/ErrorChannel.h"
#include "output/NumberText.h"

namespace kestol {

Inspection::Inspection(Project& owner, const SourceMap& source) : project(owner), map(source) {
  for (const SourceMap::Refusal& refusal : map.Refusals())
    if (refusal.cause == SourceMap::Cause::Reader) refused_.insert(refusal.record.offset);
}

const Inspection::Index& Inspection::IndexOf(RecordKind kind) const {
  std::optional<Index>& index = index_[static_cast<std::size_t>(kind)];
  if (index) return *index;
  index.emplace();
  const auto add = [&](const SourceMap::Record& record) {
    if (record.kind == kind) index->emplace_back(record.number, record.offset);
  };
  if (kind < RecordKind::Node)
    for (const SourceMap::Record& record : map.Headings()) add(record);
  else
    for (std::size_t i = 0; i < map.RecordCount(); ++i) add(map.At(i));
  std::sort(index->begin(), index->end());
  return *index;
}

std::vector<std::uint64_t> Inspection::RecordsOf(RecordKind kind, int number) const {
  const Index& index = IndexOf(kind);
  std::vector<std::uint64_t> offsets;
  for (auto i = std::lower_bound(index.begin(), index.end(), std::pair{number, std::uint64_t{0}});
       i != index.end() && i->first == number; ++i)
    offsets.push_back(i->second);
  return offsets;
}

Place Inspection::PlaceOfRecord(RecordKind kind, int number) const {
  const std::vector<std::uint64_t> offsets = RecordsOf(kind, number);
  return offsets.empty() ? Place{} : Place{offsets.front(), 0};
}

Place Inspection::PlaceOfKeyword(std::string_view name) const {
  const std::vector<std::string_view> names = KeywordNames();
  const auto row = std::find(names.begin(), names.end(), name) - names.begin();
  return PlaceOfRecord(RecordKind::Keyword, static_cast<int>(row));
}

Finding& Inspection::AddCode(std::string_view kind, Severity how, const Place& place,
                             std::string_view text) {
  Finding finding;
  finding.code = kind;
  finding.severity = how;
  finding.text = PlainWords(text);
  finding.offset = place.offset;
  finding.length = place.length;
  if (disabled.contains(kind)) return disabled_ = std::move(finding);
  anyError_ = anyError_ || how == Severity::Error;
  findings.push_back(std::move(finding));
  return findings.back();
}

Finding& Inspection::AddAs(Severity how, const Place& place, std::string_view text) {
  return AddCode(code, how, place, text);
}

Finding& Inspection::Add(const Place& place, std::string_view text) {
  return AddCode(code, severity, place, text);
}

void Inspection::Spoil(RecordKind kind, int number, std::uint64_t offset) {
  spoilt_.insert({kind, number});
  if (offset != Finding::kNowhere) spoiltRecords_.insert(offset);
  anySpoilt_[static_cast<std::size_t>(kind)] = true;
}

bool Inspection::IsSpoilt(RecordKind kind, int number) const {
  return spoilt_.contains({kind, number});
}

bool Inspection::AnyLostElement() const {
  if (Unnumbered(RecordKind::Element) > 0) return true;
  // A material of its own that is refused leaves an element its nodes.
  const auto isLost = [](const SourceMap::Refusal& refusal) {
    return refusal.record.kind == RecordKind::Element &&
           refusal.message.find("aterial") == std::string::npos &&
           refusal.message.find("Unit name") == std::string::npos;
  };
  return std::any_of(map.Refusals().begin(), map.Refusals().end(), isLost);
}

Place PlaceOfMeshWord(const Inspection& deck, std::size_t index, MeshWordNumber which) {
  const std::vector<std::uint64_t> words = deck.RecordsOf(RecordKind::MeshWord, which);
  return index < words.size() ? Place{words[index], kMeshWords[which].size()} : Place{};
}

std::string NumberText(double value) {
  char text[kNumberLength];
  return {text, WriteDefault(text, value)};
}

std::string ListText(const std::vector<int>& numbers, std::size_t most) {
  std::string text;
  const std::size_t shown = numbers.size() <= most ? numbers.size() : most;
  for (std::size_t i = 0; i < shown; ++i) {
    const bool last = i + 1 == numbers.size();
    if (i > 0) text += last ? " and " : ", ";
    text += std::to_string(numbers[i]);
  }
  if (shown < numbers.size()) text += " and " + std::to_string(numbers.size() - shown) + " more";
  return text;
}

std::string Quoted(std::string_view word) {
  constexpr std::size_t kLongest = 40;
  std::string text(word.substr(0, kLongest));
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == kLineNumber || c == kLines; }, '?');
  return '"' + text + (word.size() > kLongest ? "...\"" : "\"");
}

}  // namespace kestol
