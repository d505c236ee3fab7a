#pragma once

#include <pybind11/numpy.h>

#include <string>

#include "python/Solution.h"

namespace kestol {

/// The table of that name as an array that cannot be written, a view of the memory of the solution,
/// which `owner` (the object of the solution in Python) keeps alive. Raises KeyError for another
/// name.
pybind11::array ArrayOf(const Solution& solution, const std::string& name,
                        const pybind11::object& owner);

/// A copy as an array that cannot be written.
template <class T>
pybind11::array FrozenCopy(const std::vector<T>& values) {
  pybind11::array_t<T> array(static_cast<pybind11::ssize_t>(values.size()), values.data());
  array.attr("setflags")(pybind11::arg("write") = false);
  return array;
}

}  // namespace kestol
