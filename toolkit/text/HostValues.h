// The host's values as the toolkit sees them: the fmx types, their holders and
// the host operations behind them.
//
// Every host operation is a free function FM_<Type>_<Op> with C linkage whose
// last argument is an error record. Whichever host the program links provides
// them: the in-memory host (memhost) in our programs and tests, a thin binding to
// the host's plug-in framework in a real plug-in. The toolkit never calls them
// directly; it uses the members of the fmx types, which fill the record, call the
// operation and turn a reported failure into an exception (code 1:
// std::bad_alloc, code 2: std::exception, any other code: no error).
#ifndef XPTOOLKIT_TEXT_HOSTVALUES_H
#define XPTOOLKIT_TEXT_HOSTVALUES_H

#include <cstdint>
#include <exception>
#include <new>
#include <type_traits>

namespace fmx {

/// The record every host operation fills in: version 1, code 0 on the way in;
/// code 1 (out of memory) or 2 (any other failure) on the way out.
struct HostErrorRecord {
  int32_t version;
  int32_t code;
};

/// A host error number, as returned by some operations (0 = no error).
using errcode = int16_t;

class Text;
class Data;
class DataVect;
class BinaryData;
class DateTime;
class FixPt;
class QuadChar;
class Locale;
class ExprEnv;

}  // namespace fmx

// The host operations. Sizes and positions are UTF-16 code units; a size of
// 0xFFFFFFFF means "to the end" and the host clips sizes that run past the end.
extern "C" {
fmx::Text* FM_Text_Constructor1(fmx::HostErrorRecord& err);
void FM_Text_Delete(fmx::Text* self, fmx::HostErrorRecord& err);
uint32_t FM_Text_GetSize(const fmx::Text* self, fmx::HostErrorRecord& err);
void FM_Text_Assign(fmx::Text* self, const char* s, int32_t encoding, fmx::HostErrorRecord& err);
void FM_Text_AssignWithLength(fmx::Text* self, const char* s, uint32_t length, int32_t encoding,
                              fmx::HostErrorRecord& err);
void FM_Text_AssignUnicode(fmx::Text* self, const uint16_t* s, fmx::HostErrorRecord& err);
void FM_Text_AssignUnicodeWithLength(fmx::Text* self, const uint16_t* s, uint32_t length,
                                     fmx::HostErrorRecord& err);
void FM_Text_SetText(fmx::Text* self, const fmx::Text* other, uint32_t position, uint32_t size,
                     fmx::HostErrorRecord& err);
void FM_Text_AppendText(fmx::Text* self, const fmx::Text* other, uint32_t position, uint32_t size,
                        fmx::HostErrorRecord& err);
void FM_Text_InsertText(fmx::Text* self, const fmx::Text* other, uint32_t position,
                        fmx::HostErrorRecord& err);
void FM_Text_DeleteText(fmx::Text* self, uint32_t position, uint32_t size, fmx::HostErrorRecord& err);
uint32_t FM_Text_Find(const fmx::Text* self, const fmx::Text* other, uint32_t position,
                      fmx::HostErrorRecord& err);
uint32_t FM_Text_FindIgnoringCase(const fmx::Text* self, const fmx::Text* other, uint32_t position,
                                  fmx::HostErrorRecord& err);
uint32_t FM_Text_FindPrev(const fmx::Text* self, const fmx::Text* other, uint32_t position,
                          fmx::HostErrorRecord& err);
void FM_Text_GetUnicode(const fmx::Text* self, uint16_t* s, uint32_t position, uint32_t size,
                        fmx::HostErrorRecord& err);
void FM_Text_GetBytes(const fmx::Text* self, char* buffer, uint32_t bufferSize, uint32_t position,
                      uint32_t size, int32_t encoding, fmx::HostErrorRecord& err);
bool FM_Text_operatorEQ(const fmx::Text* self, const fmx::Text* other, fmx::HostErrorRecord& err);

fmx::Locale* FM_Locale_Constructor1(const char* name, fmx::HostErrorRecord& err);
void FM_Locale_Delete(fmx::Locale* self, fmx::HostErrorRecord& err);

fmx::Data* FM_Data_Constructor1(fmx::HostErrorRecord& err);
void FM_Data_Delete(fmx::Data* self, fmx::HostErrorRecord& err);
void FM_Data_Clear(fmx::Data* self, fmx::HostErrorRecord& err);
const fmx::Text* FM_Data_GetAsText(const fmx::Data* self, fmx::HostErrorRecord& err);
const fmx::Locale* FM_Data_GetLocale(const fmx::Data* self, fmx::HostErrorRecord& err);
fmx::errcode FM_Data_SetAsText(fmx::Data* self, const fmx::Text* text, const fmx::Locale* locale,
                               fmx::HostErrorRecord& err);
bool FM_Data_SetAsNumber(fmx::Data* self, const fmx::FixPt* number, fmx::HostErrorRecord& err);
bool FM_Data_SetAsTimeStamp(fmx::Data* self, const fmx::DateTime* timeStamp, fmx::HostErrorRecord& err);
bool FM_Data_SetBinaryData(fmx::Data* self, const fmx::BinaryData* data, fmx::HostErrorRecord& err);

fmx::DataVect* FM_DataVect_Constructor1(fmx::HostErrorRecord& err);
void FM_DataVect_Delete(fmx::DataVect* self, fmx::HostErrorRecord& err);
uint32_t FM_DataVect_Size(const fmx::DataVect* self, fmx::HostErrorRecord& err);
const fmx::Text* FM_DataVect_AtAsText(const fmx::DataVect* self, uint32_t index, fmx::HostErrorRecord& err);
const fmx::FixPt* FM_DataVect_AtAsNumber(const fmx::DataVect* self, uint32_t index,
                                         fmx::HostErrorRecord& err);
const fmx::DateTime* FM_DataVect_AtAsTimeStamp(const fmx::DataVect* self, uint32_t index,
                                               fmx::HostErrorRecord& err);
const fmx::BinaryData* FM_DataVect_AtAsBinaryData(const fmx::DataVect* self, uint32_t index,
                                                  fmx::HostErrorRecord& err);
void FM_DataVect_PushBack(fmx::DataVect* self, const fmx::Data* data, fmx::HostErrorRecord& err);

fmx::errcode FM_ExprEnv_Evaluate(const fmx::ExprEnv* self, const fmx::Text* expression, fmx::Data* result,
                                 fmx::HostErrorRecord& err);

fmx::BinaryData* FM_BinaryData_Constructor1(fmx::HostErrorRecord& err);
void FM_BinaryData_Delete(fmx::BinaryData* self, fmx::HostErrorRecord& err);
int32_t FM_BinaryData_GetCount(const fmx::BinaryData* self, fmx::HostErrorRecord& err);
void FM_BinaryData_GetType(const fmx::BinaryData* self, int32_t index, fmx::QuadChar* type,
                           fmx::HostErrorRecord& err);
uint32_t FM_BinaryData_GetSize(const fmx::BinaryData* self, int32_t index, fmx::HostErrorRecord& err);
fmx::errcode FM_BinaryData_GetData(const fmx::BinaryData* self, int32_t index, uint32_t offset,
                                   uint32_t amount, void* buffer, fmx::HostErrorRecord& err);
fmx::errcode FM_BinaryData_Add(fmx::BinaryData* self, const fmx::QuadChar* type, uint32_t amount,
                               const void* buffer, fmx::HostErrorRecord& err);
void FM_BinaryData_operatorAS(fmx::BinaryData* self, const fmx::BinaryData* other, fmx::HostErrorRecord& err);

fmx::DateTime* FM_DateTime_Constructor1(fmx::HostErrorRecord& err);
void FM_DateTime_Delete(fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetYear(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetMonth(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetDay(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetHour(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetMinute(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int32_t FM_DateTime_GetSec(const fmx::DateTime* self, fmx::HostErrorRecord& err);
int64_t FM_DateTime_GetDaysSinceEpoch(const fmx::DateTime* self, fmx::HostErrorRecord& err);
void FM_DateTime_GetSecsSinceMidnight(const fmx::DateTime* self, fmx::FixPt* result, fmx::HostErrorRecord& err);
void FM_DateTime_SetDate(fmx::DateTime* self, const fmx::DateTime* other, fmx::HostErrorRecord& err);
void FM_DateTime_SetTime(fmx::DateTime* self, const fmx::DateTime* other, fmx::HostErrorRecord& err);
void FM_DateTime_SetDaysSinceEpoch(fmx::DateTime* self, int64_t days, fmx::HostErrorRecord& err);
void FM_DateTime_SetSecondsSinceEpoch(fmx::DateTime* self, const fmx::FixPt* seconds, fmx::HostErrorRecord& err);
void FM_DateTime_SetSecsSinceMidnight(fmx::DateTime* self, const fmx::FixPt* seconds, fmx::HostErrorRecord& err);

fmx::FixPt* FM_FixPt_Constructor1(int32_t value, int32_t precision, fmx::HostErrorRecord& err);
void FM_FixPt_Delete(fmx::FixPt* self, fmx::HostErrorRecord& err);
void FM_FixPt_AssignInt(fmx::FixPt* self, int32_t value, fmx::HostErrorRecord& err);
void FM_FixPt_AssignDouble(fmx::FixPt* self, double value, fmx::HostErrorRecord& err);
void FM_FixPt_AssignFixPt(fmx::FixPt* self, const fmx::FixPt* other, fmx::HostErrorRecord& err);
void FM_FixPt_Add(const fmx::FixPt* self, const fmx::FixPt* other, fmx::FixPt* result, fmx::HostErrorRecord& err);
void FM_FixPt_Subtract(const fmx::FixPt* self, const fmx::FixPt* other, fmx::FixPt* result,
                       fmx::HostErrorRecord& err);
void FM_FixPt_Multiply(const fmx::FixPt* self, const fmx::FixPt* other, fmx::FixPt* result,
                       fmx::HostErrorRecord& err);
void FM_FixPt_Increment(fmx::FixPt* self, int32_t n, fmx::HostErrorRecord& err);
void FM_FixPt_Decrement(fmx::FixPt* self, int32_t n, fmx::HostErrorRecord& err);
void FM_FixPt_Negate(fmx::FixPt* self, fmx::HostErrorRecord& err);
int32_t FM_FixPt_AsLong(const fmx::FixPt* self, fmx::HostErrorRecord& err);
bool FM_FixPt_operatorGT(const fmx::FixPt* self, const fmx::FixPt* other, fmx::HostErrorRecord& err);
bool FM_FixPt_operatorLT(const fmx::FixPt* self, const fmx::FixPt* other, fmx::HostErrorRecord& err);

fmx::QuadChar* FM_QuadChar_Constructor1(fmx::HostErrorRecord& err);
fmx::QuadChar* FM_QuadChar_Constructor2(char c0, char c1, char c2, char c3, fmx::HostErrorRecord& err);
void FM_QuadChar_Delete(fmx::QuadChar* self, fmx::HostErrorRecord& err);
uint32_t FM_QuadChar_GetMacType(const fmx::QuadChar* self, fmx::HostErrorRecord& err);
void FM_QuadChar_SetMacType(fmx::QuadChar* self, uint32_t type, fmx::HostErrorRecord& err);
}

namespace fmx {
namespace detail {

/// Turns a reported host failure into the exception the toolkit passes on.
inline void CheckHostError(const HostErrorRecord& err) {
  if (err.code == 1) throw std::bad_alloc();
  if (err.code == 2) throw std::exception();
}

/// Calls a host operation with a fresh error record and checks the record.
template <class R, class... P, class... A>
inline R Call(R (*op)(P...), A&&... args) {
  HostErrorRecord err{1, 0};
  if constexpr (std::is_void<R>::value) {
    op(static_cast<A&&>(args)..., err);
    CheckHostError(err);
  } else {
    R result = op(static_cast<A&&>(args)..., err);
    CheckHostError(err);
    return result;
  }
}

}  // namespace detail

/// Host values have no public constructors: the host makes them, holders own them.
class HostValue {
 protected:
  HostValue() = default;
  ~HostValue() = default;

 public:
  HostValue(const HostValue&) = delete;
  HostValue& operator=(const HostValue&) = delete;
};

class Locale : public HostValue {
 protected:
  Locale() = default;
  ~Locale() = default;
};

class Text : public HostValue {
 protected:
  Text() = default;
  ~Text() = default;

 public:
  /// Byte encodings of the host, numbered as the host numbers them.
  enum Encoding : int32_t {
    kEncoding_Native = 0,
    kEncoding_UTF8 = 1,
    kEncoding_ASCII_DOS = 2,
    kEncoding_ASCII_Windows = 3,
    kEncoding_ASCII_Mac = 4,
    kEncoding_ISO_8859_1 = 5,
    kEncoding_ShiftJIS_Mac = 6,
    kEncoding_ShiftJIS_Win = 7,
    kEncoding_Korean_Mac = 8,
    kEncoding_Korean_Win = 9,
    kEncoding_Korean_Johab = 10,
    kEncoding_ChineseTrad_Mac = 11,
    kEncoding_ChineseTrad_Win = 12,
    kEncoding_ChineseSimp_Mac = 13,
    kEncoding_ChineseSimp_Win = 14,
    kEncoding_Cyrillic_Mac = 15,
    kEncoding_Cyrillic_Win = 16,
    kEncoding_ISO_8859_5 = 17,
    kEncoding_CentralEurope_Mac = 18,
    kEncoding_EasternEurope_Win = 19,
    kEncoding_ISO_8859_2 = 20,
    kEncoding_Turkish_Mac = 21,
    kEncoding_Turkish_Win = 22,
    kEncoding_ISO_8859_3 = 23,
    kEncoding_ISO_8859_9 = 24,
    kEncoding_Baltic_Win = 25,
    kEncoding_ISO_8859_4 = 26,
    kEncoding_Arabic_Mac = 27,
    kEncoding_Arabic_Win = 28,
    kEncoding_ISO_8859_6 = 29,
    kEncoding_Greek_Mac = 30,
    kEncoding_Greek_Win = 31,
    kEncoding_ISO_8859_7 = 32,
    kEncoding_Hebrew_Mac = 33,
    kEncoding_Hebrew_Win = 34,
    kEncoding_ISO_8859_8 = 35,
    kEncoding_ISO_8859_15 = 36
  };

  /// Number of UTF-16 code units.
  uint32_t GetSize() const { return detail::Call(FM_Text_GetSize, this); }
  /// Replaces the content by NUL-terminated bytes decoded in `enc`.
  void Assign(const char* s, Encoding enc = kEncoding_Native) { detail::Call(FM_Text_Assign, this, s, int32_t(enc)); }
  /// Replaces the content by exactly `length` bytes decoded in `enc` (NUL bytes kept).
  void AssignWithLength(const char* s, uint32_t length, Encoding enc = kEncoding_Native) {
    detail::Call(FM_Text_AssignWithLength, this, s, length, int32_t(enc));
  }
  /// Replaces the content by the UTF-16 units up to the 0 unit.
  void AssignUnicode(const unsigned short* s) { detail::Call(FM_Text_AssignUnicode, this, s); }
  /// Replaces the content by exactly `length` UTF-16 units.
  void AssignUnicodeWithLength(const unsigned short* s, uint32_t length) {
    detail::Call(FM_Text_AssignUnicodeWithLength, this, s, length);
  }
  /// Replaces the content by a range of `other`, style included.
  void SetText(const Text& other, uint32_t position = 0, uint32_t size = 0xFFFFFFFF) {
    detail::Call(FM_Text_SetText, this, &other, position, size);
  }
  /// Appends a range of `other`.
  void AppendText(const Text& other, uint32_t position = 0, uint32_t size = 0xFFFFFFFF) {
    detail::Call(FM_Text_AppendText, this, &other, position, size);
  }
  /// Inserts all of `other` before `position`.
  void InsertText(const Text& other, uint32_t position) { detail::Call(FM_Text_InsertText, this, &other, position); }
  /// Removes a range; size 0xFFFFFFFF removes to the end.
  void DeleteText(uint32_t position, uint32_t size = 0xFFFFFFFF) { detail::Call(FM_Text_DeleteText, this, position, size); }
  /// First exact occurrence of `other` at or after `position`, 0xFFFFFFFF when none.
  uint32_t Find(const Text& other, uint32_t position) const { return detail::Call(FM_Text_Find, this, &other, position); }
  /// As Find, ignoring letter case.
  uint32_t FindIgnoringCase(const Text& other, uint32_t position) const {
    return detail::Call(FM_Text_FindIgnoringCase, this, &other, position);
  }
  /// Last exact occurrence of `other` starting at or before `position`, 0xFFFFFFFF when none.
  uint32_t FindPrev(const Text& other, uint32_t position) const {
    return detail::Call(FM_Text_FindPrev, this, &other, position);
  }
  /// Copies `size` units from `position` into `s`; writes no terminator.
  void GetUnicode(unsigned short* s, uint32_t position, uint32_t size) const {
    detail::Call(FM_Text_GetUnicode, this, s, position, size);
  }
  /// Encodes a range into at most `bufferSize` bytes plus a NUL (buffer holds bufferSize + 1).
  void GetBytes(char* buffer, uint32_t bufferSize, uint32_t position = 0, uint32_t size = 0xFFFFFFFF,
                Encoding enc = kEncoding_Native) const {
    detail::Call(FM_Text_GetBytes, this, buffer, bufferSize, position, size, int32_t(enc));
  }
  /// True when both hold the same code units.
  bool operator==(const Text& other) const { return detail::Call(FM_Text_operatorEQ, this, &other); }
};

class FixPt : public HostValue {
 protected:
  FixPt() = default;
  ~FixPt() = default;

 public:
  void AssignInt(int32_t value) { detail::Call(FM_FixPt_AssignInt, this, value); }
  /// Nearest representable value; for building numbers such as 12.7 in tests and hosts.
  void AssignDouble(double value) { detail::Call(FM_FixPt_AssignDouble, this, value); }
  void AssignFixPt(const FixPt& other) { detail::Call(FM_FixPt_AssignFixPt, this, &other); }
  /// result = this + other.
  void Add(const FixPt& other, FixPt& result) const { detail::Call(FM_FixPt_Add, this, &other, &result); }
  /// result = this - other.
  void Subtract(const FixPt& other, FixPt& result) const { detail::Call(FM_FixPt_Subtract, this, &other, &result); }
  /// result = this x other.
  void Multiply(const FixPt& other, FixPt& result) const { detail::Call(FM_FixPt_Multiply, this, &other, &result); }
  void Increment(int32_t n) { detail::Call(FM_FixPt_Increment, this, n); }
  void Decrement(int32_t n) { detail::Call(FM_FixPt_Decrement, this, n); }
  void Negate() { detail::Call(FM_FixPt_Negate, this); }
  /// The integer part, truncated towards zero, as a signed 32-bit number.
  int32_t AsLong() const { return detail::Call(FM_FixPt_AsLong, this); }
  bool operator>(const FixPt& other) const { return detail::Call(FM_FixPt_operatorGT, this, &other); }
  bool operator<(const FixPt& other) const { return detail::Call(FM_FixPt_operatorLT, this, &other); }
};

class DateTime : public HostValue {
 protected:
  DateTime() = default;
  ~DateTime() = default;

 public:
  int32_t GetYear() const { return detail::Call(FM_DateTime_GetYear, this); }
  int32_t GetMonth() const { return detail::Call(FM_DateTime_GetMonth, this); }
  int32_t GetDay() const { return detail::Call(FM_DateTime_GetDay, this); }
  int32_t GetHour() const { return detail::Call(FM_DateTime_GetHour, this); }
  int32_t GetMinute() const { return detail::Call(FM_DateTime_GetMinute, this); }
  int32_t GetSec() const { return detail::Call(FM_DateTime_GetSec, this); }
  /// Day number, 0001-01-01 being day 1.
  int64_t GetDaysSinceEpoch() const { return detail::Call(FM_DateTime_GetDaysSinceEpoch, this); }
  void GetSecsSinceMidnight(FixPt& result) const { detail::Call(FM_DateTime_GetSecsSinceMidnight, this, &result); }
  /// Takes the date part of `other`, keeping this value's time of day.
  void SetDate(const DateTime& other) { detail::Call(FM_DateTime_SetDate, this, &other); }
  /// Takes the time of day of `other`, keeping this value's date.
  void SetTime(const DateTime& other) { detail::Call(FM_DateTime_SetTime, this, &other); }
  void SetDaysSinceEpoch(int64_t days) { detail::Call(FM_DateTime_SetDaysSinceEpoch, this, days); }
  /// Seconds since 0001-01-01 00:00:00.
  void SetSecondsSinceEpoch(const FixPt& seconds) { detail::Call(FM_DateTime_SetSecondsSinceEpoch, this, &seconds); }
  void SetSecsSinceMidnight(const FixPt& seconds) { detail::Call(FM_DateTime_SetSecsSinceMidnight, this, &seconds); }
};

class QuadChar : public HostValue {
 protected:
  QuadChar() = default;
  ~QuadChar() = default;

 public:
  /// The code as one number, first character in the most significant byte.
  uint32_t GetMacType() const { return detail::Call(FM_QuadChar_GetMacType, this); }
  void SetMacType(uint32_t type) { detail::Call(FM_QuadChar_SetMacType, this, type); }
};

class BinaryData : public HostValue {
 protected:
  BinaryData() = default;
  ~BinaryData() = default;

 public:
  /// Number of streams.
  int32_t GetCount() const { return detail::Call(FM_BinaryData_GetCount, this); }
  /// Type code of stream `index` into `type`.
  void GetType(int32_t index, QuadChar& type) const { detail::Call(FM_BinaryData_GetType, this, index, &type); }
  /// Byte size of stream `index`.
  uint32_t GetSize(int32_t index) const { return detail::Call(FM_BinaryData_GetSize, this, index); }
  /// Copies `amount` bytes of stream `index` from `offset`; non-zero when the range is not there.
  errcode GetData(int32_t index, uint32_t offset, uint32_t amount, void* buffer) const {
    return detail::Call(FM_BinaryData_GetData, this, index, offset, amount, buffer);
  }
  /// Appends a stream of `type` holding `amount` bytes.
  errcode Add(const QuadChar& type, uint32_t amount, void* buffer) {
    return detail::Call(FM_BinaryData_Add, this, &type, amount, static_cast<const void*>(buffer));
  }
  BinaryData& operator=(const BinaryData& other) {
    detail::Call(FM_BinaryData_operatorAS, this, &other);
    return *this;
  }
};

class Data : public HostValue {
 protected:
  Data() = default;
  ~Data() = default;

 public:
  void Clear() { detail::Call(FM_Data_Clear, this); }
  /// The value's text form, owned by the value.
  const Text& GetAsText() const { return *detail::Call(FM_Data_GetAsText, this); }
  const Locale& GetLocale() const { return *detail::Call(FM_Data_GetLocale, this); }
  errcode SetAsText(const Text& text, const Locale& locale) { return detail::Call(FM_Data_SetAsText, this, &text, &locale); }
  bool SetAsNumber(const FixPt& number) { return detail::Call(FM_Data_SetAsNumber, this, &number); }
  bool SetAsTimeStamp(const DateTime& timeStamp) { return detail::Call(FM_Data_SetAsTimeStamp, this, &timeStamp); }
  bool SetBinaryData(const BinaryData& data) { return detail::Call(FM_Data_SetBinaryData, this, &data); }
};

class DataVect : public HostValue {
 protected:
  DataVect() = default;
  ~DataVect() = default;

 public:
  /// Number of parameters.
  uint32_t Size() const { return detail::Call(FM_DataVect_Size, this); }
  /// The parameter at a zero-based index, in the form asked for, owned by the list.
  const Text& AtAsText(uint32_t index) const { return *detail::Call(FM_DataVect_AtAsText, this, index); }
  const FixPt& AtAsNumber(uint32_t index) const { return *detail::Call(FM_DataVect_AtAsNumber, this, index); }
  const DateTime& AtAsTimeStamp(uint32_t index) const { return *detail::Call(FM_DataVect_AtAsTimeStamp, this, index); }
  const BinaryData& AtAsBinaryData(uint32_t index) const {
    return *detail::Call(FM_DataVect_AtAsBinaryData, this, index);
  }
  /// Appends a copy of `data`; how hosts and tests build parameter lists.
  void PushBack(const Data& data) { detail::Call(FM_DataVect_PushBack, this, &data); }
};

/// The calculation environment of a host call.
class ExprEnv : public HostValue {
 public:
  ExprEnv() = default;
  /// Evaluates a calculation expression into `result`; 0 on success, else the host's error number.
  errcode Evaluate(const Text& expression, Data& result) const {
    return detail::Call(FM_ExprEnv_Evaluate, this, &expression, &result);
  }
};

namespace detail {

/// Owns one host value and hands it to the host's delete operation.
template <class T, void (*Delete)(T*, HostErrorRecord&)>
class Holder {
 public:
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() { Dispose(value_); }

  T& operator*() const { return *value_; }
  T* operator->() const { return value_; }
  T* get() const { return value_; }
  /// Deletes the value held and takes `value` instead.
  void reset(T* value) {
    T* old = value_;
    value_ = value;
    Dispose(old);
  }
  /// Gives up ownership without deleting.
  T* release() {
    T* value = value_;
    value_ = nullptr;
    return value;
  }

 protected:
  explicit Holder(T* value) : value_(value) {}

 private:
  // Never throws: a failed delete while an exception unwinds ends the process,
  // any other failed delete is ignored (the value is gone either way).
  static void Dispose(T* value) noexcept {
    if (value == nullptr) return;
    HostErrorRecord err{1, 0};
    Delete(value, err);
    if ((err.code == 1 || err.code == 2) && std::uncaught_exceptions() > 0) std::terminate();
  }

  T* value_;
};

}  // namespace detail

class TextAutoPtr : public detail::Holder<Text, FM_Text_Delete> {
 public:
  /// A new empty text.
  TextAutoPtr() : Holder(detail::Call(FM_Text_Constructor1)) {}
};

class FixPtAutoPtr : public detail::Holder<FixPt, FM_FixPt_Delete> {
 public:
  /// A new number of the given value and precision (decimal digits), 0 and 16 by default.
  explicit FixPtAutoPtr(int32_t value = 0, int32_t precision = 16)
      : Holder(detail::Call(FM_FixPt_Constructor1, value, precision)) {}
};

class DateTimeAutoPtr : public detail::Holder<DateTime, FM_DateTime_Delete> {
 public:
  DateTimeAutoPtr() : Holder(detail::Call(FM_DateTime_Constructor1)) {}
};

class BinaryDataAutoPtr : public detail::Holder<BinaryData, FM_BinaryData_Delete> {
 public:
  /// A new container without streams.
  BinaryDataAutoPtr() : Holder(detail::Call(FM_BinaryData_Constructor1)) {}
};

class DataVectAutoPtr : public detail::Holder<DataVect, FM_DataVect_Delete> {
 public:
  /// A new empty parameter list.
  DataVectAutoPtr() : Holder(detail::Call(FM_DataVect_Constructor1)) {}
};

class LocaleAutoPtr : public detail::Holder<Locale, FM_Locale_Delete> {
 public:
  /// A locale by its name ("en_US", "de_DE", ...); null or empty for the host's default.
  explicit LocaleAutoPtr(const char* name = nullptr) : Holder(detail::Call(FM_Locale_Constructor1, name)) {}
};

}  // namespace fmx

/// Owns one host data value (empty when new).
class DataHolder : public fmx::detail::Holder<fmx::Data, FM_Data_Delete> {
 public:
  DataHolder() : Holder(fmx::detail::Call(FM_Data_Constructor1)) {}
};

/// Owns one host type code, empty or made from four characters.
class QuadCharHolder : public fmx::detail::Holder<fmx::QuadChar, FM_QuadChar_Delete> {
 public:
  QuadCharHolder() : Holder(fmx::detail::Call(FM_QuadChar_Constructor1)) {}
  QuadCharHolder(char c0, char c1, char c2, char c3)
      : Holder(fmx::detail::Call(FM_QuadChar_Constructor2, c0, c1, c2, c3)) {}
};

/// The number whose bytes, most significant first, are a, b, c, d.
uint32_t XP7_QuadCharToUInt32(char a, char b, char c, char d);

#endif  // XPTOOLKIT_TEXT_HOSTVALUES_H
