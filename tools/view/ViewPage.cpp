#include "tools/view/ViewPage.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "tools/base/UsageError.h"
#include "tools/view/ViewAccess.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTokenVariable = "PRB_VIEW_TOKEN";

std::string tokenFromEnvironment() {
  const char* const value = std::getenv(kTokenVariable);
  std::string token = value != nullptr ? value : "";
  if (!token.empty() && !isToken(token)) {
    throw UsageError(std::string(kTokenVariable) +
                     " must hold 16 characters or more out of A-Z, a-z, 0-9, '-' and '_'");
  }
  return token;
}

}  // namespace

void addViewPageOptions(CLI::App& command, ViewPageOptions& options) {
  command.add_option("--port", options.port, "Port of the viewer page; 0 for any that is free")
      ->type_name("N")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  command
      .add_option("--listen", options.listen,
                  "Address of the viewer page; any but one of this machine alone asks pages for a token, "
                  "random or that of the environment variable PRB_VIEW_TOKEN")
      ->type_name("ADDRESS")
      ->capture_default_str();
}

ViewPage showViewPage(LineLog& lines, std::string name, const ViewPageOptions& options) {
  ViewServerOptions server;
  server.address = options.listen == "localhost" ? "127.0.0.1" : options.listen;
  server.port = options.port;
  server.question = options.question;
  server.sides = options.sides;
  server.videos = options.videos;
  if (!isNumericAddress(server.address)) {
    throw UsageError("--listen takes a numeric address such as 127.0.0.1 or 0.0.0.0, not '" + options.listen +
                     "'");
  }
  server.token = tokenFromEnvironment();
  const bool isNew = server.token.empty() && !isLoopback(server.address);
  if (isNew) {
    server.token = randomToken();
  }
  ViewPage page{std::make_unique<ViewServer>(lines, std::move(name), server), {}};
  page.address = page.server->url();
  if (isNew) {
    page.address += "?token=" + server.token;
  } else if (!server.token.empty()) {
    page.address += std::string("?token=$") + kTokenVariable;
  }
  return page;
}

}  // namespace fyn::productionrules
