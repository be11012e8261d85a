#include "config/check/ConfigCheck.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "config/check/KeyRules.h"
#include "config/check/NearestName.h"
#include "platform/TextFile.h"

namespace fyn::productionrules {

namespace {

std::string faultOfLine(std::string_view key, const std::string& value) {
  const ConfigKey* const row = findConfigKey(key);
  const std::string name(key);
  if (key.empty()) {
    return "no key before the '=': the line is skipped";
  }
  if (row == nullptr) {
    return "unknown key " + name + suggestionFor(key);
  }
  if (row->source == ConfigSource::Property) {
    return name + " is a system property, which this file does not set; use: prb prop set " + name + ' ' +
           value;
  }
  const std::optional<std::string> fault = faultOfValue(*row, value);
  return fault ? name + ' ' + *fault : std::string();
}

/** Lines that the service passes over although somebody meant something by them. */
void addLinesWithoutValue(std::string_view text, std::vector<ConfigFault>& faults) {
  std::istringstream lines{std::string(text)};
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    const std::size_t first = line.find_first_not_of(" \t\r\v\f");
    if (first != std::string::npos && line[first] != '#' && line.find('=') == std::string::npos) {
      faults.push_back({number, "no '=': the line is skipped"});
    }
  }
}

}  // namespace

std::vector<ConfigFault> checkConfiguration(std::string_view text) {
  std::vector<ConfigFault> faults;
  std::map<std::string, int> lineOf;
  addLinesWithoutValue(text, faults);
  forEachConfigLine(text, [&](std::string_view key, std::string_view value, int line) {
    const std::string fault = faultOfLine(key, std::string(value));
    if (!fault.empty()) {
      faults.push_back({line, fault});
    }
    const auto [earlier, isFirst] = lineOf.emplace(key, line);
    if (!isFirst) {
      faults.push_back(
          {line, std::string(key) + " replaces its value in line " + std::to_string(earlier->second)});
      earlier->second = line;
    }
  });
  std::stable_sort(faults.begin(), faults.end(),
                   [](const ConfigFault& a, const ConfigFault& b) { return a.line < b.line; });
  return faults;
}

}  // namespace fyn::productionrules
