#pragma once

// The results, and every question to them.

#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "results/BeamResults.h"
#include "results/ElementLoads.h"
#include "results/Equilibrium.h"
#include "results/NodeResults.h"
#include "results/ShellResults.h"
#include "results/SolidResults.h"
#include "results/StressTensor.h"
#include "results/UnitNames.h"
