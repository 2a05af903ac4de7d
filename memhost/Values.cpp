// The in-memory host's data values, parameter lists, containers, type codes,
// locales and calculation environment.
#include <cstdio>
#include <cstring>

#include "Internal.h"

using fmx::BinaryData;
using fmx::Data;
using fmx::DataVect;
using fmx::DateTime;
using fmx::ExprEnv;
using fmx::FixPt;
using fmx::HostErrorRecord;
using fmx::Locale;
using fmx::QuadChar;
using fmx::Text;

namespace memhost {
namespace {

std::u16string UnitsOf(const TextImpl& t) {
  std::u16string s(t.units.size(), u'\0');
  t.units.copyOut(0, s.size(), s.data());
  return s;
}

void AssignAscii(TextImpl& t, const std::string& s) {
  std::u16string units(s.begin(), s.end());
  AssignUnits(t, units.data(), units.size());
}

// The ASCII part of a text, for reading numbers and dates out of it.
std::string AsciiOf(const TextImpl& t) {
  std::string s;
  for (char16_t u : UnitsOf(t)) s += u < 128 ? char(u) : '?';
  return s;
}

Fixed TotalSeconds(const DateTimeImpl& dt) { return Fixed(dt.day - 1) * 86400 * kScale + dt.secs; }

std::string FormatTimeStamp(const DateTimeImpl& dt) {
  HostErrorRecord err{1, 0};
  const DateTime* p = &dt;
  int32_t secs = static_cast<int32_t>(dt.secs / kScale);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", FM_DateTime_GetYear(p, err),
                FM_DateTime_GetMonth(p, err), FM_DateTime_GetDay(p, err), secs / 3600, secs / 60 % 60, secs % 60);
  return text;
}

// Days since 0001-01-01 (as day 1) of a Gregorian date.
int64_t DayNumber(int64_t y, int64_t m, int64_t d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yoe = y - era * 400;
  const int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468 + 719163;
}

// "YYYY-MM-DD[ HH:MM[:SS]]", the form FormatTimeStamp writes.
bool ParseTimeStamp(const std::string& s, DateTimeImpl& dt) {
  int y = 0, mo = 0, d = 0, h = 0, mi = 0, sec = 0;
  int n = std::sscanf(s.c_str(), " %d-%d-%d %d:%d:%d", &y, &mo, &d, &h, &mi, &sec);
  if (n < 3 || mo < 1 || mo > 12 || d < 1 || d > 31) return false;
  dt.day = DayNumber(y, mo, d);
  dt.secs = Fixed(h * 3600 + mi * 60 + sec) * kScale;
  return true;
}

void ResetForms(DataImpl& d) {
  d.text.units.clear();
  d.number.value = 0;
  d.timeStamp.day = 1;
  d.timeStamp.secs = 0;
  d.binary.streams.clear();
}

const DataImpl& At(const DataVect* self, uint32_t index) {
  const DataVectImpl& v = Impl(self);
  if (index >= v.items.size()) throw HostFailure();
  return *v.items[index];
}

const BinaryDataImpl::Stream& StreamAt(const BinaryData* self, int32_t index) {
  const BinaryDataImpl& b = Impl(self);
  if (index < 0 || static_cast<size_t>(index) >= b.streams.size()) throw HostFailure();
  return b.streams[static_cast<size_t>(index)];
}

}  // namespace

void DataImpl::copyFrom(const DataImpl& other) {
  std::u16string units = UnitsOf(other.text);
  AssignUnits(text, units.data(), units.size());
  text.style = other.text.style;
  locale.name = other.locale.name;
  number.value = other.number.value;
  timeStamp.day = other.timeStamp.day;
  timeStamp.secs = other.timeStamp.secs;
  binary.streams = other.binary.streams;
}

}  // namespace memhost

using namespace memhost;

extern "C" {

Locale* FM_Locale_Constructor1(const char* name, HostErrorRecord& err) {
  return Run("FM_Locale_Constructor1", err, [&] {
    LocaleImpl* locale = Born(new LocaleImpl);
    if (name != nullptr && *name != '\0') locale->name = name;
    return static_cast<Locale*>(locale);
  });
}

void FM_Locale_Delete(Locale* self, HostErrorRecord& err) {
  Dies("FM_Locale_Delete", static_cast<LocaleImpl*>(self), err);
}

Data* FM_Data_Constructor1(HostErrorRecord& err) {
  return Run("FM_Data_Constructor1", err, [] { return static_cast<Data*>(Born(new DataImpl)); });
}

void FM_Data_Delete(Data* self, HostErrorRecord& err) { Dies("FM_Data_Delete", static_cast<DataImpl*>(self), err); }

void FM_Data_Clear(Data* self, HostErrorRecord& err) {
  Run("FM_Data_Clear", err, [&] { ResetForms(Impl(self)); });
}

const Text* FM_Data_GetAsText(const Data* self, HostErrorRecord& err) {
  return Run("FM_Data_GetAsText", err, [&] { return static_cast<const Text*>(&Impl(self).text); });
}

const Locale* FM_Data_GetLocale(const Data* self, HostErrorRecord& err) {
  return Run("FM_Data_GetLocale", err, [&] { return static_cast<const Locale*>(&Impl(self).locale); });
}

fmx::errcode FM_Data_SetAsText(Data* self, const Text* text, const Locale* locale, HostErrorRecord& err) {
  return Run("FM_Data_SetAsText", err, [&] {
    DataImpl& d = Impl(self);
    std::u16string units = UnitsOf(Impl(text));
    ResetForms(d);
    AssignUnits(d.text, units.data(), units.size());
    d.text.style = Impl(text).style;
    d.locale.name = Impl(locale).name;
    // A text reads as a number or a timestamp where it looks like one.
    std::string ascii = AsciiOf(d.text);
    if (!ParseTimeStamp(ascii, d.timeStamp)) {
      Fixed v;
      if (ParseFixed(ascii, v)) d.number.value = v;
    } else {
      d.number.value = TotalSeconds(d.timeStamp);
    }
    return fmx::errcode(0);
  });
}

bool FM_Data_SetAsNumber(Data* self, const FixPt* number, HostErrorRecord& err) {
  return Run("FM_Data_SetAsNumber", err, [&] {
    DataImpl& d = Impl(self);
    Fixed v = Impl(number).value;
    ResetForms(d);
    d.number.value = v;
    d.timeStamp.setTotal(v);
    AssignAscii(d.text, FormatFixed(v));
    return true;
  });
}

bool FM_Data_SetAsTimeStamp(Data* self, const DateTime* timeStamp, HostErrorRecord& err) {
  return Run("FM_Data_SetAsTimeStamp", err, [&] {
    DataImpl& d = Impl(self);
    const DateTimeImpl& ts = Impl(timeStamp);
    int64_t day = ts.day;
    Fixed secs = ts.secs;
    ResetForms(d);
    d.timeStamp.day = day;
    d.timeStamp.secs = secs;
    d.number.value = TotalSeconds(d.timeStamp);
    AssignAscii(d.text, FormatTimeStamp(d.timeStamp));
    return true;
  });
}

bool FM_Data_SetBinaryData(Data* self, const BinaryData* data, HostErrorRecord& err) {
  return Run("FM_Data_SetBinaryData", err, [&] {
    DataImpl& d = Impl(self);
    std::vector<BinaryDataImpl::Stream> streams = Impl(data).streams;
    ResetForms(d);
    d.binary.streams = std::move(streams);
    return true;
  });
}

DataVect* FM_DataVect_Constructor1(HostErrorRecord& err) {
  return Run("FM_DataVect_Constructor1", err, [] { return static_cast<DataVect*>(Born(new DataVectImpl)); });
}

void FM_DataVect_Delete(DataVect* self, HostErrorRecord& err) {
  Dies("FM_DataVect_Delete", static_cast<DataVectImpl*>(self), err);
}

uint32_t FM_DataVect_Size(const DataVect* self, HostErrorRecord& err) {
  return Run("FM_DataVect_Size", err, [&] { return static_cast<uint32_t>(Impl(self).items.size()); });
}

const Text* FM_DataVect_AtAsText(const DataVect* self, uint32_t index, HostErrorRecord& err) {
  return Run("FM_DataVect_AtAsText", err, [&] { return static_cast<const Text*>(&At(self, index).text); });
}

const FixPt* FM_DataVect_AtAsNumber(const DataVect* self, uint32_t index, HostErrorRecord& err) {
  return Run("FM_DataVect_AtAsNumber", err, [&] { return static_cast<const FixPt*>(&At(self, index).number); });
}

const DateTime* FM_DataVect_AtAsTimeStamp(const DataVect* self, uint32_t index, HostErrorRecord& err) {
  return Run("FM_DataVect_AtAsTimeStamp", err,
             [&] { return static_cast<const DateTime*>(&At(self, index).timeStamp); });
}

const BinaryData* FM_DataVect_AtAsBinaryData(const DataVect* self, uint32_t index, HostErrorRecord& err) {
  return Run("FM_DataVect_AtAsBinaryData", err,
             [&] { return static_cast<const BinaryData*>(&At(self, index).binary); });
}

void FM_DataVect_PushBack(DataVect* self, const Data* data, HostErrorRecord& err) {
  Run("FM_DataVect_PushBack", err, [&] {
    std::unique_ptr<DataImpl> copy(new DataImpl);
    copy->copyFrom(Impl(data));
    Impl(self).items.push_back(std::move(copy));
  });
}

fmx::errcode FM_ExprEnv_Evaluate(const ExprEnv*, const Text* expression, Data* result, HostErrorRecord& err) {
  return Run("FM_ExprEnv_Evaluate", err, [&]() -> fmx::errcode {
    // The one expression this host knows: a string literal in double quotes, with
    // \" and \\ inside.
    std::u16string e = UnitsOf(Impl(expression));
    size_t b = e.find_first_not_of(u" \t\r\n");
    size_t l = e.find_last_not_of(u" \t\r\n");
    if (b == std::u16string::npos || l == b || e[b] != u'"' || e[l] != u'"') return kEvaluateSyntaxError;
    std::u16string value;
    for (size_t i = b + 1; i < l; ++i) {
      char16_t u = e[i];
      if (u == u'\\' && i + 1 < l && (e[i + 1] == u'"' || e[i + 1] == u'\\')) {
        u = e[++i];
      } else if (u == u'"') {
        return kEvaluateSyntaxError;
      }
      value += u;
    }
    DataImpl& d = Impl(result);
    ResetForms(d);
    AssignUnits(d.text, value.data(), value.size());
    return 0;
  });
}

BinaryData* FM_BinaryData_Constructor1(HostErrorRecord& err) {
  return Run("FM_BinaryData_Constructor1", err, [] { return static_cast<BinaryData*>(Born(new BinaryDataImpl)); });
}

void FM_BinaryData_Delete(BinaryData* self, HostErrorRecord& err) {
  Dies("FM_BinaryData_Delete", static_cast<BinaryDataImpl*>(self), err);
}

int32_t FM_BinaryData_GetCount(const BinaryData* self, HostErrorRecord& err) {
  return Run("FM_BinaryData_GetCount", err, [&] { return static_cast<int32_t>(Impl(self).streams.size()); });
}

void FM_BinaryData_GetType(const BinaryData* self, int32_t index, QuadChar* type, HostErrorRecord& err) {
  Run("FM_BinaryData_GetType", err, [&] { Impl(type).type = StreamAt(self, index).type; });
}

uint32_t FM_BinaryData_GetSize(const BinaryData* self, int32_t index, HostErrorRecord& err) {
  return Run("FM_BinaryData_GetSize", err,
             [&] { return static_cast<uint32_t>(StreamAt(self, index).bytes.size()); });
}

fmx::errcode FM_BinaryData_GetData(const BinaryData* self, int32_t index, uint32_t offset, uint32_t amount,
                                   void* buffer, HostErrorRecord& err) {
  return Run("FM_BinaryData_GetData", err, [&]() -> fmx::errcode {
    const BinaryDataImpl& b = Impl(self);
    if (index < 0 || static_cast<size_t>(index) >= b.streams.size()) return kRangeError;
    const std::vector<char>& bytes = b.streams[static_cast<size_t>(index)].bytes;
    if (offset > bytes.size() || amount > bytes.size() - offset || (buffer == nullptr && amount > 0)) {
      return kRangeError;
    }
    if (amount > 0) std::memcpy(buffer, bytes.data() + offset, amount);
    return 0;
  });
}

fmx::errcode FM_BinaryData_Add(BinaryData* self, const QuadChar* type, uint32_t amount, const void* buffer,
                               HostErrorRecord& err) {
  return Run("FM_BinaryData_Add", err, [&]() -> fmx::errcode {
    if (buffer == nullptr && amount > 0) return kRangeError;
    const char* bytes = static_cast<const char*>(buffer);
    Impl(self).streams.push_back({Impl(type).type, std::vector<char>(bytes, bytes + amount)});
    return 0;
  });
}

void FM_BinaryData_operatorAS(BinaryData* self, const BinaryData* other, HostErrorRecord& err) {
  Run("FM_BinaryData_operatorAS", err, [&] {
    if (self != other) Impl(self).streams = Impl(other).streams;
  });
}

QuadChar* FM_QuadChar_Constructor1(HostErrorRecord& err) {
  return Run("FM_QuadChar_Constructor1", err, [] { return static_cast<QuadChar*>(Born(new QuadCharImpl)); });
}

QuadChar* FM_QuadChar_Constructor2(char c0, char c1, char c2, char c3, HostErrorRecord& err) {
  return Run("FM_QuadChar_Constructor2", err, [&] {
    QuadCharImpl* q = Born(new QuadCharImpl);
    q->type = uint32_t(uint8_t(c0)) << 24 | uint32_t(uint8_t(c1)) << 16 | uint32_t(uint8_t(c2)) << 8 | uint8_t(c3);
    return static_cast<QuadChar*>(q);
  });
}

void FM_QuadChar_Delete(QuadChar* self, HostErrorRecord& err) {
  Dies("FM_QuadChar_Delete", static_cast<QuadCharImpl*>(self), err);
}

uint32_t FM_QuadChar_GetMacType(const QuadChar* self, HostErrorRecord& err) {
  return Run("FM_QuadChar_GetMacType", err, [&] { return Impl(self).type; });
}

void FM_QuadChar_SetMacType(QuadChar* self, uint32_t type, HostErrorRecord& err) {
  Run("FM_QuadChar_SetMacType", err, [&] { Impl(self).type = type; });
}

}  // extern "C"
