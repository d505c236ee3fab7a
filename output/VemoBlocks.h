#pragma once

namespace kestol {

class OutputText;
class Project;

// Blocks of the post-processor's result file: a header line, component names where they exist, and
// data lines. Meshes are counted from 0.

/// Displacements at the stations, one block per strength, and the axes of every beam.
void WriteBeamResults(const Project& project, int m, OutputText& results);

/// Displacements, and resultants and axes at the integration points as the stress option asks.
void WriteTriangleResults(const Project& project, int m, OutputText& results);

/// Displacements and, with smoothing, stresses at the nodes.
void WriteTetrahedraResults(const Project& project, int m, OutputText& results);

/// Forces and moments of the supports, one line for every node.
void WriteVemoReactions(const Project& project, OutputText& results);

/// The block of nodal displacements that shells and solids share.
void WriteVemoDisplacements(const Project& project, OutputText& results);

}  // namespace kestol
