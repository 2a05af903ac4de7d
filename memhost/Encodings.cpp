// Byte encodings of the in-memory host: the 37 host encodings on byte tables and ICU converters.
//
// Every single-byte set, the Mac sets ICU lacks and Johab are byte tables of our own, filled once
// and then read without ICU or allocation; the Windows double-byte sets use per-thread ICU
// converters. docs/encodings.md lists what serves each number and where it parts from the vendor.
#include "Encodings.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ucnv_err.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

namespace memhost {
namespace {

#include "tables/MacArabic.inc"
#include "tables/MacChineseSimp.inc"
#include "tables/MacChineseTrad.inc"
#include "tables/MacHebrew.inc"
#include "tables/MacJapanese.inc"
#include "tables/MacKorean.inc"

constexpr int32_t kNative = 0;
constexpr int32_t kUtf8 = 1;
constexpr int32_t kDos = 2;
constexpr int32_t kShiftJisWin = 7;
constexpr int32_t kEncodingCount = 37;

constexpr char16_t kNoChar = 0xFFFF;   // decode tables: the code is no character
constexpr uint16_t kNoCode = 0xFFFF;   // encode pages: the unit has no code
constexpr char16_t kReplacement = 0xFFFD;
constexpr char kUnmappable = '?';

bool IsSequenceMark(char16_t unit) { return unit >= 0xD800 && unit < 0xE000; }

// ---------------------------------------------------------------------------------------------
// ByteTable: a set of single bytes and double bytes (lead << 8 | trail) held as tables, so that
// converting never touches ICU and never allocates beyond the output. Filled once by a builder,
// read-only (and so shared between threads) afterwards.
class ByteTable {
 public:
  ByteTable() {
    single_.fill(kNoChar);
    row_.fill(-1);
    trail_.fill(false);
    page_.fill(0);
    pages_.assign(256, kNoCode);  // page 0: the shared empty page
  }

  // Maps `code` (a byte, or lead << 8 | trail) to one unit.
  void Map(uint16_t code, char16_t unit) {
    SetDecoded(code, unit);
    uint16_t& page = page_[unit >> 8];
    if (page == 0) {
      page = static_cast<uint16_t>(pages_.size() / 256);
      pages_.resize(pages_.size() + 256, kNoCode);
    }
    uint16_t& slot = pages_[page * 256u + (unit & 0xFF)];
    // Where several codes decode alike (Mac Arabic's right-to-left twins of ASCII), the lowest,
    // the plain ASCII byte, is the one written back.
    if (slot == kNoCode || code < slot) slot = code;
  }

  // Maps `code` to several units: the encoder finds it by all of them.
  void MapSequence(uint16_t code, const char16_t* units, size_t size) {
    Sequence sequence{code, static_cast<uint32_t>(sequenceUnits_.size()), static_cast<uint32_t>(size)};
    SetDecoded(code, static_cast<char16_t>(0xD800 + sequences_.size()));
    sequenceUnits_.insert(sequenceUnits_.end(), units, units + size);
    sequences_.push_back(sequence);
  }

  // Ends the build: orders the sequences for the encoder.
  void Finish() {
    byFirst_.resize(sequences_.size());
    for (size_t i = 0; i < byFirst_.size(); ++i) byFirst_[i] = static_cast<uint32_t>(i);
    std::sort(byFirst_.begin(), byFirst_.end(), [this](uint32_t a, uint32_t b) {
      char16_t fa = First(sequences_[a]), fb = First(sequences_[b]);
      if (fa != fb) return fa < fb;
      return sequences_[a].length > sequences_[b].length;  // longest match first
    });
    startsSequence_.assign(sequences_.empty() ? 0 : 65536 / 64, 0);
    for (const Sequence& s : sequences_) startsSequence_[First(s) >> 6] |= uint64_t(1) << (First(s) & 63);
  }

  // Appends the decoded bytes to `out`.
  void Decode(const unsigned char* bytes, size_t size, std::u16string& out) const {
    out.reserve(out.size() + size);
    size_t i = 0;
    while (i < size) {
      unsigned char b = bytes[i];
      char16_t unit = single_[b];
      if (unit != kNoChar) {
        Append(unit, out);
        ++i;
        continue;
      }
      if (row_[b] >= 0 && i + 1 < size) {
        unsigned char t = bytes[i + 1];
        unit = rows_[row_[b] * 256u + t];
        if (unit != kNoChar || trail_[t]) {
          Append(unit == kNoChar ? kReplacement : unit, out);
          i += 2;
          continue;
        }
      }
      out.push_back(kReplacement);  // a stray byte, or a lead byte without its trail
      ++i;
    }
  }

  // Encodes whole characters into `out` while they fit; returns the bytes written.
  size_t Encode(const char16_t* units, size_t size, char* out, size_t capacity) const {
    size_t written = 0;
    size_t i = 0;
    while (i < size) {
      char16_t unit = units[i];
      size_t consumed = 1;
      uint16_t code = kNoCode;
      if (U16_IS_SURROGATE(unit)) {
        // No table holds a character beyond the BMP; a pair is one "?", as is a lone surrogate.
        if (U16_IS_LEAD(unit) && i + 1 < size && U16_IS_TRAIL(units[i + 1])) consumed = 2;
      } else {
        if (!startsSequence_.empty() && (startsSequence_[unit >> 6] >> (unit & 63) & 1))
          code = MatchSequence(units + i, size - i, consumed);
        if (code == kNoCode) code = pages_[page_[unit >> 8] * 256u + (unit & 0xFF)];
      }
      if (code > 0xFF && code != kNoCode) {
        if (capacity - written < 2) break;
        out[written++] = static_cast<char>(code >> 8);
        out[written++] = static_cast<char>(code & 0xFF);
      } else {
        if (written == capacity) break;
        out[written++] = code == kNoCode ? kUnmappable : static_cast<char>(code);
      }
      i += consumed;
    }
    return written;
  }

 private:
  struct Sequence {
    uint16_t code;
    uint32_t offset;  // into sequenceUnits_
    uint32_t length;
  };

  void SetDecoded(uint16_t code, char16_t unit) {
    if (code < 0x100) {
      single_[code] = unit;
      return;
    }
    unsigned lead = code >> 8, trail = code & 0xFF;
    if (row_[lead] < 0) {
      row_[lead] = static_cast<int16_t>(rows_.size() / 256);
      rows_.resize(rows_.size() + 256, kNoChar);
    }
    rows_[row_[lead] * 256u + trail] = unit;
    trail_[trail] = true;
  }

  char16_t First(const Sequence& s) const { return sequenceUnits_[s.offset]; }

  void Append(char16_t unit, std::u16string& out) const {
    if (!IsSequenceMark(unit)) {
      out.push_back(unit);
      return;
    }
    const Sequence& s = sequences_[unit - 0xD800];
    out.append(sequenceUnits_.data() + s.offset, s.length);
  }

  uint16_t MatchSequence(const char16_t* units, size_t size, size_t& consumed) const {
    auto it = std::lower_bound(byFirst_.begin(), byFirst_.end(), units[0],
                               [this](uint32_t index, char16_t unit) { return First(sequences_[index]) < unit; });
    for (; it != byFirst_.end() && First(sequences_[*it]) == units[0]; ++it) {
      const Sequence& s = sequences_[*it];
      if (s.length <= size && std::equal(units, units + s.length, sequenceUnits_.data() + s.offset)) {
        consumed = s.length;
        return s.code;
      }
    }
    return kNoCode;
  }

  std::array<char16_t, 256> single_;  // kNoChar, a unit, or 0xD800 + n for sequence n
  std::array<int16_t, 256> row_;      // a lead byte's row in rows_, -1 for other bytes
  std::array<bool, 256> trail_;       // bytes that end some double-byte code
  std::vector<char16_t> rows_;        // 256 units a lead byte
  std::vector<Sequence> sequences_;
  std::vector<char16_t> sequenceUnits_;
  std::vector<uint32_t> byFirst_;          // sequences by first unit, longest first
  std::vector<uint64_t> startsSequence_;   // bit per BMP unit that begins a sequence
  std::array<uint16_t, 256> page_;         // a unit's high byte -> its page in pages_
  std::vector<uint16_t> pages_;            // 256 codes a page
};

// ---------------------------------------------------------------------------------------------
// ICU handles and the callbacks that make ICU substitute the way the host does.

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

// A single byte a vendor's code page decodes although ICU's table of it leaves it out.
struct ExtraByte {
  unsigned char byte;
  char16_t unit;
};

struct ExtraBytes {
  const ExtraByte* begin;
  size_t size;
};

// Windows' code page 932 decodes these lone bytes; ICU's windows-31j has no character for them.
constexpr ExtraByte kCp932Extras[] = {{0x80, 0x0080}, {0xA0, 0xF8F0}, {0xFD, 0xF8F1}, {0xFE, 0xF8F2}, {0xFF, 0xF8F3}};
constexpr ExtraBytes kCp932ExtraBytes{kCp932Extras, sizeof kCp932Extras / sizeof kCp932Extras[0]};

void ToUnicodeReplacement(const void* context, UConverterToUnicodeArgs* args, const char* codeUnits,
                          int32_t length, UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;  // reset, close, clone
  UChar unit = kReplacement;
  if (const auto* extras = static_cast<const ExtraBytes*>(context); extras && length == 1) {
    for (size_t i = 0; i < extras->size; ++i)
      if (extras->begin[i].byte == static_cast<unsigned char>(codeUnits[0])) unit = extras->begin[i].unit;
  }
  *error = U_ZERO_ERROR;
  ucnv_cbToUWriteUChars(args, &unit, 1, 0, error);
}

void FromUnicodeQuestionMark(const void* context, UConverterFromUnicodeArgs* args, const UChar*, int32_t,
                             UChar32 codePoint, UConverterCallbackReason reason, UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;
  char byte = kUnmappable;
  if (const auto* extras = static_cast<const ExtraBytes*>(context)) {
    for (size_t i = 0; i < extras->size; ++i)
      if (extras->begin[i].unit == codePoint) byte = static_cast<char>(extras->begin[i].byte);
  }
  *error = U_ZERO_ERROR;
  ucnv_cbFromUWriteBytes(args, &byte, 1, 0, error);
}

// Opens `name` with the host's substitutions: U+FFFD when decoding, one "?" per character when
// encoding. Null when ICU has no such converter.
ConverterPtr OpenConverter(const char* name, const ExtraBytes* extras) {
  UErrorCode error = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name, &error));
  if (U_FAILURE(error)) return nullptr;
  ucnv_setToUCallBack(converter.get(), ToUnicodeReplacement, extras, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter.get(), FromUnicodeQuestionMark, extras, nullptr, nullptr, &error);
  if (U_FAILURE(error)) return nullptr;
  return converter;
}

// Decodes one byte string to exactly one unit, or returns kNoChar.
char16_t DecodeOne(UConverter* converter, const char* bytes, size_t size) {
  UChar units[4];
  UChar* target = units;
  const char* source = bytes;
  UErrorCode error = U_ZERO_ERROR;
  ucnv_reset(converter);
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_toUnicode(converter, &target, units + 4, &source, bytes + size, nullptr, true, &error);
  if (U_FAILURE(error) || source != bytes + size || target != units + 1) return kNoChar;
  return units[0];
}

// ---------------------------------------------------------------------------------------------
// The 37 encodings.

enum class Serves : uint8_t {
  kUtf8,          // our own UTF-8
  kLatin1,        // a table of our own: bytes are U+0000-U+00FF
  kIcuTable,      // a table filled once from an ICU single-byte converter
  kGenerated,     // a table generated from Perl's Encode (tools/gen-encoding-tables.pl)
  kJohab,         // a table computed from Johab's layout and ICU's KS X 1001
  kIcuConverter,  // per-thread ICU converters
};

struct EncodingSource {
  Serves serves;
  const char* icuName;  // for kIcuTable and kIcuConverter
};

// Converter names are ICU's own, not aliases, so that an alias moving between ICU releases
// cannot change a mapping under us.
constexpr EncodingSource kSources[kEncodingCount] = {
    {Serves::kGenerated, nullptr},                  // 0 Native: resolved before use
    {Serves::kUtf8, nullptr},                       // 1 UTF8
    {Serves::kIcuTable, "ibm-437_P100-1995"},       // 2 ASCII_DOS
    {Serves::kIcuTable, "ibm-5348_P100-1997"},      // 3 ASCII_Windows (windows-1252)
    {Serves::kIcuTable, "macos-0_2-10.2"},          // 4 ASCII_Mac (macintosh)
    {Serves::kLatin1, nullptr},                     // 5 ISO_8859_1
    {Serves::kGenerated, nullptr},                  // 6 ShiftJIS_Mac
    {Serves::kIcuConverter, "ibm-943_P15A-2003"},   // 7 ShiftJIS_Win (windows-31j)
    {Serves::kGenerated, nullptr},                  // 8 Korean_Mac
    {Serves::kIcuConverter, "windows-949-2000"},    // 9 Korean_Win
    {Serves::kJohab, "windows-949-2000"},           // 10 Korean_Johab
    {Serves::kGenerated, nullptr},                  // 11 ChineseTrad_Mac
    {Serves::kIcuConverter, "windows-950-2000"},    // 12 ChineseTrad_Win
    {Serves::kGenerated, nullptr},                  // 13 ChineseSimp_Mac
    {Serves::kIcuConverter, "windows-936-2000"},    // 14 ChineseSimp_Win
    {Serves::kIcuTable, "macos-7_3-10.2"},          // 15 Cyrillic_Mac
    {Serves::kIcuTable, "ibm-5347_P100-1998"},      // 16 Cyrillic_Win (windows-1251)
    {Serves::kIcuTable, "ibm-915_P100-1995"},       // 17 ISO_8859_5
    {Serves::kIcuTable, "macos-29-10.2"},           // 18 CentralEurope_Mac
    {Serves::kIcuTable, "ibm-5346_P100-1998"},      // 19 EasternEurope_Win (windows-1250)
    {Serves::kIcuTable, "ibm-912_P100-1995"},       // 20 ISO_8859_2
    {Serves::kIcuTable, "macos-35-10.2"},           // 21 Turkish_Mac
    {Serves::kIcuTable, "ibm-5350_P100-1998"},      // 22 Turkish_Win (windows-1254)
    {Serves::kIcuTable, "ibm-913_P100-2000"},       // 23 ISO_8859_3
    {Serves::kIcuTable, "ibm-920_P100-1995"},       // 24 ISO_8859_9
    {Serves::kIcuTable, "ibm-9449_P100-2002"},      // 25 Baltic_Win (windows-1257)
    {Serves::kIcuTable, "ibm-914_P100-1995"},       // 26 ISO_8859_4
    {Serves::kGenerated, nullptr},                  // 27 Arabic_Mac
    {Serves::kIcuTable, "ibm-9448_X100-2005"},      // 28 Arabic_Win (windows-1256)
    {Serves::kIcuTable, "ibm-1089_P100-1995"},      // 29 ISO_8859_6
    {Serves::kIcuTable, "macos-6_2-10.4"},          // 30 Greek_Mac
    {Serves::kIcuTable, "ibm-5349_P100-1998"},      // 31 Greek_Win (windows-1253)
    {Serves::kIcuTable, "ibm-9005_X110-2007"},      // 32 ISO_8859_7
    {Serves::kGenerated, nullptr},                  // 33 Hebrew_Mac
    {Serves::kIcuTable, "ibm-9447_P100-2002"},      // 34 Hebrew_Win (windows-1255)
    {Serves::kIcuTable, "ibm-5012_P100-1999"},      // 35 ISO_8859_8
    {Serves::kIcuTable, "ibm-923_P100-1998"},       // 36 ISO_8859_15
};

std::atomic<int32_t> gNative{4};

int32_t Resolve(int32_t encoding) { return encoding == kNative ? NativeEncoding() : encoding; }

// The generated data of one Mac set.
struct GeneratedData {
  const uint16_t* starts;
  size_t startCount;
  const char16_t* units;
  const char16_t* sequences;
};

template <size_t S, size_t U, size_t Q>
GeneratedData Generated(const uint16_t (&starts)[S], const char16_t (&units)[U], const char16_t (&sequences)[Q]) {
  static_assert(U == S * 16, "16 units a block");
  return {starts, S, units, sequences};
}

GeneratedData GeneratedFor(int32_t encoding) {
  switch (encoding) {
    case 6: return Generated(kMacJapaneseStarts, kMacJapaneseUnits, kMacJapaneseSequences);
    case 8: return Generated(kMacKoreanStarts, kMacKoreanUnits, kMacKoreanSequences);
    case 11: return Generated(kMacChineseTradStarts, kMacChineseTradUnits, kMacChineseTradSequences);
    case 13: return Generated(kMacChineseSimpStarts, kMacChineseSimpUnits, kMacChineseSimpSequences);
    case 27: return Generated(kMacArabicStarts, kMacArabicUnits, kMacArabicSequences);
    default: return Generated(kMacHebrewStarts, kMacHebrewUnits, kMacHebrewSequences);
  }
}

void FillGenerated(const GeneratedData& data, ByteTable& table) {
  std::vector<const char16_t*> sequences;  // sequence n starts at sequences[n]: its length, its units
  for (size_t i = 0; i < data.startCount; ++i) {
    for (unsigned k = 0; k < 16; ++k) {
      auto code = static_cast<uint16_t>(data.starts[i] + k);
      char16_t unit = data.units[i * 16 + k];
      if (unit == kNoChar) continue;
      if (!IsSequenceMark(unit)) {
        table.Map(code, unit);
        continue;
      }
      size_t n = unit - 0xD800u;
      while (sequences.size() <= n) {
        const char16_t* next = sequences.empty() ? data.sequences : sequences.back() + 1 + *sequences.back();
        sequences.push_back(next);
      }
      table.MapSequence(code, sequences[n] + 1, *sequences[n]);
    }
  }
}

// Where ICU's IBM-derived DOS table parts from the vendor's code page 437: IBM swaps three
// controls (0x1A, 0x1C, 0x7F) for its PC convention and gives 0xE6 to Greek mu, where the vendor
// keeps the controls as they are and has MICRO SIGN.
constexpr ExtraByte kCp437Corrections[] = {{0x1A, 0x001A}, {0x1C, 0x001C}, {0x7F, 0x007F}, {0xE6, 0x00B5}};

void FillFromIcu(const char* name, int32_t encoding, ByteTable& table) {
  UErrorCode error = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name, &error));
  if (U_FAILURE(error)) return;  // no ICU data: every byte decodes to U+FFFD
  std::array<char16_t, 256> units;
  for (unsigned b = 0; b < 256; ++b) {
    char byte = static_cast<char>(b);
    units[b] = DecodeOne(converter.get(), &byte, 1);
  }
  if (encoding == kDos)
    for (const ExtraByte& fix : kCp437Corrections) units[fix.byte] = fix.unit;
  for (unsigned b = 0; b < 256; ++b)
    if (units[b] != kNoChar) table.Map(static_cast<uint16_t>(b), units[b]);
}

// Johab keeps all 11,172 modern syllables in a 5+5+5-bit layout under lead bytes 0x84-0xD3 and
// moves KS X 1001's symbols (rows 0x21-0x2C) and hanja (rows 0x4A-0x7D) to leads 0xD9-0xDE and
// 0xE0-0xF9, two KS rows per lead byte.
void FillJohab(const char* ksName, ByteTable& table) {
  for (unsigned b = 0; b < 0x80; ++b) table.Map(static_cast<uint16_t>(b), static_cast<char16_t>(b));

  // Compatibility jamo of the 19 initials and of the 27 finals (index 0: no final).
  static constexpr char16_t kInitialJamo[19] = {
      // 0x00-0x0F
      0x3131, 0x3132, 0x3134, 0x3137, 0x3138, 0x3139, 0x3141, 0x3142, 0x3143, 0x3145, 0x3146, 0x3147, 0x3148, 0x3149, 0x314A, 0x314B,
      // 0x10-0x12
      0x314C, 0x314D, 0x314E,
  };
  static constexpr char16_t kFinalJamo[28] = {
      // 0x00-0x0F
      0x0000, 0x3131, 0x3132, 0x3133, 0x3134, 0x3135, 0x3136, 0x3137, 0x3139, 0x313A, 0x313B, 0x313C, 0x313D, 0x313E, 0x313F, 0x3140,
      // 0x10-0x1B
      0x3141, 0x3142, 0x3144, 0x3145, 0x3146, 0x3147, 0x3148, 0x314A, 0x314B, 0x314C, 0x314D, 0x314E,
  };
  auto initialOf = [](unsigned v) { return v >= 2 && v <= 20 ? int(v) - 2 : v == 1 ? -1 : -2; };
  auto medialOf = [](unsigned v) {
    if (v == 2) return -1;
    if (v >= 3 && v <= 7) return int(v) - 3;
    if (v >= 10 && v <= 15) return int(v) - 5;
    if (v >= 18 && v <= 23) return int(v) - 7;
    if (v >= 26 && v <= 29) return int(v) - 9;
    return -2;
  };
  auto finalOf = [](unsigned v) { return v >= 1 && v <= 17 ? int(v) - 1 : v >= 19 && v <= 29 ? int(v) - 2 : -2; };
  for (unsigned code = 0x8400; code < 0xD400; ++code) {
    int i = initialOf(code >> 10 & 31), m = medialOf(code >> 5 & 31), f = finalOf(code & 31);
    if (i == -2 || m == -2 || f == -2) continue;
    char16_t unit = 0;
    if (i >= 0 && m >= 0) {
      unit = static_cast<char16_t>(0xAC00 + (i * 21 + m) * 28 + f);
    } else if (i >= 0 && f == 0) {
      unit = kInitialJamo[i];
    } else if (m >= 0 && f == 0) {
      unit = static_cast<char16_t>(0x314F + m);
    } else if (i < 0 && m < 0 && f > 0 &&
               std::find(std::begin(kInitialJamo), std::end(kInitialJamo), kFinalJamo[f]) == std::end(kInitialJamo)) {
      unit = kFinalJamo[f];  // only the clusters that cannot begin a syllable stand as finals
    }
    if (unit) table.Map(static_cast<uint16_t>(code), unit);
  }

  UErrorCode error = U_ZERO_ERROR;
  ConverterPtr ks(ucnv_open(ksName, &error));
  if (U_FAILURE(error)) return;
  for (unsigned row = 0x21; row <= 0x7D; ++row) {
    bool symbols = row <= 0x2C;
    if (!symbols && row < 0x4A) continue;
    unsigned pair = row - (symbols ? 0x21 : 0x4A);
    unsigned lead = (symbols ? 0xD9 : 0xE0) + pair / 2;
    for (unsigned col = 0x21; col <= 0x7E; ++col) {
      // KS row 0x24 begins with the modern jamo, which Johab holds as fill combinations above.
      if (row == 0x24 && col <= 0x53) continue;
      const char euc[2] = {static_cast<char>(row | 0x80), static_cast<char>(col | 0x80)};
      char16_t unit = DecodeOne(ks.get(), euc, 2);
      if (unit == kNoChar) continue;
      unsigned trail = pair % 2 ? col + 0x80 : col + (col <= 0x6E ? 0x10 : 0x22);
      table.Map(static_cast<uint16_t>(lead << 8 | trail), unit);
    }
  }
}

std::unique_ptr<ByteTable> BuildTable(int32_t encoding) {
  auto table = std::make_unique<ByteTable>();
  const EncodingSource& source = kSources[encoding];
  switch (source.serves) {
    case Serves::kLatin1:
      for (unsigned b = 0; b < 256; ++b) table->Map(static_cast<uint16_t>(b), static_cast<char16_t>(b));
      break;
    case Serves::kIcuTable:
      FillFromIcu(source.icuName, encoding, *table);
      break;
    case Serves::kGenerated:
      FillGenerated(GeneratedFor(encoding), *table);
      break;
    case Serves::kJohab:
      FillJohab(source.icuName, *table);
      break;
    default:
      break;  // served elsewhere; an empty table maps nothing
  }
  table->Finish();
  return table;
}

// The table of a table-served encoding (1-36), or of none: an empty table for numbers that are
// no host encoding, so that they decode to U+FFFD and encode to "?".
const ByteTable& TableFor(int32_t encoding) {
  static std::array<std::once_flag, kEncodingCount + 1> once;
  static std::array<std::unique_ptr<ByteTable>, kEncodingCount + 1> tables;
  // Once built, a table is found with one load: this runs for every character the
  // toolkit appends, where call_once's own check would cost as much as the decoding.
  static std::array<std::atomic<const ByteTable*>, kEncodingCount + 1> built{};
  size_t slot = IsHostEncoding(encoding) ? static_cast<size_t>(encoding) : kEncodingCount;
  if (const ByteTable* table = built[slot].load(std::memory_order_acquire)) return *table;
  std::call_once(once[slot], [&] {
    tables[slot] = slot == kEncodingCount ? std::make_unique<ByteTable>() : BuildTable(encoding);
    built[slot].store(tables[slot].get(), std::memory_order_release);
  });
  return *tables[slot];
}

// ---------------------------------------------------------------------------------------------
// UTF-8

void DecodeUtf8(const unsigned char* bytes, size_t size, std::u16string& out) {
  out.reserve(out.size() + size);
  size_t i = 0;
  while (i < size) {
    size_t run = i;
    while (i < size && bytes[i] < 0x80) ++i;
    out.append(bytes + run, bytes + i);
    if (i == size) break;
    UChar32 c;
    // ICU's rule: each maximal ill-formed subpart becomes one U+FFFD.
    U8_NEXT_OR_FFFD(bytes, i, size, c);
    if (c <= 0xFFFF) {
      out.push_back(static_cast<char16_t>(c));
    } else {
      out.push_back(U16_LEAD(c));
      out.push_back(U16_TRAIL(c));
    }
  }
}

// A lone surrogate is no character and becomes "?" like any character a set cannot hold,
// rather than the three bytes of a CESU-style surrogate no UTF-8 reader accepts.
size_t EncodeUtf8(const char16_t* units, size_t size, char* out, size_t capacity) {
  size_t written = 0;
  size_t i = 0;
  while (i < size) {
    while (i < size && units[i] < 0x80 && written < capacity) out[written++] = static_cast<char>(units[i++]);
    if (i == size || written == capacity) break;
    UChar32 c = units[i];
    size_t consumed = 1;
    if (U16_IS_LEAD(c) && i + 1 < size && U16_IS_TRAIL(units[i + 1])) {
      c = U16_GET_SUPPLEMENTARY(c, units[i + 1]);
      consumed = 2;
    }
    if (U16_IS_SURROGATE(c)) {
      out[written++] = kUnmappable;
    } else {
      size_t length = U8_LENGTH(c);
      if (capacity - written < length) break;
      U8_APPEND_UNSAFE(out, written, c);
    }
    i += consumed;
  }
  return written;
}

// ---------------------------------------------------------------------------------------------
// Per-thread ICU converters (the Windows double-byte sets).

// ICU's windows-31j follows IBM in swapping 0x1A, 0x1C and 0x7F with U+001C, U+007F, U+001A;
// code page 932 keeps them as the controls they are. Units are swapped around ICU to undo it.
char16_t IbmControlToVendor(char16_t unit) {
  switch (unit) {
    case 0x001C: return 0x001A;
    case 0x007F: return 0x001C;
    case 0x001A: return 0x007F;
    default: return unit;
  }
}

char16_t VendorControlToIbm(char16_t unit) {
  switch (unit) {
    case 0x001A: return 0x001C;
    case 0x001C: return 0x007F;
    case 0x007F: return 0x001A;
    default: return unit;
  }
}

// The calling thread's converter for `encoding`, reset; null when ICU lacks it.
UConverter* ThreadConverter(int32_t encoding) {
  thread_local std::array<ConverterPtr, kEncodingCount> converters;
  thread_local std::array<bool, kEncodingCount> tried{};
  if (!tried[encoding]) {
    tried[encoding] = true;
    converters[encoding] = OpenConverter(kSources[encoding].icuName, encoding == kShiftJisWin ? &kCp932ExtraBytes : nullptr);
  }
  UConverter* converter = converters[encoding].get();
  if (converter) ucnv_reset(converter);
  return converter;
}

void DecodeIcu(int32_t encoding, const unsigned char* bytes, size_t size, std::u16string& out) {
  // All four sets keep ASCII as it is: a leading ASCII run needs no converter.
  size_t ascii = 0;
  while (ascii < size && bytes[ascii] < 0x80) ++ascii;
  out.append(bytes, bytes + ascii);
  if (ascii == size) return;
  UConverter* converter = ThreadConverter(encoding);
  if (!converter) {
    out.append(size - ascii, kReplacement);
    return;
  }
  const char* source = reinterpret_cast<const char*>(bytes + ascii);
  const char* sourceEnd = reinterpret_cast<const char*>(bytes + size);
  size_t begin = out.size();
  size_t done = begin;
  // Every byte of these sets gives at most one unit; the loop only guards against surprises.
  out.resize(done + (size - ascii) + 1);
  for (;;) {
    UChar* target = &out[done];
    UErrorCode error = U_ZERO_ERROR;
    ucnv_toUnicode(converter, &target, out.data() + out.size(), &source, sourceEnd, nullptr, true, &error);
    done = static_cast<size_t>(target - out.data());
    if (error != U_BUFFER_OVERFLOW_ERROR) break;
    out.resize(out.size() + static_cast<size_t>(sourceEnd - source) + 16);
  }
  out.resize(done);
  if (encoding == kShiftJisWin)
    for (size_t i = begin; i < done; ++i) out[i] = IbmControlToVendor(out[i]);
}

size_t EncodeIcu(int32_t encoding, const char16_t* units, size_t size, char* out, size_t capacity) {
  size_t pos = 0;
  while (pos < size && pos < capacity && units[pos] < 0x80) {
    out[pos] = static_cast<char>(units[pos]);
    ++pos;
  }
  size_t written = pos;
  if (pos == size || written == capacity) return written;
  UConverter* converter = ThreadConverter(encoding);
  if (!converter) {  // without ICU's data the set holds no character beyond ASCII
    for (; pos < size && written < capacity; ++pos) {
      if (U16_IS_LEAD(units[pos]) && pos + 1 < size && U16_IS_TRAIL(units[pos + 1])) ++pos;
      out[written++] = units[pos] < 0x80 ? static_cast<char>(units[pos]) : kUnmappable;
    }
    return written;
  }

  // Chunks keep the stack small; a chunk's worst case (two bytes a unit) always fits `bytes`, so
  // ICU never holds back output, and offsets tell which bytes make one character.
  constexpr size_t kChunk = 256;
  char16_t swapped[kChunk];
  char bytes[2 * kChunk + 16];
  int32_t offsets[sizeof bytes];
  while (pos < size && written < capacity) {
    size_t end = std::min(size, pos + kChunk);
    if (end < size && U16_IS_LEAD(units[end - 1])) --end;  // a pair stays in one chunk
    const char16_t* source = units + pos;
    if (encoding == kShiftJisWin) {
      for (size_t i = pos; i < end; ++i) swapped[i - pos] = VendorControlToIbm(units[i]);
      source = swapped;
    }
    const char16_t* sourceEnd = source + (end - pos);
    char* target = bytes;
    UErrorCode error = U_ZERO_ERROR;
    ucnv_fromUnicode(converter, &target, bytes + sizeof bytes, &source, sourceEnd, offsets, end == size, &error);
    if (U_FAILURE(error)) break;
    size_t made = static_cast<size_t>(target - bytes);
    for (size_t i = 0; i < made;) {
      size_t j = i + 1;
      while (j < made && offsets[j] == offsets[i]) ++j;
      if (capacity - written < j - i) return written;
      std::memcpy(out + written, bytes + i, j - i);
      written += j - i;
      i = j;
    }
    pos = end;
  }
  return written;
}

}  // namespace

bool IsHostEncoding(int32_t encoding) { return encoding >= 0 && encoding < kEncodingCount; }

int32_t NativeEncoding() { return gNative.load(std::memory_order_relaxed); }

void SetNativeEncoding(int32_t encoding) {
  if (encoding > kNative && encoding < kEncodingCount) gNative.store(encoding, std::memory_order_relaxed);
}

void DecodeBytes(int32_t encoding, const char* bytes, size_t size, std::u16string& out) {
  if (size == 0) return;
  encoding = Resolve(encoding);
  const auto* data = reinterpret_cast<const unsigned char*>(bytes);
  if (encoding == kUtf8) return DecodeUtf8(data, size, out);
  if (IsHostEncoding(encoding) && kSources[encoding].serves == Serves::kIcuConverter)
    return DecodeIcu(encoding, data, size, out);
  TableFor(encoding).Decode(data, size, out);
}

size_t EncodeUnits(int32_t encoding, const char16_t* units, size_t size, char* out, size_t capacity) {
  if (size == 0 || capacity == 0) return 0;
  encoding = Resolve(encoding);
  if (encoding == kUtf8) return EncodeUtf8(units, size, out, capacity);
  if (IsHostEncoding(encoding) && kSources[encoding].serves == Serves::kIcuConverter)
    return EncodeIcu(encoding, units, size, out, capacity);
  return TableFor(encoding).Encode(units, size, out, capacity);
}

}  // namespace memhost
