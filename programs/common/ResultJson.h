#pragma once

#include <string>

#include "programs/common/JsonWriter.h"
#include "programs/common/ResultData.h"
#include "results/Equilibrium.h"

namespace kestol {

/// The document of schema kestol-result/1. Of a model that was not solved it holds the model alone,
/// with its supports, hinges and loads.
void WriteResultJson(OutputBuffer& output, const std::string& deck, const ResultData& data);

// Parts of it, as members of an object that was begun.

/// "nodes" to "equilibrium".
void WriteResultMembers(JsonWriter& json, const ResultData& data);

/// "units": the names of the deck, empty texts where it gives none.
void WriteUnitsMember(JsonWriter& json, const UnitNames& units);

/// "force" and "moment".
void WriteForceMembers(JsonWriter& json, const NodeForces& forces);

/// "reactions": what each supported node gives to the structure, and what the report prints there.
void WriteReactionsMember(JsonWriter& json, const Project& project, const Results& results);

/// "equilibrium".
void WriteEquilibriumMember(JsonWriter& json, const Equilibrium& balance);

}  // namespace kestol
