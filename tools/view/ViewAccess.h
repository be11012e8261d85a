#pragma once

#include <string>
#include <string_view>

namespace fyn::productionrules {

/** Who may see the page. */
class ViewAccess {
 public:
  enum class Verdict {
    /** Go on. */
    Allowed,
    /** The address carries the token: hand out the cookie. */
    TokenGiven,
    /** A token is needed. */
    NoToken,
    /** The request was meant for another host: a foreign page that had its name point to this machine. */
    ForeignHost,
  };

  /** Without a token (""), requests for names of this machine itself are allowed and no others; with one,
   * requests that carry it. `cookie` is the name of the cookie that holds it. */
  ViewAccess(std::string token, std::string cookie) : mToken(std::move(token)), mCookie(std::move(cookie)) {}

  /** `host`, `cookies`: those headers of the request. `token`: the parameter of its address. "" for missing.
   */
  Verdict judge(std::string_view host, std::string_view cookies, std::string_view token) const;

  /** The value of the Set-Cookie header that hands the token out. */
  std::string cookie() const;

  bool needsToken() const { return !mToken.empty(); }

 private:
  const std::string mToken;
  const std::string mCookie;
};

/** 256 random bits, from the system's source, as 64 hexadecimal digits. */
std::string randomToken();

/** Whether a text can serve as a token: 16 characters or more out of A-Z a-z 0-9 - and _. */
bool isToken(std::string_view text);

/** Whether a numeric address reaches this machine only: 127.x.x.x or ::1. */
bool isLoopback(const std::string& address);

/** Whether a text is a numeric address of IPv4 or IPv6. */
bool isNumericAddress(const std::string& address);

}  // namespace fyn::productionrules
