#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/posix/posix_files.h"
#include "tests/support/contract.h"
#include "tests/support/failure_of.h"
#include "tests/support/in_memory_files.h"
#include "tests/support/scratch_folder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A `Files` with an empty folder of its own.
class Ground {
public:
    virtual ~Ground() = default;
    virtual Files& files() = 0;
    virtual std::string folder() const = 0;
    virtual void createFolder(const std::string& path) = 0;
    virtual void makeReadOnly(const std::string& path) = 0;
};

class PosixGround final : public Ground {
public:
    Files& files() override { return files_; }
    std::string folder() const override { return folder_.path(); }
    void createFolder(const std::string& path) override { std::filesystem::create_directories(path); }
    void makeReadOnly(const std::string& path) override { ::chmod(path.c_str(), 0444); }

private:
    ScratchFolder folder_;
    PosixFiles files_;
};

class MemoryGround final : public Ground {
public:
    MemoryGround() { files_.createFolder("/app"); }
    Files& files() override { return files_; }
    std::string folder() const override { return "/app"; }
    void createFolder(const std::string& path) override { files_.createFolder(path); }
    void makeReadOnly(const std::string& path) override { files_.makeReadOnly(path); }

private:
    InMemoryFiles files_;
};

class FilesContract : public testing::TestWithParam<Kind<Ground>> {
protected:
    std::string at(std::string_view name) const { return path(ground->folder(), name); }

    std::unique_ptr<Ground> ground = GetParam().make();
    Files& files = ground->files();
};

TEST_P(FilesContract, ReadsBackEveryByte) {
    std::string content;
    for (int code = 0; code < 300'000; ++code) content += static_cast<char>(code % 251);
    for (const auto& text : {content, std::string(), std::string("a\0b\r\n", 5)}) {
        for (const auto privacy : {Privacy::shared, Privacy::ownersOnly}) {
            files.replace(at("x"), text, privacy);
            EXPECT_EQ(files.read(at("x")), text);
        }
    }
    EXPECT_TRUE(files.exists(at("x")));
    EXPECT_TRUE(files.exists(ground->folder()));
    EXPECT_FALSE(files.exists(at("y")));
}

TEST_P(FilesContract, TellsAMissingFileFromAMissingFolder) {
    files.replace(at("file"), "", Privacy::shared);
    const auto reading = [&](const std::string& name) { return failureOf([&] { files.read(at(name)); }); };
    const auto removing = [&](const std::string& name) { return failureOf([&] { files.remove(at(name)); }); };
    const auto writing = [&](const std::string& name) {
        return failureOf([&] { files.replace(at(name), "x", Privacy::shared); });
    };
    EXPECT_EQ(reading("none"), 53);
    EXPECT_EQ(removing("none"), 53);
    for (const char* name : {"none/x", "none/deeper/x", "file/x"}) {
        EXPECT_EQ(reading(name), 76) << name;
        EXPECT_EQ(writing(name), 76) << name;
        EXPECT_EQ(removing(name), 76) << name;
        EXPECT_FALSE(files.exists(at(name))) << name;
    }
}

TEST_P(FilesContract, RefusesAFolderInPlaceOfAFile) {
    ground->createFolder(at("folder"));
    EXPECT_EQ(failureOf([&] { files.read(at("folder")); }), 75);
    EXPECT_EQ(failureOf([&] { files.replace(at("folder"), "x", Privacy::shared); }), 75);
    EXPECT_EQ(failureOf([&] { files.remove(at("folder")); }), 75);
    EXPECT_TRUE(files.exists(at("folder")));
}

TEST_P(FilesContract, LeavesAReadOnlyFileAlone) {
    files.replace(at("x"), "old", Privacy::shared);
    ground->makeReadOnly(at("x"));
    EXPECT_EQ(failureOf([&] { files.replace(at("x"), "new", Privacy::ownersOnly); }), 75);
    EXPECT_EQ(files.read(at("x")), "old");
}

TEST_P(FilesContract, RefusesANulInsteadOfEndingTheNameThere) {
    files.replace(at("x"), "old", Privacy::shared);
    const auto name = at("x") + std::string("\0.ini", 5);
    EXPECT_FALSE(files.exists(name));
    EXPECT_EQ(failureOf([&] { files.read(name); }), 75);
    EXPECT_EQ(failureOf([&] { files.replace(name, "new", Privacy::shared); }), 75);
    EXPECT_EQ(failureOf([&] { files.remove(name); }), 75);
    EXPECT_EQ(files.read(at("x")), "old");
}

TEST_P(FilesContract, RemovesAFile) {
    files.replace(at("x"), "old", Privacy::shared);
    files.remove(at("x"));
    EXPECT_FALSE(files.exists(at("x")));
    files.replace(at("x"), "new", Privacy::shared);
    EXPECT_EQ(files.read(at("x")), "new");
}

TEST_P(FilesContract, ListsPlainFilesByEndingInByteOrder) {
    ground->createFolder(at("folder.txt"));
    for (const char* name : {"b.TXT", "a.txt", "\xC3\xA4.Txt", "B.txt", "c.vls", "txt", ".txt"}) {
        files.replace(at(name), "", Privacy::shared);
    }
    files.replace(at("folder.txt/inner.txt"), "", Privacy::shared);
    EXPECT_THAT(files.list(ground->folder(), ".txt"),
                ElementsAre(".txt", "B.txt", "a.txt", "b.TXT", "\xC3\xA4.Txt"));
    EXPECT_EQ(files.list(at(""), "").size(), 7U);
    EXPECT_THAT(files.list(at("none"), ".txt"), IsEmpty());
    EXPECT_THAT(files.list(at("a.txt"), ""), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, FilesContract,
                         testing::Values(Kind<Ground>::of<PosixGround>("Posix"),
                                         Kind<Ground>::of<MemoryGround>("InMemory")));

}  // namespace
}  // namespace velmora
