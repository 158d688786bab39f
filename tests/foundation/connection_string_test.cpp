#include "foundation/connection_string.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavcc {
namespace {

using ::testing::ElementsAre;

TEST(ConnectionString, PasswordsAreMasked) {
  struct Case {
    const char* given;
    const char* masked;
  };
  for (const Case& c : {
           Case{"Server=a;UID=sa;PWD=x;Database=d", "Server=a;UID=sa;PWD=***;Database=d"},
           Case{"pwd=x", "pwd=***"},
           Case{"PWD={a;b};Database=d", "PWD=***;Database=d"},
           Case{"PWD={a}};b}}c};Database=d", "PWD=***;Database=d"},
           Case{"PWD={never;closed", "PWD=***"},
           Case{" Password = x ;A=b", " Password =***;A=b"},
           Case{"Driver={SQL;PWD=no};Server=a", "Driver={SQL;PWD=no};Server=a"},
           Case{"PWD=a;PWD=b", "PWD=***;PWD=***"},
           Case{"Server;PWD=x", "Server;PWD=***"},
           Case{"PWD=", "PWD=***"},
           Case{"Password=\"a;b\";Data Source=s", "Password=***;Data Source=s"},
           Case{"Password='a\"';Data Source=s", "Password=***;Data Source=s"},
           Case{"Password=\"a\"\";Server=b\";Data Source=s", "Password=***;Data Source=s"},
           Case{"", ""},
       }) {
    EXPECT_EQ(MaskPassword(c.given), c.masked) << c.given;
  }
}

TEST(ConnectionString, PasswordsAreFoundWithoutTheirBracesAndQuotes) {
  EXPECT_THAT(PasswordsOf("PWD={a}};b};Password=c;PWD=;UID=d"), ElementsAre("a};b", "c"));
  EXPECT_THAT(PasswordsOf("Password=\"a\"\"b\";Pwd='c;d'"), ElementsAre("a\"b", "c;d"));
}

TEST(ConnectionString, PasswordsAreTakenOutOfTexts) {
  EXPECT_EQ(WithoutPasswords("login with secret failed: secret", "UID=a;PWD=secret"),
            "login with *** failed: ***");
  EXPECT_EQ(WithoutPasswords("login failed", "UID=a;PWD=secret"), "login failed");
  EXPECT_EQ(WithoutPasswords("login failed", "UID=a;PWD="), "login failed");
}

}  // namespace
}  // namespace tavcc
