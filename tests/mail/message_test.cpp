#include "mail/message.h"

#include <gtest/gtest.h>

#include "mail/messages.h"
#include "tests/support/failure_of.h"

namespace velmora {
namespace {

CMessage parsed(std::string_view text) {
    CMessage message;
    message.CreateFromText(std::string(text));
    return message;
}

TEST(Message, TakesItsHeadersByNameInAnyCase) {
    const CMessage message = parsed(
        "RETURN-PATH: <r>\r\nReceived: last hop\r\nreceived: first hop\r\nFrom: a\r\nSender: b\r\nReply-To: "
        "c\r\n"
        "To: d\r\nCc: e\r\nBcc: f\r\nMessage-ID: g\r\nIn-Reply-To: h\r\nReferences: i\r\nKeywords: j\r\n"
        "Subject: k\r\nComments: l\r\nEncrypted: m\r\nDate: Thu, 5 Mar 2026 09:05:00 +0100\r\n\r\nbody\r\n");
    EXPECT_EQ(message.ReturnPath, "<r>");
    EXPECT_EQ(message.Received, "first hop");
    EXPECT_EQ(message.From + message.Sender + message.ReplyTo + message.MessageTo + message.CC + message.BCC +
                  message.MessageID + message.InReplyTo + message.References + message.Keywords +
                  message.Subject + message.Comments + message.Encrypted,
              "abcdefghijklm");
    EXPECT_EQ(message.SendDate, "Thu, 5 Mar 2026 09:05:00 +0100");
    EXPECT_EQ(message.MessageBody, "body\r\n");
    EXPECT_FALSE(message.Announced);
    EXPECT_EQ(message.CombineMessage(), "");
}

TEST(Message, SubjectIsWhatStandsBehindTheFirstColonOfTheLastLineOfThatName) {
    const struct {
        std::string_view headers;
        std::string_view subject;
    } cases[] = {
        {"SUBJECT:   Lunch?  ", "Lunch?"},
        {"Subject:\tLunch?", "\tLunch?"},  // only spaces are cut
        {"Subject : Lunch?", ""},
        {" Subject: Lunch?", ""},
        {"Subject: Re: Lunch?", "Re: Lunch?"},
        {"Subject: Lunch?\r\nSubject: Dinner?", "Dinner?"},
        {"Subject: Lunch?\r\nSubject:", ""},
        {"Subject: Lunch\r\n today: soup", "Lunch"},
        {"Subject: Lunch\n?", "Lunch\n?"},  // a bare line feed ends no line
        {"+OK Subject: 120 octets\r\nSubject: Lunch?", "Lunch?"},
        {"Subject", ""},
        {":", ""},
    };
    for (const auto& [headers, subject] : cases)
        EXPECT_EQ(parsed(std::string(headers) + "\r\n\r\n").Subject, subject) << headers;
}

TEST(Message, IsCutAtItsFirstEmptyLine) {
    const struct {
        std::string_view text;
        std::string_view headers;
        std::string_view body;
    } cases[] = {
        {"From: a\r\n\r\n", "From: a", ""},
        {"\r\n\r\nFrom: a", "", "From: a"},
        {"a\r\n\r\nb\r\n\r\nc", "a", "b\r\n\r\nc"},
        {std::string_view("a\0\xff\r\n\r\n\0", 8), std::string_view("a\0\xff", 3), std::string_view("\0", 1)},
    };
    for (const auto& [text, headers, body] : cases) {
        const CMessage message = parsed(text);
        EXPECT_EQ(message.Headers, headers);
        EXPECT_EQ(message.MessageBody, body);
        EXPECT_EQ(message.MessageText, text);
        EXPECT_EQ(message.Size(), static_cast<std::int32_t>(text.size()));
    }
}

TEST(Message, FailsWithoutAnEmptyLineWithinSixteenBitsAndKeepsWhatItWas) {
    CMessage message = parsed("Subject: Before\r\n\r\nbody");
    const auto failureFor = [&](std::string_view text) {
        return failureOf([&] { message.CreateFromText(std::string(text)); });
    };
    EXPECT_EQ(failureFor(""), CMessage::invalidFormat);
    EXPECT_EQ(failureFor("Subject: After\r\n\r"), CMessage::invalidFormat);
    EXPECT_EQ(failureFor(std::string(32767, 'x') + "\r\n\r\n"), errors::overflow);
    EXPECT_EQ(message.Subject, "Before");
    EXPECT_EQ(message.Size(), 23);
    EXPECT_EQ(failureFor(std::string(32766, 'x') + "\r\n\r\n"), 0);

    try {
        CMessage().CreateFromText("no end");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.source, "CMessage.CreateFromText");
        EXPECT_EQ(failure.description, "Invalid message format");
    }
}

TEST(Messages, KeepTheFirstOfAKeyTheEmptyKeyIncluded) {
    MailMessages messages;
    const auto first = std::make_shared<CMessage>();
    messages.Add(first, "");
    EXPECT_THROW(messages.Add(std::make_shared<CMessage>(), ""), Failure);
    messages.Add(std::make_shared<CMessage>(), "<a>");
    messages.Add(std::make_shared<CMessage>(), "<A>");
    EXPECT_EQ(messages.Count(), 3U);
    EXPECT_EQ(&messages.Item(1), first.get());
    messages.Remove(1);
    messages.Add(first, "");  // the key is free again
    EXPECT_EQ(&messages.Item(3), first.get());
    EXPECT_THROW(messages.Remove(4), Failure);
    EXPECT_THROW(messages.Item(0), Failure);
}

}  // namespace
}  // namespace velmora
