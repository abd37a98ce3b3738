#include "tests/support/test_certificates.h"

#include <stdexcept>
#include <vector>

#include "tests/support/child_process.h"

namespace velmora::blackbox {
namespace {

void request(const std::filesystem::path& key, const std::filesystem::path& certificate,
             const std::vector<std::string>& more) {
    std::vector<std::string> words{
        "openssl", "req",   "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
        "-nodes",  "-days", "2",     "-keyout", key,  "-out",     certificate};
    words.insert(words.end(), more.begin(), more.end());
    ChildProcess process(words, {"PATH=/usr/bin:/bin"});
    if (process.waitForEnd(ChildProcess::Clock::now() + std::chrono::seconds(30)) != 0)
        throw std::runtime_error("openssl makes no certificate");
}

}  // namespace

TestCertificates::TestCertificates(const std::filesystem::path& folder, const std::string& names)
    : authority(folder / "authority.pem"), certificate(folder / "server.pem"), key(folder / "server.key") {
    const auto authorityKey = folder / "authority.key";
    request(authorityKey, authority, {"-subj", "/CN=Authority of a test"});
    request(key, certificate,
            {"-subj", "/CN=Server of a test", "-CA", authority, "-CAkey", authorityKey, "-addext",
             "subjectAltName=" + names, "-addext", "basicConstraints=critical,CA:FALSE"});
}

}  // namespace velmora::blackbox
