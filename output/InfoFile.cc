#include "output/InfoFile.h"

#include <cstdarg>
#include <cstdio>

namespace kestol {

void Progress(std::ostream* info, const char* format, ...) {
  if (info == nullptr) return;
  char text[512];  // "%lf" of the largest double has 317 characters
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  *info << text << std::flush;
}

}  // namespace kestol
