#pragma once

#include <array>
#include <functional>
#include <string>

namespace fyn::productionrules {

/** What stands behind the platform's interfaces. Every field is a text as a person gives it. */
struct PlatformOptions {
  std::string bus = "embedded";
  std::string provider = "none";
  std::string properties;
  std::string log = "auto";
  std::string metrics;
  std::string mqttUser;
  std::string mqttPassword;
  std::string mqttPasswordFile;
  std::string mqttCaFile;
  std::string mqttCertificateFile;
  std::string mqttKeyFile;

  /** One way to give a field: an environment variable, and an option of the host process. */
  struct Row {
    std::string PlatformOptions::*field;
    const char* environment;
    /** Null for a secret, which must not stand in a command line. */
    const char* option;
    const char* meaning;
  };
  static const std::array<Row, 11>& rows();

  /** The defaults, and over them what the environment variables say; an empty variable counts as not set. */
  static PlatformOptions fromEnvironment();

  /** The password at the broker: the first line of its file, without a carriage return, or what was given. */
  std::string password() const;

  /** Throws std::invalid_argument with one clear line for the first field that cannot be used. */
  void validate() const;
};

}  // namespace fyn::productionrules
