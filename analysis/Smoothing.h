#pragma once

class Project;

/// Averages the values at integration points over the elements around each node: shells in place,
/// per orientation; solids into project.nodalStresses. Beams are left alone.
void SmoothGaussVariables(Project& project);
