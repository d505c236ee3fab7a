#pragma once

#include <pybind11/pybind11.h>

#include <new>
#include <stdexcept>
#include <string_view>

#include "kestol/Mechanisms.h"
#include "main/ErrorChannel.h"
#include "programs/common/RunProgram.h"

namespace kestol {

/// Text for Python. Texts of a deck may hold any bytes.
pybind11::object Decoded(std::string_view bytes);

/// Raises kestol.Error with the text, without the word "error: " at its front and the line end.
/// Where `file` is empty and `line` is 0 they are None.
[[noreturn]] void RaiseError(std::string_view text, std::string_view file, long line,
                             const char* code);

/// Runs `action` and turns what it refuses into Python's exceptions: kestol.Error with `code`, or
/// "syntax" for what the reader of a deck refuses, "mechanism" for a model that moves without
/// resistance; "file" for a file that cannot be read or written; MemoryError.
template <class Action>
auto Guard(const char* code, Action action) {
  try {
    return action();
  } catch (const FatalError& refusal) {
    if (IsOfReader(refusal)) code = "syntax";
    if (IsOfMechanism(refusal)) code = "mechanism";
    RaiseError(refusal.what(), refusal.File(), refusal.Line(), code);
  } catch (const ProgramError& failure) {
    RaiseError(failure.what(), {}, 0, "file");
  } catch (const std::length_error&) {
    throw std::bad_alloc();  // a size beyond every memory
  }
}

}  // namespace kestol
