#include "python/Refusals.h"

namespace py = pybind11;

namespace kestol {

py::object Decoded(std::string_view bytes) {
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "replace"));
}

void RaiseError(std::string_view text, std::string_view file, long line, const char* code) {
  text = PlainWords(text);
  const py::object none = py::none();
  const py::object type = py::module_::import("kestol.errors").attr("Error");
  const py::object raised = type(Decoded(text), file.empty() ? none : Decoded(file),
                                 line > 0 ? py::object(py::int_(line)) : none, code);
  PyErr_SetObject(type.ptr(), raised.ptr());
  throw py::error_already_set();
}

}  // namespace kestol
