#include <stdexcept>

#include "tools/view/ViewServer.h"

// Takes the place of ViewServer.cpp in a build without the HTTP library.
namespace fyn::productionrules {

class ViewServer::Pages {};

ViewServer::ViewServer(LineLog& /*lines*/, std::string /*name*/, const ViewServerOptions& /*options*/) {
  throw std::runtime_error("this prb has no viewer: it was built without cpp-httplib");
}

ViewServer::~ViewServer() = default;

int ViewServer::port() const {
  return 0;
}

std::string ViewServer::url() const {
  return {};
}

}  // namespace fyn::productionrules
