#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

/// One mail message: its text, and what its headers say. Headers stand as they came: continuation lines are
/// not joined to them, and nothing in them is decoded. All texts are plain stores, empty at first.
class CMessage {
public:
    /// Whether the character has told of it.
    bool Announced = false;

    /// Cuts the text at its first empty line, and takes what it knows of the headers. A header that occurs
    /// again replaces the one before. Fails with `invalidFormat` if there is no empty line, and with 6 if it
    /// is behind position 32767; nothing has changed then.
    void CreateFromText(std::string text);
    static constexpr long invalidFormat = static_cast<long>(0x80040265);

    /// Gives an empty text, whatever the message holds: that is kept.
    std::string CombineMessage() const { return {}; }

    std::string Headers;      ///< all before the first empty line
    std::string MessageBody;  ///< all behind it
    std::string MessageText;  ///< the whole text
    std::string Encrypted;
    std::string Comments;
    std::string Keywords;
    std::string References;
    std::string InReplyTo;
    std::string BCC;
    std::string CC;
    std::string Sender;
    std::string ReplyTo;
    std::string Subject;
    std::string From;
    std::string MessageTo;
    std::string MessageID;
    std::string SendDate;
    std::string Received;  ///< of several, the last: the oldest hop
    std::string ReturnPath;

    /// Length of `MessageText` in characters. Fails with 6 beyond 31 bits.
    std::int32_t Size() const;

private:
    void takeHeader(std::string_view line);
};

}  // namespace velmora
