#pragma once

#include <chrono>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace kestol {

/// One line on the terminal that is overwritten while a long run works, from the third second on.
/// Silent where standard error is no terminal, and with `quiet`.
///
///     ProgressLine progress(options.quiet);
///     solve.info = progress.Info();          // the solver's own lines, the last one is shown
///     progress.Show("writing");
class ProgressLine : private std::streambuf {
public:
  explicit ProgressLine(bool quiet);
  ~ProgressLine() override;  ///< takes the line away
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Where the solver may tell what it does; null when nobody would see it.
  std::ostream* Info() { return active_ ? &stream_ : nullptr; }

  void Show(std::string_view text);
  /// Takes the line away: before a message.
  void Clear();

private:
  int_type overflow(int_type c) override;

  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now(), last_{};
  bool active_;
  bool shown_ = false;
  std::string line_;  ///< begun by the solver
  std::ostream stream_;
};

}  // namespace kestol
