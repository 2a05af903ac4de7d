// Fuzzes one container text reader, chosen by XP_FUZZ_BASE64 at build time: on
// untrusted text it must stay within what the text can hold, and a container
// built from the input must come back from its writer's text unchanged.
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "codecs/Container.h"
#include "text/ResultCodes.h"

namespace {

constexpr bool kBase64 = XP_FUZZ_BASE64;

int ReadText(fmx::TextAutoPtr& text, fmx::BinaryDataAutoPtr& container) {
  return kBase64 ? XP7_Base64TxtToFMBinaryData(text, container) : XP7_HxtTxtToBinary(text, container);
}

void ReadUntrusted(fuzz::Input& input) {
  fmx::TextAutoPtr text;
  fuzz::SetUntrustedText(text, input);
  const uint64_t size = text->GetSize();
  fmx::BinaryDataAutoPtr container;
  const int result = ReadText(text, container);
  FUZZ_CHECK(result == kXP_NoErr || result == kXP_ParamErr);
  const int32_t count = container->GetCount();
  FUZZ_CHECK(count <= 100);
  uint64_t bytes = 0;
  for (int32_t i = 0; i < count; ++i) bytes += container->GetSize(i);
  // Two hex digits or four thirds of a base64 character per byte, at the least.
  FUZZ_CHECK(kBase64 ? 4 * bytes <= 3 * size : 2 * bytes <= size);
}

struct Stream {
  uint32_t type;
  std::string bytes;
};

void RoundTrip(fuzz::Input& input) {
  std::vector<Stream> streams(1 + input.Byte() % 6);
  fmx::BinaryDataAutoPtr built;
  for (Stream& s : streams) {
    s.type = input.Byte();
    for (int k = 0; k < 3; ++k) s.type = s.type << 8 | input.Byte();
    s.bytes = input.Bytes(input.Below(600));
    QuadCharHolder type;
    type->SetMacType(s.type);
    FUZZ_CHECK(built->Add(*type, static_cast<uint32_t>(s.bytes.size()), s.bytes.data()) == 0);
  }
  fmx::DataVectAutoPtr params;
  {
    DataHolder parameter;
    parameter->SetBinaryData(*built);
    params->PushBack(*parameter);
  }
  fmx::TextAutoPtr text;
  unsigned int index = 0;
  FUZZ_CHECK((kBase64 ? XP7_GetFMBinaryDataAsBase64TxtFromVect(*params, text, &index)
                      : XP7_GetBinaryAsHxtTxtFromVect(*params, text, &index)) == 0);
  fmx::BinaryDataAutoPtr back;
  FUZZ_CHECK(ReadText(text, back) == 0);
  FUZZ_CHECK(back->GetCount() == static_cast<int32_t>(streams.size()));
  for (int32_t i = 0; i < back->GetCount(); ++i) {
    QuadCharHolder type;
    back->GetType(i, *type);
    FUZZ_CHECK(type->GetMacType() == streams[i].type);
    char* bytes = nullptr;
    unsigned int size = 0;
    FUZZ_CHECK(XP7_GetBinaryData(*back, i, &bytes, &size) == 0);
    const std::string got(bytes ? bytes : "", size);
    delete[] bytes;
    FUZZ_CHECK(got == streams[i].bytes);
  }
}

}  // namespace

// An odd first byte builds a container from the rest; an even one reads the rest as a
// container text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return fuzz::RoundTripOrUntrusted(data, size, RoundTrip, ReadUntrusted);
}
