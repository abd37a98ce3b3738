#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/test_certificates.h"

namespace velmora::blackbox {

/// No mail server can be had on this machine; says why.
struct NoDovecot : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A real mail server with one mailbox, without root's rights, at a loopback address of its own: in clear
/// and by STLS at port 110, encrypted at 995. Ends with the object.
class Dovecot {
public:
    static constexpr const char* user = "alice";
    static constexpr const char* password = "secret";

    /// Returns once it serves. Throws NoDovecot.
    Dovecot();
    ~Dovecot();
    Dovecot(const Dovecot&) = delete;
    Dovecot& operator=(const Dovecot&) = delete;

    const std::string& address() const { return address_; }
    /// What a client has to trust.
    const std::filesystem::path& authority() const { return certificates_->authority; }

    /// Puts a message into the mailbox, behind all others.
    void deliver(const std::string& message);
    /// Throws all messages away.
    void emptyMailbox();

private:
    std::filesystem::path configure() const;
    bool serves() const;

    std::filesystem::path root_;
    std::string address_;
    std::unique_ptr<TestCertificates> certificates_;
    std::unique_ptr<ChildProcess> process_;
    int delivered_ = 0;
};

}  // namespace velmora::blackbox
