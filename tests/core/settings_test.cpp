#include "core/settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/crypter.h"
#include "platform/ini_settings_file.h"
#include "tests/support/in_memory_files.h"

namespace velmora {
namespace {

class SettingsTest : public testing::Test {
protected:
    /// Writes one key into a file of this content and gives what the file holds then.
    std::string written(std::string content, std::string_view section, std::string_view key,
                        std::string_view value) {
        files.put("/app/Velmora.ini", std::move(content));
        settings.WriteIni(section, key, value, "Velmora.ini");
        return files.read("/app/Velmora.ini");
    }

    std::string readFrom(std::string content, std::string_view section, std::string_view key) {
        files.put("/app/Velmora.ini", std::move(content));
        return settings.ReadIni(section, key, missingValue, "Velmora.ini");
    }

    InMemoryFiles files;
    IniSettingsFile settingsFile{files};
    Settings settings{settingsFile, "/app"};
};

TEST_F(SettingsTest, ReadsTheFirstKeyOfTheFirstSection) {
    const std::string file =
        "\xEF\xBB\xBF[User]\r\n; Name=comment\n#Name=comment\rno key\n name =  Anna B. \r\nName=second\n"
        "[EMail\n[Empty]\nQuoted='a \"b\" '\nBlank=\n\n [ options ] \nJokes=\"On\nEq=a=b\nInner=a  b;c\n"
        "[user]\nLate=1\n[]\nx=1";
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } cases[] = {
        {"User", "Name", "Anna B."},   {"uSER", "NAME", "Anna B."},     {"User", "Late", "Error!"},
        {"Empty", "Blank", ""},        {"Empty", "Quoted", "a \"b\" "}, {"Options", "Jokes", "\"On"},
        {"Options", "Eq", "a=b"},      {"Options", "Inner", "a  b;c"},  {"Options", "Name", "Error!"},
        {"EMail", "Quoted", "Error!"}, {"User", "; Name", "Error!"},
    };
    for (const auto& [section, key, value] : cases) {
        EXPECT_EQ(readFrom(file, section, key), value) << section << " " << key;
    }
    EXPECT_EQ(readFrom("", "User", "Name"), "Error!");
    EXPECT_EQ(settings.ReadIni("User", "Name", "", "Nobody.ini"), "");
    EXPECT_EQ(files.writes(), 0);
}

TEST_F(SettingsTest, CutsWhatItReadsAfter254CharactersAndStoresTheWhole) {
    const std::string longValue = std::string(253, 'x') + "\n" + std::string(100, 'y');
    EXPECT_GT(written("", "User", "Name", longValue).size(), 354U);
    EXPECT_EQ(settings.ReadIni("User", "Name", "", "Velmora.ini"), longValue.substr(0, 254));
    EXPECT_EQ(settings.ReadIni("User", "None", std::string(300, 'd'), "Velmora.ini"), std::string(254, 'd'));
}

TEST_F(SettingsTest, ChangesNothingButTheValue) {
    const struct {
        std::string before, after;
    } cases[] = {
        {"", "[User]\nName=Bob\n"},
        {"[EMail]\r\nServer=x", "[EMail]\r\nServer=x\r\n[User]\r\nName=Bob\r\n"},
        {"; mine\r[USER]\r nAME\t= \"old\" \r\rx", "; mine\r[USER]\r nAME\t= Bob \r\rx"},
        {"[User]\nName=\nName=2\n", "[User]\nName=Bob\nName=2\n"},
        {"[User]\nLast=B\n\n \n[EMail]\n", "[User]\nLast=B\nName=Bob\n\n \n[EMail]\n"},
        {"[User]", "[User]\nName=Bob\n"},
        {"\xEF\xBB\xBF", "\xEF\xBB\xBF[User]\nName=Bob\n"},
        {"\xEF\xBB\xBF[User]\nName=x", "\xEF\xBB\xBF[User]\nName=Bob"},
        {std::string("a\0b\n[User]\nName=x\0y\n", 20), std::string("a\0b\n[User]\nName=Bob\n", 20)},
        {"[User]\n;Name=x\n[x]\nName=y\n[User]\nName=z\n",
         "[User]\n;Name=x\nName=Bob\n[x]\nName=y\n[User]\nName=z\n"},
    };
    for (const auto& [before, after] : cases) EXPECT_EQ(written(before, "User", "Name", "Bob"), after);
}

TEST_F(SettingsTest, KeepsEveryByteOfAnyValue) {
    std::string everyByte;
    for (int code = 0; code < 255; ++code) everyByte += static_cast<char>(code);
    std::vector<std::string> values{"",    " ",        "\t a \t", "\"quoted\"", "''", "\"",
                                    "%q:", "%41 100%", "%q:%41",  "a;b=#c]",    "\n%"};
    for (std::string text : {std::string("a\r\n[User]\nName=Eve"), everyByte.substr(0, 254),
                             Encipher(everyByte.substr(0, 200), mainKey)})
        values.push_back(std::move(text));
    for (int code = 0; code < 256; ++code) values.emplace_back(1, static_cast<char>(code));
    for (const auto& value : values) {
        written("[EMail]\nPass=x\n[User]\nName=Anna\n", "EMail", "Pass", value);
        EXPECT_EQ(settings.ReadIni("EMail", "Pass", missingValue, "Velmora.ini"), value);
        EXPECT_EQ(settings.ReadIni("User", "Name", missingValue, "Velmora.ini"), "Anna");
    }
    EXPECT_EQ(readFrom("[User]\nName=%q:%4%zz%41%", "User", "Name"), "%4%zzA%");
}

TEST_F(SettingsTest, WritesNothingThatIsThereAlreadyOrThatNoLineCouldName) {
    const std::string file = "[User]\nName='Bob'\n";
    EXPECT_EQ(written(file, "User", "Name", "Bob"), file);
    for (const char* name : {"", " ", "a\nb", "a\rb", "a]b", "a=b"}) {
        EXPECT_EQ(written(file, name, "Name", "x"), file) << name;
        EXPECT_EQ(written(file, "User", name, "x"), file) << name;
    }
    for (const char* key : {"[x", ";x", "#x"}) EXPECT_EQ(written(file, "User", key, "x"), file) << key;
    EXPECT_EQ(files.writes(), 0);
}

TEST_F(SettingsTest, LosesWritesSilentlyAndNeverReplacesAFileItCannotRead) {
    const std::string file = "[User]\nName=Anna\n";
    files.put("/app/Velmora.ini", file);
    files.failWrite(1);
    EXPECT_EQ(written(file, "User", "Name", "Bob"), file);
    files.makeReadOnly("/app/Velmora.ini");
    EXPECT_EQ(written(file, "User", "Name", "Bob"), file);

    const int writes = files.writes();
    files.put("/app/Locked.ini", file);
    files.makeUnreadable("/app/Locked.ini");
    files.createFolder("/app/Folder.ini");
    for (const char* name : {"Locked.ini", "Folder.ini", "missing/x.ini"}) {
        settings.WriteIni("User", "Name", "Bob", name);
        EXPECT_EQ(settings.ReadIni("User", "Name", missingValue, name), missingValue);
    }
    EXPECT_EQ(files.writes(), writes);
}

TEST_F(SettingsTest, CreatesAFileThatOnlyItsOwnerReads) {
    files.createFolder("/app");
    settings.WriteIni("User", "Name", "Bob", "Bob.ini");
    EXPECT_EQ(files.read("/app/Bob.ini"), "[User]\nName=Bob\n");
    EXPECT_EQ(files.privacyOf("/app/Bob.ini"), Privacy::ownersOnly);
}

}  // namespace
}  // namespace velmora
