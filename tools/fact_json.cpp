#include "fact_json.h"

#include <nlohmann/json.hpp>

namespace tool {
namespace {

using Value = nlohmann::ordered_json;

Value ValueOf(const Fact& fact) {
  switch (fact.shape) {
    case Fact::Shape::kObject: {
      Value object = Value::object();
      for (const Fact& part : fact.parts) object[part.key] = ValueOf(part);
      return object;
    }
    case Fact::Shape::kList: {
      Value list = Value::array();
      for (const Fact& part : fact.parts) list.push_back(ValueOf(part));
      return list;
    }
    case Fact::Shape::kScalar:
      break;
  }
  return std::visit([](const auto& value) { return Value(value); }, fact.value);
}

}  // namespace

std::string Json(const Fact& fact) {
  constexpr int kIndent = 2;
  // ASCII: nothing in a text can drive a terminal. A text that is no UTF-8 would be a fault here; it is not to end the
  // command.
  return ValueOf(fact).dump(kIndent, ' ', true, Value::error_handler_t::replace);
}

}  // namespace tool
