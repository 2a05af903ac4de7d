// Throughput of the codecs and encoders on the in-memory host, next to the
// libraries that do the same work on plain buffers (OpenSSL, ICU, memcpy).
//
// Every figure is bytes of payload per second: the bytes a codec encodes or the
// bytes it gives back when decoding, and for UTF-8 work the UTF-8 bytes. Each
// function runs on 1, 16 and 128 MiB so that its scaling shows.
#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "codecs/Base64.h"
#include "codecs/Container.h"
#include "codecs/HexText.h"
#include "encoding/URLEncoding.h"
#include "encoding/UTF8.h"
#include "text/ByteBlocks.h"

namespace {

constexpr size_t kMiB = size_t(1) << 20;

size_t SizeOf(const benchmark::State& state) { return static_cast<size_t>(state.range(0)) * kMiB; }

void CountBytes(benchmark::State& state, size_t perIteration) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(perIteration));
}

std::string RandomBytes(size_t n, unsigned seed = 1) {
  std::mt19937_64 random(seed);
  std::string bytes(n, '\0');
  for (size_t i = 0; i < n; i += 8) {
    const uint64_t r = random();
    std::memcpy(&bytes[i], &r, std::min<size_t>(8, n - i));
  }
  return bytes;
}

// Prose-like UTF-16 of about `utf8Bytes` UTF-8 bytes: mostly ASCII, some Latin
// accents, a little CJK and a few characters outside the BMP.
std::u16string MixedText(size_t utf8Bytes) {
  std::mt19937 random(7);
  std::u16string units;
  units.reserve(utf8Bytes);
  size_t bytes = 0;
  while (bytes < utf8Bytes) {
    const unsigned kind = random() % 100;
    if (kind < 80) {
      units += static_cast<char16_t>(kind < 15 ? ' ' : 'a' + random() % 26);
      bytes += 1;
    } else if (kind < 95) {
      units += static_cast<char16_t>(0xC0 + random() % 0x40);
      bytes += 2;
    } else if (kind < 99) {
      units += static_cast<char16_t>(0x4E00 + random() % 0x5000);
      bytes += 3;
    } else {
      units += u"\xD83D\xDE00";  // U+1F600 GRINNING FACE
      bytes += 4;
    }
  }
  return units;
}

std::string ToUTF8(const std::u16string& units) {
  std::string out(units.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &length, units.data(), static_cast<int32_t>(units.size()),
              &status);
  out.resize(static_cast<size_t>(length));
  return out;
}

void SetUnits(fmx::TextAutoPtr& text, const std::u16string& units) {
  text->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(units.data()),
                                static_cast<uint32_t>(units.size()));
}

// One character per byte: how hex, base64 and UTF-8 texts hold their bytes.
std::u16string ByteChars(const std::string& bytes) {
  return std::u16string(reinterpret_cast<const unsigned char*>(bytes.data()),
                        reinterpret_cast<const unsigned char*>(bytes.data()) + bytes.size());
}

void SetByteChars(fmx::TextAutoPtr& text, const std::string& bytes) { SetUnits(text, ByteChars(bytes)); }

// Runs `convert(text, out)` on a text of `units` into a fresh result text every
// iteration, as a plug-in call has it; `payload` bytes count per iteration.
template <class Convert>
void RunTextToText(benchmark::State& state, const std::u16string& units, size_t payload, Convert convert) {
  fmx::TextAutoPtr text;
  SetUnits(text, units);
  for (auto _ : state) {
    fmx::TextAutoPtr out;
    convert(text, out);
  }
  CountBytes(state, payload);
}

// Printable ASCII, the same bytes in Mac Roman, UTF-8 and as host text.
std::string AsciiBytes(size_t n) {
  std::string bytes = RandomBytes(n, 3);
  for (char& c : bytes) c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95);
  return bytes;
}

std::string Base64Of(const std::string& bytes) {
  std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
  const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
  out.resize(static_cast<size_t>(n));
  return out;
}

std::string HexOf(const std::string& bytes) {
  static const char digits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(2 * bytes.size());
  for (unsigned char b : bytes) {
    out += digits[b >> 4];
    out += digits[b & 15];
  }
  return out;
}

// Block codecs and their peers, on plain buffers.

void BM_Base64_EncodeBlock(benchmark::State& state, int lineLength) {
  std::string in = RandomBytes(SizeOf(state));
  std::vector<unsigned char> out(in.size() * 2 + 16);
  for (auto _ : state) {
    unsigned long length = 0;
    XP7_Base64_EncodeBlock(reinterpret_cast<unsigned char*>(in.data()), in.size(), out.data(), out.size(), &length,
                           lineLength);
    benchmark::DoNotOptimize(length);
  }
  CountBytes(state, in.size());
}

void BM_EVP_EncodeBlock(benchmark::State& state) {
  const std::string in = RandomBytes(SizeOf(state));
  std::vector<unsigned char> out(in.size() * 2 + 16);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        EVP_EncodeBlock(out.data(), reinterpret_cast<const unsigned char*>(in.data()), static_cast<int>(in.size())));
  }
  CountBytes(state, in.size());
}

void BM_EVP_DecodeBlock(benchmark::State& state) {
  const size_t size = SizeOf(state);
  const std::string in = Base64Of(RandomBytes(size));
  std::vector<unsigned char> out(in.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(in.data()), static_cast<int>(in.size())));
  }
  CountBytes(state, size);
}

void BM_memcpy(benchmark::State& state) {
  const std::string in = RandomBytes(SizeOf(state));
  std::string out(in.size(), '\0');
  for (auto _ : state) {
    std::memcpy(out.data(), in.data(), in.size());
    benchmark::ClobberMemory();
  }
  CountBytes(state, in.size());
}

// Text codecs: fresh result texts every iteration, as a plug-in call has them.

void BM_TxtToBase64Txt(benchmark::State& state) {
  const std::string bytes = AsciiBytes(SizeOf(state));
  RunTextToText(state, ByteChars(bytes), bytes.size(), [](fmx::TextAutoPtr& text, fmx::TextAutoPtr& out) {
    XP7_TxtToBase64Txt(text, 0, fmx::Text::kEncoding_ASCII_Mac, 76, out, true);
  });
}

void BM_Base64TxtToTxt(benchmark::State& state) {
  const size_t size = SizeOf(state);
  RunTextToText(state, ByteChars(Base64Of(AsciiBytes(size))), size, [](fmx::TextAutoPtr& text, fmx::TextAutoPtr& out) {
    XP7_Base64TxtToTxt(text, 1, fmx::Text::kEncoding_ASCII_Mac, 0, out);
  });
}

void BM_BlockToHexTxt(benchmark::State& state) {
  std::string bytes = RandomBytes(SizeOf(state));
  for (auto _ : state) {
    fmx::TextAutoPtr out;
    XP7_BlockToHexTxt(bytes.data(), static_cast<unsigned int>(bytes.size()), out);
  }
  CountBytes(state, bytes.size());
}

void BM_RemoveHexTxt(benchmark::State& state) {
  const size_t size = SizeOf(state);
  fmx::TextAutoPtr hex;
  SetByteChars(hex, HexOf(RandomBytes(size)));
  for (auto _ : state) {
    state.PauseTiming();
    fmx::TextAutoPtr text;
    text->SetText(*hex);
    state.ResumeTiming();
    XP7_RemoveHexTxt(text, 0);
  }
  CountBytes(state, size);
}

void BM_TxtToUTF8Txt(benchmark::State& state) {
  const std::u16string units = MixedText(SizeOf(state));
  RunTextToText(state, units, ToUTF8(units).size(), XP7_TxtToUTF8Txt);
}

void BM_UTF8TxtToTxt(benchmark::State& state) {
  const std::string utf8 = ToUTF8(MixedText(SizeOf(state)));
  RunTextToText(state, ByteChars(utf8), utf8.size(), XP7_UTF8TxtToTxt);
}

void BM_u_strToUTF8(benchmark::State& state) {
  const std::u16string units = MixedText(SizeOf(state));
  std::string out(units.size() * 3, '\0');
  for (auto _ : state) {
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &length, units.data(), static_cast<int32_t>(units.size()),
                &status);
    benchmark::DoNotOptimize(length);
  }
  CountBytes(state, ToUTF8(units).size());
}

void BM_u_strFromUTF8(benchmark::State& state) {
  const std::string utf8 = ToUTF8(MixedText(SizeOf(state)));
  std::u16string out(utf8.size(), u'\0');
  for (auto _ : state) {
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(out.data(), static_cast<int32_t>(out.size()), &length, utf8.data(), static_cast<int32_t>(utf8.size()),
                  &status);
    benchmark::DoNotOptimize(length);
  }
  CountBytes(state, utf8.size());
}

void BM_TxtToURLEncodedTxt(benchmark::State& state) {
  const std::u16string units = MixedText(SizeOf(state));
  RunTextToText(state, units, ToUTF8(units).size(), XP7_TxtToURLEncodedTxt);
}

void BM_TxtToBuf(benchmark::State& state, fmx::Text::Encoding encoding) {
  const bool utf8 = encoding == fmx::Text::kEncoding_UTF8;
  const std::u16string units = utf8 ? MixedText(SizeOf(state)) : [&] {
    const std::string ascii = AsciiBytes(SizeOf(state));
    return std::u16string(ascii.begin(), ascii.end());
  }();
  fmx::TextAutoPtr text;
  SetUnits(text, units);
  unsigned int length = 0;
  for (auto _ : state) {
    char* buffer = nullptr;
    XP7_TxtToBuf(text, encoding, false, &buffer, &length);
    delete[] buffer;
  }
  CountBytes(state, length);
}

// Container texts of one stream.

void FillParams(fmx::DataVectAutoPtr& params, std::string bytes) {
  fmx::BinaryDataAutoPtr container;
  QuadCharHolder type('J', 'P', 'E', 'G');
  container->Add(*type, static_cast<uint32_t>(bytes.size()), bytes.data());
  DataHolder data;
  data->SetBinaryData(*container);
  params->PushBack(*data);
}

void WriteContainer(const fmx::DataVect& params, fmx::TextAutoPtr& out, bool base64) {
  unsigned int index = 0;
  base64 ? XP7_GetFMBinaryDataAsBase64TxtFromVect(params, out, &index)
         : XP7_GetBinaryAsHxtTxtFromVect(params, out, &index);
}

void BM_ContainerWrite(benchmark::State& state, bool base64) {
  const size_t size = SizeOf(state);
  fmx::DataVectAutoPtr params;
  FillParams(params, RandomBytes(size));
  for (auto _ : state) {
    fmx::TextAutoPtr out;
    WriteContainer(*params, out, base64);
  }
  CountBytes(state, size);
}

void BM_ContainerRead(benchmark::State& state, bool base64) {
  const size_t size = SizeOf(state);
  fmx::TextAutoPtr written;
  {
    fmx::DataVectAutoPtr params;
    FillParams(params, RandomBytes(size));
    WriteContainer(*params, written, base64);
  }
  for (auto _ : state) {
    state.PauseTiming();
    fmx::TextAutoPtr text;
    text->SetText(*written);
    fmx::BinaryDataAutoPtr container;
    state.ResumeTiming();
    base64 ? XP7_Base64TxtToFMBinaryData(text, container) : XP7_HxtTxtToBinary(text, container);
  }
  CountBytes(state, size);
}

// Big inputs run once or twice: through the host they take seconds.
void Sizes(benchmark::internal::Benchmark* b, std::initializer_list<int> mebibytes) {
  b->Unit(benchmark::kMillisecond);
  for (int m : mebibytes) b->Arg(m);
}

void Register() {
  using Fn = void (*)(benchmark::State&);
  struct Entry {
    const char* name;
    std::function<void(benchmark::State&)> run;
    bool container;
  };
  const std::vector<Entry> entries = {
      {"XP7_Base64_EncodeBlock/line:0", [](benchmark::State& s) { BM_Base64_EncodeBlock(s, 0); }, false},
      {"XP7_Base64_EncodeBlock/line:76", [](benchmark::State& s) { BM_Base64_EncodeBlock(s, 76); }, false},
      {"EVP_EncodeBlock", Fn(BM_EVP_EncodeBlock), false},
      {"EVP_DecodeBlock", Fn(BM_EVP_DecodeBlock), false},
      {"memcpy", Fn(BM_memcpy), false},
      {"XP7_TxtToBase64Txt", Fn(BM_TxtToBase64Txt), false},
      {"XP7_Base64TxtToTxt", Fn(BM_Base64TxtToTxt), false},
      {"XP7_BlockToHexTxt", Fn(BM_BlockToHexTxt), false},
      {"XP7_RemoveHexTxt", Fn(BM_RemoveHexTxt), false},
      {"XP7_TxtToUTF8Txt", Fn(BM_TxtToUTF8Txt), false},
      {"u_strToUTF8", Fn(BM_u_strToUTF8), false},
      {"XP7_UTF8TxtToTxt", Fn(BM_UTF8TxtToTxt), false},
      {"u_strFromUTF8", Fn(BM_u_strFromUTF8), false},
      {"XP7_TxtToURLEncodedTxt", Fn(BM_TxtToURLEncodedTxt), false},
      {"XP7_TxtToBuf/UTF8", [](benchmark::State& s) { BM_TxtToBuf(s, fmx::Text::kEncoding_UTF8); }, false},
      {"XP7_TxtToBuf/ASCII_Mac", [](benchmark::State& s) { BM_TxtToBuf(s, fmx::Text::kEncoding_ASCII_Mac); }, false},
      {"XP7_GetBinaryAsHxtTxtFromVect", [](benchmark::State& s) { BM_ContainerWrite(s, false); }, true},
      {"XP7_GetFMBinaryDataAsBase64TxtFromVect", [](benchmark::State& s) { BM_ContainerWrite(s, true); }, true},
      {"XP7_HxtTxtToBinary", [](benchmark::State& s) { BM_ContainerRead(s, false); }, true},
      {"XP7_Base64TxtToFMBinaryData", [](benchmark::State& s) { BM_ContainerRead(s, true); }, true},
  };
  for (const Entry& e : entries) {
    auto* small = benchmark::RegisterBenchmark(e.name, e.run);
    Sizes(small, {1});
    small->MinTime(0.5);
    auto* large = benchmark::RegisterBenchmark(e.name, e.run);
    Sizes(large, e.container ? std::initializer_list<int>{64} : std::initializer_list<int>{16, 128});
    large->Iterations(e.container ? 1 : 2);
  }
}

}  // namespace

int main(int argc, char** argv) {
  Register();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
