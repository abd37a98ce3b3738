#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "mail/mail_check.h"
#include "mail/mail_reader.h"
#include "platform/loop.h"

namespace {

using namespace velmora;

// In the input, 0xfe ends a data event, and 0xfd besides begins another check.
constexpr char nextCheck = '\xfd';

class NoTime : public LoopHost {
public:
    std::chrono::milliseconds elapsed() const override { return {}; }
    void serve(std::optional<std::chrono::milliseconds>) override {}
};

/// The server's end is the fuzzer's: `arrive` is one data event.
class FedWinsock : public TcpWinsock {
public:
    void Close() override { open_ = false; }
    void Listen() override {}
    void Accept(long) override {}
    using TcpWinsock::Connect;
    void Connect() override { open_ = true; }
    void SendData(std::string) override { require(); }
    std::string GetData() override {
        require();
        return data_;
    }
    SocketState State() const override { return open_ ? SocketState::connected : SocketState::closed; }
    std::string LocalIP() const override { return {}; }
    std::string RemoteHostIP() const override { return {}; }

    void arrive(std::string_view data) {
        data_ = data;
        if (open_) events.DataArrival(data.size());
    }

private:
    void require() const {
        if (!open_) throw Failure(errors::wrongSocketState);
    }
    bool open_ = false;
    std::string data_;
};

class FedWinsocks : public Winsocks {
public:
    std::unique_ptr<TcpWinsock> createTcp(StreamUse) override {
        auto made = std::make_unique<FedWinsock>();
        socket = made.get();
        return made;
    }
    std::unique_ptr<UdpWinsock> createUdp() override { return nullptr; }
    FedWinsock* socket = nullptr;
};

class NoDialogs : public Dialogs {
public:
    BoxAnswer MsgBox(const std::string&, const std::string&, BoxIcon, BoxButtons) override {
        return BoxAnswer::ok;
    }
    std::optional<std::string> openFile(const std::string&, const std::string&) override { return {}; }
    std::optional<std::string> saveFile(const std::string&, const std::string&, const std::string&) override {
        return {};
    }
};

struct MailForm : Form {
    explicit MailForm(Forms& forms) : Form(forms, "MailForm", "") {}
    TextBox TxtServer{*this, "TxtServer", {.Text = "mail.example"}};
    TextBox TxtUser{*this, "TxtUser"};
    TextBox TxtPass{*this, "TxtPass"};
    velmora::Timer TmrMail{*this, "TmrMail"};
    Menu mnuCheckMail{*this, "mnuCheckMail", {}};
    Menu mnuEMessages{*this, "mnuEMessages", {}};
    ImageCombo comMail{*this, "comMail"};
    Button cmdReadMsg{*this, "cmdReadMsg"};
};

}  // namespace

/// What a server sends, cut into data events, over any number of sessions.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NoTime time;
    Loop loop(time);
    Forms forms(loop);
    MailForm form(forms);
    FedWinsocks winsocks;
    NoDialogs dialogs;
    const std::int16_t interval = 1;
    const bool entire = true;
    const auto nobody = []() -> AgentCharacter& { throw Failure(errors::objectNotSet); };
    MailReader* listener = nullptr;
    MailCheck check({.winsocks = winsocks,
                     .dialogs = dialogs,
                     .TxtServer = form.TxtServer,
                     .TxtUser = form.TxtUser,
                     .TxtPass = form.TxtPass,
                     .TmrMail = form.TmrMail,
                     .mnuCheckMail = form.mnuCheckMail,
                     .MailInterval = interval,
                     .Character = nobody,
                     .IsConnected = [] { return true; },
                     .checkFavourites = [] {},
                     .AnnounceNewMail = [&] { listener->AnnounceNewMail(); },
                     .FillMailCombo = [&] { listener->FillMailCombo(); },
                     .showMainWindow = [] {}});
    MailReader reader({.messages = check.MailMessages,
                       .comMail = form.comMail,
                       .cmdReadMsg = form.cmdReadMsg,
                       .mnuEMessages = form.mnuEMessages,
                       .ReadEntire = entire,
                       .Character = nobody,
                       .showPanel = [] {}});
    listener = &reader;
    check.Check_Mail();

    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of("\xfe\xfd"), rest.size());
        winsocks.socket->arrive(rest.substr(0, end));
        if (end < rest.size() && rest[end] == nextCheck) check.Check_Mail();
        rest.remove_prefix(std::min(rest.size(), end + 1));
    }
    return 0;
}
