#pragma once

#include <string>

#include "platform/linux/mqtt/MqttOptions.h"

struct mosquitto;

namespace fyn::productionrules {

/** Gives a client of the MQTT library the certificates. Throws std::invalid_argument with one clear line when
 * one of their files cannot be used. */
void setUpTls(mosquitto* client, const MqttOptions& options);

/**
 * Why TLS failed, in words for whoever set it up. The MQTT library's result says only that it did; the reason
 * stands in its log lines.
 */
class MqttTlsFault {
 public:
  /** Takes a log line of the library; the first that tells a reason counts. */
  void note(const std::string& line);

  /** The reason noted since the last call; empty for none. */
  std::string take();

 private:
  std::string mReason;
};

}  // namespace fyn::productionrules
