#pragma once

#include <cstdint>
#include <string>

#include "model/Enums.h"

namespace fyn::productionrules {

/**
 * One snapshot of every tunable of the service. Fields, keys, defaults, units and meanings stand in
 * config/ConfigTable.inc; config/ConfigKeys.h gives that table to whoever walks it.
 */
struct PrConfig {
  using IntField = std::int32_t;
  using BoolField = bool;
  using ModeField = FynOperatingMode;

#define X(field, source, kind, key, defaultValue, unit, meaning) kind##Field field = defaultValue;
#include "config/ConfigTable.inc"
#undef X

  static const PrConfig DEFAULT;

  /** The snapshot in force. The reference lives as long as the service state; its content changes with `set`
   * and `load`. */
  static const PrConfig& get();

  /** Replaces the snapshot. */
  static void set(const PrConfig& config);

  /** Told the new record before it is taken over; does nothing by itself. */
  static void onChange(const PrConfig& config);

  /**
   * Reads the configuration file at `path` over the defaults, then the system properties over both, and takes
   * the result over when it differs from the snapshot: "reloaded" and every difference are logged, and the
   * log level is set. A missing file leaves every file key at its default, and so does one that
   * cannot be used, which is logged.
   */
  static void load(const std::string& path);

  /** Logs `FIELD: OLD -> NEW` for every field in which `other` differs from this record. */
  void logDiffs(const PrConfig& other) const;
};

/** The operating mode of the current snapshot. */
FynOperatingMode getFynOperatingMode();

/** The path of the configuration file: the environment variable FYN_CONF_NAME, or "/etc/fyn.conf". */
std::string configurationPath();

}  // namespace fyn::productionrules
