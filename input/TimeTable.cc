#include "input/TimeTable.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr int kHeaderField = 16;  // dots and the blank behind "Time Table: "
constexpr int kNameField = 31;    // name, dots and the blank

// Up to this many seconds a phase is not told apart from its children.
constexpr double kShortPhase = 1.0;

// Smallest rest of a phase, in seconds and in percent, that gets a line.
constexpr double kSmallRest = 0.1;

// A blank behind dots, `width` characters together; the blank alone when that is too narrow.
std::string DotsAndBlank(int width) {
  return (width > 1 ? std::string(static_cast<std::size_t>(width - 1), '.') : std::string()) + " ";
}

double SecondsOf(const TimeTable::Node& node) {
  return node.elapsed * 0.001;
}

}  // namespace

TimeTable& ProgramTimes() {
  static TimeTable table;
  return table;
}

double TimeTable::CpuMilliseconds() {
  return static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC;
}

TimeTable::Handle TimeTable::Start(const char* name) {
  Node* const saved = current_;
  if (saved == nullptr)
    Open(name);
  else
    current_ = ChildNamed(name);
  return {saved, milliseconds_(), table_};
}

void TimeTable::Open(const char* name) {
  const std::string fileName = outputName_ + ".tim";
  report_.open(fileName);
  if (!report_) Fatal("Cannot open output file \"", fileName, "\"");
  ++table_;
  current_ = &nodes_.emplace_back(Node{name, nullptr});
}

// The current node's child of that name, with one use more; a new one when there is none.
TimeTable::Node* TimeTable::ChildNamed(const char* name) {
  for (Node* child = current_->firstChild; child != nullptr; child = child->next) {
    if (child->name != name) continue;
    ++child->uses;
    return child;
  }
  Node* const child = &nodes_.emplace_back(Node{name, current_});
  (current_->lastChild ? current_->lastChild->next : current_->firstChild) = child;
  current_->lastChild = child;
  return child;
}

void TimeTable::Stop(const Handle& handle) {
  if (current_ == nullptr || handle.table != table_) return;
  current_->elapsed += milliseconds_() - handle.start;
  current_ = handle.saved;
  if (current_ != nullptr) return;
  WriteHeader();
  WriteNode(nodes_.front(), 1);
  report_ << "\n\n";
  Close();
}

void TimeTable::ErrorNotice(std::ostream& stream) {
  if (current_ == nullptr) return;
  stream << " Current time table stack:\n\n";
  for (const Node* node = current_; node != nullptr; node = node->parent)
    stream << "\t" << node->name << "\n";
  stream << "\n";
  report_ << "\n\n *** Time Table not produced due to error ***\n\n";
  Close();
}

void TimeTable::Close() {
  report_.close();
  report_.clear();
  nodes_.clear();
  current_ = nullptr;
  count_.reset();
}

void TimeTable::WriteHeader() {
  if (count_) report_ << "\n Number of " << count_->name << "=" << count_->value << "\n\n";
  report_ << "\n   Time Table: " << DotsAndBlank(kHeaderField) << " cputime[s] (percent[%]) Uses";
  if (count_) report_ << " -- " << count_->name << "/min";
  report_ << "\n\n";
}

void TimeTable::WriteNode(Node& node, int depth) {
  const double seconds = SecondsOf(node);
  const double parentSeconds = node.parent ? SecondsOf(*node.parent) : 0.0;
  if (node.parent) node.parent->childSeconds += seconds;
  const double percent = parentSeconds == 0.0 ? 100.0 : seconds * 100.0 / parentSeconds;
  WriteLine(node.name, depth, seconds, percent, node.uses);

  for (Node* child = node.firstChild; child != nullptr; child = child->next)
    WriteNode(*child, depth + 1);
  if (!(seconds > kShortPhase) || node.childSeconds == 0.0) return;
  const double rest = seconds - node.childSeconds;
  const double restPercent = rest * 100.0 / seconds;
  if (rest > kSmallRest && restPercent > kSmallRest)
    WriteLine("Other operations", depth + 1, rest, restPercent, 0);
}

void TimeTable::WriteLine(const char* name, int depth, double seconds, double percent, int uses) {
  char numbers[64];
  report_ << "   ";
  for (int level = 1; level < depth; ++level) report_ << " . ";
  report_ << name << DotsAndBlank(kNameField - static_cast<int>(std::strlen(name)));
  std::snprintf(numbers, sizeof numbers, "%7.5f[s] (%4.1f[%%])", seconds, percent);
  report_ << numbers;
  if (uses != 0) report_ << " " << uses;
  if (count_ && seconds > 0.0) {
    std::snprintf(numbers, sizeof numbers, "%.0f", count_->value * 60.0 / seconds);
    report_ << " -- " << numbers;
  }
  report_ << "\n";
}

}  // namespace kestol
