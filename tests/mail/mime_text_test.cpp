#include "mail/mime_text.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

const std::string far(32767, '.');  // behind it nothing is found any more

TEST(MimeText, IsReducedToTheFirstPart) {
    const struct {
        std::string body;
        std::string left;
    } cases[] = {
        {"------=_1\r\nContent-Transfer-Encoding: 7bit\r\n\r\nHello.\r\n------=_1\r\nrest",
         "\n\r\nHello.\r\n-"},
        {"a bit early\r\n------=_1\r\n8bit\r\nHello.\r\n------=_1--", "early\r\n-"},
        {"------=_1 bit\r\nno other boundary", ""},
        {"abc------=_", "-"},  // no "bit": three characters go
        {"------=_", ""},      // and with them the only boundary
        {"------=_bit", "-"},  // nothing can be dropped behind the end
        {"------=_bit\r", ""},
        {"------=_1 7bit\r\n" + far + "------=_1", ""},                   // the next boundary is out of reach
        {"123------=_1" + far + "bit\r\nHello------=_1", "-"},            // so is "bit"
        {"------=_" + std::string(32756, '.') + "bit\r\n------=_", "-"},  // what it drops passes 16 bits
    };
    for (const auto& [body, left] : cases) {
        std::string text = body;
        EXPECT_TRUE(StripMimeText(text));
        EXPECT_EQ(text, left) << body.substr(0, 60);
    }
}

TEST(MimeText, LeavesABodyWithoutABoundaryInReachAsItIs) {
    for (const std::string& body :
         {std::string(), std::string("a bit of text"), far + "------=_1 7bit\r\n"}) {
        std::string text = body;
        EXPECT_FALSE(StripMimeText(text));
        EXPECT_EQ(text, body);
    }
}

}  // namespace
}  // namespace velmora
