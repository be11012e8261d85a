#include "tests/testing/CommonTemplates.h"

template class nlohmann::basic_json<>;
template class nlohmann::detail::serializer<nlohmann::json>;
template class nlohmann::detail::lexer<nlohmann::json, fyn::productionrules::testing::TextIterator>;
template class nlohmann::detail::parser<nlohmann::json, fyn::productionrules::testing::TextIterator>;
