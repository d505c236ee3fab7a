#include "python/Refusals.h"

namespace py = pybind11;

namespace kestol {

void RaiseError(std::string_view text, std::string_view file, long line, const char* code) {
  constexpr std::string_view kWord = "error: ";
  while (!text.empty() && text.front() == '\n') text.remove_prefix(1);
  while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
  if (text.substr(0, kWord.size()) == kWord) text.remove_prefix(kWord.size());

  // Texts of a deck may hold any bytes.
  const auto decoded = [](std::string_view bytes) {
    return py::reinterpret_steal<py::object>(
        PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "replace"));
  };
  const py::object none = py::none();
  const py::object type = py::module_::import("kestol.errors").attr("Error");
  const py::object raised = type(decoded(text), file.empty() ? none : decoded(file),
                                 line > 0 ? py::object(py::int_(line)) : none, code);
  PyErr_SetObject(type.ptr(), raised.ptr());
  throw py::error_already_set();
}

}  // namespace kestol
