#include "serial/LcUXMLEnumeration.h"

#include <cstring>

#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLStream.h"

const char* LcUXMLEnumeration::WordOf(int32_t number) const {
  for (int32_t i = 0; i < count; ++i)
    if (pairs[i].number == number) return pairs[i].word;
  return nullptr;
}

bool LcUXMLEnumeration::Serialise(LcUXMLDOMStream& stream, const char* attribute, int32_t& number, int32_t defaultValue) {
  // The attribute's wide name only for a message.
  LcUString name;
  auto named = [&]() -> const char16_t* {
    LcUString::AsciiToWide(attribute, name);
    return name.Get();
  };
  if (stream.IsWriting()) {
    const char* word = WordOf(number);
    if (!word) {
      status = 16;
      errorText.Format(u"Enum serialisation error: (\"%ls\") %d is unrecognised.", named(), number);
      LcUXMLStream::SetError(stream, status, errorText.Get());
      return false;
    }
    LcUStringA& text = stream.scratchWord;
    text.Assign(word);
    return stream.NarrowAttribute(attribute, text);
  }
  LcUStringA& text = stream.scratchWord;
  number = defaultValue;
  if (!stream.NarrowAttribute(attribute, text)) {
    status = 17;
    errorText.Format(u"Enum serialisation error: attribute \"%ls\" was not found.", named());
    LcUXMLStream::SetError(stream, status, errorText.Get());
    return false;
  }
  for (int32_t i = 0; i < count; ++i) {
    if (std::strcmp(pairs[i].word, text.Get() ? text.Get() : "") != 0) continue;
    number = pairs[i].number;
    return true;
  }
  LcUString word;
  LcUString::UTF8ToUTF16(text.Get() ? text.Get() : "", -1, word);
  status = 15;
  errorText.Format(u"Enum serialisation error: (\"%ls\") \"%ls\" is unrecognised.", named(), word.Get());
  LcUXMLStream::SetError(stream, status, errorText.Get());
  return false;
}
