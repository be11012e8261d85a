// Who may see the page.
#include <gtest/gtest.h>

#include "tools/view/ViewAccess.h"

namespace fyn::productionrules::testing {
namespace {

using Verdict = ViewAccess::Verdict;

TEST(ViewAccess, WithoutATokenOnlyNamesOfThisMachineAreAnswered) {
  const ViewAccess access("", "cookie");
  for (const char* const host :
       {"127.0.0.1", "127.0.0.1:8080", "127.9.9.9", "localhost", "LocalHost:80", "[::1]", "[::1]:8080"}) {
    EXPECT_EQ(access.judge(host, "", ""), Verdict::Allowed) << host;
  }
  for (const char* const host : {"", "evil.example", "evil.example:80", "localhost.evil.example",
                                 "127.0.0.1.evil", "128.0.0.1", "0.0.0.0", "[::2]", "[", "[]", "]", ":",
                                 ":80", "::1", "2130706433", "localhost@evil.example", " localhost"}) {
    EXPECT_EQ(access.judge(host, "cookie=", ""), Verdict::ForeignHost) << host;
  }
}

TEST(ViewAccess, WithATokenNothingElseCounts) {
  const std::string token = "0123456789abcdef";
  const ViewAccess access(token, "c");
  struct Row {
    std::string cookies;
    std::string parameter;
    Verdict verdict;
  };
  for (const Row& row : std::vector<Row>{
           {"", "", Verdict::NoToken},
           {"", token, Verdict::TokenGiven},
           {"", token + "0", Verdict::NoToken},
           {"", token.substr(1), Verdict::NoToken},
           {"", token + token, Verdict::NoToken},
           {"c=" + token, "", Verdict::Allowed},
           {"a=1; c=" + token + "; d=2", "", Verdict::Allowed},
           {"c=" + token, "wrong", Verdict::NoToken},
           {"c=", "", Verdict::NoToken},
           {"cc=" + token, "", Verdict::NoToken},
           {"x=c=" + token, "", Verdict::NoToken},
           {"c=" + token + "x", "", Verdict::NoToken},
           {";;;c", "", Verdict::NoToken},
           {token, "", Verdict::NoToken},
       }) {
    EXPECT_EQ(access.judge("any.example", row.cookies, row.parameter), row.verdict)
        << row.cookies << " | " << row.parameter;
  }
  EXPECT_EQ(access.judge("localhost", "", ""), Verdict::NoToken);
  EXPECT_EQ(access.cookie(), "c=" + token + "; Path=/; HttpOnly; SameSite=Strict");
}

TEST(ViewAccess, TokensAreLongAndNeverTheSame) {
  const std::string token = randomToken();
  EXPECT_EQ(token.size(), 64U);
  EXPECT_TRUE(isToken(token));
  EXPECT_NE(randomToken(), token);
  EXPECT_TRUE(isToken("abcDEF0123456-_9"));
  for (const char* const text : {"", "short", "0123456789abcde", "0123456789abcde&", "0123456789abcde ",
                                 "0123456789abcde\xc3\xa4", "0123456789abcdef\n"}) {
    EXPECT_FALSE(isToken(text)) << text;
  }
}

}  // namespace
}  // namespace fyn::productionrules::testing
