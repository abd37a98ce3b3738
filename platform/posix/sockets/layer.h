#pragma once

#include <string>
#include <string_view>

namespace velmora::sockets {

/// What a step of a layer comes to.
struct Passage {
    std::string toPeer;     ///< bytes for the socket
    std::string toProgram;  ///< bytes that the program reads
    bool open = false;      ///< from now on the program has its connection
    bool ended = false;     ///< the peer sends no more
    std::string refusal;    ///< not empty: the connection can't be used, and why, for a person
};

/// What lies between the bytes of a socket and those of the program. It knows no socket: each step takes
/// bytes and gives bytes.
class Layer {
public:
    virtual ~Layer() = default;
    /// The connection stands.
    virtual Passage begin() = 0;
    virtual Passage arrived(std::string_view bytes) = 0;
    /// Something that the program sends; the connection is open.
    virtual Passage leaving(std::string_view bytes) = 0;
};

}  // namespace velmora::sockets
