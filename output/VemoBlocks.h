#pragma once

namespace kestol {

class OutputText;
class Project;
struct Results;

// Blocks of the post-processor's result file: a header line, component names where they exist, and
// data lines. Meshes are counted from 0.

/// Displacements at the stations, one block per strength, and the axes of every beam.
void WriteBeamResults(const Project& project, const Results& results, int m, OutputText& file);

/// Displacements, and resultants and axes at the integration points as the stress option asks.
void WriteTriangleResults(const Project& project, const Results& results, int m, OutputText& file);

/// Displacements and, with smoothing, stresses at the nodes.
void WriteTetrahedraResults(const Project& project, const Results& results, int m,
                            OutputText& file);

/// Forces and moments of the supports, one line for every node.
void WriteVemoReactions(const Project& project, const Results& results, OutputText& file);

/// The block of nodal displacements that shells and solids share.
void WriteVemoDisplacements(const Project& project, const Results& results, OutputText& file);

}  // namespace kestol
