#include <cstring>

#include "environment/LcUResource.h"
#include "environment/LcUResourceParseState.h"
#include "environment/LcUResourceTable.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"

namespace {
// A longer line goes on as a new line.
constexpr int kChunk = 5120;

bool IsBlank(char c) {
  return c == ' ' || (c >= 9 && c <= 13);
}

bool Convert(const char* bytes, const LcUResourceParseState& state, LcUString& out) {
  return state.utf8 ? LcUString::UTF8ToUTF16(bytes, -1, out) : LcUString::MultiByteToWide(bytes, out);
}

bool IsMarkerLine(const unsigned char* line) {
  return line[0] == 0xEF && line[1] == 0xBB && line[2] == 0xBF && (line[3] == 0 || line[3] == '\n' || line[3] == '#');
}

// The grammar of a name table, one line at a time.
class NameTableReader {
public:
  NameTableReader(const char* endToken, LcUResourceParseState& state, const char* prefix)
      : endToken(endToken), state(state), prefix(prefix) {}

  bool Read(FILE* stream) {
    char line[kChunk];
    while (std::fgets(line, kChunk, stream)) {
      Step result = mode == eNORMAL ? Normal(line) : mode == eVALUE_LINE ? ValueLine(line) : BlockLine(line);
      if (result == eFAILED) return false;
      if (result == eEND_TOKEN) return true;
      ++state.line;
    }
    if (mode != eNORMAL) return Fail("Unexpected end of file. Expected user name or user name block.");
    if (endToken) return Fail("Unexpected end of file. Expected end of name table token.");
    --state.line;
    return true;
  }

private:
  enum Mode { eNORMAL, eVALUE_LINE, eBLOCK };
  enum Step { eNEXT, eFAILED, eEND_TOKEN };

  Step Normal(char* line) {
    bool commentTest = true;
    if (state.line == 1 && static_cast<unsigned char>(line[0]) == 0xEF) {
      if (IsMarkerLine(reinterpret_cast<const unsigned char*>(line))) {
        state.utf8 = 1;
        return eNEXT;
      }
      commentTest = false;
    }
    if (commentTest && line[0] == '#') return eNEXT;
    size_t length = std::strlen(line);
    while (length > 0 && IsBlank(line[length - 1])) line[--length] = 0;
    if (length == 0) return eNEXT;
    if (endToken && std::strcmp(line, endToken) == 0) return eEND_TOKEN;
    if (line[0] == '$') {
      if (std::strcmp(line, "$utf8") == 0)
        state.utf8 = 1;
      else if (std::strcmp(line, "$mbcs") == 0)
        state.utf8 = 0;
      else
        return FailStep("Unknown option.");
      return eNEXT;
    }
    char* equals = std::strchr(line, '=');
    if (!equals) return FailStep("Expected '=' after internal name.");
    name.assign(line, size_t(equals - line));
    if (equals[1] == 0) {
      mode = eVALUE_LINE;
      return eNEXT;
    }
    if (equals[1] == '{' && equals[2] == 0) {
      mode = eBLOCK;
      block.Clear();
      return eNEXT;
    }
    const char* value = equals + 1;
    while (IsBlank(*value)) ++value;
    LcUString text;
    if (!Convert(value, state, text)) return FailStep("Failed to read user name.");
    return Add(text);
  }

  Step ValueLine(const char* line) {
    LcUString text;
    if (!Convert(line, state, text)) return FailStep("Failed to read user name.");
    text.Trim();
    if (text.IsEmpty()) return FailStep("Expected user name. Zero-length string found instead.");
    mode = eNORMAL;
    return Add(text);
  }

  Step BlockLine(const char* line) {
    if (line[0] == '}') {
      mode = eNORMAL;
      return Add(block);
    }
    LcUString text;
    if (!Convert(line, state, text)) return FailStep("Failed to read user name inside user name block.");
    block.Append(text);
    return eNEXT;
  }

  Step Add(const LcUString& text) {
    return LcUResourceTable::Add(name.c_str(), text.Get() ? text.Get() : u"", &state, prefix) ? eNEXT : eFAILED;
  }

  bool Fail(const char* text) {
    state.errorLine = state.line;
    state.errorText.Assign(text);
    return false;
  }
  Step FailStep(const char* text) {
    Fail(text);
    return eFAILED;
  }

  const char* endToken;
  LcUResourceParseState& state;
  const char* prefix;
  Mode mode = eNORMAL;
  std::string name;
  LcUString block;
};
}  // namespace

bool LcUResource::ReadNameTable(FILE* stream, const char* endToken, LcUResourceParseState& state,
                                const char* prefix) {
  if (!stream || !IsInitialised()) return false;
  bool read = NameTableReader(endToken, state, prefix).Read(stream);
  LcUResourceTable::RunPendingPass();
  return read;
}

bool LcUResource::ReadNameFile(const char16_t* path, const char* prefix, LcUResourceParseState& state) {
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0, LcUSysFileHandle::ePERMISSION_READ))
    return false;
  return ReadNameTable(file.GetStream(), nullptr, state, prefix);
}

bool LcUResource::LoadNameFile(const char16_t* path, const char* prefix) {
  LcUResourceParseState state;
  if (ReadNameFile(path, prefix, state)) return true;
  if (state.errorLine != 0)
    LcUError::PostF(LcUError::eERROR, &component, "Syntax error in %ls at line %d : %s\n", path, state.errorLine,
                    state.errorText.Get());
  return false;
}
