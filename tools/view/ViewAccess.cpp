#include "tools/view/ViewAccess.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <random>

namespace fyn::productionrules {

namespace {

constexpr std::size_t kShortestToken = 16;

/** Takes the same time wherever the texts differ. */
bool areEqual(std::string_view given, std::string_view secret) {
  unsigned difference = given.size() == secret.size() ? 0 : 1;
  for (std::size_t i = 0; i < secret.size(); ++i) {
    const char other = given.empty() ? '\0' : given[i % given.size()];
    difference |= static_cast<unsigned char>(secret[i] ^ other);
  }
  return difference == 0;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') {
    text.remove_prefix(1);
  }
  while (!text.empty() && text.back() == ' ') {
    text.remove_suffix(1);
  }
  return text;
}

/** The value of a cookie; "" when it is not there. */
std::string_view cookieValue(std::string_view cookies, std::string_view name) {
  while (!cookies.empty()) {
    const std::size_t end = std::min(cookies.find(';'), cookies.size());
    const std::string_view pair = trimmed(cookies.substr(0, end));
    if (pair.size() > name.size() && pair.substr(0, name.size()) == name && pair[name.size()] == '=') {
      return pair.substr(name.size() + 1);
    }
    cookies.remove_prefix(std::min(end + 1, cookies.size()));
  }
  return {};
}

/** A Host header without its port and brackets, in lower case. */
std::string nameOfHost(std::string_view host) {
  std::string_view name = host;
  if (!name.empty() && name.front() == '[') {
    name = name.substr(1, std::min(name.find(']'), name.size()) - 1);
  } else if (const std::size_t colon = name.rfind(':'); colon != std::string_view::npos) {
    name = name.substr(0, colon);
  }
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

}  // namespace

ViewAccess::Verdict ViewAccess::judge(std::string_view host, std::string_view cookies,
                                      std::string_view token) const {
  if (!needsToken()) {
    const std::string name = nameOfHost(host);
    return name == "localhost" || isLoopback(name) ? Verdict::Allowed : Verdict::ForeignHost;
  }
  if (!token.empty()) {
    return areEqual(token, mToken) ? Verdict::TokenGiven : Verdict::NoToken;
  }
  return areEqual(cookieValue(cookies, mCookie), mToken) ? Verdict::Allowed : Verdict::NoToken;
}

std::string ViewAccess::cookie() const {
  return mCookie + '=' + mToken + "; Path=/; HttpOnly; SameSite=Strict";
}

std::string randomToken() {
  constexpr int kWords = 8;
  constexpr const char* kDigits = "0123456789abcdef";
  std::random_device source;
  std::string token;
  for (int word = 0; word < kWords; ++word) {
    std::uint32_t bits = source();
    for (int digit = 0; digit < 8; ++digit, bits >>= 4U) {
      token += kDigits[bits & 15U];
    }
  }
  return token;
}

bool isToken(std::string_view text) {
  return text.size() >= kShortestToken && std::all_of(text.begin(), text.end(), [](unsigned char c) {
           return (std::isalnum(c) != 0 && c < 0x80) || c == '-' || c == '_';
         });
}

bool isNumericAddress(const std::string& address) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  return inet_pton(AF_INET, address.c_str(), bytes.data()) == 1 ||
         inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1;
}

bool isLoopback(const std::string& address) {
  in_addr four{};
  in6_addr six{};
  if (inet_pton(AF_INET, address.c_str(), &four) == 1) {
    return ntohl(four.s_addr) >> 24U == IN_LOOPBACKNET;
  }
  return inet_pton(AF_INET6, address.c_str(), &six) == 1 && IN6_IS_ADDR_LOOPBACK(&six);
}

}  // namespace fyn::productionrules
