#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace fyn::productionrules::testing {
using TextIterator = nlohmann::detail::iterator_input_adapter<std::string::const_iterator>;
}

// Templates of the JSON library that nearly every test uses. They are compiled once, in CommonTemplates.cpp:
// in every source they would be a third of what it takes to compile.
extern template class nlohmann::basic_json<>;
extern template class nlohmann::detail::serializer<nlohmann::json>;
extern template class nlohmann::detail::lexer<nlohmann::json, fyn::productionrules::testing::TextIterator>;
extern template class nlohmann::detail::parser<nlohmann::json, fyn::productionrules::testing::TextIterator>;
