// Sides of the operations that are the same for certificates and CRLs: decode, encode, copy, read. A peer brings its
// functions; what is timed and what is checked is said here, once.
//
// An Input has `octets`. What `decode` returns owns what was decoded, frees it when it is destroyed, and is false when
// decoding failed. What `encode` returns can be converted to Octets, and is empty when encoding failed.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "inputs.h"
#include "table.h"

namespace bench {

// Work that uses all items, one after another, as long as that succeeds. The items have to outlive it, or be shared.
template <class Item, class Use>
Work OnAll(const std::vector<Item>& items, Use use) {
  return [&items, use] { return std::all_of(items.begin(), items.end(), use); };
}

template <class Item, class Use>
Work OnAll(std::shared_ptr<const std::vector<Item>> items, Use use) {
  return [items, use] { return std::all_of(items->begin(), items->end(), use); };
}

template <class Input, class Decoded>
struct Held {
  const Input* input;
  Decoded decoded;
};

// Decodes all inputs, for operations on what is decoded already.
template <class Input, class Decode>
auto Hold(const std::vector<Input>& inputs, Decode decode) {
  using Item = Held<Input, decltype(decode(Octets()))>;
  auto held = std::make_shared<std::vector<Item>>();
  for (const Input& input : inputs) {
    held->push_back({&input, decode(Octets(input.octets))});
    Require(static_cast<bool>(held->back().decoded), "an input is refused");
  }
  return std::shared_ptr<const std::vector<Item>>(held);
}

// isRight(decoded, input): whether the decoder found what is in the input.
template <class Input, class Decode, class IsRight>
void AddDecoder(Operation& operation, Label label, const std::vector<Input>& inputs, Decode decode, IsRight isRight) {
  const auto work = [decode](const Input& input) { return static_cast<bool>(decode(Octets(input.octets))); };
  const auto check = [decode, isRight](const Input& input) {
    ClearOutput();
    const auto decoded = decode(Octets(input.octets));
    return decoded && isRight(decoded, input);
  };
  operation.sides.push_back({std::move(label), OnAll(inputs, work), OnAll(inputs, check)});
}

// The encoder has to write the input in DER.
template <class Item, class Encode>
void AddEncoder(Operation& operation, Label label, const std::shared_ptr<const std::vector<Item>>& held,
                Encode encode) {
  const auto work = [encode](const Item& item) {
    const auto result = encode(item.decoded);
    return Octets(result).size() == DerOf(*item.input).size();
  };
  const auto check = [encode](const Item& item) {
    ClearOutput();
    const auto result = encode(item.decoded);
    return std::ranges::equal(Octets(result), DerOf(*item.input));
  };
  operation.sides.push_back({std::move(label), OnAll(held, work), OnAll(held, check)});
}

// What the copy is encoded to has to be the input in DER.
template <class Item, class Copy, class Encode>
void AddCopier(Operation& operation, Label label, const std::shared_ptr<const std::vector<Item>>& held, Copy copy,
               Encode encode) {
  const auto work = [copy](const Item& item) { return static_cast<bool>(copy(item.decoded)); };
  const auto check = [copy, encode](const Item& item) {
    const auto copied = copy(item.decoded);
    if (!copied) return false;
    ClearOutput();
    const auto result = encode(copied);
    return std::ranges::equal(Octets(result), DerOf(*item.input));
  };
  operation.sides.push_back({std::move(label), OnAll(held, work), OnAll(held, check)});
}

// read(decoded) returns an optional value, and isRight(value, input) whether it is that of the input.
template <class Item, class Read, class IsRight>
void AddReader(Operation& operation, Label label, const std::shared_ptr<const std::vector<Item>>& held, Read read,
               IsRight isRight) {
  const auto work = [read](const Item& item) { return read(item.decoded).has_value(); };
  const auto check = [read, isRight](const Item& item) {
    ClearOutput();
    const auto value = read(item.decoded);
    return value.has_value() && isRight(*value, *item.input);
  };
  operation.sides.push_back({std::move(label), OnAll(held, work), OnAll(held, check)});
}

}  // namespace bench
