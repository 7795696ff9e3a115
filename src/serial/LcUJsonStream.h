#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"
#include "foundation/LcUStringA.h"
#include "serial/LcUJsonStreamState.h"

// A cursor over a tree of JSON values. A writer builds the tree with begin,
// key and write calls and prints it once; a reader loads a text and walks
// it with enter, key and read calls. Nothing is reported: the first problem
// sets a sticky failure, later calls do nothing or give zero, and Finish
// or PrintText tells the caller at the end.
class LcUJsonStream {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  LcUJsonStream() = default;
  ~LcUJsonStream();
  LcUJsonStream(const LcUJsonStream&) = delete;
  LcUJsonStream& operator=(const LcUJsonStream&) = delete;

  // True when the text holds an array or object; any other value is dropped.
  bool LoadText(const char* text);
  // Also resets the failure; the array depth stays as it stands.
  void Clear();
  // Prints and empties the stream. False, with out empty, after a failure
  // or when there is no tree.
  bool PrintText(bool pretty, LcUStringA& out);
  static bool Reformat(const char* text, bool pretty, LcUStringA& out);
  // Empties the stream; true unless it failed. The failure stays.
  bool Finish();

  // Writer.
  void BeginArray();
  void BeginObject();
  void SetKey(const char* name);
  void WriteBool(bool value);
  void WriteDouble(double value);
  void WriteInt32(int32_t value);
  // A null text writes the empty string.
  void WriteText(const char* text);
  void WriteWideText(const char16_t* text);
  // 64-bit values as decimal text, so no digit is lost.
  void WriteInt64Text(int64_t value);
  void WriteUInt64Text(uint64_t value);
  void WriteVector3(const double (&value)[3]);

  // Reader. Entering returns the item count; with expected, another count fails.
  int32_t EnterArray();
  int32_t EnterArray(int32_t expected);
  bool EnterObject();
  // True when the innermost object has the member; it is then read next.
  // A missing member is no failure.
  bool FindKey(const char* name);
  bool ReadBool();
  double ReadDouble();
  int32_t ReadInt32();
  int64_t ReadInt64();
  uint64_t ReadUInt64();
  // The text reads give false, with out empty, on failure.
  bool ReadText(LcUStringA& out);
  bool ReadWideText(LcUString& out);
  int64_t ReadInt64Text();
  uint64_t ReadUInt64Text();
  bool ReadVector3(double (&value)[3]);
  // The members "Type" (text) and "Version" (int32) of the innermost object.
  bool ReadHeader(LcUStringA& type, int32_t& version);

  // The plain forms lower the depth first and pop only while the stream is
  // sound; the guarded forms do nothing at all after a failure.
  void LeaveArray();
  void LeaveObject();
  void GuardedLeaveArray();
  void GuardedLeaveObject();

  bool Failed() const { return state.failed; }
  int32_t ObjectDepth() const { return state.objectDepth; }
  int32_t ArrayDepth() const { return state.arrayDepth; }
  const LcUJsonNode* Root() const { return state.root; }

private:
  void FreeTree();
  bool Push(LcUJsonNode* node);
  void Pop();
  LcUJsonStreamFrame* Top() const;
  void Fail();
  // Writer: attaches a new node at the cursor, or deletes it after a failure.
  bool Attach(LcUJsonNode* node);
  void Begin(int32_t type, int32_t& depth);
  // Reader: the next value at the cursor, or null after setting the failure.
  LcUJsonNode* Next();
  LcUJsonNode* NextOf(int32_t kind);
  LcUJsonNode* Enter(int32_t kind, int32_t& depth);

  LcUJsonStreamState state;
};
