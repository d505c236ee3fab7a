#pragma once

// The results, and every question to them.

#include "analysis/PointLayout.h"
#include "analysis/Results.h"
