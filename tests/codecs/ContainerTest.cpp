// Tests of the binary container text: the exact frame of both variants, round
// trips of random containers, the readers' refusals and quirks, host failures.
#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "../helpers/HostText.h"
#include "../helpers/HostFaults.h"
#include "MemHost.h"
#include "codecs/Container.h"

namespace {

struct Stream {
  uint32_t type;
  std::string bytes;
  bool operator==(const Stream& o) const { return type == o.type && bytes == o.bytes; }
};
using Streams = std::vector<Stream>;

enum class Variant { kHex, kBase64 };

const char* Name(Variant v) { return v == Variant::kHex ? "hex" : "base64"; }

constexpr uint32_t kJPEG = 0x4A504547;
constexpr uint32_t kFILE = 0x46494C45;
const std::string kOpen = "<VARN_BINARY_CONTAINER10>";
const std::string kClose = "</VARN_BINARY_CONTAINER10>";
const std::string kSep = "\r<- ->\r";

void SetText(fmx::TextAutoPtr& t, const std::string& s) {
  t->AssignWithLength(s.data(), static_cast<uint32_t>(s.size()), fmx::Text::kEncoding_ASCII_Mac);
}

// Container texts are plain ASCII, so one char per unit loses nothing.
std::string TextOf(fmx::TextAutoPtr& t) {
  const std::u16string units = testing_host::Units(t);
  return std::string(units.begin(), units.end());
}

void AddTo(fmx::BinaryDataAutoPtr& container, const Stream& s) {
  QuadCharHolder type;
  type->SetMacType(s.type);
  ASSERT_EQ(container->Add(*type, static_cast<uint32_t>(s.bytes.size()), const_cast<char*>(s.bytes.data())), 0);
}

// A parameter list holding one text and then one container of `streams`.
void FillParams(fmx::DataVectAutoPtr& params, const Streams& streams) {
  fmx::BinaryDataAutoPtr container;
  for (const Stream& s : streams) AddTo(container, s);
  DataHolder text, data;
  testing_host::SetText(*text, "not a container");
  data->SetBinaryData(*container);
  params->PushBack(*text);
  params->PushBack(*data);
}

int WriteInto(Variant v, const fmx::DataVect& params, unsigned int index, fmx::TextAutoPtr& out) {
  unsigned int i = index;
  const int result = v == Variant::kHex ? XP7_GetBinaryAsHxtTxtFromVect(params, out, &i)
                                        : XP7_GetFMBinaryDataAsBase64TxtFromVect(params, out, &i);
  EXPECT_EQ(i, index) << "the writers never advance the index";
  return result;
}

std::string Write(Variant v, const Streams& streams) {
  fmx::DataVectAutoPtr params;
  FillParams(params, streams);
  fmx::TextAutoPtr out;
  EXPECT_EQ(WriteInto(v, *params, 1, out), 0);
  return TextOf(out);
}

Streams StreamsOf(fmx::BinaryDataAutoPtr& container) {
  Streams streams;
  for (int32_t i = 0; i < container->GetCount(); ++i) {
    QuadCharHolder type;
    container->GetType(i, *type);
    char* bytes = nullptr;
    unsigned int size = 1;
    EXPECT_EQ(XP7_GetBinaryData(*container, i, &bytes, &size), 0);
    std::unique_ptr<char[]> owned(bytes);
    EXPECT_EQ(bytes == nullptr, size == 0) << "an empty stream hands out no buffer";
    streams.push_back({type->GetMacType(), std::string(bytes ? bytes : "", size)});
  }
  return streams;
}

struct ReadOutcome {
  int result;
  Streams streams;
  std::string rest;  // the input text afterwards
};

ReadOutcome Read(Variant v, const std::string& text) {
  fmx::TextAutoPtr t;
  SetText(t, text);
  fmx::BinaryDataAutoPtr container;
  const int result = v == Variant::kHex ? XP7_HxtTxtToBinary(t, container) : XP7_Base64TxtToFMBinaryData(t, container);
  return {result, StreamsOf(container), TextOf(t)};
}

// Frames of one stream each, written out by hand from the format.
const std::string kHexJPEG = kOpen + "00000001" + "4A504547" + "00000003" + "010203" + kSep + kClose;
const std::string kBase64JPEG = kOpen + "00000001" + kSep + "4A504547" + "00000003" + "00000006" + "AQID\r\n" + kClose;

TEST(Container, WritesTheFrameOfEachVariantAndReadsItBack) {
  struct Case {
    Variant variant;
    Streams streams;
    std::string text;
  } cases[] = {
      {Variant::kHex, {{kJPEG, "\x01\x02\x03"}}, kHexJPEG},
      {Variant::kBase64, {{kJPEG, "\x01\x02\x03"}}, kBase64JPEG},
      {Variant::kHex, {{kFILE, ""}}, kOpen + "00000001" + "46494C45" + "00000000" + kSep + kClose},
      {Variant::kBase64, {{kFILE, ""}}, kOpen + "00000001" + kSep + "46494C45" + "00000000" + "00000000" + kClose},
      {Variant::kBase64,
       {{kFILE, "M"}, {kJPEG, "Man"}},
       kOpen + "00000002" + kSep + "46494C45" + "00000001" + "00000006" + "TQ==\r\n" + kSep + "4A504547" + "00000003" +
           "00000006" + "TWFu\r\n" + kClose},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Name(c.variant));
    EXPECT_EQ(Write(c.variant, c.streams), c.text);
    const ReadOutcome back = Read(c.variant, c.text);
    EXPECT_EQ(back.result, 0);
    EXPECT_EQ(back.streams, c.streams);
    EXPECT_EQ(back.rest.find(kOpen), std::string::npos) << "the open tag is cut out of the input";
  }
}

// Characters a variant needs for one stream of `size` bytes: the hex digits, or
// 72-character base64 lines each ended by CR LF.
size_t EncodedLength(Variant v, size_t size) {
  if (v == Variant::kHex) return 2 * size;
  const size_t groups = (size + 2) / 3;
  return 4 * groups + 2 * ((groups + 17) / 18);
}

TEST(Container, RandomContainersRoundTripThroughBothVariants) {
  std::mt19937 random(20240607);
  for (int round = 0; round < 12; ++round) {
    // 0 to 100 streams of up to 200 bytes, and once a stream of the full 1 MiB.
    const int count = round == 0 ? 0 : round == 1 ? 100 : std::uniform_int_distribution<int>(1, 40)(random);
    Streams streams(count);
    for (Stream& s : streams) {
      const size_t size =
          round == 2 && &s == &streams[0] ? size_t(1) << 20 : std::uniform_int_distribution<size_t>(0, 200)(random);
      s.type = static_cast<uint32_t>(random());
      s.bytes.resize(size);
      for (char& b : s.bytes) b = static_cast<char>(random());
    }
    for (Variant v : {Variant::kHex, Variant::kBase64}) {
      SCOPED_TRACE(std::string(Name(v)) + " round " + std::to_string(round));
      const std::string text = Write(v, streams);
      if (count == 0) {
        EXPECT_EQ(text, "") << "an empty container writes nothing";
        continue;
      }
      size_t expected = kOpen.size() + 8 + kClose.size();
      for (const Stream& s : streams) {
        expected += 16 + (v == Variant::kBase64 ? 8 : 0) + kSep.size() + EncodedLength(v, s.bytes.size());
      }
      EXPECT_EQ(text.size(), expected);
      const ReadOutcome back = Read(v, text);
      EXPECT_EQ(back.result, 0);
      EXPECT_TRUE(back.streams == streams);
      EXPECT_EQ(back.rest, text.substr(kOpen.size()));
    }
  }
}

TEST(Container, ReadersRefuseOrIgnoreMalformedTexts) {
  const std::string hexTwo =
      kOpen + "00000002" + "4A504547" + "00000001" + "AB" + kSep + "46494C45" + "00000001" + "CD";
  const std::string base64Cut = kOpen + "00000001" + kSep + "4A504547" + "00000003" + "00000004" + "AQID\r\n" + kClose;
  const std::string padding(40, ' ');
  struct Case {
    const char* name;
    Variant variant;
    std::string text;
    int result;
    size_t added;
  } cases[] = {
      {"101 streams", Variant::kHex, kOpen + "00000065" + padding, -50, 0},
      {"101 streams", Variant::kBase64, kOpen + "00000065" + padding, -50, 0},
      {"last separator missing", Variant::kHex, hexTwo + kClose, -50, 2},
      {"final CR LF cut off the range", Variant::kBase64, base64Cut, -50, 0},
      {"range past the end", Variant::kBase64,
       kOpen + "00000001" + kSep + "4A504547" + "00000003" + "000000FF" + "AQID\r\n", -50, 0},
      {"size beyond the range", Variant::kBase64,
       kOpen + "00000001" + kSep + "4A504547" + "FFFFFFF0" + "00000006" + "AQID\r\n" + kClose, -50, 0},
      {"no separator", Variant::kBase64, kOpen + "00000001" + padding, -50, 0},
      {"type cut short", Variant::kHex, kOpen + "00000002" + "4A504547" + "00000001" + "AB" + kSep + "4A5045", -50, 1},
      {"text before the tag is read as the count", Variant::kHex, "X" + kHexJPEG, -50, 0},
      {"no open tag", Variant::kHex, kHexJPEG.substr(1), 0, 0},
      {"no open tag", Variant::kBase64, kBase64JPEG.substr(1), 0, 0},
      {"a whole stream in under 38 characters", Variant::kHex,
       kOpen + "00000001" + "4A504547" + "00000001" + "AB" + kSep, 0, 0},
      {"count 0", Variant::kBase64, kOpen + "00000000" + padding, 0, 0},
      {"tag and separator found in any case", Variant::kHex,
       "<varn_Binary_container10>" + kHexJPEG.substr(kOpen.size()), 0, 1},
      {"close tag never examined", Variant::kHex, kHexJPEG.substr(0, kHexJPEG.size() - kClose.size()) + "junk", 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(Name(c.variant)) + ": " + c.name);
    const ReadOutcome out = Read(c.variant, c.text);
    EXPECT_EQ(out.result, c.result);
    EXPECT_EQ(out.streams.size(), c.added);
    // Once found, the open tag is gone from the input whatever the outcome.
    std::string folded = c.text, rest = c.text;
    for (char& ch : folded) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    if (const size_t at = folded.find(kOpen); at != std::string::npos) rest.erase(at, kOpen.size());
    EXPECT_EQ(out.rest, rest);
  }
}

TEST(Container, HexDataIsDecodedAsFarAsTheTextGoesAndKept) {
  // Nine bytes promised, seven there: the stream holds what the text held and
  // stays in the container although the missing separator fails the read.
  const ReadOutcome out = Read(Variant::kHex, kOpen + "00000001" + "4A504547" + "00000009" + "01020304050607");
  EXPECT_EQ(out.result, -50);
  ASSERT_EQ(out.streams.size(), 1u);
  EXPECT_EQ(out.streams[0].bytes, "\x01\x02\x03\x04\x05\x06\x07");
}

TEST(Container, LowerCaseHexIsReadWrongly) {
  // An invalid digit counts as 42: "ff" is (42 << 4) + 42 in 8 bits, "4a" is
  // (4 << 4) + 42.
  const ReadOutcome data = Read(Variant::kHex, kOpen + "00000001" + "4A504547" + "00000001" + "ff" + kSep + kClose);
  ASSERT_EQ(data.result, 0);
  ASSERT_EQ(data.streams.size(), 1u);
  EXPECT_EQ(data.streams[0].bytes, "\xCA");
  const ReadOutcome type =
      Read(Variant::kBase64, kOpen + "00000001" + kSep + "4a504547" + "00000003" + "00000006" + "AQID\r\n");
  ASSERT_EQ(type.streams.size(), 1u);
  EXPECT_EQ(type.streams[0].type, 0x6A504547u);
}

TEST(Container, ReadersAddStreamsAfterWhatTheContainerHolds) {
  fmx::TextAutoPtr text;
  SetText(text, kHexJPEG);
  fmx::BinaryDataAutoPtr container;
  AddTo(container, {kFILE, "x"});
  ASSERT_EQ(XP7_HxtTxtToBinary(text, container), 0);
  EXPECT_EQ(StreamsOf(container), (Streams{{kFILE, "x"}, {kJPEG, "\x01\x02\x03"}}));
}

TEST(Container, AddOneStreamStepsOverItsRangeEvenWhenItFails) {
  for (auto [size, result, added] : {std::tuple<unsigned int, int, int32_t>{1, 0, 1}, {2, -50, 0}, {900, -50, 0}}) {
    fmx::TextAutoPtr text;
    SetText(text, "..TQ==\r\n..");
    fmx::BinaryDataAutoPtr container;
    unsigned int position = 2;
    EXPECT_EQ(XP7_AddOneFMBinaryData(text, 10, &position, 6, size, kJPEG, container), result);
    EXPECT_EQ(position, 8u);
    EXPECT_EQ(container->GetCount(), added);
  }
}

TEST(Container, WritersAppendAndSkipMissingOrEmptyParameters) {
  fmx::DataVectAutoPtr params;
  FillParams(params, {{kJPEG, "\x01\x02\x03"}});
  for (Variant v : {Variant::kHex, Variant::kBase64}) {
    SCOPED_TRACE(Name(v));
    for (unsigned int index : {0u, 2u, 7u}) {  // a text, the count itself, past it
      fmx::TextAutoPtr out;
      SetText(out, "kept");
      EXPECT_EQ(WriteInto(v, *params, index, out), 0);
      EXPECT_EQ(TextOf(out), "kept");
    }
    fmx::TextAutoPtr out;
    SetText(out, "kept");
    EXPECT_EQ(WriteInto(v, *params, 1, out), 0);
    EXPECT_EQ(TextOf(out), "kept" + (v == Variant::kHex ? kHexJPEG : kBase64JPEG));
  }
}

TEST(Container, WritersWriteMoreStreamsThanReadersTake) {
  const Streams many(101, Stream{kFILE, "ab"});
  for (Variant v : {Variant::kHex, Variant::kBase64}) {
    SCOPED_TRACE(Name(v));
    const std::string text = Write(v, many);
    EXPECT_EQ(text.compare(kOpen.size(), 8, "00000065"), 0);  // 101
    const ReadOutcome out = Read(v, text);
    EXPECT_EQ(out.result, -50);
    EXPECT_TRUE(out.streams.empty());
  }
}

TEST(Container, HostFailuresPassThroughAndLeakNothing) {
  struct Case {
    const char* operation;
    int32_t code;
    bool reader;
  } cases[] = {
      {"FM_Text_AppendText", 1, false},      {"FM_Text_AppendText", 2, false},
      {"FM_BinaryData_GetData", 2, false},   {"FM_QuadChar_SetMacType", 2, false},
      {"FM_Text_FindIgnoringCase", 2, true}, {"FM_Text_DeleteText", 1, true},
      {"FM_Text_GetUnicode", 2, true},       {"FM_BinaryData_Add", 1, true},
      {"FM_QuadChar_Constructor1", 1, true},
  };
  const Streams streams = {{kJPEG, std::string(3000, 'x')}, {kFILE, "abc"}};
  for (Variant v : {Variant::kHex, Variant::kBase64}) {
    const std::string written = Write(v, streams);
    fmx::DataVectAutoPtr params;
    FillParams(params, streams);
    for (const Case& c : cases) {
      // Fail the operation's first, third and a late call, so some fail midway.
      for (uint32_t skip : {0u, 2u, 9u}) {
        SCOPED_TRACE(std::string(Name(v)) + " " + c.operation + " skip " + std::to_string(skip));
        fmx::TextAutoPtr text;
        SetText(text, written);
        fmx::BinaryDataAutoPtr container;
        unsigned int index = 1;
        const auto run = testing_host::RunWithFault(c.operation, c.code, skip, [&] {
          if (c.reader) {
            v == Variant::kHex ? XP7_HxtTxtToBinary(text, container) : XP7_Base64TxtToFMBinaryData(text, container);
          } else {
            v == Variant::kHex ? XP7_GetBinaryAsHxtTxtFromVect(*params, text, &index)
                               : XP7_GetFMBinaryDataAsBase64TxtFromVect(*params, text, &index);
          }
        });
        EXPECT_EQ(run.threw, run.fired) << "a failed host call surfaces as its exception, and only then";
      }
    }
  }
}

}  // namespace
