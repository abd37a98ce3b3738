#pragma once

#include <filesystem>
#include <string>

namespace velmora::blackbox {

/// A certificate authority that lasts for a test, and a server's certificate that it has signed; made with
/// the `openssl` program.
class TestCertificates {
public:
    /// `names` as a certificate lists them ("DNS:mail.example,IP:127.0.0.1"). Throws std::exception if they
    /// can't be made.
    TestCertificates(const std::filesystem::path& folder, const std::string& names);

    std::filesystem::path authority;  ///< what `SSL_CERT_FILE` names
    std::filesystem::path certificate;
    std::filesystem::path key;
};

}  // namespace velmora::blackbox
