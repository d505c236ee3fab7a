#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

/// A result file. Text is gathered and handed over in pieces that always end at a line end, so the
/// file on disk never stops inside a line.
///
/// Reals come in the two forms of the reports: the default form (printf's %g, six significant
/// digits) and vector form (two blanks, then %13.6e).
class OutputText {
public:
  /// Creates or truncates the file (mode 0644 under the umask); ends the run with
  /// "can't open file " name "\n" when it cannot.
  explicit OutputText(const std::string& name);
  /// Gathers the text in memory; for tests.
  OutputText();
  ~OutputText();
  OutputText(const OutputText&) = delete;
  OutputText& operator=(const OutputText&) = delete;

  OutputText& operator<<(std::string_view text);
  OutputText& operator<<(char c);
  OutputText& operator<<(int value);
  OutputText& operator<<(double value);  ///< default form

  /// "  " and the value in scientific notation, at least 13 characters wide.
  OutputText& Vector(double value);

  /// Hands everything over and closes the file; ends the run with
  /// "error: Failed writing to disk. Probably the disk is full\n" when any of it was refused.
  void Close();

  /// Everything written so far; only without a file.
  std::string Text() const;

private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
