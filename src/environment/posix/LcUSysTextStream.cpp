#include "environment/posix/LcUSysTextStream.h"

#include <unistd.h>

#include <cerrno>

namespace {
constexpr int kEnd = -1;
constexpr int kError = -2;

struct TextReader {
  int fd;
  unsigned char raw[4096];
  size_t at = 0, end = 0;
  bool ended = false;

  int Peek() {
    if (ended) return kEnd;
    if (at == end) {
      ssize_t got;
      do got = ::read(fd, raw, sizeof raw);
      while (got < 0 && errno == EINTR);
      if (got < 0) return kError;
      if (got == 0) return kEnd;
      at = 0;
      end = size_t(got);
    }
    if (raw[at] == 0x1A) ended = true;
    return ended ? kEnd : raw[at];
  }
};

ssize_t Read(void* cookie, char* buffer, size_t size) {
  auto* text = static_cast<TextReader*>(cookie);
  size_t n = 0;
  while (n < size) {
    int c = text->Peek();
    if (c == kError) return n ? ssize_t(n) : -1;
    if (c == kEnd) break;
    ++text->at;
    // A lone CR stays; a CR before LF goes.
    if (c == '\r' && text->Peek() == '\n') {
      ++text->at;
      c = '\n';
    }
    buffer[n++] = char(c);
  }
  return ssize_t(n);
}

int Close(void* cookie) {
  auto* text = static_cast<TextReader*>(cookie);
  int result = ::close(text->fd);
  delete text;
  return result;
}
}  // namespace

FILE* LcUSysTextStream::Open(int fd) {
  auto* text = new TextReader();
  text->fd = fd;
  cookie_io_functions_t functions = {&Read, nullptr, nullptr, &Close};
  FILE* stream = fopencookie(text, "r", functions);
  if (!stream) delete text;
  return stream;
}
