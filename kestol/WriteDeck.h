#pragma once

#include <iosfwd>

namespace kestol {

class Project;

/// Writes the model as a deck: reading it gives the same model, to the last bit of every number.
///
/// The deck is written in the units of the results, in which the model is kept: all units keywords
/// name that system, whatever systems the model was read in; the table of systems stays whole. The
/// title is no part of the model, nor are comments. An element on a node that does not exist stays
/// one. The model must not have been prepared for a solution.
void WriteDeck(const Project& project, std::ostream& stream);

}  // namespace kestol
