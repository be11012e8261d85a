// Addresses and names of all kinds: brokers, topics, hosts, cookies and tokens.
#include <stdexcept>

#include "fuzz/FuzzRoom.h"
#include "platform/LogText.h"
#include "platform/PubSub.h"
#include "platform/linux/BusAddress.h"
#include "platform/linux/PlatformOptions.h"
#include "service/TopicText.h"
#include "tools/view/ViewAccess.h"

namespace {

using namespace fyn::productionrules;

void require(bool holds) {
  if (!holds) {
    throw std::logic_error("a property of addresses does not hold");
  }
}

void readBroker(const std::string& text) {
  BusAddress address;
  try {
    PlatformOptions options;
    options.bus = text;
    options.validate();
    address = parseBusAddress(text);
  } catch (const std::invalid_argument&) {
    return;
  }
  require(parseBusAddress(address.text()).text() == address.text());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = fuzzText(data, size);
  const std::string first(takeLine(rest));
  const std::string second(takeLine(rest));
  readBroker(first);
  getSubTopics(first);
  require(!com::quil::pubsub::topicCovers(first, second) || first.size() <= second.size());
  require(!isLoopback(first) || isNumericAddress(first));
  const ViewAccess open("", "cookie");
  const ViewAccess closed("a-token-of-the-fuzzer", "cookie");
  require(open.judge(first, second, rest) != ViewAccess::Verdict::NoToken);
  const bool knows = std::string(fuzzText(data, size)).find("a-token-of-the-fuzzer") != std::string::npos;
  require(knows || closed.judge(first, second, rest) == ViewAccess::Verdict::NoToken);
  const std::string shown = cleanLogText(fuzzText(data, size));
  require(shown.find_first_of("\n\r\x1b") == std::string::npos);
  return 0;
}
