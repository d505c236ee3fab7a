#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "kestol/combine/Envelopes.h"
#include "python/Solution.h"

namespace kestol {

/// Where the loads of a case come from: the path of a file, or the model.
struct CaseSource {
  std::string name;
  std::string path;  ///< empty: the model's own loads
};

/// The extremes of all values of one kind, place after place.
struct KindEnvelope {
  std::size_t valueCount = 0;           ///< of a place
  std::vector<int> numbers, points;     ///< by place
  std::vector<double> least, largest;   ///< by place and value
  std::vector<int> leastBy, largestBy;  ///< the combination, by place and value
  /// All values of the place under that combination: by place, value and value.
  std::vector<double> leastWith, largestWith;
};

/// A model under load cases and combinations of them.
class Combined : public std::enable_shared_from_this<Combined> {
public:
  /// `factors` has one row per combination and one entry per case.
  Combined(Project model, const std::vector<CaseSource>& cases,
           const std::vector<std::string>& names, const std::vector<std::vector<double>>& factors,
           const SolveOptions& options);

  /// Whether the loads on the model can be added up; SolveCases refuses them otherwise.
  bool AddsUp() { return sums_->Obstacles().empty(); }

  LinearSystem& System() { return sums_->System(); }

  /// Solves every case.
  void SolveCases() { sums_->Solve(); }

  /// The results of the sum of factors (one per case) times the cases.
  std::shared_ptr<Solution> Solve(const std::vector<double>& factors);

  /// At least one combination.
  KindEnvelope EnvelopeOf(ValueKind kind);

private:
  std::shared_ptr<Project> project_;
  std::unique_ptr<Superposition> sums_;
  std::vector<Combination> combinations_;
};

}  // namespace kestol
