#include "programs/combine/EnvelopeText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>

#include "programs/combine/TextTable.h"
#include "programs/combine/ValueUnits.h"

namespace kestol {

namespace {

constexpr std::size_t kValues = kMostValues;
constexpr double kRounding = 1e-9;  ///< values that are that much smaller than others are none

std::string NumberText(double value) {
  constexpr int kDigits = 6;
  char text[40];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits).ptr;
  return {text, end};
}

std::string SupportText(const ValuePlace& place) {
  if (place.number > 0) return "at node " + std::to_string(place.number);
  return "between nodes " + std::to_string(place.between[0]) + " and " +
         std::to_string(place.between[1]);
}

/// Whether each beam, or each support, has extremes of its own in the text.
bool IsOfParts(ValueKind kind) {
  return kind == ValueKind::StationForces || kind == ValueKind::Reaction ||
         kind == ValueKind::ReactionInSupportAxes;
}

/// Where a place is, for its heading.
std::string PlaceText(const ValuePlace& place, int stations) {
  const std::string number = std::to_string(place.number);
  const std::string point = std::to_string(place.point);
  switch (place.kind) {
    case ValueKind::NodeDisplacement:
      return "node " + number;
    case ValueKind::StationForces:
    case ValueKind::StationDisplacement:
      return "beam " + number + ", station " + point + '/' + std::to_string(stations - 1);
    case ValueKind::ShellForces:
    case ValueKind::ShellTop:
    case ValueKind::ShellBottom:
      return "shell " + number + ", point " + std::to_string(place.point + 1);
    case ValueKind::SolidStress:
      return "solid " + number + ", point " + std::to_string(place.point + 1);
    case ValueKind::NodalStress:
      return "stress at node " + number;
    case ValueKind::Reaction:
      return "reaction " + SupportText(place);
    case ValueKind::ReactionInSupportAxes:
      break;
  }
  return "reaction " + SupportText(place) + " in the axes of the support";
}

/// The extremes among several places of one kind: a beam, or the whole model.
class Scope {
public:
  void Add(const PlaceEnvelope& envelope) {
    const auto count = static_cast<std::size_t>(NamesOf(envelope.place.kind).Count());
    for (std::size_t i = 0; i < count; ++i) {
      const double least = envelope.least[i].values[i], largest = envelope.largest[i].values[i];
      if (empty_ || least < leastAt_[i].least[i].values[i]) leastAt_[i] = envelope;
      if (empty_ || largest > largestAt_[i].largest[i].values[i]) largestAt_[i] = envelope;
      size_[i] = std::max({size_[i], std::abs(least), std::abs(largest)});
    }
    empty_ = false;
  }

  /// The value, or 0 where it is the rounding of larger ones.
  double Sound(std::size_t i, double value) const {
    return std::abs(value) > kRounding * size_[i] ? value : 0.0;
  }

  /// Calls write(place, values to show, values that are there at all) for each place that holds an
  /// extreme.
  template <class Write>
  void ForEachHolder(Write write) const {
    if (empty_) return;
    const std::vector<std::size_t> there = ValuesThere();
    std::map<std::pair<int, int>, std::pair<const PlaceEnvelope*, std::vector<std::size_t>>>
        holders;
    const auto add = [&](const PlaceEnvelope& envelope, std::size_t i) {
      auto& [place, values] = holders[{envelope.place.number, envelope.place.point}];
      place = &envelope;
      if (values.empty() || values.back() != i) values.push_back(i);
    };
    for (const std::size_t i : there) {
      add(leastAt_[i], i);
      add(largestAt_[i], i);
    }
    for (const auto& [key, holder] : holders) write(*holder.first, holder.second, there);
  }

private:
  /// Values that are more than rounding beside the largest one.
  std::vector<std::size_t> ValuesThere() const {
    const double largest = *std::max_element(size_.begin(), size_.end());
    std::vector<std::size_t> there;
    for (std::size_t i = 0; i < kValues; ++i)
      if (size_[i] > kRounding * largest) there.push_back(i);
    return there;
  }

  bool empty_ = true;
  std::array<PlaceEnvelope, kValues> leastAt_, largestAt_;
  std::array<double, kValues> size_{};
};

class TextWriter {
public:
  TextWriter(OutputBuffer& output, const Project& project,
             const std::vector<Combination>& combinations)
      : output_(output),
        units_(UnitNamesOf(project.units)),
        stations_(project.NumOfDivisions + 1),
        combinations_(combinations) {}

  void Write(Envelopes& envelopes) {
    std::map<ValueKind, Scope> ofModel;
    Scope part;
    ValuePlace last{ValueKind::NodeDisplacement, 0};
    while (envelopes.Next()) {
      const PlaceEnvelope& envelope = envelopes.Current();
      const ValueKind kind = envelope.place.kind;
      if (!IsOfParts(kind)) {
        ofModel[kind].Add(envelope);
        continue;
      }
      const bool same = last.kind == kind && last.number == envelope.place.number &&
                        last.between == envelope.place.between;
      if (!same) WriteScope(std::exchange(part, Scope()));
      part.Add(envelope);
      last = envelope.place;
    }
    WriteScope(part);
    for (const auto& [kind, scope] : ofModel) WriteScope(scope);
  }

private:
  using Values = std::vector<std::size_t>;

  void WriteScope(const Scope& scope) {
    scope.ForEachHolder([&](const PlaceEnvelope& envelope, const Values& shown,
                            const Values& there) { WritePlace(scope, envelope, shown, there); });
  }

  void WritePlace(const Scope& scope, const PlaceEnvelope& envelope, const Values& shown,
                  const Values& there) {
    const ValueKind kind = envelope.place.kind;
    TextTable table;
    table.Row().Left("ENVELOPE " + PlaceText(envelope.place, stations_));
    table.Right("min").Left("by").Right("max").Left("by");
    for (const std::size_t i : shown) {
      const Extreme &least = envelope.least[i], &largest = envelope.largest[i];
      table.Row().Left(Heading(kind, i, units_));
      table.Right(NumberText(scope.Sound(i, least.values[i]))).Left(NameOf(least));
      table.Right(NumberText(scope.Sound(i, largest.values[i]))).Left(NameOf(largest));
      if (there.size() < 2) continue;
      table.Row().Left("  with " + List(there, i, [&](std::size_t j) {
                         return std::string(NamesOf(kind).names[j]);
                       }));
      table.Right(Others(scope, least, there, i)).Left("").Right(Others(scope, largest, there, i));
    }
    if (written_) output_ << '\n';
    written_ = true;
    table.Write(output_);
  }

  const std::string& NameOf(const Extreme& extreme) const {
    return combinations_[static_cast<std::size_t>(extreme.combination)].name;
  }

  static std::string Others(const Scope& scope, const Extreme& extreme, const Values& there,
                            std::size_t except) {
    return List(there, except,
                [&](std::size_t j) { return NumberText(scope.Sound(j, extreme.values[j])); });
  }

  template <class Text>
  static std::string List(const Values& values, std::size_t except, Text text) {
    std::string list;
    for (const std::size_t j : values)
      if (j != except) list += (list.empty() ? "" : ", ") + text(j);
    return list;
  }

  OutputBuffer& output_;
  UnitNames units_;
  int stations_;
  const std::vector<Combination>& combinations_;
  bool written_ = false;
};

}  // namespace

void WriteEnvelopeText(OutputBuffer& output, const Project& project, Envelopes& envelopes,
                       const std::vector<Combination>& combinations) {
  TextWriter(output, project, combinations).Write(envelopes);
}

}  // namespace kestol
