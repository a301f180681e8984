// Calling the C interface: owners of what it makes, arguments and results as C++ has them, failures as exceptions.
//
//   tessel::Owned<Certificate> certificate = tessel::Make(DecodeCertificate, octets);
//   tessel::Bytes serial = tessel::Fetch(GetCertificateSerialNumber, certificate);
//   X509Name* subject = tessel::Get(GetCertificateSubject, certificate);  // lent
//   tessel::Call(SetCertificateSerialNumber, certificate, serial);
//
// Each of them calls one function of the interface, whose type decides what becomes of the arguments:
//
//   Owned                            the pointer to its object. Moved: the function takes the object when it succeeds,
//                                    unless all that it does is read it.
//   a span, vector or array          pointer and size, where the function takes both
//   a string, view or literal        the same, or a text with a NUL
//   ObjectIdentifier                 its counted form
//   Into(result)                     a buffer and its length: asked for the length first, and then fetched
//   anything else                    itself
//
// A status other than 0 is thrown as an Error. Try is Call without exceptions: it returns the status. (What results are
// kept in, vectors and strings, throws std::bad_alloc as ever.)
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tessel/error.hpp"
#include "tessel/object_identifier.hpp"
#include "tessel/octets.hpp"
#include "tessel/tessel.h"

namespace tessel {

namespace detail {

template <class Type, uint32_t(TESSEL_CALL* function)(Type*)>
struct ReleaseRow {
  static void Release(Type* object) { function(object); }
};

template <class Function>
struct ReleasedBy;
template <class Type>
struct ReleasedBy<uint32_t(TESSEL_CALL*)(Type*)> {
  using Object = Type;
};

template <auto... functions>
struct ReleaseTable : ReleaseRow<typename ReleasedBy<decltype(functions)>::Object, functions>... {
  using ReleaseRow<typename ReleasedBy<decltype(functions)>::Object, functions>::Release...;

  template <class Type>
  static constexpr bool kHas = (std::is_same_v<Type, typename ReleasedBy<decltype(functions)>::Object> || ...);
};

// Which function releases which type: the one that takes it.
using Releases = ReleaseTable<FreeAccuracy, FreeCertificate, FreeCertificates, FreeExtensionAuthorityInformationAccess,
                              FreeExtensionCertificatePolicies, FreeExtensionCrlDistributionPoints,
                              FreeExtensionExtendedKeyUsage, FreeLibraryPreciseTime, FreeLibraryTime, FreeOctetStrings,
                              FreePKIFreeText, FreeX509Crl, FreeX509Crls, FreeX509Extension, FreeX509Extensions,
                              FreeX509GeneralName, FreeX509GeneralNames, FreeX509Name, FreeX509RevokedCertificates>;

}  // namespace detail

// A type that has a free function.
template <class Type>
concept Releasable = detail::Releases::kHas<Type>;

// An object of a named type that ends with its owner, or none.
template <Releasable Type>
class Owned {
 public:
  Owned() = default;
  // Takes an object that a function of the interface has made.
  explicit Owned(Type* object) : object_(object) {}
  Owned(Owned&& other) noexcept : object_(other.Release()) {}
  Owned& operator=(Owned&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { Reset(); }

  // For functions of the interface. One that ends here would leave its pointer behind.
  operator Type*() const& { return object_; }
  operator Type*() const&& = delete;
  Type* operator->() const { return object_; }
  [[nodiscard]] Type* Get() const { return object_; }
  [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }

  // For a function that makes an object; what was held is released when it is called. A pointer only where the function
  // wants one, so that a call that asks for lengths first does not leave behind what it makes the first time.
  struct Place {
    Owned* owner;
    operator Type**() const {
      owner->Reset();
      return &owner->object_;
    }
  };
  [[nodiscard]] Place Out() { return {this}; }
  // Gives the object away.
  [[nodiscard]] Type* Release() { return std::exchange(object_, nullptr); }
  void Reset(Type* object = nullptr) {
    Type* held = std::exchange(object_, object);
    if (held != nullptr) detail::Releases::Release(held);
  }

 private:
  Type* object_ = nullptr;
};

// A tree of any type, with its descriptor: Call(Asn1DecodeItem, octets, &tree.Item(), tree.Out(), nullptr).
class Tree {
 public:
  explicit Tree(const Asn1Item& item, void* root = nullptr) : item_(&item), root_(root) {}
  Tree(Tree&& other) noexcept : item_(other.item_), root_(other.Release()) {}
  Tree& operator=(Tree&& other) noexcept {
    std::swap(item_, other.item_);
    std::swap(root_, other.root_);
    return *this;
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() { Reset(); }

  [[nodiscard]] const Asn1Item& Item() const { return *item_; }
  [[nodiscard]] void* Root() const { return root_; }
  [[nodiscard]] explicit operator bool() const { return root_ != nullptr; }
  template <class Node>
  [[nodiscard]] Node& As() const {
    return *static_cast<Node*>(root_);
  }
  [[nodiscard]] void** Out() {
    Reset();
    return &root_;
  }
  [[nodiscard]] void* Release() { return std::exchange(root_, nullptr); }
  void Reset() {
    if (root_ != nullptr) FreeAsn1Object(item_, Release());
  }

 private:
  const Asn1Item* item_;
  void* root_;
};

// Where a function writes octets, a text or a counted identifier: it stands for the pair of a buffer and its length.
// With a capacity the function is brought a buffer of that size at once instead of being asked, and a larger one when
// it says so; two functions want that: GetVersionInfo and ConvertAnsiToUTF8.
template <class Result>
class Into {
 public:
  explicit Into(Result& result, uint32_t capacity = 0) : result_(&result), capacity_(capacity) {}

  [[nodiscard]] Result& Value() const { return *result_; }
  [[nodiscard]] uint32_t Capacity() const { return capacity_; }

 private:
  Result* result_;
  uint32_t capacity_;
};

namespace detail {

// How an argument becomes parameters. A binding tells how many it stands for (kWidth), gives them for each call
// (Values), and is told when a call is over: More, whether the function has to be called again, and Finish.
template <size_t width>
struct Binding {
  static constexpr size_t kWidth = width;
  // The status of an argument that cannot be passed on.
  [[nodiscard]] uint32_t Refusal() const { return TESSEL_OK; }
  bool More(uint32_t /*status*/) { return false; }
  void Finish(uint32_t /*status*/) {}
};

template <class Parameter, class Argument>
struct Plain : Binding<1> {
  static_assert(std::is_convertible_v<Argument, Parameter>, "the argument does not fit the function's parameter");
  explicit Plain(const Argument& given) : argument(given) {}
  [[nodiscard]] uint32_t Refusal() const {
    if constexpr (std::is_integral_v<Argument> && !std::is_same_v<Argument, bool>) {
      using Wide = std::conditional_t<std::is_signed_v<Argument>, int64_t, uint64_t>;
      if (!std::in_range<Parameter>(static_cast<Wide>(argument))) return TESSEL_INVALID_ARGUMENT;
    }
    return TESSEL_OK;
  }
  std::tuple<Parameter> Values() {
    if constexpr (std::is_arithmetic_v<Parameter>) {
      return {static_cast<Parameter>(argument)};
    } else {
      return {argument};
    }
  }

  Argument argument;
};

template <class Parameter, class Type>
struct Lent : Binding<1> {
  explicit Lent(const Owned<Type>& owner) : object(owner.Get()) {}
  std::tuple<Parameter> Values() { return {object}; }

  Type* object;
};

// These two own what they take as soon as their arguments are in order, also when memory then fails.
template <class Function>
bool TakesWithoutMemory(Function function) {
  if constexpr (std::is_same_v<Function, decltype(&AddExtensionAuthorityInformationAccess)>) {
    return function == AddExtensionAuthorityInformationAccess;
  } else if constexpr (std::is_same_v<Function, decltype(&AddExtensionCrlDistributionPoint)>) {
    return function == AddExtensionCrlDistributionPoint;
  } else {
    return false;
  }
}

template <class Parameter, class Type>
struct Given : Binding<1> {
  static_assert(std::is_same_v<Parameter, Type*>, "the argument does not fit the function's parameter");
  explicit Given(Owned<Type>& given) : owner(&given) {}
  std::tuple<Parameter> Values() { return {owner->Get()}; }
  void Finish(uint32_t status) {
    if (status == TESSEL_OK) static_cast<void>(owner->Release());
  }

  Owned<Type>* owner;
};

struct Identifier : Binding<1> {
  explicit Identifier(const ObjectIdentifier& given) : identifier(&given) {}
  std::tuple<const uint8_t*> Values() { return {identifier->Counted()}; }

  const ObjectIdentifier* identifier;
};

inline constexpr uint8_t kNoOctets = 0;

// Octets or characters with their size. Also those of none have an address.
template <class Element>
struct Sized : Binding<2> {
  explicit Sized(Octets octets) : octets_(octets) {}
  explicit Sized(std::string_view text) : octets_(reinterpret_cast<const uint8_t*>(text.data()), text.size()) {}
  [[nodiscard]] uint32_t Refusal() const {
    return octets_.size() > UINT32_MAX ? uint32_t{TESSEL_LENGTH_TOO_LARGE} : uint32_t{TESSEL_OK};
  }
  std::tuple<const Element*, uint32_t> Values() {
    const uint8_t* data = octets_.empty() ? &kNoOctets : octets_.data();
    return {reinterpret_cast<const Element*>(data), static_cast<uint32_t>(octets_.size())};
  }

  Octets octets_;
};

// A text that ends with a NUL, and so must not hold one.
struct Terminated : Binding<1> {
  explicit Terminated(std::string_view given) : text(given) {}
  [[nodiscard]] uint32_t Refusal() const {
    return text.find('\0') == std::string::npos ? uint32_t{TESSEL_OK} : uint32_t{TESSEL_INVALID_ARGUMENT};
  }
  std::tuple<const char*> Values() { return {text.c_str()}; }

  std::string text;
};

template <class Element, class Result>
struct Fetched : Binding<2> {
  explicit Fetched(Into<Result> into) : result(&into.Value()), room(into.Capacity()), isAsking(room == 0) {}

  std::tuple<Element*, uint32_t*> Values() {
    length = room;
    if (isAsking) return {nullptr, &length};
    if constexpr (std::is_same_v<Result, ObjectIdentifier>) {
      length = static_cast<uint32_t>(result->Room().size());
      return {result->Room().data(), &length};
    } else {
      // Also no octets are brought a place: two buffers of a function may go together.
      result->resize(std::max(room, 1U));
      return {reinterpret_cast<Element*>(result->data()), &length};
    }
  }
  // Asked, it told the length; tried, it told a larger one.
  bool More(uint32_t status) {
    const bool answered = status == TESSEL_OK || status == TESSEL_BUFFER_TOO_SMALL;
    const bool more =
        std::exchange(isAsking, false) ? answered && length != 0 : status == TESSEL_BUFFER_TOO_SMALL && length > room;
    if (more) room = length;
    return more;
  }
  void Finish(uint32_t status) {
    if constexpr (std::is_same_v<Result, ObjectIdentifier>) {
      if (status != TESSEL_OK) *result = ObjectIdentifier();
    } else {
      // Of a text that came with its NUL.
      const bool hasNul = std::is_same_v<Element, char> && length == room && length != 0 && result->back() == 0;
      result->resize(status == TESSEL_OK ? length - (hasNul ? 1 : 0) : 0);
    }
  }

  Result* result;
  uint32_t room;
  bool isAsking;
  uint32_t length = 0;
};

template <class Type>
inline constexpr bool kIsOwned = false;
template <class Type>
inline constexpr bool kIsOwned<Owned<Type>> = true;
template <class Type>
inline constexpr bool kIsInto = false;
template <class Result>
inline constexpr bool kIsInto<Into<Result>> = true;

template <class Parameter, class Element>
inline constexpr bool kIsConstant = std::is_same_v<Parameter, const Element*>;
template <class Type>
concept OctetsWithSize = std::convertible_to<const Type&, Octets>;
template <class Type>
concept TextWithSize =
    std::convertible_to<const Type&, std::string_view> && !std::is_pointer_v<Type> && !std::is_null_pointer_v<Type>;

// The binding of an argument to a parameter and, where that belongs to it, the next.
template <class Parameter, class Next, class Argument>
auto Bind(Argument&& argument) {
  using Type = std::remove_cvref_t<Argument>;
  constexpr bool kHasSize = std::is_same_v<Next, uint32_t>;
  if constexpr (kIsOwned<Type>) {
    using Object = std::remove_pointer_t<decltype(argument.Get())>;
    if constexpr (std::is_lvalue_reference_v<Argument> || std::is_same_v<Parameter, const Object*>) {
      return Lent<Parameter, Object>(argument);
    } else {
      return Given<Parameter, Object>(argument);
    }
  } else if constexpr (kIsInto<Type>) {
    return Fetched<std::remove_pointer_t<Parameter>, std::remove_cvref_t<decltype(argument.Value())>>(argument);
  } else if constexpr (std::is_same_v<Type, ObjectIdentifier>) {
    return Identifier(argument);
  } else if constexpr (OctetsWithSize<Type> && kIsConstant<Parameter, uint8_t> && kHasSize) {
    return Sized<uint8_t>(Octets(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, uint8_t> && kHasSize) {
    return Sized<uint8_t>(std::string_view(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, char> && kHasSize) {
    return Sized<char>(std::string_view(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, char>) {
    return Terminated(std::string_view(argument));
  } else {
    return Plain<Parameter, std::decay_t<Argument>>(argument);
  }
}

template <size_t place, class... Parameters>
using ParameterAt = std::tuple_element_t<place, std::tuple<Parameters..., void, void>>;

template <size_t place, class... Parameters>
auto BindAll() {
  static_assert(place == sizeof...(Parameters), "the function has more parameters");
  return std::tuple<>();
}

template <size_t place, class... Parameters, class First, class... Rest>
auto BindAll(First&& first, Rest&&... rest) {
  static_assert(place < sizeof...(Parameters), "the function has fewer parameters");
  auto bound =
      Bind<ParameterAt<place, Parameters...>, ParameterAt<place + 1, Parameters...>>(std::forward<First>(first));
  constexpr size_t kNext = place + decltype(bound)::kWidth;
  return std::tuple_cat(std::tuple(std::move(bound)), BindAll<kNext, Parameters...>(std::forward<Rest>(rest)...));
}

struct Outcome {
  uint32_t status;
  bool wasCalled;
};

template <class... Parameters, class... Arguments>
Outcome Run(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  auto bindings = BindAll<0, Parameters...>(std::forward<Arguments>(arguments)...);
  const auto each = [&bindings](auto use) { return std::apply(use, bindings); };
  uint32_t status = TESSEL_OK;
  each([&status](const auto&... bound) {
    (static_cast<void>(status = status == TESSEL_OK ? bound.Refusal() : status), ...);
  });
  if (status != TESSEL_OK) return {status, false};
  bool again = true;
  while (again) {
    status = each([function](auto&... bound) { return std::apply(function, std::tuple_cat(bound.Values()...)); });
    again = each([status](auto&... bound) { return (static_cast<unsigned>(bound.More(status)) | ... | 0U) != 0; });
  }
  const bool isTaken = status == TESSEL_OUT_OF_MEMORY && TakesWithoutMemory(function);
  each([=](auto&... bound) { (bound.Finish(isTaken ? uint32_t{TESSEL_OK} : status), ...); });
  return {status, true};
}

}  // namespace detail

// Calls the function and returns its status. It is not called when an argument has 2^32 octets or more
// (TESSEL_LENGTH_TOO_LARGE), or a number does not fit its parameter, or a text that ends with a NUL has another
// (TESSEL_INVALID_ARGUMENT).
template <class... Parameters, class... Arguments>
[[nodiscard]] uint32_t Try(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  return detail::Run(function, std::forward<Arguments>(arguments)...).status;
}

#ifdef __cpp_exceptions

template <class... Parameters, class... Arguments>
void Call(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  const detail::Outcome outcome = detail::Run(function, std::forward<Arguments>(arguments)...);
  if (outcome.status == TESSEL_OK) return;
  throw Error(outcome.status, outcome.wasCalled ? FailurePlace::Last() : FailurePlace());
}

namespace detail {

template <class... Parameters>
using LastOf = std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>;
template <class... Parameters>
using FirstOf = std::tuple_element_t<0, std::tuple<Parameters...>>;

// Whether an argument is an owner that ends with the call, by a function that only reads the object.
template <class Argument, class... Parameters>
inline constexpr bool kIsReadAndEnds = false;
template <class Type, class... Parameters>
inline constexpr bool kIsReadAndEnds<Owned<Type>, Parameters...> = (std::is_same_v<Parameters, const Type*> || ...);

// What a function of one buffer at its end fetches: texts or octets.
template <class... Parameters>
using FetchedOf = std::conditional_t<
    std::is_same_v<std::tuple_element_t<sizeof...(Parameters) - 2, std::tuple<Parameters...>>, char*>, std::string,
    Bytes>;

}  // namespace detail

// What a function writes into the buffer at the end of its parameters: a std::string for characters, Bytes for octets;
// Fetch<ObjectIdentifier>(...) for a counted identifier. The other arguments are given.
template <class Result = void, class... Parameters, class... Arguments>
auto Fetch(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  std::conditional_t<std::is_void_v<Result>, detail::FetchedOf<Parameters...>, Result> result;
  Call(function, std::forward<Arguments>(arguments)..., Into(result));
  return result;
}

// What a function writes through its last parameter: a number, or a pointer to a part of an object, which is lent.
template <class... Parameters, class... Arguments>
auto Get(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  std::remove_pointer_t<detail::LastOf<Parameters...>> result{};
  static_assert(!std::is_pointer_v<decltype(result)> || !(detail::kIsReadAndEnds<Arguments, Parameters...> || ...),
                "what would be lent ends with its owner");
  Call(function, std::forward<Arguments>(arguments)..., &result);
  return result;
}

// What a function makes, through its last parameter or its first.
template <class... Parameters, class... Arguments>
auto Make(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  using First = detail::FirstOf<Parameters...>;
  using Last = detail::LastOf<Parameters...>;
  constexpr bool kIsFirst = std::is_pointer_v<std::remove_pointer_t<First>>;
  Owned<std::remove_pointer_t<std::remove_pointer_t<std::conditional_t<kIsFirst, First, Last>>>> made;
  if constexpr (kIsFirst) {
    Call(function, made.Out(), std::forward<Arguments>(arguments)...);
  } else {
    Call(function, std::forward<Arguments>(arguments)..., made.Out());
  }
  return made;
}

#endif

}  // namespace tessel
