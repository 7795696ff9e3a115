#include <cstdio>

#include "serial/LcUData.h"
#include "serial/LcUName.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
// The first stream versions that know each newer form.
constexpr uint32_t kNames = 5;
constexpr uint32_t kTimeAsNumber = 5;
constexpr uint32_t kNarrowStrings = 91;
constexpr uint32_t kAreaVolumeVector3 = 209;
constexpr uint32_t kVector2 = 447;

void WriteWide(LcUStreamWriter& stream, const char16_t* text) {
  stream.WriteInt32(LcUData::eWSTRING);
  stream.WriteWideString(text);
}

void WriteVectorText(LcUStreamWriter& stream, const double* v, int count) {
  char text[128];
  if (count == 3)
    std::snprintf(text, sizeof text, "(%g, %g, %g)", v[0], v[1], v[2]);
  else
    std::snprintf(text, sizeof text, "(%g, %g)", v[0], v[1]);
  LcUString wide;
  LcUString::AsciiToWide(text, wide);
  WriteWide(stream, wide.Get());
}
}  // namespace

void LcUData::WriteBinary(LcUStreamWriter& stream) const {
  uint32_t version = stream.GetFormatVersion();
  // Older streams get a value in a type they know.
  if (tag == eNAME && version < kNames) return WriteWide(stream, value.name ? value.name->GetUserName() : nullptr);
  if (tag == eSTRING && version < kNarrowStrings) {
    LcUString wide;
    if (value.narrow) LcUString::MultiByteToWide(value.narrow, wide);
    return WriteWide(stream, wide.Get());
  }
  if ((tag == eAREA || tag == eVOLUME) && version < kAreaVolumeVector3) {
    stream.WriteInt32(eFLOAT);
    stream.WriteDouble(value.number);
    return;
  }
  if (tag == eVECTOR3 && version < kAreaVolumeVector3) return WriteVectorText(stream, value.vector, 3);
  if (tag == eVECTOR2 && version < kVector2) return WriteVectorText(stream, value.vector, 2);

  stream.WriteInt32(tag);
  switch (tag) {
    case eNONE: break;
    case eINT32: stream.WriteInt32(value.integer); break;
    case eBOOL: stream.WriteBoolean(value.integer == 1); break;
    case eWSTRING: stream.WriteWideString(value.wide); break;
    case eTIME:
      if (version < kTimeAsNumber) {
        LcUString text;
        ToText(text);
        stream.WriteWideString(text.Get());
      } else {
        stream.WriteNat64(uint64_t(value.time));
      }
      break;
    case eNAME: LcUName::WriteToStream(stream, value.name); break;
    case eSTRING: stream.WriteString(value.narrow); break;
    case eVECTOR3:
    case eVECTOR2:
      for (int i = 0; i < (tag == eVECTOR3 ? 3 : 2); ++i) stream.WriteDouble(value.vector[i]);
      break;
    default: stream.WriteDouble(value.number); break;
  }
}

bool LcUData::ReadBinary(LcUStreamReader& stream) {
  Clear();
  int32_t newTag = stream.ReadInt32();
  if (stream.GetError()) return false;
  switch (newTag) {
    case eNONE: break;
    case eINT32: SetInt32(stream.ReadInt32()); break;
    case eBOOL: SetBool(stream.ReadBoolean()); break;
    case eWSTRING: {
      LcUString text;
      stream.ReadWideString(text);
      SetWString(text.Get());
      break;
    }
    case eTIME:
      if (stream.GetFormatVersion() < kTimeAsNumber) {
        LcUString text;
        stream.ReadWideString(text);
        FromText(eTIME, text.Get());
      } else {
        SetTime(int64_t(stream.ReadNat64()));
      }
      break;
    case eNAME: {
      LcUName* name = LcUName::ReadFromStream(stream);
      SetName(name);
      if (name) name->Release();
      break;
    }
    case eSTRING: {
      LcUStringA text;
      stream.ReadString(text);
      SetString(text.Get());
      break;
    }
    case eVECTOR3:
    case eVECTOR2: {
      double v[3] = {stream.ReadDouble(), stream.ReadDouble(), newTag == eVECTOR3 ? stream.ReadDouble() : 0.0};
      if (newTag == eVECTOR3)
        SetVector3(v[0], v[1], v[2]);
      else
        SetVector2(v[0], v[1]);
      break;
    }
    default:
      if (!IsFloating(newTag)) {
        char read[16];
        std::snprintf(read, sizeof read, "%d", newTag);
        stream.FailMismatch(read, "Data tag!");
        break;
      }
      SetFloat(stream.ReadDouble(), newTag);
      break;
  }
  if (stream.GetError()) Clear();
  return stream.GetError() == 0;
}
