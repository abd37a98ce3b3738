#include "mail/mail_check.h"

#include <array>
#include <new>
#include <utility>

#include "base/conversions.h"
#include "base/failure.h"
#include "mail/text_position.h"

namespace velmora {
namespace {

constexpr std::uint16_t pop3Port = 110;

/// The number of messages in the answer to STAT: from position 5 to the next blank. Fails with 5 if there is
/// no such blank, 13 or 6 for what is no number of 16 bits.
std::int16_t countIn(std::string_view reply) {
    constexpr std::size_t begin = 4;
    const auto blank = reply.find(' ', begin);
    if (blank == std::string_view::npos) throw Failure(errors::invalidCall);
    return toInteger16(reply.substr(begin, blank - begin));
}

}  // namespace

MailCheck::MailCheck(Needs needs)
    : needs_(std::move(needs)), Winsock_(needs_.winsocks.createTcp(StreamUse::mail)) {
    Winsock_->events.DataArrival = [this](std::size_t) { Winsock_DataArrival(); };
    needs_.TmrMail.Tick.connect([this] { TmrMail_Timer(); });
    needs_.mnuCheckMail.Click.connect([this] { mnuCheckMail_Click(); });
}

void MailCheck::TmrMail_Timer() {
    if (MailTickCount != toPosition(needs_.MailInterval - 1)) {
        MailTickCount = toPosition(MailTickCount + 1);
        return;
    }
    // The count is meant to stand still without a connection: each later tick asks again.
    if (!needs_.IsConnected()) return;
    Check_Mail();
    MailTickCount = 0;
}

void MailCheck::clearMailTimer() {
    MailTickCount = 0;
    FavouritesChecked = false;
}

void MailCheck::mnuCheckMail_Click() {
    if (!needs_.TxtServer.Text.get().empty()) return Check_Mail();
    passOver([&] { needs_.Character().Play("Sad"); },
             [&] { needs_.Character().Speak("I was unable to find your e-mail settings."); },
             [&] { needs_.showMainWindow(); });
}

void MailCheck::Check_Mail() {
    passOver(
        [&] {
            if (!FavouritesChecked) needs_.checkFavourites();
        },
        [&] { FavouritesChecked = true; }, [&] { MailState = MailStates::MailConnect; },
        [&] { Winsock_->Close(); }, [&] { Winsock_->LocalPort = 0; },
        [&] { Winsock_->Connect(needs_.TxtServer.Text, pop3Port); });
}

void MailCheck::Winsock_DataArrival() {
    try {
        converse();
    } catch (const std::bad_alloc&) {
        giveUp();
    }
}

void MailCheck::converse() {
    std::string reply;
    bool read = true;
    guarded(
        [&](const Failure& failure) {
            read = failure.number != errors::outOfStackSpace;
            return After::next;
        },
        [&] { reply = Winsock_->GetData(); });
    if (!read) return giveUp();
    if (!reply.starts_with('+') && MailState != MailStates::MailRetr) return refuse(reply);
    if (const Action act = actionOf(MailState)) (this->*act)(reply);
}

// The machine has no memory for what the server sends: the session ends like one that was cut off, and what
// has come of the message makes room.
void MailCheck::giveUp() {
    MailBuffer = {};
    MailCurrentMessage = nullptr;
    Winsock_->Close();
}

void MailCheck::refuse(const std::string& reply) {
    passOver([&] { Winsock_->Close(); },
             [&] { needs_.dialogs.MsgBox("POP3 Error: " + reply, "POP3 Error", BoxIcon::exclamation); });
}

MailCheck::Action MailCheck::actionOf(MailStates state) {
    static constexpr std::array<Action, 7> actions{
        &MailCheck::connected, &MailCheck::userAccepted, &MailCheck::passAccepted,
        &MailCheck::counted,   &MailCheck::retrieved,    nullptr,
        &MailCheck::finished,
    };
    const auto index = static_cast<std::size_t>(state);
    return index < actions.size() ? actions.at(index) : nullptr;
}

void MailCheck::send(std::string_view command) {
    Winsock_->SendData(std::string(command).append("\r\n"));
}

void MailCheck::connected(const std::string&) {
    MailCount = 0;
    MailState = MailStates::MailUser;
    passOver([&] { send("USER " + needs_.TxtUser.Text.get()); });
}

void MailCheck::userAccepted(const std::string&) {
    MailState = MailStates::MailPass;
    passOver([&] { send("PASS " + needs_.TxtPass.Text.get()); });
}

void MailCheck::passAccepted(const std::string&) {
    MailState = MailStates::MailStat;
    passOver([&] { send("STAT"); });
}

void MailCheck::counted(const std::string& reply) {
    passOver([&] { MailCount = countIn(reply); });
    if (MailCount <= 0) return reportNothingNew();
    MailState = MailStates::MailRetr;
    passOver([&] { MailFetched = toPosition(MailFetched + 1); },
             // Always the first one, whatever `MailFetched` says: meant so.
             [&] { send("RETR 1"); });
}

void MailCheck::reportNothingNew() {
    MailState = MailStates::MailQuit;
    passOver([&] { send("QUIT"); }, [&] { needs_.Character().Play("Sad"); },
             [&] { needs_.Character().Think("There are no new messages."); }, [&] { removeMessages(); });
}

// Each removal moves up what is behind it, so that every second message stays: that is the result wanted.
void MailCheck::removeMessages() {
    const auto end = static_cast<int>(MailMessages.Count());
    for (MailLoopIndex = 1; MailLoopIndex <= end; ++MailLoopIndex) {
        passOver([&] { MailMessages.Remove(static_cast<std::size_t>(MailLoopIndex)); });
    }
}

void MailCheck::retrieved(const std::string& reply) {
    if (!MailBuffer.add(reply)) return;
    keepMessage();
    if (MailFetched == MailCount) {
        MailState = MailStates::MailQuit;
        return passOver([&] { send("QUIT"); });
    }
    passOver([&] { MailFetched = toPosition(MailFetched + 1); },
             [&] { send("RETR " + std::to_string(MailFetched)); });
}

// A message without its empty line is meant to be kept without fields, under the empty key. One whose key is
// there already is dropped, and the earlier one stays: that is how an old message is told from a new one.
void MailCheck::keepMessage() {
    std::string text = MailBuffer.take();
    MailCurrentMessage = std::make_shared<CMessage>();
    passOver([&] { MailCurrentMessage->CreateFromText(std::move(text)); },
             [&] { MailMessages.Add(MailCurrentMessage, MailCurrentMessage->MessageID); });
    MailCurrentMessage = nullptr;
}

void MailCheck::finished(const std::string&) {
    passOver([&] { Winsock_->Close(); });
    if (MailMessages.Count() == 0) return;
    passOver([&] { needs_.AnnounceNewMail(); }, [&] { needs_.FillMailCombo(); });
}

}  // namespace velmora
