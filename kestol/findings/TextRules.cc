#include "kestol/findings/TextRules.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "input/Words.h"
#include "kestol/findings/Inspection.h"
#include "model/EulerAngles.h"

namespace kestol {

namespace {

constexpr double kTwoPi = 6.283185307179586;

}  // namespace

void KeepNodeLines(Inspection& deck, const RecordFields& record) {
  const RecordKind kind = record.record.kind;
  if (kind != RecordKind::Support && kind != RecordKind::NodalLoad) return;
  if (deck.IsRefusedAt(record.record.offset) || deck.IsSpoiltAt(record.record.offset)) return;
  Inspection::NodeLine line;
  line.node = record.record.number;
  line.offset = record.record.offset;
  std::size_t code = 0, value = 0;
  for (const Field& field : record.fields) {
    if (field.role == Role::Codes)
      for (const char digit : field.text)
        if (code < line.codes.size()) line.codes[code++] = digit - '0';
    if (field.role == Role::Real && value < line.values.size()) {
      line.places[value] = PlaceOf(field);
      line.values[value++] = RealOf(field.text);
    }
    if (field.role == Role::Value && IsEuler(field.key) && kind == RecordKind::Support) {
      line.hasEuler = true;
      line.euler[static_cast<std::size_t>(WhichEulerAngle(field.key))] = RealOf(field.text);
    }
  }
  (kind == RecordKind::Support ? deck.supports : deck.nodalLoads).push_back(line);
}

void FindSupportCodes(Inspection& deck, const RecordFields& record) {
  for (const Field& field : record.fields) {
    if (field.role != Role::Codes) continue;
    const std::size_t place = field.text.find_first_not_of("012");
    if (place == std::string_view::npos) continue;
    deck.Add({field.offset + place, 1}, std::string("support code ") + field.text[place] +
                                            ": only 0 (free), 1 (prescribed) and 2 (spring)");
    deck.Spoil(record);
  }
}

void FindSurplus(Inspection& deck, const RecordFields& record) {
  if (deck.IsRefusedAt(record.record.offset)) return;
  const RecordKind kind = record.record.kind;
  const auto isSurplus = [&](const Field& field) {
    if (field.role == Role::Surplus) return true;
    if (field.role != Role::Key || !HasPairs(kind)) return false;
    return IsNumber(field.text) || (IsEuler(field.text) && kind == RecordKind::NodalLoad);
  };
  const auto first = std::find_if(record.fields.begin(), record.fields.end(), isSurplus);
  if (first == record.fields.end()) return;
  if (kind == RecordKind::Node) deck.surplusNodes.insert(first->offset);
  deck.Add(PlaceOf(*first),
           Quoted(first->text) + " stands behind the last value: nothing reads it");
}

void FindDegrees(Inspection& deck, const RecordFields& record) {
  if (deck.IsSpoiltAt(record.record.offset)) return;
  for (const Field& field : record.fields) {
    if (field.role != Role::Value || !IsEuler(field.key)) continue;
    const double angle = RealOf(field.text);
    if (!(std::abs(angle) > kTwoPi * (1 + 1e-6))) continue;
    deck.Add(PlaceOf(field), std::string(field.key) + " is in radians, and " +
                                 std::string(field.text) +
                                 " is beyond 2 pi: " + std::string(field.text) + " degrees are " +
                                 NumberText(angle * kTwoPi / 360));
  }
}

void FindSurplusColumns(Inspection& deck) {
  constexpr std::size_t kFewest = 3;
  if (deck.surplusNodes.size() < kFewest) return;
  std::size_t nodes = 0;
  for (std::size_t i = 0; i < deck.map.RecordCount(); ++i)
    nodes += deck.map.At(i).kind == RecordKind::Node ? 1 : 0;
  if (deck.surplusNodes.size() < nodes) return;
  bool isFirst = true;
  std::erase_if(deck.findings, [&](const Finding& finding) {
    if (finding.code != "surplus" || !deck.surplusNodes.contains(finding.offset)) return false;
    return !std::exchange(isFirst, false);
  });
}

void FindDoubleSystems(Inspection& deck, const RecordFields& record) {
  // A line of one word ends the list.
  if (record.record.kind != RecordKind::UnitSystem || record.fields.size() < 2) return;
  const Field& name = record.fields.front();
  const auto [first, isNew] = deck.unitSystems.emplace(name.text, record.record.offset);
  if (isNew) return;
  Finding& finding =
      deck.AddAs(Severity::Warning, PlaceOf(name),
                 "unit system " + Quoted(name.text) + " is defined twice: first on line " +
                     LineOfMention() + ", which counts");
  finding.mentions.push_back(first->second);
}

}  // namespace kestol
