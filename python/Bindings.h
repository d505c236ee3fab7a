#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "kestol/LinearSystem.h"

namespace kestol {

// What the extension module consists of, a file each.

void BindModels(pybind11::module_& module);
void BindChecking(pybind11::module_& module);
void BindSolutions(pybind11::module_& module);
void BindCombinations(pybind11::module_& module);

/// Raises kestol.Error with the modes of a system that moves without resistance; returns for any
/// other.
void RaiseMechanism(LinearSystem& system);

/// What solves, by its name; ValueError for any other.
SolveOptions OptionsFor(const std::string& solver, bool renumber);

}  // namespace kestol
