#include "platform/posix/sockets/posix_tcp_winsock.h"

#include <utility>

#include "platform/posix/sockets/secure_layer.h"

namespace velmora::sockets {

void PosixTcpWinsock::release() {
    if (channel_) context_.machinery.queue.release(*channel_);
    channel_.reset();
    if (const auto stream = std::exchange(stream_, nullptr)) stream->close();
    if (const auto listener = std::exchange(listener_, nullptr)) listener->close();
    unread_.clear();
    unreadBytes_ = 0;
    state_ = SocketState::closed;
}

void PosixTcpWinsock::hold(ChannelId channel) {
    channel_ = channel;
    context_.machinery.queue.hold(channel, *this);
}

/// Where this end of a connection has to be; nothing: anywhere. A mail server may be where the peers' address
/// leads nowhere.
std::optional<Address> PosixTcpWinsock::local(StreamUse use) const {
    if (use != StreamUse::mail && !context_.address.empty())
        return Address::parse(context_.address, LocalPort);
    if (LocalPort != 0) return Address::any(AF_INET, LocalPort);
    return {};
}

void PosixTcpWinsock::Listen() {
    if (state_ >= SocketState::listening && state_ <= SocketState::connected)
        throw Failure(errors::wrongSocketState);
    release();
    const ChannelId channel = context_.machinery.queue.newChannel();
    auto listener = std::make_shared<Listener>(context_.machinery, channel, use_);
    listener->listen(local(use_).value_or(Address::any(AF_INET, LocalPort)));
    listener_ = std::move(listener);
    hold(channel);
    state_ = SocketState::listening;
}

void PosixTcpWinsock::Accept(long requestID) {
    if (state_ != SocketState::closed) throw Failure(errors::wrongSocketState);
    auto caller = context_.calls.take(requestID);
    if (!caller) throw Failure(errors::wrongSocketState);
    stream_ = std::move(caller->stream);
    remoteIp_ = std::move(caller->address);
    hold(stream_->channel());
    state_ = SocketState::connected;
    context_.machinery.queue.putBack(std::move(caller->before));
}

MailRoute PosixTcpWinsock::route() const {
    return use_ == StreamUse::mail ? readMailRoute(context_.settings.value("Mail", RemoteHost)) : MailRoute{};
}

std::unique_ptr<Layer> PosixTcpWinsock::layer(const MailRoute& route) const {
    using Start = SecureLayer::Start;
    if (route.kind == MailRoute::Kind::clear) return nullptr;
    return std::make_unique<SecureLayer>(
        RemoteHost, route.kind == MailRoute::Kind::tls ? Start::atOnce : Start::afterGreeting);
}

void PosixTcpWinsock::Connect() {
    if (state_ != SocketState::closed) throw Failure(errors::wrongSocketState);
    if (RemoteHost.empty()) throw Failure(errors::addressNotAvailable);
    const MailRoute way = route();
    const std::uint16_t port = way.kind == MailRoute::Kind::tls ? way.port : RemotePort;
    auto stream = std::make_shared<Stream>(context_.machinery, context_.machinery.queue.newChannel(),
                                           cuttingFor(use_), layer(way));
    const auto from = local(use_);
    if (from) stream->bind(*from);
    const auto address = Address::parse(RemoteHost, port);
    const bool known = address || way.kind == MailRoute::Kind::unknown;
    if (way.kind == MailRoute::Kind::unknown) {
        stream->refuse("platform.conf says neither tls:PORT nor starttls");
    } else if (address) {
        stream->connect({*address});
    }
    stream_ = std::move(stream);
    hold(stream_->channel());
    state_ = known ? SocketState::connecting : SocketState::resolvingHost;
    if (known) return;
    context_.resolver.find(RemoteHost, port, from ? from->family() : AF_UNSPEC,
                           [weak = std::weak_ptr(stream_)](std::vector<Address> addresses) {
                               if (const auto asking = weak.lock()) asking->resolved(std::move(addresses));
                           });
}

void PosixTcpWinsock::SendData(std::string data) {
    if (state_ != SocketState::connected) throw Failure(errors::wrongSocketState);
    // An event that nobody is there for would only wake the program up.
    stream_->send(std::move(data), events.SendComplete != nullptr);
}

std::string PosixTcpWinsock::GetData() {
    if (state_ == SocketState::closed || state_ == SocketState::listening)
        throw Failure(errors::wrongSocketState);
    if (unread_.empty()) return {};
    Unread first = std::move(unread_.front());
    unread_.pop_front();
    unreadBytes_ -= first.bytes.size();
    if (stream_) stream_->consumed(first.bytes.size());
    if (first.failure != 0) throw Failure(first.failure);
    return std::move(first.bytes);
}

std::string PosixTcpWinsock::LocalIP() const {
    return context_.address.empty() ? machineAddress() : context_.address;
}

void PosixTcpWinsock::happened(Event& event) {
    const auto raise = [](const std::function<void()>& handler) {
        if (handler) handler();
    };
    switch (event.kind) {
        case Event::Kind::hostResolved:
            state_ = SocketState::hostResolved;
            return;
        case Event::Kind::connecting:
            state_ = SocketState::connecting;
            return;
        case Event::Kind::connected:
            state_ = SocketState::connected;
            remoteIp_ = event.address;
            return raise(events.Connect);
        case Event::Kind::called:
            return called(event);
        case Event::Kind::data:
        case Event::Kind::datagram:
            return arrived(event);
        case Event::Kind::sent:
            return raise(events.SendComplete);
        case Event::Kind::ended:
            state_ = SocketState::closing;
            return raise(events.Close);
        case Event::Kind::failed:
        case Event::Kind::refused:
            return failed(event);
    }
}

void PosixTcpWinsock::called(Event& event) {
    /// However the handler ends: a caller who is not taken by then is not going to be.
    struct Answer {
        Calls& calls;
        long number;
        Answer(Calls& all, long one) : calls(all), number(one) {}
        Answer(const Answer&) = delete;
        Answer& operator=(const Answer&) = delete;
        ~Answer() { calls.drop(number); }
    };
    remoteIp_ = event.address;
    const Answer answer(context_.calls, context_.calls.add(event));
    if (events.ConnectionRequest) events.ConnectionRequest(answer.number);
}

void PosixTcpWinsock::arrived(Event& event) {
    unreadBytes_ += event.bytes.size();
    unread_.push_back({std::move(event.bytes), event.number});
    if (events.DataArrival) events.DataArrival(unreadBytes_);
}

void PosixTcpWinsock::failed(const Event& event) {
    if (event.kind == Event::Kind::refused)
        context_.report(std::string("mail from ").append(RemoteHost).append(": ").append(event.bytes));
    state_ = SocketState::error;
    if (events.Error) events.Error(Failure(event.number));
}

}  // namespace velmora::sockets
