#pragma once
#include <gtest/gtest.h>

#include <string>

#include "foundation/LcUSysError.h"
#include "serial/LcUStream.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace StreamTesting {
struct Choices {
  int32_t ascii;
  int32_t doublePrecision;
  int32_t debug;
};

inline void Configure(LcUStream& stream, const Choices& c) {
  stream.ascii = c.ascii;
  stream.doublePrecision = c.doublePrecision;
  stream.debug = c.debug;
}

inline std::string Bytes(const LcUStreamBuffer& buffer) {
  return std::string(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSize());
}

// What `write` puts into a memory buffer, header included unless asked.
template <typename F>
std::string Written(const Choices& c, F write, bool header = true) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  Configure(writer, c);
  EXPECT_TRUE(writer.WriteBegin(header));
  write(writer);
  EXPECT_TRUE(writer.WriteEnd());
  return Bytes(buffer);
}

// A reader over a copy of `bytes`, begun; the buffer must outlive it.
inline bool BeginReading(LcUStreamBuffer& buffer, LcUStreamReader& reader, const std::string& bytes,
                         bool header = true, bool strict = false) {
  buffer.SetData(bytes.data(), uint32_t(bytes.size()), 1);
  return reader.ReadBegin(header, strict);
}

inline std::string LogText() {
  std::string text;
  LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                         &text);
  return text;
}

template <typename F>
std::string Logged(F operation) {
  size_t before = LogText().size();
  operation();
  return LogText().substr(before);
}

class StreamTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { LcUStream::Initialize(); }
  static void TearDownTestSuite() { LcUStream::Terminate(); }
};
}  // namespace StreamTesting
