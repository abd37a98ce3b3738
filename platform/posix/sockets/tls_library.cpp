#include "platform/posix/sockets/tls_library.h"

#include "platform/posix/shared_library.h"

namespace velmora::sockets {
namespace {

TlsLibrary load() {
    const SharedLibrary library("libssl.so.3");
    TlsLibrary loaded{};
    library.find("SSL_CTX_new", loaded.sslCtxNew);
    library.find("SSL_CTX_free", loaded.sslCtxFree);
    library.find("SSL_CTX_ctrl", loaded.sslCtxCtrl);
    library.find("SSL_CTX_set_verify", loaded.sslCtxSetVerify);
    library.find("SSL_CTX_set_default_verify_paths", loaded.sslCtxSetDefaultVerifyPaths);
    library.find("TLS_client_method", loaded.tlsClientMethod);
    library.find("SSL_new", loaded.sslNew);
    library.find("SSL_free", loaded.sslFree);
    library.find("SSL_ctrl", loaded.sslCtrl);
    library.find("SSL_set_bio", loaded.sslSetBio);
    library.find("SSL_set_connect_state", loaded.sslSetConnectState);
    library.find("SSL_get0_param", loaded.sslGet0Param);
    library.find("SSL_set1_host", loaded.sslSet1Host);
    library.find("SSL_do_handshake", loaded.sslDoHandshake);
    library.find("SSL_get_error", loaded.sslGetError);
    library.find("SSL_get_verify_result", loaded.sslGetVerifyResult);
    library.find("SSL_read_ex", loaded.sslReadEx);
    library.find("SSL_write_ex", loaded.sslWriteEx);
    library.find("X509_VERIFY_PARAM_set1_ip_asc", loaded.x509VerifyParamSet1IpAsc);
    library.find("X509_verify_cert_error_string", loaded.x509VerifyCertErrorString);
    library.find("BIO_new", loaded.bioNew);
    library.find("BIO_s_mem", loaded.bioSMem);
    library.find("BIO_read", loaded.bioRead);
    library.find("BIO_write", loaded.bioWrite);
    library.find("BIO_ctrl_pending", loaded.bioCtrlPending);
    library.find("ERR_clear_error", loaded.errClearError);
    library.find("ERR_get_error", loaded.errGetError);
    library.find("ERR_reason_error_string", loaded.errReasonErrorString);
    return loaded;
}

}  // namespace

const TlsLibrary& tlsLibrary() {
    static const TlsLibrary library = load();
    return library;
}

}  // namespace velmora::sockets
