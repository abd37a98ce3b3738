// A character appears, says what the command line tells it to, and leaves.
//
//     greeter FOLDER CHARACTER TEXT
//
// FOLDER holds character packages, CHARACTER names one of them.

#include <QApplication>
#include <iostream>

#include "agent/qt/qt_character.h"
#include "agent/request_queue.h"
#include "agent/voice/voice.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 4) {
        std::cerr << "usage: greeter FOLDER CHARACTER TEXT\n";
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);

    const auto voice = [](const agent::CharacterVoice& own, agent::Post post) {
        return agent::makeVoice({}, own, std::move(post));
    };
    auto loaded = agent::QtCharacter::load(argv[1], argv[2], {.voice = voice});
    if (const auto* reason = std::get_if<std::string>(&loaded)) {
        std::cerr << "greeter: " << *reason << "\n";
        return 1;
    }
    const auto figure = std::move(std::get<std::unique_ptr<agent::QtCharacter>>(loaded));

    agent::RequestQueue queue(*figure, agent::postTo(*figure));
    queue.ask({agent::Action::show, {}});
    queue.ask({agent::Action::play, "Greet"});
    queue.ask({agent::Action::speak, argv[3]});
    const auto gone = queue.ask({agent::Action::hide, {}});  // whoever keeps a request is told of its end
    queue.onComplete = [](const agent::RequestHandle&) { QApplication::quit(); };
    return QApplication::exec();
}
