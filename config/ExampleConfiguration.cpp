#include "config/ExampleConfiguration.h"

#include "config/ConfigKeys.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kIntroduction =
    "# Every setting of the production-rules service that this file can give, with its default.\n"
    "# Copy it to /etc/fyn.conf, or name another file in the environment variable FYN_CONF_NAME; leave out "
    "what\n"
    "# shall keep its default. The text \"config-change\" on the topic \"/ctl\" makes a running service read "
    "it again.\n"
    "# One key=value per line: numbers are integers, switches are on for 1 and off for anything else.\n";

}  // namespace

std::string exampleConfiguration() {
  std::string text = kIntroduction;
  for (const ConfigKey& row : kConfigKeys) {
    if (row.source != ConfigSource::File) {
      continue;
    }
    text.append("\n# ").append(row.meaning);
    const std::string_view unit = configUnitText(row.unit);
    if (!unit.empty()) {
      text.append(" (").append(unit).append(")");
    }
    text.append("\n").append(row.key).append("=");
    text.append(std::to_string(configValue(PrConfig::DEFAULT, row))).append("\n");
  }
  return text;
}

}  // namespace fyn::productionrules
