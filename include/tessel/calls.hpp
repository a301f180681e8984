// Calling the C interface: owners of what it makes, arguments and results as C++ has them, failures as exceptions.
//
//   tessel::Owned<Certificate> certificate = tessel::Make(DecodeCertificate, octets);
//   tessel::Bytes serial = tessel::Fetch(GetCertificateSerialNumber, certificate);
//   X509Name* subject = tessel::Get(GetCertificateSubject, certificate);  // lent
//   tessel::Call(SetCertificateSerialNumber, certificate, serial);
//
// Make, Fetch, Get and Call each call one function of the interface, whose type decides what becomes of the arguments:
//
//   Owned                            the pointer to its object. It is moved where the function takes the object, and
//                                    empty when that has succeeded.
//   a span, vector or array          pointer and size, where the function takes both. The pointer is never null.
//   a string, view or literal        the same, or a text with a NUL
//   ObjectIdentifier                 its counted form
//   Into(result)                     a buffer and its length: asked for the length first, and then fetched
//   owner.Out()                      where the function makes an object
//   anything else                    itself
//
// Results change when the call is over, so an argument may be a result too. After a failure they are empty. A status
// other than 0 is thrown as an Error. Try is Call without exceptions: it returns the status. (What results are kept in,
// vectors and strings, throws std::bad_alloc as ever.)
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tessel/algorithms.hpp"
#include "tessel/certificate.hpp"
#include "tessel/crl.hpp"
#include "tessel/error.hpp"
#include "tessel/extension_lists.hpp"
#include "tessel/extensions.hpp"
#include "tessel/free.hpp"
#include "tessel/lists.hpp"
#include "tessel/names.hpp"
#include "tessel/object_identifier.hpp"
#include "tessel/octets.hpp"
#include "tessel/tessel.h"
#include "tessel/time.hpp"

namespace tessel {

// A type that has a free function.
template <class Type>
concept Releasable = !std::is_null_pointer_v<std::remove_cv_t<decltype(kFreeFunction<Type>)>>;

// The owner of an object of a named type, or of none. The object is released with its owner.
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

  // For functions of the interface. A temporary owner does not convert, because its pointer would outlive the object.
  operator Type*() const& { return object_; }
  operator Type*() const&& = delete;
  Type* operator->() const { return object_; }
  [[nodiscard]] Type* Get() const { return object_; }
  [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }

  // For a function that makes an object. Outside of Call and its like, what was held is released before.
  struct Place {
    using OwnerType = Owned;
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
    if (held != nullptr) kFreeFunction<Type>(held);
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
template <class Result>
class Into {
 public:
  explicit Into(Result& result) : result_(&result) {}

  [[nodiscard]] Result& Value() const { return *result_; }

 private:
  Result* result_;
};

namespace detail {

// These templates are specialised for the types of functions, and so apply to all functions of such a type.

// The place of a parameter that is a counted identifier and is followed by a number that is not its size.
template <class Function>
inline constexpr size_t kIdentifierPlace = SIZE_MAX;
template <>
inline constexpr size_t kIdentifierPlace<decltype(&CreateX509Extension)> = 1;
template <>
inline constexpr size_t kIdentifierPlace<decltype(&SetX509Extension)> = 1;
template <>
inline constexpr size_t kIdentifierPlace<decltype(&AddX509ExtensionsExtension)> = 1;
template <>
inline constexpr size_t kIdentifierPlace<decltype(&AddX509NameEntry)> = 4;
template <>
inline constexpr size_t kIdentifierPlace<decltype(&AddX509NameEntryExt)> = 4;

// The first room for functions that cannot be asked for a length. They are called again when they ask for more.
template <class Function>
inline constexpr uint32_t kFirstRoom = 0;
template <>
inline constexpr uint32_t kFirstRoom<decltype(&GetVersionInfo)> = 100;
template <>
inline constexpr uint32_t kFirstRoom<decltype(&ConvertAnsiToUTF8)> = 100;

// Whether a function takes its objects as soon as its arguments are in order, also when there is no memory then.
template <class Function>
inline constexpr bool kTakesWithoutMemory =
    std::is_same_v<Function, decltype(&AddExtensionAuthorityInformationAccess)> ||
    std::is_same_v<Function, decltype(&AddExtensionCrlDistributionPoint)>;

// Functions that make an object, and do not lend a part of one.
template <class... Parameters>
inline constexpr bool kMakes = false;
template <class Type, class... Rest>
inline constexpr bool kMakes<Type**, Rest...> = true;
template <class Type>
inline constexpr bool kMakes<const uint8_t*, uint32_t, Type**> = true;
template <class Type>
inline constexpr bool kMakes<const Type*, Type**> = true;
template <>
inline constexpr bool kMakes<const X509GeneralNames*, X509Name**> = true;

// Objects that are no trees: a function writes them, and never takes them.
template <class Type>
inline constexpr bool kIsPlainValue =
    std::is_same_v<Type, LibraryTime> || std::is_same_v<Type, LibraryPreciseTime> || std::is_same_v<Type, Accuracy>;

// What a function does with an object that it is handed.
enum class Passing {
  kReads,
  kChanges,
  kTakes,
  kTakesOrCopies  // by the number behind it: 0 for taking
};

// The first object is what the call is about; those behind it are taken, if they are not const.
template <size_t place, class Parameter, class... Parameters>
constexpr Passing PassingAt() {
  using Type = std::remove_pointer_t<Parameter>;
  if (std::is_const_v<Type>) return Passing::kReads;
  if (place == 0 || kIsPlainValue<Type>) return Passing::kChanges;
  using Last = std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>;
  const bool hasFlag = place + 2 == sizeof...(Parameters) && std::is_same_v<Last, uint32_t>;
  return hasFlag ? Passing::kTakesOrCopies : Passing::kTakes;
}

// How an argument becomes parameters. A binding gives kWidth parameters for each call (Values), tells after a call
// whether the function has to be called again (More), and is told when there are no more calls (Finish).
template <size_t width>
struct Binding {
  static constexpr size_t kWidth = width;
  // A failure when the argument cannot be passed on.
  [[nodiscard]] uint32_t Refusal() const { return TESSEL_OK; }
  bool More(uint32_t /*status*/) { return false; }
  void Finish(uint32_t /*status*/) {}
};

template <class Parameter, class Argument>
struct Plain : Binding<1> {
  static_assert(std::is_convertible_v<Argument, Parameter> && !std::is_floating_point_v<Argument>,
                "the argument does not fit the function's parameter");
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

template <class Type>
struct Given : Binding<1> {
  Given(Type* given, Owned<Type>* movedFrom, bool copied) : object(given), owner(movedFrom), isCopied(copied) {}
  [[nodiscard]] uint32_t Refusal() const {
    const bool wouldHaveTwoOwners = owner == nullptr && !isCopied;
    return wouldHaveTwoOwners ? uint32_t{TESSEL_INVALID_ARGUMENT} : uint32_t{TESSEL_OK};
  }
  std::tuple<Type*> Values() { return {object}; }
  void Finish(uint32_t status) {
    if (status == TESSEL_OK && !isCopied) static_cast<void>(owner->Release());
  }

  Type* object;
  Owned<Type>* owner;  // null: it was not moved
  bool isCopied;
};

template <class Type>
struct Placed : Binding<1> {
  explicit Placed(typename Owned<Type>::Place place) : owner(place.owner) {}
  // What the function made in an earlier call, when it was asked for lengths, is released.
  std::tuple<Type**> Values() { return {made.Out()}; }
  void Finish(uint32_t status) { owner->Reset(status == TESSEL_OK ? made.Release() : nullptr); }

  Owned<Type>* owner;
  Owned<Type> made;
};

struct Identifier : Binding<1> {
  explicit Identifier(const ObjectIdentifier& given) : identifier(&given) {}
  std::tuple<const uint8_t*> Values() { return {identifier->Counted()}; }

  const ObjectIdentifier* identifier;
};

inline constexpr uint8_t kNoOctets = 0;

// The text in an array of characters ends before its NUL. Nothing when the array has no NUL, or more than NULs behind
// it.
template <class Type>
std::optional<std::string_view> TextOf(const Type& argument) {
  if constexpr (std::is_array_v<Type>) {
    const std::string_view all(argument, std::extent_v<Type>);
    const std::string_view text = all.substr(0, all.find('\0'));
    const bool isText = text.size() < all.size() && all.find_first_not_of('\0', text.size()) == std::string_view::npos;
    return isText ? std::optional(text) : std::nullopt;
  } else {
    return std::string_view(argument);
  }
}

// Octets or characters with their size. When there are none, their address is not null either.
template <class Element>
struct Sized : Binding<2> {
  explicit Sized(Octets given) : octets(given) {}
  explicit Sized(std::optional<std::string_view> text) : isText(text.has_value()) {
    if (text) octets = Octets(reinterpret_cast<const uint8_t*>(text->data()), text->size());
  }
  [[nodiscard]] uint32_t Refusal() const {
    if (!isText) return TESSEL_INVALID_ARGUMENT;
    return octets.size() > UINT32_MAX ? uint32_t{TESSEL_LENGTH_TOO_LARGE} : uint32_t{TESSEL_OK};
  }
  std::tuple<const Element*, uint32_t> Values() {
    const uint8_t* data = octets.empty() ? &kNoOctets : octets.data();
    return {reinterpret_cast<const Element*>(data), static_cast<uint32_t>(octets.size())};
  }

  Octets octets;
  bool isText = true;
};

// A text that ends with a NUL, and so must not hold one.
struct Terminated : Binding<1> {
  explicit Terminated(std::optional<std::string_view> given) : text(given.value_or(std::string_view("\0", 1))) {}
  [[nodiscard]] uint32_t Refusal() const {
    return text.find('\0') == std::string::npos ? uint32_t{TESSEL_OK} : uint32_t{TESSEL_INVALID_ARGUMENT};
  }
  std::tuple<const char*> Values() { return {text.c_str()}; }

  std::string text;
};

template <class Element, class Result>
struct Fetched : Binding<2> {
  Fetched(Into<Result> into, uint32_t firstRoom) : result(&into.Value()), room(firstRoom), isAsking(firstRoom == 0) {}

  [[nodiscard]] uint32_t Refusal() const {
    if constexpr (kIsIdentifier) {
      if (room > 1 + ObjectIdentifier::kLargestContent) return TESSEL_BUFFER_TOO_SMALL;
    }
    return TESSEL_OK;
  }
  std::tuple<Element*, uint32_t*> Values() {
    length = room;
    if (isAsking) return {nullptr, &length};
    if constexpr (kIsIdentifier) {
      length = static_cast<uint32_t>(fetched.Room().size());
      return {fetched.Room().data(), &length};
    } else {
      // The buffer is not null even for a length of 0: some functions refuse one null buffer beside another.
      fetched.resize((std::max)(room, 1U));
      return {reinterpret_cast<Element*>(fetched.data()), &length};
    }
  }
  // The function is called again when it has told the length that it was asked for, or a length that is more than the
  // room.
  bool More(uint32_t status) {
    const bool answered = status == TESSEL_OK || status == TESSEL_BUFFER_TOO_SMALL;
    const bool more =
        std::exchange(isAsking, false) ? answered && length != 0 : status == TESSEL_BUFFER_TOO_SMALL && length > room;
    if (more) room = length;
    return more;
  }
  void Finish(uint32_t status) {
    if (status != TESSEL_OK) fetched = Result();
    if constexpr (!kIsIdentifier) {
      fetched.resize(status == TESSEL_OK ? length : 0);
      // Some functions tell the length of a text with its NUL.
      if (std::is_same_v<Element, char> && !fetched.empty() && fetched.back() == 0) fetched.pop_back();
    }
    *result = std::move(fetched);
  }

  static constexpr bool kIsIdentifier = std::is_same_v<Result, ObjectIdentifier>;

  Result* result;
  Result fetched;
  uint32_t room;
  bool isAsking;
  uint32_t length = 0;
};

template <class Type>
inline constexpr bool kIsOwned = false;
template <class Type>
inline constexpr bool kIsOwned<Owned<Type>> = true;
template <class Type>
inline constexpr bool kIsPlace = false;
template <class Type>
requires requires(Type place) { typename Type::OwnerType; }
inline constexpr bool kIsPlace<Type> = true;
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

template <Passing passing, class Parameter, class Argument>
auto BindOwner(bool isCopied, Argument&& owner) {
  using Type = std::remove_pointer_t<decltype(owner.Get())>;
  constexpr bool kIsMoved = !std::is_lvalue_reference_v<Argument>;
  if constexpr (passing == Passing::kReads || passing == Passing::kChanges) {
    static_assert(passing == Passing::kReads || !kIsMoved, "the object would end with the call");
    return Lent<Parameter, Type>(owner);
  } else if constexpr (kIsMoved) {
    return Given<Type>(owner.Get(), &owner, passing == Passing::kTakesOrCopies && isCopied);
  } else {
    static_assert(passing == Passing::kTakesOrCopies, "the function takes the object: move its owner");
    return Given<Type>(owner.Get(), nullptr, isCopied);
  }
}

template <size_t place, class... Parameters>
using ParameterAt = std::tuple_element_t<place, std::tuple<Parameters..., void, void>>;

// The binding of an argument to the parameter at a place and, where that belongs to it, the next. `isLastSet` tells
// whether the last argument is a number other than 0.
template <size_t place, class... Parameters, class Argument>
auto Bind(bool isLastSet, Argument&& argument) {
  using Function = uint32_t(TESSEL_CALL*)(Parameters...);
  using Parameter = ParameterAt<place, Parameters...>;
  using Type = std::remove_cvref_t<Argument>;
  constexpr bool kHasSize = std::is_same_v<ParameterAt<place + 1, Parameters...>, uint32_t>;
  constexpr bool kMayHaveSize = kHasSize && kIdentifierPlace<Function> != place;
  if constexpr (kIsOwned<Type>) {
    return BindOwner<PassingAt<place, Parameter, Parameters...>(), Parameter>(isLastSet,
                                                                              std::forward<Argument>(argument));
  } else if constexpr (kIsPlace<Type>) {
    return Placed<std::remove_pointer_t<std::remove_pointer_t<Parameter>>>(argument);
  } else if constexpr (kIsInto<Type>) {
    using Result = std::remove_cvref_t<decltype(argument.Value())>;
    return Fetched<std::remove_pointer_t<Parameter>, Result>(argument, kFirstRoom<Function>);
  } else if constexpr (std::is_same_v<Type, ObjectIdentifier>) {
    return Identifier(argument);
  } else if constexpr (OctetsWithSize<Type> && kIsConstant<Parameter, uint8_t> && kMayHaveSize) {
    return Sized<uint8_t>(Octets(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, uint8_t> && kMayHaveSize) {
    return Sized<uint8_t>(TextOf(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, char> && kHasSize) {
    return Sized<char>(TextOf(argument));
  } else if constexpr (TextWithSize<Type> && kIsConstant<Parameter, char>) {
    return Terminated(TextOf(argument));
  } else {
    return Plain<Parameter, std::decay_t<Argument>>(argument);
  }
}

template <size_t place, class... Parameters>
auto BindAll(bool /*isLastSet*/) {
  static_assert(place == sizeof...(Parameters), "the function has more parameters");
  return std::tuple<>();
}

template <size_t place, class... Parameters, class First, class... Rest>
auto BindAll(bool isLastSet, First&& first, Rest&&... rest) {
  static_assert(place < sizeof...(Parameters), "the function has fewer parameters");
  auto bound = Bind<place, Parameters...>(isLastSet, std::forward<First>(first));
  constexpr size_t kNext = place + decltype(bound)::kWidth;
  return std::tuple_cat(std::tuple(std::move(bound)),
                        BindAll<kNext, Parameters...>(isLastSet, std::forward<Rest>(rest)...));
}

template <class... Arguments>
bool IsLastSet(const Arguments&... arguments) {
  const auto& last = std::get<sizeof...(Arguments)>(std::tie(kNoOctets, arguments...));
  if constexpr (std::is_convertible_v<decltype(last), uint32_t>) {
    return last != 0;
  } else {
    return false;
  }
}

// Whether the function is the free function of an argument's object: the owner would release the object once more.
template <class Type>
bool ReleasesOwned(uint32_t(TESSEL_CALL* function)(Type*), const Owned<Type>& /*owner*/) {
  return function == kFreeFunction<Type>;
}
template <class... Others>
bool ReleasesOwned(const Others&... /*others*/) {
  return false;
}

template <class Bindings>
uint32_t RefusalOf(const Bindings& bindings) {
  uint32_t status = TESSEL_OK;
  std::apply(
      [&status](const auto&... bound) {
        (static_cast<void>(status = status == TESSEL_OK ? bound.Refusal() : status), ...);
      },
      bindings);
  return status;
}

struct Outcome {
  uint32_t status;
  bool wasCalled;
};

template <class... Parameters, class... Arguments>
Outcome Run(uint32_t(TESSEL_CALL* function)(Parameters...), Arguments&&... arguments) {
  if (ReleasesOwned(function, arguments...)) return {TESSEL_INVALID_ARGUMENT, false};
  auto bindings = BindAll<0, Parameters...>(IsLastSet(arguments...), std::forward<Arguments>(arguments)...);
  const auto each = [&bindings](auto use) { return std::apply(use, bindings); };
  Outcome outcome{};
  bool again = true;
  while (again) {
    outcome = {RefusalOf(bindings), false};
    if (outcome.status != TESSEL_OK) break;
    outcome = {each([=](auto&... bound) { return std::apply(function, std::tuple_cat(bound.Values()...)); }), true};
    again = each([=](auto&... bound) { return (static_cast<unsigned>(bound.More(outcome.status)) | ... | 0U) != 0; });
  }
  const bool isTaken = outcome.status == TESSEL_OUT_OF_MEMORY && kTakesWithoutMemory<decltype(function)>;
  each([=](auto&... bound) { (bound.Finish(isTaken ? uint32_t{TESSEL_OK} : outcome.status), ...); });
  return outcome;
}

}  // namespace detail

// Calls the function and returns its status. It is not called when an argument has 2^32 octets or more
// (TESSEL_LENGTH_TOO_LARGE), or (TESSEL_INVALID_ARGUMENT) a number does not fit its parameter, a text that ends with a
// NUL has another, an array of characters has none or more behind it, or an object would have two owners.
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

// Whether an argument is a temporary owner, whose object the function only reads.
template <class Argument, class... Parameters>
inline constexpr bool kIsReadAndEnds = false;
template <class Type, class... Parameters>
inline constexpr bool kIsReadAndEnds<Owned<Type>, Parameters...> = (std::is_same_v<Parameters, const Type*> || ...);

// What is fetched from a function that ends with a buffer and its length: a text or octets.
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
  static_assert(!detail::kMakes<Parameters...>, "the function makes an object: call Make");
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
  static_assert(detail::kMakes<Parameters...>, "the function makes no object, but lends a part of one: call Get");
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
