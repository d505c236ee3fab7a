#pragma once

class Project;

/// Main values of the shell resultants of mesh `m` (from 0), for the stress options 1 and 2: fills
/// project.mainDirections[m], and overwrites project.gaussVariables[m] (option 1) or fills
/// project.localValues[m] (option 2). Does nothing with option 0.
void MainValuesOfMesh(Project& project, int m);
