#pragma once

/**
 * Runs the service called `name` in the calling thread until its host stops it through PRB_STOP_FD, a number
 * of a file descriptor in the environment. Backends are those of the device (buildPlatform). `loadConfig`:
 * whether the configuration file is read first. A choice of the host that cannot be used is logged, and the
 * function returns.
 */
extern "C" __attribute__((visibility("default"))) void productionRulesServiceMain(const char* name,
                                                                                  bool loadConfig);
