#include "mail/mail_reader.h"

#include <cstdint>
#include <utility>

#include "base/failure.h"
#include "mail/mime_text.h"
#include "mail/text_position.h"

namespace velmora {
namespace {

constexpr int letterPicture = 1;

}  // namespace

MailReader::MailReader(Needs needs) : needs_(std::move(needs)) {
    needs_.comMail.Click.connect([this] { comMail_Click(); });
    needs_.mnuEMessages.Click.connect([this] { mnuEMessages_Click(); });
}

void MailReader::AnnounceNewMail() {
    for (std::size_t i = 1; i <= needs_.messages.Count(); ++i) announce(needs_.messages.Item(i));
}

void MailReader::announce(CMessage& message) {
    StripMimeText(message.MessageBody);
    if (message.Announced) return;
    // What is said of one message is meant to cut off what is still to be said of the one before.
    passOver([&] { needs_.Character().StopAll(); },
             [&] {
                 if (!needs_.Character().Visible()) needs_.Character().Show();
             },
             [&] { needs_.Character().Play("Read"); },
             [&] { needs_.Character().Speak("New Message from " + message.From); },
             [&] { needs_.Character().Speak("Subject " + message.Subject); },
             [&] {
                 if (needs_.ReadEntire) needs_.Character().Speak(message.MessageBody);
             },
             [&] { message.Announced = true; }, [&] { needs_.Character().Play("ReadReturn"); });
}

void MailReader::FillMailCombo() {
    Rows& ComboItems = needs_.comMail.ListItems();
    ComboItems.Clear();
    const std::int16_t count = toPosition(static_cast<std::ptrdiff_t>(needs_.messages.Count()));
    for (std::int16_t i = 0; i < count; ++i) {
        const CMessage& message = needs_.messages.Item(static_cast<std::size_t>(i) + 1);
        ComboItems.Add({.Key = message.MessageID,
                        .Text = message.Subject,
                        .Tag = message.MessageBody,
                        .Icon = letterPicture});
    }
}

void MailReader::comMail_Click() {
    PendingMailText = needs_.comMail.SelectedItem().Tag;
    // A message without a body is meant to leave the button as it is.
    if (!PendingMailText.empty()) needs_.cmdReadMsg.Enabled = true;
}

void MailReader::ReadMail_2(std::string& text) {
    StripMimeText(text);
    passOver(
        [&] {
            if (!needs_.Character().Visible()) needs_.Character().Show();
        },
        [&] { needs_.Character().Play("Read"); }, [&] { needs_.Character().Speak(text); },
        [&] { needs_.Character().Play("ReadReturn"); }, [&] { PendingMailText.clear(); },
        [&] { needs_.cmdReadMsg.Enabled = false; });
}

}  // namespace velmora
