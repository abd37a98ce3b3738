#include "tools/hearing/reading_text.h"

#include <sstream>

namespace velmora::hearing {

std::string readingText(const agent::Reading& reading) {
    std::ostringstream out;
    for (const agent::HeardPiece& piece : reading) {
        out << static_cast<int>(piece.kind) << ',' << piece.command << ',' << piece.word << ','
            << agent::phoneText(piece.phones) << ',' << piece.first << ',' << piece.frames << ',' << piece.fit
            << ';';
    }
    return out.str();
}

agent::Reading readReading(const std::string& text) {
    agent::Reading reading;
    std::istringstream pieces(text);
    for (std::string line; std::getline(pieces, line, ';');) {
        std::istringstream fields(line);
        const auto next = [&fields] {
            std::string field;
            std::getline(fields, field, ',');
            return field;
        };
        agent::HeardPiece piece;
        piece.kind = static_cast<agent::HeardPiece::Kind>(std::stoi(next()));
        piece.command = std::stoul(next());
        piece.word = next();
        piece.phones = agent::readPhones(next());
        piece.first = std::stoi(next());
        piece.frames = std::stoi(next());
        piece.fit = std::stod(next());
        reading.push_back(std::move(piece));
    }
    return reading;
}

}  // namespace velmora::hearing
