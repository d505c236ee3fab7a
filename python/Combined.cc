#include "python/Combined.h"

#include <utility>

#include "kestol/combine/CaseReader.h"

namespace kestol {

namespace {

std::vector<CaseLoads> ReadCases(Project& project, const std::vector<CaseSource>& sources) {
  std::vector<CaseLoads> cases;
  cases.reserve(sources.size());
  CaseLoads ofModel = TakeLoads(project);
  for (const CaseSource& source : sources)
    cases.push_back(source.path.empty() ? std::exchange(ofModel, {})
                                        : ReadCase(project, source.path));
  return cases;
}

void Append(const Extreme& extreme, std::size_t value, std::size_t count,
            std::vector<double>& values, std::vector<int>& by, std::vector<double>& with) {
  values.push_back(extreme.values[value]);
  by.push_back(extreme.combination);
  with.insert(with.end(), extreme.values.begin(),
              extreme.values.begin() + static_cast<std::ptrdiff_t>(count));
}

}  // namespace

Combined::Combined(Project model, const std::vector<CaseSource>& cases,
                   const std::vector<std::string>& names,
                   const std::vector<std::vector<double>>& factors, const SolveOptions& options)
    : project_(std::make_shared<Project>(std::move(model))) {
  std::vector<std::string> caseNames;
  caseNames.reserve(cases.size());
  for (const CaseSource& source : cases) caseNames.push_back(source.name);
  for (std::size_t k = 0; k < names.size(); ++k)
    combinations_.push_back(NamedCombination(names[k], factors[k], caseNames));
  sums_ = std::make_unique<Superposition>(*project_, ReadCases(*project_, cases), options);
}

std::shared_ptr<Solution> Combined::Solve(const std::vector<double>& factors) {
  Results results = sums_->Combine(factors);
  // The solution's tables are made now; files that are written later need its loads once more.
  const auto carry = [self = shared_from_this(), factors] { self->sums_->Combine(factors); };
  return std::make_shared<Solution>(project_, std::move(results), 0, carry);
}

KindEnvelope Combined::EnvelopeOf(ValueKind kind) {
  const ExtremeFinder finder(combinations_);
  Envelopes envelopes(*sums_, finder);
  KindEnvelope found;
  found.valueCount = static_cast<std::size_t>(NamesOf(kind).Count());
  while (envelopes.Next()) {
    const PlaceEnvelope& place = envelopes.Current();
    if (place.place.kind != kind) continue;
    found.numbers.push_back(place.place.number);
    found.points.push_back(place.place.point);
    for (std::size_t v = 0; v < found.valueCount; ++v) {
      Append(place.least[v], v, found.valueCount, found.least, found.leastBy, found.leastWith);
      Append(place.largest[v], v, found.valueCount, found.largest, found.largestBy,
             found.largestWith);
    }
  }
  return found;
}

}  // namespace kestol
