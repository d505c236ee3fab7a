#pragma once

#include <map>
#include <string>
#include <vector>

#include "kestol/combine/Envelopes.h"
#include "programs/common/OutputFiles.h"
#include "results/UnitNames.h"

namespace kestol {

/// Tables of envelopes, one per kind of value that the model has: one row per extreme, with all
/// values of the place under the combination that gives it.
///
///     PREFIX_envelope_stations.csv
///     element,station,x [m],value,extreme,combination,N [kN],Vy [kN],...
///     12,10,1.5,Mz,min,ULS7,-41,88,...
class EnvelopeCsv {
public:
  /// Opens its files among those of the run. The project must outlive this.
  EnvelopeCsv(const std::string& prefix, const Project& project, OutputFiles& files);

  void Write(Envelopes& envelopes, const std::vector<Combination>& combinations);

private:
  void WriteHeader(ValueKind kind, OutputBuffer& output) const;
  void WritePlace(const PlaceEnvelope& envelope, const std::vector<Combination>& combinations);

  const Project& project_;
  UnitNames units_;
  std::map<int, double> lengths_;  ///< of beams, by element number
  std::map<ValueKind, OutputFile*> files_;
};

}  // namespace kestol
