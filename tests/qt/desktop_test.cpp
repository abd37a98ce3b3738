#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <map>

#include "platform/qt/character_chooser.h"
#include "platform/qt/character_options.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_tray.h"

using namespace velmora;
using namespace testing;

namespace {

struct SettingsInMemory : SettingsFile {
    std::string read(std::string_view section, std::string_view key, std::string_view otherwise,
                     const std::string&) const override {
        const auto found = values.find(std::string(section) + "." + std::string(key));
        return found == values.end() ? std::string(otherwise) : found->second;
    }
    void write(std::string_view section, std::string_view key, std::string_view value,
               const std::string& file) override {
        EXPECT_EQ(file, "app/platform.conf");
        values[std::string(section) + "." + std::string(key)] = value;
    }
    std::map<std::string, std::string> values;
};

struct DesktopTest : testing::Test {
    qt::QtLoopHost host;
    Loop loop{host};
    SettingsInMemory file;
    MachineSettings machine{file, "app"};
    qt::CharacterSettings settings{loop, machine, file, "app/platform.conf"};
};

}  // namespace

TEST_F(DesktopTest, TheShellOpensAddressesAndDocumentsAndTakesNothingForACommand) {
    const QTemporaryDir folder;
    const std::string here = folder.path().toStdString();
    QFile document(folder.filePath(QStringLiteral("a #1 $(touch x).txt")));
    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.close();
    std::vector<std::string> opened;
    qt::QtShell shell([&](const QUrl& url) {
        opened.push_back(url.toEncoded().toStdString());
        return false;
    });
    shell.open("", here);
    shell.open(std::string("a\0b", 3), here);
    EXPECT_THAT(opened, IsEmpty());

    shell.open("a #1 $(touch x).txt", here);
    shell.open("HTTP://host/a?b=c%20d", here);
    shell.open("mailto:a@b?subject=Velmora Error?body=caf\xe9\r\n1", "");
    shell.open("/no/such thing; reboot", "");
    EXPECT_THAT(opened,
                ElementsAre("file://" + here + "/a%20%231%20$(touch%20x).txt", "http://host/a?b=c%20d",
                            "mailto:a@b?subject=Velmora%20Error?body=caf%E9%0D%0A1",
                            "file:///no/such%20thing;%20reboot"));
}

TEST_F(DesktopTest, TheShellStartsAProgramInItsFolderWithoutWaitingForIt) {
    const QTemporaryDir folder;
    QFile program(folder.filePath(QStringLiteral("program")));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\n: > started\n");
    program.close();
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFileSystemWatcher watcher({folder.path()});
    qt::QtShell([](const QUrl&) { return false; }).open("program", folder.path().toStdString());
    const QString started = folder.filePath(QStringLiteral("started"));
    const auto patience = host.elapsed() + std::chrono::seconds{20};
    while (!QFile::exists(started) && host.elapsed() < patience) host.serve(std::chrono::seconds{1});
    EXPECT_TRUE(QFile::exists(started));
}

TEST_F(DesktopTest, TheClipboardTakesAndGivesBytes) {
    qt::QtShell shell;
    shell.setClipboardText("caf\xe9");
    EXPECT_EQ(shell.clipboardText(), "caf\xc3\xa9");
}

TEST_F(DesktopTest, TheTrayTellsLeftAndRightClicksInTurns) {
    qt::QtTray tray(loop);
    std::vector<std::string> clicks;
    tray.onClick = [&] { clicks.push_back("left " + std::to_string(loop.depth())); };
    tray.onRightClick = [&] { clicks.push_back("right " + std::to_string(loop.depth())); };
    tray.add("Velmora");
    for (const auto reason :
         {QSystemTrayIcon::Trigger, QSystemTrayIcon::DoubleClick, QSystemTrayIcon::Context})
        tray.activated(reason);
    tray.remove();
    EXPECT_THAT(clicks, ElementsAre("left 1", "right 1"));
}

TEST_F(DesktopTest, TheOptionsShowWhatIsSetAndWriteOnlyWhatWasChanged) {
    file.values = {{"Speech.Device", "file:/tmp/said.wav"},
                   {"Speech.Rate", "rubbish"},
                   {"Character.Size", "88"},
                   {"Character.Balloon", "false"}};
    qt::SpeechChoice heard;
    int applied = 0;
    qt::CharacterOptions options(
        settings, {{"en-gb", "British"}, {"flite:slt", "Clear, female (slt)"}},
        {.figure = nullptr, .speak = [&](const qt::SpeechChoice& choice) { heard = choice; }},
        [&] { ++applied; });
    int asked = 0;
    options.show();
    auto* listen = options.findChild<QPushButton*>(QStringLiteral("listenNow"));
    EXPECT_FALSE(listen->isVisible()) << "where nobody listens";
    options.offerListening([&] { ++asked; });
    EXPECT_TRUE(listen->isVisible());
    listen->click();
    EXPECT_EQ(asked, 1);
    const auto numbers = options.findChildren<QSpinBox*>();
    const auto boxes = options.findChildren<QComboBox*>();
    const auto checks = options.findChildren<QCheckBox*>();
    EXPECT_EQ(boxes[0]->currentText(), QStringLiteral("88 %"));
    EXPECT_EQ(boxes[3]->currentText(), QStringLiteral("Scroll Lock"));
    EXPECT_FALSE(checks[0]->isChecked());
    EXPECT_FALSE(checks[1]->isEnabled()) << "without a balloon, there is none to close";
    EXPECT_EQ(numbers[0]->value(), numbers[0]->minimum());
    numbers[1]->setValue(70);
    boxes[1]->setCurrentIndex(2);
    EXPECT_EQ(boxes[1]->currentText(), QStringLiteral("Clear, female (slt)"));
    options.findChild<QPushButton*>(QStringLiteral("tryIt"))->click();
    EXPECT_EQ(heard.voice + "/" + heard.rate + "/" + heard.pitch, "flite:slt//70");
    EXPECT_EQ(file.values.size(), 4U);

    QTest::keyClick(&options, Qt::Key_Escape);
    options.show();
    EXPECT_EQ(numbers[1]->value(), numbers[1]->minimum()) << "what was cancelled is forgotten";
    EXPECT_EQ(applied, 0);
    numbers[1]->setValue(70);
    checks[2]->setChecked(false);
    options.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    EXPECT_FALSE(options.isVisible());
    EXPECT_EQ(applied, 1);
    EXPECT_THAT(file.values,
                ElementsAre(Pair("Character.Balloon", "false"), Pair("Character.Idle", "False"),
                            Pair("Character.Size", "88"), Pair("Speech.Device", "file:/tmp/said.wav"),
                            Pair("Speech.Pitch", "70"), Pair("Speech.Rate", "")));
}

TEST_F(DesktopTest, TheChooserShowsAPictureOfEachCharacterAndKeepsTheOneChosen) {
    std::vector<std::string> drawn;
    qt::CharacterChooser chooser(settings, {"Genie", "Merlin"}, [&](const std::string& name) {
        drawn.push_back(name);
        return QPixmap();
    });
    EXPECT_LE(chooser.minimumSizeHint().width(), 320) << "too wide for large letters on a small screen";
    chooser.show();
    while (drawn.size() < 2) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_THAT(drawn, ElementsAre("Genie", "Merlin"));
    auto* list = chooser.findChild<QListWidget*>();
    EXPECT_EQ(list->currentItem()->text(), QStringLiteral("Merlin"));
    QTest::keyClick(list, Qt::Key_Left);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_THAT(file.values, ElementsAre(Pair("Character.Default", "Genie")));
    EXPECT_FALSE(chooser.isVisible());
}
