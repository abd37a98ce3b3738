#include "platform/curl/transfer.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <exception>

#include "base/failure.h"

namespace velmora::curl {
namespace {

constexpr std::size_t mostHeaderBytes = 1'000'000;
constexpr long mostRedirections = 20;

/// What a caller is told for an end that is no complete answer; every other code means a broken answer.
struct Meaning {
    CURLcode code;
    long failure;
};

constexpr std::array meanings{
    Meaning{CURLE_COULDNT_RESOLVE_HOST, errors::transferNotConnected},
    Meaning{CURLE_COULDNT_CONNECT, errors::transferNotConnected},
    Meaning{CURLE_SSL_CONNECT_ERROR, errors::transferNotConnected},
    Meaning{CURLE_PEER_FAILED_VERIFICATION, errors::transferNotConnected},
    Meaning{CURLE_SSL_CACERT_BADFILE, errors::transferNotConnected},
    Meaning{CURLE_SSL_ISSUER_ERROR, errors::transferNotConnected},
    Meaning{CURLE_OPERATION_TIMEDOUT, errors::transferTimedOut},
    Meaning{CURLE_URL_MALFORMAT, errors::malformedUrl},
};

long failureOf(CURLcode code) {
    if (code == CURLE_OK) return 0;
    const auto* const found = std::ranges::find(meanings, code, &Meaning::code);
    return found == meanings.end() ? errors::transferIncomplete : found->failure;
}

}  // namespace

Transfer::Transfer(const std::string& address, CURLSH* share, Limits limits, Listener listener)
    : easy_(curlLibrary().easyInit()), limits_(limits), listener_(std::move(listener)) {
    const auto set = [easy = easy_.get()](CURLoption option, auto value) {
        curlLibrary().easySetopt(easy, option, value);
    };
    set(CURLOPT_URL, address.c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_SHARE, share);
    set(CURLOPT_COOKIEFILE, "");
    set(CURLOPT_USERAGENT, "Velmora");
    set(CURLOPT_ACCEPT_ENCODING, "");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, mostRedirections);
    set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits.body));
    set(CURLOPT_PROXY, "");  // else the environment would decide
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L);  // a name server that does not answer holds up no end

    set(CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_RESOLVER_START_FUNCTION, &Transfer::onResolve);
    set(CURLOPT_RESOLVER_START_DATA, this);
    set(CURLOPT_OPENSOCKETFUNCTION, &Transfer::onSocket);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_PREREQFUNCTION, &Transfer::onRequest);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_VERBOSE, 1L);  // what it tells goes to `onTraffic` only
    set(CURLOPT_DEBUGFUNCTION, &Transfer::onTraffic);
    set(CURLOPT_DEBUGDATA, this);
}

void Transfer::reach(TransferState state) {
    if (state <= state_) return;  // a redirection begins anew
    state_ = state;
    listener_.reached(state);
}

bool Transfer::takeBody(std::string_view data) {
    if (data.size() > limits_.body - outcome_.body.size()) return false;
    if (outcome_.body.empty()) {
        curl_off_t announced = 0;
        curlLibrary().easyGetinfo(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        if (announced > 0) outcome_.body.reserve(std::min(limits_.body, static_cast<std::size_t>(announced)));
    }
    outcome_.body.append(data);
    return true;
}

std::size_t Transfer::onBody(char* data, std::size_t size, std::size_t count, void* transfer) {
    try {
        return static_cast<Transfer*>(transfer)->takeBody({data, size * count}) ? size * count : 0;
    } catch (const std::exception&) {  // no memory; nothing may pass through the library
        return 0;
    }
}

std::size_t Transfer::onHeader(char*, std::size_t size, std::size_t count, void* transfer) {
    auto& self = *static_cast<Transfer*>(transfer);
    self.reach(TransferState::receivingResponse);
    self.headerBytes_ += size * count;
    return self.headerBytes_ <= mostHeaderBytes ? size * count : 0;
}

int Transfer::onResolve(void*, void*, void* transfer) {
    static_cast<Transfer*>(transfer)->reach(TransferState::resolvingHost);
    return 0;
}

curl_socket_t Transfer::onSocket(void* transfer, curlsocktype, curl_sockaddr* address) {
    static_cast<Transfer*>(transfer)->reach(TransferState::hostResolved);
    static_cast<Transfer*>(transfer)->reach(TransferState::connecting);
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int Transfer::onRequest(void* transfer, char*, char*, int, int) {
    static_cast<Transfer*>(transfer)->reach(TransferState::connected);
    static_cast<Transfer*>(transfer)->reach(TransferState::requesting);
    return CURL_PREREQFUNC_OK;
}

int Transfer::onTraffic(CURL*, curl_infotype kind, char*, std::size_t, void* transfer) {
    auto& self = *static_cast<Transfer*>(transfer);
    if (kind != CURLINFO_TEXT) self.lastByte_ = Clock::now();
    if (kind == CURLINFO_HEADER_OUT) self.reach(TransferState::requestSent);
    return 0;
}

void Transfer::takeHeaders() {
    const curl_header* header = nullptr;
    constexpr int lastRequest = -1;
    while ((header = curlLibrary().easyNextheader(handle(), CURLH_HEADER, lastRequest,
                                                  const_cast<curl_header*>(header))) != nullptr) {
        outcome_.headers.emplace_back(header->name, header->value);
    }
}

void Transfer::finish(CURLcode code) {
    outcome_.failure = failureOf(code);
    if (outcome_.failure == 0) {
        takeHeaders();
        reach(TransferState::responseReceived);
    } else {
        outcome_.body = {};
    }
    listener_.finished(std::move(outcome_));
}

}  // namespace velmora::curl
