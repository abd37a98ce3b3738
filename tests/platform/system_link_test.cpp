#include "platform/posix/system_link.h"

#include <gmock/gmock.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "platform/ini_settings_file.h"
#include "tests/support/in_memory_files.h"

namespace velmora {
namespace {

/// What the link tells, a letter each: C connected, c short of it; `?` if the system can't be asked,
/// or knows a link without a handle.
std::string told(const std::string& kinds) {
    InMemoryFiles files;
    files.createFolder("/home");
    IniSettingsFile settings(files);
    if (!kinds.empty()) settings.write("Link", "Kinds", kinds, "/home/platform.conf");
    const MachineSettings machine(settings, "/home");
    const SystemLink link(machine, {});
    const auto connections = link.RasEnumConnections();
    if (!connections || link.RasGetConnectStatus(0)) return "?";
    std::string letters;
    for (const LinkHandle each : *connections)
        letters += link.RasGetConnectStatus(each) == LinkStatus::connected ? 'C' : 'c';
    return letters;
}

/// Gives the calling process a network of its own, in which it may do all.
bool leaveNetwork() {
    const auto user = ::getuid();
    if (user == 0) return ::unshare(CLONE_NEWNET) == 0;
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    return true;
}

/// What `told` says of a network that was made with these orders to `ip`; "none" where no process may have
/// a network of its own.
std::string toldIn(const std::string& orders, const std::string& kinds) {
    int ends[2];
    if (::pipe(static_cast<int*>(ends)) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        std::string answer = "none";
        if (leaveNetwork()) answer = std::system(orders.c_str()) == 0 ? told(kinds) : "ip failed";
        const bool written = ::write(ends[1], answer.data(), answer.size()) >= 0;
        ::_exit(written ? 0 : 1);
    }
    ::close(ends[1]);
    std::string answer(64, '\0');
    const auto count = ::read(ends[0], answer.data(), answer.size());
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    answer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return answer;
}

TEST(SystemLinkTest, TellsTheNetworkThatThereIs) {
    if (toldIn("true", "any") == "none")
        GTEST_SKIP() << "NOT TESTED: no process may have a network of its own";
    const std::string cable = "ip link add va type veth peer name vb && ";
    const std::string up = cable + "ip link set va up && ip link set vb up && ";
    const std::string local = up + "ip addr add 10.1.0.2/24 dev va";
    const std::string whole = local + " && ip route add default via 10.1.0.1";
    const struct {
        const char* what;
        std::string orders;
        const char* kinds;
        const char* expected;
    } cases[] = {
        {"no network", "true", "any", ""},
        {"no network, by kinds", "true", "ppp, ethernet", ""},
        {"loopback", "ip link set lo up", "any", ""},
        {"loopback takes all", "ip link set lo up && ip route add default dev lo", "any", ""},
        {"a network that leads nowhere", local, "any", ""},
        {"a way out", whole, "any", "C"},
        {"a way out, unset kinds", whole, "", "C"},
        {"a way out that is refused", whole + " && ip route replace unreachable default", "any", ""},
        {"a cable pulled", whole + " && ip link set vb down", "any", "c"},
        {"a way out over IPv6 only",
         up + "ip -6 addr add 2001:db8::2/64 dev va nodad && ip -6 route add default via 2001:db8::1", "any",
         "C"},
        {"strict list, permanent network", whole, "ppp", ""},
        {"strict list, the kind is there", whole, "PPP;Ethernet", "cC"},
        {"strict list, switched off", cable + "true", "ethernet", ""},
        {"strict list, an address of the link alone", up + "ip addr add 169.254.1.1/16 dev va", "ethernet",
         "cc"},
    };
    for (const auto& entry : cases)
        EXPECT_EQ(toldIn(entry.orders, entry.kinds), entry.expected) << entry.what;
}

TEST(SystemLinkTest, NobodyThereToDialIsNoSuccess) {
    InMemoryFiles files;
    const IniSettingsFile settings(files);
    const MachineSettings machine(settings, "/home");
    EXPECT_EQ(SystemLink(machine, {}).InternetAutodial(), SystemLink::cannotDial);
    EXPECT_EQ(
        SystemLink(machine, [](std::string_view kinds) { return kinds == "any" ? 0 : 1; }).InternetAutodial(),
        0);
}

}  // namespace
}  // namespace velmora
