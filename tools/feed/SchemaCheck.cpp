#include "tools/feed/SchemaCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

#include "tools/feed/ContractFiles.h"

namespace fyn::productionrules {

namespace {

using nlohmann::json;

/** A part of a schema file. */
struct Part {
  const std::string& file;
  const json& schema;
};

/** A value of a document and where it stands. */
struct Found {
  const json& value;
  std::string place;
};

constexpr std::size_t kLongestName = 40;
/** Remarks, and what is looked at first. */
constexpr std::array<std::string_view, 10> kOthers{
    "$schema", "$defs", "title",    "description", "examples",
    "items",   "type",  "required", "properties",  "additionalProperties"};

const std::pair<const std::string, json>& schemaOf(const std::string& file) {
  static thread_local std::map<std::string, json> read;
  const auto known = read.find(file);
  return known != read.end() ? *known : *read.emplace(file, json::parse(contractFile(file))).first;
}

/** The name of a type in schemas; a whole number is one however it is written. */
std::string typeName(const json& value) {
  if (value.is_number()) {
    const bool isWhole = !value.is_number_float() || std::floor(value.get<double>()) == value.get<double>();
    return isWhole ? "integer" : "number";
  }
  return value.type_name();
}

bool hasType(const json& value, const std::string& wanted) {
  const std::string type = typeName(value);
  return type == wanted || (type == "integer" && wanted == "number");
}

std::string named(const std::string& place) {
  return place.empty() ? "the document" : place;
}

std::string member(const std::string& place, const std::string& name) {
  std::string text = place.empty() ? "" : place + '.';
  for (const char c : name.substr(0, kLongestName)) {
    text += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  }
  return text;
}

class Check {
 public:
  explicit Check(std::vector<std::string>& faults) : mFaults(faults) {}

  void look(const Part& part, const Found& found);

 private:
  void fault(const Found& found, const std::string& what) { mFaults.push_back(named(found.place) + what); }
  void refer(const Part& part, const std::string& reference, const Found& found);
  void lookAtMembers(const Part& part, const Found& found);
  void lookAtKeyword(const Part& part, const std::string& keyword, const json& wanted, const Found& found);

  std::vector<std::string>& mFaults;
};

void Check::refer(const Part& part, const std::string& reference, const Found& found) {
  const std::size_t hash = std::min(reference.find('#'), reference.size());
  const auto& [file, schema] = hash == 0 ? schemaOf(part.file) : schemaOf(reference.substr(0, hash));
  const std::string pointer = hash < reference.size() ? reference.substr(hash + 1) : "";
  look({file, schema.at(json::json_pointer(pointer))}, found);
}

void Check::lookAtMembers(const Part& part, const Found& found) {
  static const json kNothing = json::object();
  const auto keyword = [&part](const char* name) -> const json& {
    const auto row = part.schema.find(name);
    return row != part.schema.end() ? *row : kNothing;
  };
  for (const json& name : keyword("required")) {
    if (!found.value.contains(name.get_ref<const std::string&>())) {
      mFaults.push_back(member(found.place, name) + " is missing");
    }
  }
  const json& known = keyword("properties");
  const bool isClosed = keyword("additionalProperties") == false;
  for (const auto& [name, value] : found.value.items()) {
    const auto row = known.find(name);
    if (row != known.end()) {
      look({part.file, *row}, {value, member(found.place, name)});
    } else if (isClosed) {
      mFaults.push_back(member(found.place, name) + " is not known; is it misspelt?");
    }
  }
}

void Check::lookAtKeyword(const Part& part, const std::string& keyword, const json& wanted,
                          const Found& found) {
  const json& value = found.value;
  if (keyword == "$ref") {
    refer(part, wanted, found);
  } else if (keyword == "minimum" || keyword == "maximum") {
    const bool isLow = keyword == "minimum";
    if (value.is_number() && (isLow ? value < wanted : value > wanted)) {
      fault(found, (isLow ? " is below " : " is above ") + wanted.dump());
    }
  } else if (keyword == "minItems") {
    if (value.is_array() && value.size() < wanted.get<std::size_t>()) {
      fault(found, " has too few entries");
    }
  } else if (keyword == "items" && value.is_array()) {
    const std::string place = found.place + "[]";
    for (const json& entry : value) {
      look({part.file, wanted}, {entry, place});
    }
  } else if (std::find(kOthers.begin(), kOthers.end(), keyword) == kOthers.end()) {
    throw std::logic_error(part.file + " uses " + keyword);
  }
}

void Check::look(const Part& part, const Found& found) {
  if (const auto type = part.schema.find("type"); type != part.schema.end() && !hasType(found.value, *type)) {
    fault(found, " is of type " + typeName(found.value) + ", not " + type->get<std::string>());
    return;
  }
  if (found.value.is_object()) {
    lookAtMembers(part, found);
  }
  for (const auto& [keyword, wanted] : part.schema.items()) {
    lookAtKeyword(part, keyword, wanted, found);
  }
}

}  // namespace

std::vector<std::string> schemaFaults(const std::string& name, const json& document) {
  std::vector<std::string> faults;
  const auto& [file, schema] = schemaOf(name);
  Check(faults).look({file, schema}, {document, ""});
  return faults;
}

}  // namespace fyn::productionrules
