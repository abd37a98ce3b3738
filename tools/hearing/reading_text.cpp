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

std::string transcriptText(const std::optional<agent::Transcript>& transcript) {
    if (!transcript) return {};
    std::ostringstream out;
    out << transcript->logLikelihood << ';' << transcript->text << ';';
    for (const auto& [command, words, logLikelihood] : transcript->commands)
        out << command << ',' << logLikelihood << ',' << words << ';';
    return out.str();
}

std::optional<agent::Transcript> readTranscript(const std::string& text) {
    if (text.empty()) return {};
    agent::Transcript transcript;
    std::istringstream pieces(text);
    std::string piece;
    std::getline(pieces, piece, ';');
    transcript.logLikelihood = std::stod(piece);
    std::getline(pieces, transcript.text, ';');
    while (std::getline(pieces, piece, ';')) {
        std::istringstream fields(piece);
        std::string command, logLikelihood, words;
        std::getline(fields, command, ',');
        std::getline(fields, logLikelihood, ',');
        std::getline(fields, words);
        transcript.commands.push_back({std::stoul(command), words, std::stod(logLikelihood)});
    }
    return transcript;
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
