#pragma once

// The files of the program itself.

#include "output/ResultFiles.h"
