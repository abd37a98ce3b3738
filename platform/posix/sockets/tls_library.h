#pragma once

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

namespace velmora::sockets {

/// The functions of OpenSSL that encrypted connections use. The library is loaded with the first of them.
struct TlsLibrary {
    decltype(&::SSL_CTX_new) sslCtxNew;
    decltype(&::SSL_CTX_free) sslCtxFree;
    decltype(&::SSL_CTX_ctrl) sslCtxCtrl;
    decltype(&::SSL_CTX_set_verify) sslCtxSetVerify;
    decltype(&::SSL_CTX_set_default_verify_paths) sslCtxSetDefaultVerifyPaths;
    decltype(&::TLS_client_method) tlsClientMethod;
    decltype(&::SSL_new) sslNew;
    decltype(&::SSL_free) sslFree;
    decltype(&::SSL_ctrl) sslCtrl;
    decltype(&::SSL_set_bio) sslSetBio;
    decltype(&::SSL_set_connect_state) sslSetConnectState;
    decltype(&::SSL_get0_param) sslGet0Param;
    decltype(&::SSL_set1_host) sslSet1Host;
    decltype(&::SSL_do_handshake) sslDoHandshake;
    decltype(&::SSL_get_error) sslGetError;
    decltype(&::SSL_get_verify_result) sslGetVerifyResult;
    decltype(&::SSL_read_ex) sslReadEx;
    decltype(&::SSL_write_ex) sslWriteEx;
    decltype(&::X509_VERIFY_PARAM_set1_ip_asc) x509VerifyParamSet1IpAsc;
    decltype(&::X509_verify_cert_error_string) x509VerifyCertErrorString;
    decltype(&::BIO_new) bioNew;
    decltype(&::BIO_s_mem) bioSMem;
    decltype(&::BIO_read) bioRead;
    decltype(&::BIO_write) bioWrite;
    decltype(&::BIO_ctrl_pending) bioCtrlPending;
    decltype(&::ERR_clear_error) errClearError;
    decltype(&::ERR_get_error) errGetError;
    decltype(&::ERR_reason_error_string) errReasonErrorString;
};

/// The library, which stays loaded from the first call on. Throws std::runtime_error if the machine has none.
/// May be called in any thread.
const TlsLibrary& tlsLibrary();

}  // namespace velmora::sockets
