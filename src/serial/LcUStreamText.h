#pragma once
#include <cstdint>

// The ascii forms of stream values, always in the "C" locale.
namespace LcUStreamText {
// " %<width>d", " %<width>x" and " %llx": a blank, then the digits right-aligned.
uint32_t FormatSigned(char* out, int64_t value, int32_t width);
uint32_t FormatHex(char* out, uint64_t value, int32_t width);
// " %<digits + 2>.<digits>g".
uint32_t FormatFloat(char* out, double value, int32_t digits, bool single);

// The read forms, taking a word as scanf would: a leading part that scans
// is enough; false when none does.
bool ScanSigned(const char* word, int64_t& value);
bool ScanHex(const char* word, uint64_t& value);
bool ScanDouble(const char* word, double& value);
bool ScanSingle(const char* word, float& value);
}  // namespace LcUStreamText
