#include "platform/linux/mqtt/MqttTls.h"

#include <mosquitto.h>

#include <fstream>
#include <stdexcept>
#include <utility>

namespace fyn::productionrules {

namespace {

struct Reason {
  /** Part of the library's line. */
  const char* sign;
  const char* meaning;
};

constexpr const char* kNoTls = "the broker does not speak TLS on this port";
constexpr const char* kOurCertificate =
    "the broker does not accept this client's certificate: it must be signed by an authority that the broker "
    "knows";

constexpr Reason kReasons[] = {
    {"host name verification failed", "the broker's certificate is not for the host name of the address"},
    {"certificate verify failed",
     "the broker's certificate is not trusted: it has expired, or no authority of --mqtt-ca has signed it"},
    {"wrong version number", kNoTls},
    {"packet length too long", kNoTls},
    {"unexpected eof", "the broker has ended the TLS handshake; perhaps it speaks no TLS on this port"},
    {"certificate required", "the broker wants a client certificate: --mqtt-cert and --mqtt-key"},
    {"unknown ca", kOurCertificate},
    {"bad certificate", kOurCertificate},
    {"certificate expired", "this client's certificate has expired"},
    {"protocol version", "the broker and this client have no version of TLS in common"},
    {"Unable to load CA certificates", "the file of --mqtt-ca holds no certificates in PEM form"},
    {"Unable to load client certificate", "the file of --mqtt-cert holds no certificate in PEM form"},
    {"Unable to load client key", "the file of --mqtt-key holds no key in PEM form"},
    {"certificate/key are inconsistent", "the key of --mqtt-key does not belong to the certificate"},
};

void requireReadable(const std::string& file, const char* what) {
  if (!file.empty() && !std::ifstream(file)) {
    throw std::invalid_argument(std::string(what) + " \"" + file + "\" cannot be read");
  }
}

}  // namespace

void setUpTls(mosquitto* client, const MqttOptions& options) {
  requireReadable(options.caFile, "certificate authority file");
  requireReadable(options.certificateFile, "client certificate file");
  requireReadable(options.keyFile, "client key file");
  if (options.certificateFile.empty() != options.keyFile.empty()) {
    throw std::invalid_argument("a client certificate needs both the certificate file and the key file");
  }
  const auto pathOrNull = [](const std::string& path) { return path.empty() ? nullptr : path.c_str(); };
  const char* const machineAuthorities = options.caFile.empty() ? "/etc/ssl/certs" : nullptr;
  const int result =
      mosquitto_tls_set(client, pathOrNull(options.caFile), machineAuthorities,
                        pathOrNull(options.certificateFile), pathOrNull(options.keyFile), nullptr);
  if (result != MOSQ_ERR_SUCCESS) {
    throw std::invalid_argument(std::string("TLS cannot be set up: ") + mosquitto_strerror(result));
  }
}

void MqttTlsFault::note(const std::string& line) {
  if (!mReason.empty()) {
    return;
  }
  for (const Reason& reason : kReasons) {
    if (line.find(reason.sign) != std::string::npos) {
      mReason = reason.meaning;
      return;
    }
  }
}

std::string MqttTlsFault::take() {
  return std::exchange(mReason, {});
}

}  // namespace fyn::productionrules
