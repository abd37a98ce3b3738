#include <QApplication>
#include <QCommandLineParser>
#include <filesystem>
#include <iostream>
#include <variant>

#include "agent/animator.h"
#include "agent/workshop/character_check.h"
#include "agent/workshop/contact_sheet.h"
#include "agent/workshop/preview_window.h"
#include "platform/posix/data_folders.h"

namespace {

namespace fs = std::filesystem;

constexpr int succeeded = 0;
constexpr int found = 1;  // the character has faults
constexpr int misused = 2;

struct Place {
    std::string root, name;
};

// A path, or a folder with a character, is meant as such; else it is the name of an installed character.
Place placeOf(const QString& argument) {
    std::error_code error;
    const fs::path given(argument.toStdString());
    if (!given.has_parent_path() && !fs::is_regular_file(given / "character.json", error))
        return {velmora::installedDataFolder() + "/characters", given.string()};
    const fs::path folder = fs::weakly_canonical(given, error);
    return {folder.parent_path().string(), folder.filename().string()};
}

struct Character {
    agent::Package package;
    std::unique_ptr<agent::PartArt> art;
};

// Empty after having said why.
std::optional<Character> load(const Place& place) {
    auto read = agent::readPackage(place.root, place.name);
    std::string reason;
    if (auto* package = std::get_if<agent::Package>(&read)) {
        if (auto art = agent::PartArt::load(package->art, package->rig, reason))
            return Character{std::move(*package), std::move(art)};
    } else {
        reason = std::get<std::string>(read);
    }
    std::cerr << reason << '\n';
    return std::nullopt;
}

int check(const Place& place) {
    const auto complaints = agent::checkCharacter(place.root, place.name);
    for (const auto& complaint : complaints) std::cout << complaint << '\n';
    if (complaints.empty()) std::cout << place.name << " is complete.\n";
    return complaints.empty() ? succeeded : found;
}

int save(const QImage& image, const QString& file) {
    if (image.save(file)) return succeeded;
    std::cerr << file.toStdString() << " can't be written.\n";
    return found;
}

// One picture for each twentieth of a second of the clips, one after the other.
int film(Character& character, const QStringList& clips, int size, const QString& folder) {
    constexpr agent::Milliseconds step{50};
    int number = 0;
    for (const QString& name : clips) {
        const agent::Clip* clip = character.package.rig.clip(name.toStdString());
        if (clip == nullptr) continue;
        for (auto time = step; time <= clip->length(); time += step) {
            const QImage frame = character.art->paint(character.package.rig, poseAt(*clip, time),
                                                      size / character.package.rig.height);
            const QString file =
                QStringLiteral("%1/%2.png").arg(folder).arg(++number, 4, 10, QLatin1Char('0'));
            if (const int result = save(frame, file); result != succeeded) return result;
        }
    }
    return succeeded;
}

int run(const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    if (words.size() != 2) {
        std::cerr << parser.helpText().toStdString();
        return misused;
    }
    const QString& task = words[0];
    const Place place = placeOf(words[1]);
    if (task == QStringLiteral("check")) return check(place);
    auto character = load(place);
    if (!character) return found;
    const QString output = parser.value(QStringLiteral("output"));
    const QStringList clips =
        parser.value(QStringLiteral("clips")).split(QLatin1Char(','), Qt::SkipEmptyParts);
    const auto number = [&parser](const QString& option, int least, int most) {
        return std::clamp(parser.value(option).toInt(), least, most);
    };
    const int size = number(QStringLiteral("size"), 32, 400);
    if (task == QStringLiteral("sheet")) {
        const QImage sheet = agent::contactSheet(character->package.rig, *character->art,
                                                 {.clips = clips,
                                                  .size = size,
                                                  .columns = number(QStringLiteral("columns"), 1, 24),
                                                  .most = number(QStringLiteral("pictures"), 1, 64)});
        return save(sheet, output.isEmpty() ? QString::fromStdString(place.name + ".png") : output);
    }
    if (task == QStringLiteral("film")) return film(*character, clips, size, output);
    if (task == QStringLiteral("preview")) {
        agent::PreviewWindow window(std::move(character->package), std::move(character->art), size);
        window.show();
        return QApplication::exec();
    }
    std::cerr << parser.helpText().toStdString();
    return misused;
}

}  // namespace

int main(int count, char** values) {
    const bool shows = count > 1 && std::string_view(values[1]) == "preview";
    if (!shows && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, values);
    QApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Looks at a character: a folder, or the name of one."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("task"),
        QStringLiteral(
            "check: say what is missing or wrong; sheet: draw all poses into one picture; preview: play "
            "animations in a window; film: write the pictures of animations into a folder"));
    parser.addPositionalArgument(QStringLiteral("character"), QStringLiteral("name or folder"));
    parser.addOptions({
        {{QStringLiteral("o"), QStringLiteral("output")},
         QStringLiteral("file of the sheet (NAME.png), or folder of the film (.)"),
         QStringLiteral("path")},
        {QStringLiteral("clips"), QStringLiteral("only these animations"), QStringLiteral("name,name")},
        {QStringLiteral("size"), QStringLiteral("height of a figure in pixels, 32 to 400 (128)"),
         QStringLiteral("pixels"), QStringLiteral("128")},
        {QStringLiteral("columns"), QStringLiteral("figures in a row (12)"), QStringLiteral("number"),
         QStringLiteral("12")},
        {QStringLiteral("pictures"), QStringLiteral("pictures of one animation (3)"),
         QStringLiteral("number"), QStringLiteral("3")},
    });
    parser.process(application);
    return run(parser);
}
