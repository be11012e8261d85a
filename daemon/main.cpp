// The process that hosts the production-rules service on a Linux machine.
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "daemon/HostProcess.h"
#include "daemon/SelfCheck.h"
#include "platform/linux/PlatformOptions.h"

namespace {

using fyn::productionrules::PlatformOptions;

constexpr int kWrongUsage = 2;

struct HostOptions {
  PlatformOptions platform = PlatformOptions::fromEnvironment();
  std::string configuration = "/etc/fyn.conf";
  std::string name = "productionRules";
  std::string library = fyn::productionrules::defaultLibrary();
  bool onlyCheck = false;
};

/** Asks without opening: a pipe would wait for its writer. */
bool isReadable(const std::string& path) {
  return access(path.c_str(), R_OK) == 0;
}

/** The service itself takes a missing file for an empty one. */
void chooseConfiguration(const CLI::App& app, HostOptions& options) {
  if (isReadable(options.configuration)) {
    return;
  }
  const std::string recommended = fyn::productionrules::recommendedConfigurationFile();
  if (app.get_option("--config")->count() == 0 && isReadable(recommended)) {
    std::cerr << "productionrulesd: there is no configuration file " << options.configuration
              << "; until a restart the recommended one holds, " << recommended << "\n";
    options.configuration = recommended;
  }
}

void declareOptions(CLI::App& app, HostOptions& options) {
  app.set_version_flag("--version", "productionrulesd " PR_VERSION);
  app.add_flag("--check", options.onlyCheck,
               "say whether configuration, properties, bus and camera provider can be used, and end");
  app.add_option("--config", options.configuration,
                 "configuration file of the service, key=value lines; the recommended one without it")
      ->envname("FYN_CONF_NAME")
      ->capture_default_str();
  app.add_option("--name", options.name, "name of the service")->envname("PRB_NAME")->capture_default_str();
  app.add_option("--library", options.library, "the service library")
      ->envname("PRB_LIBRARY")
      ->capture_default_str();
  for (const PlatformOptions::Row& row : PlatformOptions::rows()) {
    if (row.option != nullptr) {
      app.add_option(row.option, options.platform.*row.field, row.meaning)
          ->envname(row.environment)
          ->capture_default_str();
    }
  }
  app.footer(
      "Every option can be given as the environment variable named beside it; the option wins. The password "
      "at\n"
      "the broker comes from a file or from PRB_MQTT_PASSWORD, never from the command line.\n"
      "Ends on SIGTERM and SIGINT. Exit status: 0 after a signal, 1 when the service ended by itself or\n"
      "--check finds a fault, 2 for a wrong option.");
}

/** Somebody who tries the daemon for the first time would wait for pictures. */
void warnOfEmbeddedBus(const HostOptions& options) {
  if (options.platform.bus == "embedded") {
    std::cerr
        << "productionrulesd: the bus is inside this process, so nobody can send it vision results or hear "
           "it; name a broker with --bus mqtt://HOST[:PORT][/ROOM]\n";
  }
}

/** The service reads its choices from the environment of its process. */
void passOn(const HostOptions& options) {
  for (const PlatformOptions::Row& row : PlatformOptions::rows()) {
    setenv(row.environment, (options.platform.*row.field).c_str(), 1);
  }
  setenv("FYN_CONF_NAME", options.configuration.c_str(), 1);
}

// A message of some MB goes back to the system with its last copy. By itself glibc keeps what has once been
// that large, and a service that was flooded once would stay three times as large.
void giveLargeMemoryBack() {
#ifdef __GLIBC__
  constexpr int kLarge = 256 * 1024;  // bytes
  mallopt(M_MMAP_THRESHOLD, kLarge);
#endif
}

}  // namespace

// Without memory for the options there is nothing left to end well.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  giveLargeMemoryBack();
  CLI::App app("Runs the production-rules service, the automatic camera director of a meeting room.",
               "productionrulesd");
  HostOptions options;
  declareOptions(app, options);
  try {
    app.parse(argc, argv);
    options.platform.validate();
    chooseConfiguration(app, options);
    if (options.onlyCheck) {
      return fyn::productionrules::checkInstallation(options.configuration, options.platform, std::cout) ? 0
                                                                                                         : 1;
    }
    warnOfEmbeddedBus(options);
    passOn(options);
    return fyn::productionrules::runHostProcess(options.library, options.name);
  } catch (const CLI::Success& wanted) {
    return app.exit(wanted);
  } catch (const std::exception& fault) {
    std::cerr << "productionrulesd: " << fault.what() << " (--help shows the options)\n";
    return kWrongUsage;
  }
}
