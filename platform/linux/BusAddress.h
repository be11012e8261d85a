#pragma once

#include <cstdint>
#include <string>

namespace fyn::productionrules {

/** Where a broker is: `mqtt://HOST[:PORT][/ROOM]`, or `mqtts://` for TLS. */
struct BusAddress {
  bool tls = false;
  std::string host;
  std::uint16_t port = 0;
  /** Stands before every topic on the broker, without a slash at either end; empty for none. */
  std::string room;

  /** `mqtt://HOST:PORT/ROOM`, for people. */
  std::string text() const;
};

/** Whether it is the number of a port. */
bool isPort(const std::string& digits);

/**
 * Reads a broker's address; an absent port is 1883, with TLS 8883. Throws std::invalid_argument with one
 * clear line when `url` is not one. A user or password within the address is refused, and never repeated in
 * the message.
 */
BusAddress parseBusAddress(const std::string& url);

}  // namespace fyn::productionrules
