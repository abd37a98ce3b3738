#include "mail/message.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "mail/text_position.h"

namespace velmora {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view emptyLine = "\r\n\r\n";

struct Header {
    std::string_view name;  ///< in lower case
    std::string CMessage::*property;
};

constexpr std::array headers{
    Header{"return-path", &CMessage::ReturnPath},
    Header{"received", &CMessage::Received},
    Header{"from", &CMessage::From},
    Header{"sender", &CMessage::Sender},
    Header{"reply-to", &CMessage::ReplyTo},
    Header{"to", &CMessage::MessageTo},
    Header{"cc", &CMessage::CC},
    Header{"bcc", &CMessage::BCC},
    Header{"message-id", &CMessage::MessageID},
    Header{"in-reply-to", &CMessage::InReplyTo},
    Header{"references", &CMessage::References},
    Header{"keywords", &CMessage::Keywords},
    Header{"subject", &CMessage::Subject},
    Header{"comments", &CMessage::Comments},
    Header{"encrypted", &CMessage::Encrypted},
    Header{"date", &CMessage::SendDate},
};

// Only spaces count here; a tab stays.
std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void CMessage::CreateFromText(std::string text) {
    const std::int16_t mark = positionOf(text, emptyLine);
    if (mark == 0) throw Failure(invalidFormat, "Invalid message format", "CMessage.CreateFromText");
    const std::size_t headSize = static_cast<std::size_t>(mark) - 1;
    MessageText = std::move(text);  // a large one is not copied: that alone would hold the program up
    MessageBody = std::string_view(MessageText).substr(headSize + emptyLine.size());
    Headers = MessageText.substr(0, headSize);
    for (std::string_view rest = Headers; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find(lineEnd));
        takeHeader(line);
        rest.remove_prefix(std::min(rest.size(), line.size() + lineEnd.size()));
    }
}

// The name is meant to be taken as it stands: a blank in front of the colon makes it unknown.
void CMessage::takeHeader(std::string_view line) {
    const auto colon = static_cast<std::size_t>(positionOf(line, ":"));
    if (colon == 0) return;
    const std::string_view name = line.substr(0, colon - 1);
    const auto* known = std::find_if(headers.begin(), headers.end(), [name](const Header& header) {
        return equalsIgnoringCase(header.name, name);
    });
    if (known != headers.end()) this->*known->property = withoutBlanks(line.substr(colon));
}

std::int32_t CMessage::Size() const {
    if (MessageText.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw Failure(errors::overflow);
    return static_cast<std::int32_t>(MessageText.size());
}

}  // namespace velmora
