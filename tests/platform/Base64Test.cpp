#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumo/LumoServiceLayer.h"

TEST(Base64, EncodesAndDecodes) {
  std::vector<std::pair<std::string, std::string>> const pairs = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {std::string("\0\xFF\xFE", 3), "AP/+"}};
  for (auto const& [bytes, text] : pairs) {
    EXPECT_EQ(Insecure::Crypto_Base64::Encode(bytes), text);
    EXPECT_EQ(Insecure::Crypto_Base64::Decode(text), bytes);
  }
  EXPECT_EQ(Insecure::Crypto_Base64::Decode(" Zm 9v\r\n\tYg = = \n"), "foob");
}

TEST(Base64, RefusesWhatIsNoBase64) {
  for (std::string const text : {"Z", "Zg", "Zg=", "Zg===", "=", "Z===", "Zg==Zg==", "Zm9v=",
                                 "Zm=v", "Zm-_", "Zm9v\x80", "Zm9v*"}) {
    EXPECT_THROW(Insecure::Crypto_Base64::Decode(text), std::runtime_error) << text;
  }
  EXPECT_THROW(Insecure::Crypto_Base64::Decode(std::string("Zm\0v", 4)), std::runtime_error);
}
