// Objects of named types in tests, through the public interface.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {

// Owns an object of the library.
template <class Type, uint32_t(TESSEL_CALL* release)(Type*)>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Type* object) : object_(object) {}
  ~Owned() { release(object_); }
  Owned(Owned&& other) noexcept : object_(other.Release()) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  Owned& operator=(Owned&&) = delete;

  operator Type*() const { return object_; }
  Type* operator->() const { return object_; }
  [[nodiscard]] Type* Get() const { return object_; }
  // For a function that makes the object, and for one that takes it.
  [[nodiscard]] Type** Out() { return &object_; }
  [[nodiscard]] Type* Release() { return std::exchange(object_, nullptr); }
  void Reset() { release(Release()); }

 private:
  Type* object_ = nullptr;
};

using OwnedCertificate = Owned<Certificate, FreeCertificate>;
using OwnedName = Owned<X509Name, FreeX509Name>;
using OwnedGeneralName = Owned<X509GeneralName, FreeX509GeneralName>;
using OwnedGeneralNames = Owned<X509GeneralNames, FreeX509GeneralNames>;
using OwnedExtension = Owned<X509Extension, FreeX509Extension>;
using OwnedPurposes = Owned<ExtensionExtendedKeyUsage, FreeExtensionExtendedKeyUsage>;
using OwnedAccess = Owned<ExtensionAuthorityInformationAccess, FreeExtensionAuthorityInformationAccess>;
using OwnedPoints = Owned<ExtensionCrlDistributionPoints, FreeExtensionCrlDistributionPoints>;
using OwnedPolicies = Owned<ExtensionCertificatePolicies, FreeExtensionCertificatePolicies>;
using OwnedCrl = Owned<X509Crl, FreeX509Crl>;
using OwnedTime = Owned<LibraryTime, FreeLibraryTime>;

inline uint32_t SizeOf(const Bytes& bytes) { return static_cast<uint32_t>(bytes.size()); }
inline Bytes ToBytes(std::string_view text) { return {text.begin(), text.end()}; }

// A counted identifier.
inline Bytes Counted(const char* dotted) {
  Bytes oid(256);
  uint32_t length = SizeOf(oid);
  EXPECT_EQ(0U, ConvertStringToOid(dotted, oid.data(), &length));
  oid.resize(length);
  return oid;
}

inline OwnedTime TimeOf(uint32_t year, uint32_t month, uint32_t day) {
  OwnedTime time;
  EXPECT_EQ(0U, CreateLibraryTime(time.Out()));
  EXPECT_EQ(0U, SetLibraryTime(time, day, month, year, 12, 30, 59));
  return time;
}

// What a function delivers by the caller-buffer convention, which is tried in all its ways: read(buffer, length).
template <class Read>
Bytes Fetch(Read read) {
  uint32_t size = 0;
  EXPECT_EQ(0U, read(static_cast<uint8_t*>(nullptr), &size));
  Bytes buffer(size + 1, 0xEE);
  uint32_t length = size;
  if (size != 0) {
    length = size - 1;
    EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, read(buffer.data(), &length));
    EXPECT_EQ(size, length);
    EXPECT_EQ(Bytes(size + 1, 0xEE), buffer);
  }
  EXPECT_EQ(0U, read(buffer.data(), &length));
  EXPECT_EQ(size, length);
  EXPECT_EQ(0xEE, buffer[size]);
  buffer.pop_back();
  return buffer;
}

// The same for a function whose first argument is the object.
template <class Object, class Function>
Bytes FetchFrom(const Object* object, Function function) {
  return Fetch([&](uint8_t* buffer, uint32_t* length) { return function(object, buffer, length); });
}

// Calls a function once for each of its pointers, with that one null, and expects to be refused. An argument that may
// be null is wrapped in Maybe.
template <class Type>
struct Maybe {
  Type value;
};

namespace detail {

template <class Type>
Type Plain(Type value) {
  return value;
}
template <class Type>
Type Plain(Maybe<Type> value) {
  return value.value;
}

template <size_t index, class Tuple, class Argument>
void ExpectRefusedWithout(auto function, Tuple arguments, const Argument& /*as given*/) {
  if constexpr (std::is_pointer_v<Argument>) {
    std::get<index>(arguments) = nullptr;
    EXPECT_EQ(TESSEL_INVALID_ARGUMENT, std::apply(function, arguments)) << "argument " << index;
  }
}

template <class Function, class Tuple, size_t... indices, class... Arguments>
void ExpectEachRefused(Function function, const Tuple& all, std::index_sequence<indices...> /*one each*/,
                       const Arguments&... arguments) {
  (ExpectRefusedWithout<indices>(function, all, arguments), ...);
}

}  // namespace detail

template <class... Parameters, class... Arguments>
void ExpectNullsRefused(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments... arguments) {
  const std::tuple<Parameters...> all{detail::Plain(arguments)...};
  detail::ExpectEachRefused(function, all, std::index_sequence_for<Parameters...>(), arguments...);
}

}  // namespace test
