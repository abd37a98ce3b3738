#include "tests/support/dovecot.h"

#include <arpa/inet.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

namespace velmora::blackbox {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr uid_t nobody = 65534;
constexpr std::uint16_t port = 110;

/// Of the loopback network, for this process and this server alone.
std::string ownAddress(int number) {
    constexpr int part = 250;
    const int process = static_cast<int>(getpid());
    return "127." + std::to_string(1 + process / part % part) + "." + std::to_string(1 + process % part) +
           "." + std::to_string(20 + number);
}

/// True if a TCP socket gets through to what `use` does with it.
template <class Use>
bool withSocket(const std::string& address, const Use& use) {
    sockaddr_in raw{};
    raw.sin_family = AF_INET;
    raw.sin_port = htons(port);
    inet_pton(AF_INET, address.c_str(), &raw.sin_addr);
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool done = use(descriptor, reinterpret_cast<const sockaddr*>(&raw), sizeof raw);
    close(descriptor);
    return done;
}

/// Whom the server runs as.
struct Account {
    uid_t user = geteuid() == 0 ? nobody : geteuid();
    gid_t group = geteuid() == 0 ? nobody : getegid();
    std::string userName = getpwuid(user) != nullptr ? getpwuid(user)->pw_name : "nobody";
    std::string groupName = getgrgid(group) != nullptr ? getgrgid(group)->gr_name : "nogroup";
};

std::vector<std::string> command(const fs::path& configuration) {
    std::vector<std::string> words;
    if (geteuid() == 0) {
        words = {"setpriv",
                 "--reuid=65534",
                 "--regid=65534",
                 "--clear-groups",
                 "--inh-caps=+net_bind_service",
                 "--ambient-caps=+net_bind_service"};
    }
    words.insert(words.end(), {"dovecot", "-F", "-c", configuration});
    return words;
}

}  // namespace

Dovecot::Dovecot() {
    static std::atomic<int> servers{0};
    address_ = ownAddress(servers++);
    if (access("/usr/sbin/dovecot", X_OK) != 0) throw NoDovecot("dovecot is not installed");
    if (geteuid() != 0 && !withSocket(address_, [](int descriptor, const sockaddr* raw, socklen_t size) {
            return bind(descriptor, raw, size) == 0;
        })) {
        throw NoDovecot("port 110 is for root only");
    }
    std::string name = fs::temp_directory_path() / "velmora-mail.XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw NoDovecot("no folder for it");
    root_ = name;
    try {
        for (const char* folder : {"base", "state", "mail"}) fs::create_directories(root_ / folder);
        for (const char* folder : {"cur", "new", "tmp"})
            fs::create_directories(root_ / "mail" / user / folder);
        certificates_ = std::make_unique<TestCertificates>(root_, "DNS:localhost,IP:" + address_);
        const fs::path configuration = configure();
        if (geteuid() == 0) {
            fs::permissions(root_, fs::perms::all);
            for (const auto& entry : fs::recursive_directory_iterator(root_)) {
                if (chown(entry.path().c_str(), nobody, nobody) != 0) throw NoDovecot("no folder of its own");
            }
        }
        const char* path = getenv("PATH");
        process_ = std::make_unique<ChildProcess>(
            command(configuration),
            std::vector<std::string>{"PATH=" + std::string(path != nullptr ? path : "/usr/bin:/bin") +
                                     ":/usr/sbin:/sbin"});
        const auto deadline = ChildProcess::Clock::now() + 20s;
        while (!serves()) {
            if (ChildProcess::Clock::now() > deadline) throw NoDovecot("it does not serve");
            process_->letRun(10ms);
        }
    } catch (const NoDovecot&) {
        fs::remove_all(root_);
        throw;
    } catch (const std::exception& failure) {
        process_.reset();
        fs::remove_all(root_);
        throw NoDovecot(failure.what());
    }
}

Dovecot::~Dovecot() {
    process_.reset();
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

fs::path Dovecot::configure() const {
    const Account account;
    fs::path file = root_ / "dovecot.conf";
    std::ofstream(root_ / "passwd") << user << ":{PLAIN}" << password << "::::::\n";
    std::ofstream out(file);
    const auto set = [&out](std::string_view key, const auto&... value) {
        out << key << " = ";
        (out << ... << value) << "\n";
    };
    const std::string root = root_.string();
    set("protocols", "pop3");
    set("listen", address_);
    set("base_dir", root, "/base");
    set("state_dir", root, "/state");
    set("log_path", root, "/log");
    set("default_login_user", account.userName);
    set("default_internal_user", account.userName);
    set("default_internal_group", account.groupName);
    set("disable_plaintext_auth", "no");
    set("auth_mechanisms", "plain");
    set("mail_location", "maildir:", root, "/mail/%u");
    set("first_valid_uid", 0);
    set("first_valid_gid", 0);
    set("ssl", "yes");
    set("ssl_cert", "<", certificates_->certificate.string());
    set("ssl_key", "<", certificates_->key.string());
    out << "passdb {\n driver = passwd-file\n args = " << root << "/passwd\n}\n"
        << "userdb {\n driver = static\n args = uid=" << account.user << " gid=" << account.group
        << " home=" << root << "/mail/%u\n}\n"
        << "service pop3-login {\n chroot =\n inet_listener pop3 {\n port = 110\n }\n"
        << " inet_listener pop3s {\n port = 995\n ssl = yes\n }\n}\n"
        << "service anvil {\n chroot =\n}\nservice stats {\n chroot =\n}\n";
    return file;
}

/// Whether it greets.
bool Dovecot::serves() const {
    return withSocket(address_, [](int descriptor, const sockaddr* raw, socklen_t size) {
        const timeval patience{5, 0};
        setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        std::array<char, 3> greeting{};
        return connect(descriptor, raw, size) == 0 &&
               recv(descriptor, greeting.data(), greeting.size(), MSG_WAITALL) == std::ssize(greeting) &&
               std::string_view(greeting.data(), greeting.size()) == "+OK";
    });
}

void Dovecot::deliver(const std::string& message) {
    // Dovecot takes the messages in the order of these names.
    std::string number = std::to_string(++delivered_);
    number.insert(0, 8 - number.size(), '0');
    const fs::path file = root_ / "mail" / user / "new" / ("1000000000.M" + number + ".test");
    std::ofstream(file, std::ios::binary) << message;
    if (geteuid() == 0 && chown(file.c_str(), nobody, nobody) != 0)
        throw NoDovecot("no mail can be delivered");
}

void Dovecot::emptyMailbox() {
    for (const char* folder : {"new", "cur"}) {
        for (const auto& entry : fs::directory_iterator(root_ / "mail" / user / folder))
            fs::remove(entry.path());
    }
}

}  // namespace velmora::blackbox
