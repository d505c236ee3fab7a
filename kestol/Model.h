#pragma once

// The model: what a deck says.

#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Constraint.h"
#include "model/Elem.h"
#include "model/Material.h"
#include "model/Mesh.h"
#include "model/Node.h"
#include "model/PreassureLT.h"
