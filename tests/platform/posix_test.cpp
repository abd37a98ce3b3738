#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "platform/posix/application_folder.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/instance_lock.h"
#include "platform/posix/password_prompt.h"
#include "platform/posix/posix_files.h"
#include "tests/support/failure_of.h"
#include "tests/support/scratch_folder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class Posix : public testing::Test {
protected:
    std::string at(std::string_view name) const { return scratch.file(name); }

    static mode_t modeOf(const std::string& path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    const ScratchFolder scratch;
    const std::string folder = scratch.path();
    PosixFiles files;
};

TEST_F(Posix, FilesAreSharedAsTheUmaskSaysOrTheirOwnersOnly) {
    const auto before = ::umask(027);
    files.replace(at("shared"), "", Privacy::shared);
    files.replace(at("private"), "", Privacy::ownersOnly);
    ::umask(before);
    EXPECT_EQ(modeOf(at("shared")), 0640U);
    EXPECT_EQ(modeOf(at("private")), 0600U);

    ::chmod(at("shared").c_str(), 0604);
    files.replace(at("shared"), "x", Privacy::shared);
    EXPECT_EQ(modeOf(at("shared")), 0604U);
    files.replace(at("shared"), "x", Privacy::ownersOnly);
    EXPECT_EQ(modeOf(at("shared")), 0600U);
}

TEST_F(Posix, LinksStayAndTheirTargetsAreReplaced) {
    fs::create_directory(at("sub"));
    fs::create_symlink("sub/target", at("inner"));
    fs::create_symlink(at("inner"), at("outer"));
    files.replace(at("outer"), "new", Privacy::ownersOnly);
    EXPECT_EQ(files.read(at("sub/target")), "new");
    EXPECT_TRUE(fs::is_symlink(at("outer")));
    EXPECT_TRUE(fs::is_symlink(at("inner")));
    files.remove(at("outer"));
    EXPECT_EQ(files.read(at("inner")), "new");

    fs::create_symlink("circle", at("circle"));
    EXPECT_THROW(files.replace(at("circle"), "x", Privacy::shared), Failure);
    EXPECT_THROW(files.read(at("circle")), Failure);
}

TEST_F(Posix, WhatIsNoRegularFileIsRefusedWithoutWaiting) {
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    for (const auto& name : {at("pipe"), std::string("/dev/zero"), std::string("/dev/tty")}) {
        EXPECT_THROW(files.read(name), Failure) << name;
        EXPECT_THROW(files.replace(name, "x", Privacy::shared), Failure) << name;
    }
    EXPECT_THAT(files.list(folder, ""), testing::IsEmpty());
}

TEST_F(Posix, AFileWhoseSizeIsNotToldIsReadToItsEnd) {
    EXPECT_THAT(files.read("/proc/self/status"), HasSubstr("Pid:"));
}

TEST_F(Posix, AReaderSeesTheOldFileOrTheNewOneWhole) {
    constexpr std::size_t size = 200'000;
    files.replace(at("x"), std::string(size, 'a'), Privacy::shared);
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        PosixFiles own;
        for (int i = 0; i < 30; ++i)
            own.replace(at("x"), std::string(size, i % 2 ? 'a' : 'b'), Privacy::shared);
        finished = true;
    });
    bool whole = true;
    do {
        const auto seen = files.read(at("x"));
        whole = whole && seen.size() == size && seen.find_first_not_of(seen[0]) == std::string::npos;
    } while (!finished);
    writer.join();
    EXPECT_TRUE(whole);
    EXPECT_THAT(files.list(folder, ""), ElementsAre("x"));
}

TEST_F(Posix, AFullDiskLeavesTheOldFileAndNothingElse) {
    files.replace(at("x"), "old", Privacy::shared);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const long number =
        failureOf([&] { files.replace(at("x"), std::string(100'000, 'n'), Privacy::shared); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(number, 75);
    EXPECT_EQ(files.read(at("x")), "old");
    EXPECT_THAT(files.list(folder, ""), ElementsAre("x"));
}

TEST_F(Posix, OneInstanceLockPerDisplayAndFolder) {
    fs::create_directory(at("app"));
    fs::create_directory_symlink("app", at("link"));
    auto held = InstanceLock::acquire(":0", at("app"), folder);
    ASSERT_TRUE(held);
    EXPECT_FALSE(InstanceLock::acquire(":0", at("app"), folder));
    EXPECT_FALSE(InstanceLock::acquire(":0", at("link/"), folder));
    EXPECT_TRUE(InstanceLock::acquire(":1", at("app"), folder));
    EXPECT_TRUE(InstanceLock::acquire(":0", at("other"), folder));
    const auto moved = std::move(held);
    EXPECT_FALSE(InstanceLock::acquire(":0", at("app"), folder));
    EXPECT_THROW(InstanceLock::acquire(":0", at("app"), at("missing")), Failure);
}

TEST_F(Posix, AnInstanceLockEndsWithItsOwner) {
    { const auto held = InstanceLock::acquire(":0", at("app"), folder); }
    EXPECT_TRUE(InstanceLock::acquire(":0", at("app"), folder));

    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const auto child = ::fork();
    if (child == 0) {
        const auto held = InstanceLock::acquire(":0", at("app"), folder);
        const char answer = held ? 'y' : 'n';
        if (::write(ends[1], &answer, 1) == 1) ::pause();
        ::_exit(1);
    }
    char answer = 0;
    EXPECT_EQ(::read(ends[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_FALSE(InstanceLock::acquire(":0", at("app"), folder));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(InstanceLock::acquire(":0", at("app"), folder));
    for (const int end : ends) ::close(end);
}

TEST_F(Posix, TheLockFolderIsTheUsersAlone) {
    ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    EXPECT_EQ(defaultLockFolder(), folder);
    ::chmod(folder.c_str(), 0755);
    EXPECT_THROW(defaultLockFolder(), Failure);
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    ::setenv("DISPLAY", ":7", 1);
    EXPECT_EQ(displayName(), "wayland-0");
    ::unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(displayName(), ":7");
}

TEST_F(Posix, TheApplicationFolderFollowsTheUsersEnvironment) {
    ::setenv("HOME", "/home/anna", 1);
    ::setenv("XDG_DATA_HOME", "relative", 1);
    EXPECT_EQ(defaultApplicationFolder(), "/home/anna/.local/share/velmora");
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(defaultApplicationFolder(), "/data/velmora");

    createPrivateFolder(at("a/b"));
    createPrivateFolder(at("a/b/"));
    EXPECT_EQ(modeOf(at("a")), 0700U);
    EXPECT_EQ(modeOf(at("a/b")), 0700U);
    files.replace(at("file"), "", Privacy::shared);
    EXPECT_THROW(createPrivateFolder(at("file/x")), Failure);
    EXPECT_THROW(createPrivateFolder(at("file")), Failure);
}

/// A child that asks for a password on a terminal of its own, and prints it.
class PasswordOnATerminal : public testing::Test {
protected:
    PasswordOnATerminal() : child(::forkpty(&terminal, nullptr, nullptr, nullptr)) {
        if (child != 0) return;
        const auto password = askForPassword("First: ", "Second: ");
        std::puts(password ? ("<" + *password + ">").c_str() : "<none>");
        std::fflush(stdout);
        ::_exit(0);
    }
    ~PasswordOnATerminal() override { ::close(terminal); }
    PasswordOnATerminal(const PasswordOnATerminal&) = delete;
    PasswordOnATerminal& operator=(const PasswordOnATerminal&) = delete;

    /// Types the text once the terminal shows the question; nothing that it shows may hold what was typed.
    void answer(std::string_view question, std::string_view text) {
        waitFor(question);
        EXPECT_FALSE(echoes());
        EXPECT_EQ(::write(terminal, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void waitFor(std::string_view text) {
        std::array<char, 256> buffer{};
        while (shown.find(text) == std::string::npos) {
            const auto count = ::read(terminal, buffer.data(), buffer.size());
            if (count <= 0) break;
            shown.append(buffer.data(), static_cast<std::size_t>(count));
        }
        EXPECT_THAT(shown, HasSubstr(text));
    }

    bool echoes() const {
        termios state{};
        return ::tcgetattr(terminal, &state) == 0 && (state.c_lflag & ECHO) != 0;
    }

    int waitForEnd() const {
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }

    int terminal = -1;
    pid_t child;
    std::string shown;
};

TEST_F(PasswordOnATerminal, IsTakenUnseenWhenTwoAnswersAgree) {
    answer("First: ", "hush\n");
    answer("Second: ", "hush\n");
    waitFor("<hush>");
    EXPECT_EQ(shown.find("hush"), shown.find("<hush>") + 1);
    EXPECT_TRUE(echoes());
    waitForEnd();
}

TEST_F(PasswordOnATerminal, IsNoneWhenTheAnswersDifferOrEndEarly) {
    answer("First: ", "hush\n");
    answer("Second: ", "hus\x04\x04");
    waitFor("The two passwords differ.");
    waitFor("<none>");
    waitForEnd();
}

TEST_F(PasswordOnATerminal, LeavesTheTerminalEchoingWhenASignalEndsTheProgram) {
    answer("First: ", "hu\x03");
    const int status = waitForEnd();
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(echoes());
}

}  // namespace
}  // namespace velmora
