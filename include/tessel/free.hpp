// The functions that release objects.
#pragma once

namespace tessel {

// Which function releases objects of a type: a line beside the type, in the header of its family. Null: none does.
template <class Type>
inline constexpr auto kFreeFunction = nullptr;

}  // namespace tessel
