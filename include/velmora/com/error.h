#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace velmora::com {

/// Error numbers in the 32-bit form that clients of the suite know.
namespace error {
inline constexpr std::int32_t kFailed = -2147467259;              // 0x80004005 unspecified
inline constexpr std::int32_t kNotImplemented = -2147467263;      // 0x80004001
inline constexpr std::int32_t kNoInterface = -2147467262;         // 0x80004002
inline constexpr std::int32_t kClassNotRegistered = -2147221164;  // 0x80040154
inline constexpr std::int32_t kCannotCreateObject = -2146827859;  // 0x800A01AD
inline constexpr std::int32_t kUnknownName = -2147352570;         // 0x80020006 no such member
inline constexpr std::int32_t kBadParameterCount = -2147352562;   // 0x8002000E
inline constexpr std::int32_t kTypeMismatch = -2147352571;        // 0x80020005
inline constexpr std::int32_t kOverflow = -2147352566;            // 0x8002000A
inline constexpr std::int32_t kInvalidArgument =
    -2146828283;                                            // 0x800A0005 bad argument, absent key
inline constexpr std::int32_t kDuplicateKey = -2146827831;  // 0x800A01C9
inline constexpr std::int32_t kInvalidUseOfNull = -2146828194;  // 0x800A005E
inline constexpr std::int32_t kDivisionByZero = -2146828277;    // 0x800A000B
inline constexpr std::int32_t kParseString = -2147205052;       // 0x80044044 connection string
// ADO
inline constexpr std::int32_t kAdoItemNotFound = -2146825023;      // 0x800A0CC1 no such field
inline constexpr std::int32_t kAdoObjectClosed = -2146824584;      // 0x800A0E78
inline constexpr std::int32_t kAdoObjectOpen = -2146824583;        // 0x800A0E79
inline constexpr std::int32_t kAdoNoCurrentRow = -2146825267;      // 0x800A0BCD BOF or EOF
inline constexpr std::int32_t kAdoNotSupported = -2146825037;      // 0x800A0CB3 e.g. read-only
inline constexpr std::int32_t kAdoInvalidArgument = -2146825287;   // 0x800A0BB9
inline constexpr std::int32_t kAdoProviderNotFound = -2146824582;  // 0x800A0E7A
inline constexpr std::int32_t kAdoDataConversion = -2146824867;    // 0x800A0D5D value does not fit
inline constexpr std::int32_t kAdoOperationCancelled = -2146824576;  // 0x800A0E80
inline constexpr std::int32_t kAdoTimeout = -2147217871;       // 0x80040E31 CommandTimeout over
inline constexpr std::int32_t kProvider = -2147217900;         // 0x80040E14 statement failed
inline constexpr std::int32_t kProviderConnect = -2147467259;  // 0x80004005 cannot open
}  // namespace error

/// The one exception type that crosses component borders.
class Error : public std::exception {
 public:
  Error(std::int32_t number, std::string source, std::string description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  std::int32_t number() const noexcept { return number_; }
  /// The class or service that failed, for instance "ADODB.Recordset".
  const std::string& source() const noexcept { return source_; }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

/// Why the last operation of this thread answered false, nothing or a fallback
/// value instead of raising.
struct ErrorInfo {
  std::int32_t number = 0;
  std::string source;
  std::string description;
  /// The check item or statement the failure came from; may be empty.
  std::string place;
};

/// Remembers `info` as this thread's error information.
void SetErrorInfo(ErrorInfo info);
/// This thread's error information, if any; it stays set.
const std::optional<ErrorInfo>& GetErrorInfo() noexcept;
/// Forgets it. Every public operation does so at its start.
void ClearErrorInfo() noexcept;

/// ErrorInfo of the exception being handled (call inside a catch block).
ErrorInfo currentErrorInfo(std::string place = {});

}  // namespace velmora::com
