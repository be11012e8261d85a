#include "platform/linux/BusAddress.h"

#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace fyn::productionrules {

namespace {

constexpr std::string_view kPlainScheme = "mqtt://";
constexpr std::string_view kTlsScheme = "mqtts://";
constexpr std::uint16_t kPlainPort = 1883;
constexpr std::uint16_t kTlsPort = 8883;

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

[[noreturn]] void refuse(const std::string& url, const std::string& fault) {
  throw std::invalid_argument("bus address \"" + url + "\": " + fault);
}

/** 0 for what is no number of a port. */
std::uint16_t portOf(std::string_view digits) {
  std::uint16_t port = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stopped, fault] = std::from_chars(digits.data(), end, port);
  return fault == std::errc() && stopped == end ? port : std::uint16_t{0};
}

/** Takes `HOST`, `HOST:PORT` or `[IPV6]:PORT` apart. */
void parseAuthority(const std::string& url, std::string_view authority, BusAddress& address) {
  std::string_view host = authority;
  std::string_view rest;
  if (startsWith(authority, "[")) {
    const std::size_t end = authority.find(']');
    if (end == std::string_view::npos) {
      refuse(url, "the closing ']' is missing");
    }
    host = authority.substr(1, end - 1);
    rest = authority.substr(end + 1);
  } else if (const std::size_t colon = authority.find(':'); colon != std::string_view::npos) {
    host = authority.substr(0, colon);
    rest = authority.substr(colon);
  }
  if (host.empty()) {
    refuse(url, "the host is missing");
  }
  if (host.find_first_of("[] \t\r\n") != std::string_view::npos) {
    refuse(url, "the host may hold no blank and no bracket");
  }
  address.host = host;
  if (!rest.empty() && rest.front() != ':') {
    refuse(url, "expected ':' and the port behind ']'");
  }
  if (!rest.empty()) {
    address.port = portOf(rest.substr(1));
    if (address.port == 0) {
      refuse(url, "the port must be a number from 1 to 65535");
    }
  }
}

}  // namespace

std::string BusAddress::text() const {
  const bool bracketed = host.find(':') != std::string::npos;
  return std::string(tls ? kTlsScheme : kPlainScheme) + (bracketed ? "[" + host + "]" : host) + ":" +
         std::to_string(port) + (room.empty() ? "" : "/" + room);
}

bool isPort(const std::string& digits) {
  return portOf(digits) != 0;
}

BusAddress parseBusAddress(const std::string& url) {
  if (url.find('@') != std::string::npos) {
    throw std::invalid_argument(
        "bus address: it must not hold a user or password; give PRB_MQTT_USER and PRB_MQTT_PASSWORD_FILE");
  }
  BusAddress address;
  address.tls = startsWith(url, kTlsScheme);
  if (!address.tls && !startsWith(url, kPlainScheme)) {
    refuse(url, "expected \"embedded\", mqtt://HOST[:PORT][/ROOM] or mqtts://HOST[:PORT][/ROOM]");
  }
  address.port = address.tls ? kTlsPort : kPlainPort;
  const std::string_view rest =
      std::string_view(url).substr(address.tls ? kTlsScheme.size() : kPlainScheme.size());
  const std::size_t slash = rest.find('/');
  parseAuthority(url, rest.substr(0, slash), address);
  if (slash != std::string_view::npos) {
    address.room = rest.substr(slash + 1);
    while (!address.room.empty() && address.room.back() == '/') {
      address.room.pop_back();
    }
  }
  if (address.room.find_first_of("+#$ \t\r\n") != std::string::npos ||
      (!address.room.empty() && address.room.front() == '/')) {
    refuse(url, "the room may hold no blank and none of + # $, and must not begin with a slash");
  }
  return address;
}

}  // namespace fyn::productionrules
