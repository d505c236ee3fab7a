#pragma once

#include <deque>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>

namespace kestol {

/// CPU time of nested phases, as a tree of named timers. The phase that opens the table is its
/// root; when it stops, the table is written to the output name plus ".tim":
///
///     Time Table: ............... cputime[s] (percent[%]) Uses
///
///       run........................... 4.00000[s] (100.0[%]) 1
///        . assembly................... 1.00000[s] (25.0[%]) 3
///        . Other operations........... 3.00000[s] (75.0[%])
///
/// A phase entered again under the same parent adds to its line. Phases are told apart by the
/// address of their name, which must outlive the table; equal texts at two addresses are two
/// phases. A stage is timed by
///
///     const TimeTable::Handle handle = ProgramTimes().Start("assembly");
///     ...
///     ProgramTimes().Stop(handle);
///
/// No stage of the run does so: an ordinary run writes no table.
class TimeTable {
public:
  /// `milliseconds` is the clock; the CPU time of the process unless given.
  explicit TimeTable(double (*milliseconds)() = CpuMilliseconds) : milliseconds_(milliseconds) {}

  /// CPU time of the process in milliseconds.
  static double CpuMilliseconds();

  struct Node {
    const char* name;
    Node* parent;                ///< null for the root
    Node* next = nullptr;        ///< the sibling that was started first after this one
    Node* firstChild = nullptr;  ///< in the order of their first start
    Node* lastChild = nullptr;
    double elapsed = 0.0;       ///< milliseconds
    double childSeconds = 0.0;  ///< sum over the children; filled while printing
    int uses = 1;               ///< how often it was started
  };

  /// What Stop needs to know of a Start.
  struct Handle {
    Node* saved;   ///< current before the start; null for the root
    double start;  ///< milliseconds
    int table;     ///< which table, counted from 1
  };

  /// The report is named `text` plus ".tim"; "kestol" unless set.
  void SetOutputName(const std::string& text) { outputName_ = text; }

  /// Adds to the next report a rate, `value` per minute, headed by `name`.
  void SetCount(const std::string& name, int value) { count_ = {name, value}; }

  /// Begins a phase inside the current one. Without an open table opens one, and its report; ends
  /// the run with `Cannot open output file "<name>"` when that is refused.
  Handle Start(const char* name);

  /// Ends the phase that is current and makes the one before the handle's start current again; the
  /// root's handle writes the table and closes it. Does nothing when the handle's table is closed.
  void Stop(const Handle& handle);

  /// For a run that ends by an error: lists the open phases, innermost first, on `stream`, and puts
  /// a notice in the place of the table. Does nothing without an open table.
  void ErrorNotice(std::ostream& stream);

private:
  struct Count {
    std::string name;
    int value;
  };

  void Open(const char* name);
  void Close();
  Node* ChildNamed(const char* name);
  void WriteHeader();
  void WriteNode(Node& node, int depth);
  void WriteLine(const char* name, int depth, double seconds, double percent, int uses);

  double (*milliseconds_)();
  std::string outputName_ = "kestol";
  std::optional<Count> count_;
  std::deque<Node> nodes_;   ///< owns the tree; the root first
  Node* current_ = nullptr;  ///< null without an open table
  int table_ = 0;            ///< tables opened so far
  std::ofstream report_;
};

/// The table of the whole program.
TimeTable& ProgramTimes();

}  // namespace kestol
