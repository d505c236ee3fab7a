#pragma once

#include <ostream>
#include <streambuf>
#include <string>

namespace kestol {

/// The information file of a run, line by line as it is told, so that it can be watched. Knows why
/// it took no more, which streams of files do not.
class InfoStream : private std::streambuf {
public:
  /// "-" is standard output. ProgramError for a file that cannot be opened.
  explicit InfoStream(const std::string& name);
  ~InfoStream() override;
  InfoStream(const InfoStream&) = delete;
  InfoStream& operator=(const InfoStream&) = delete;

  std::ostream* Stream() { return &stream_; }

  /// Ends the file, or refuses, as ProgramError with the system's reason, one that did not take
  /// every line.
  void Close();

private:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

  std::string name_;
  int file_ = -1;
  int reason_ = 0;  ///< of the first line that was not taken
  std::ostream stream_;
};

}  // namespace kestol
