#include "PartFile.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <thread>

class PartFileTest : public testing::Test
{
protected:
    std::set<std::string> names() const
    {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            all.insert(entry.path().filename().string());
        return all;
    }

    static std::string content(const std::filesystem::path& file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void write(const std::filesystem::path& file, std::string_view text)
    {
        std::ofstream(file, std::ios::binary) << text;
    }

    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    const std::filesystem::path destination = folder / "model";
};

TEST_F(PartFileTest, TheFileLiesBesideItsDestinationUnderANameOfItsOwn)
{
    const PartFile first(destination, "the file");
    const PartFile second(destination, "the file");
    const std::set<std::string> all = names();
    ASSERT_EQ(all.size(), 2u);
    for (const std::string& name : all) {
        EXPECT_TRUE(name.starts_with("model.")) << name;
        EXPECT_TRUE(name.ends_with(".part")) << name;
    }
}

TEST_F(PartFileTest, TheFileIsRemovedUnlessItHasMoved)
{
    {
        PartFile file(destination, "the file");
        file.write("half of it");
    }
    EXPECT_EQ(names(), std::set<std::string>());
}

TEST_F(PartFileTest, TheFolderIsMadeWhereItIsMissing)
{
    const std::filesystem::path deep = folder / "a" / "b" / "model";
    PartFile file(deep, "the file");
    file.write("new");
    file.moveIntoPlace();
    EXPECT_EQ(content(deep), "new");
}

TEST_F(PartFileTest, MovingReplacesAReadOnlyFile)
{
    write(destination, "old");
    ASSERT_EQ(::chmod(destination.c_str(), 0400), 0);
    {
        PartFile file(destination, "the file");
        file.write("ne");
        file.write("w");
        EXPECT_EQ(content(destination), "old");
        file.moveIntoPlace();
    }
    EXPECT_EQ(content(destination), "new");
    EXPECT_EQ(names(), std::set<std::string>{"model"});
}

TEST_F(PartFileTest, TheFileHasTheUsualPermissions)
{
    const mode_t mask = ::umask(027);
    PartFile file(destination, "the file");
    ::umask(mask);
    file.moveIntoPlace();
    struct stat status;
    ASSERT_EQ(::stat(destination.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_F(PartFileTest, ErrorsNameWhatFailedAndTheCause)
{
    write(folder / "file", "");
    try {
        const PartFile part(folder / "file" / "model", "the file");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::not_a_directory);
        EXPECT_EQ(error.what(), "Could not write the file: " + error.code().message());
    }
    std::filesystem::create_directory(destination);
    try {
        PartFile(destination, "the file").moveIntoPlace();
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
        EXPECT_EQ(error.what(), "Could not move the file into place: " + error.code().message());
    }
    EXPECT_EQ(names(), (std::set<std::string>{"file", "model"}));
}

TEST_F(PartFileTest, OnlyAbandonedFilesOfTheSameDestinationAreRemoved)
{
    write(folder / "model.0.part", "");
    write(folder / "model.abandoned.part", "half of it");
    write(folder / "model.read-only.part", "");
    ASSERT_EQ(::chmod((folder / "model.read-only.part").c_str(), 0400), 0);
    const std::set<std::string> others = {"model",         "other.0.part",    "model.part.txt",
                                          "models.0.part", "model.link.part", "model.folder.part"};
    write(destination, "");
    write(folder / "other.0.part", "");
    write(folder / "model.part.txt", "");
    write(folder / "models.0.part", "");
    std::filesystem::create_symlink(destination, folder / "model.link.part");
    std::filesystem::create_directory(folder / "model.folder.part");
    PartFile::removeAbandoned(destination);
    EXPECT_EQ(names(), others);
}

TEST_F(PartFileTest, AFolderThatIsMissingHasNothingAbandoned)
{
    EXPECT_NO_THROW(PartFile::removeAbandoned(folder / "missing" / "model"));
}

TEST_F(PartFileTest, AFileInUseIsNotTakenForAbandoned)
{
    PartFile file(destination, "the file");
    file.write("new");
    PartFile::removeAbandoned(destination);
    file.moveIntoPlace();
    EXPECT_EQ(content(destination), "new");
}

TEST_F(PartFileTest, TheFileOfAProcessIsAbandonedOnceTheProcessIsKilled)
{
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        PartFile file(destination, "the file");
        file.write("half of it");
        if (::write(ready[1], "x", 1) == 1)
            ::pause();
        ::_exit(1);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    PartFile::removeAbandoned(destination);
    EXPECT_EQ(names().size(), 1u);

    ::kill(child, SIGKILL);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_EQ(names().size(), 1u);
    PartFile::removeAbandoned(destination);
    EXPECT_EQ(names(), std::set<std::string>());
    ::close(ready[0]);
    ::close(ready[1]);
}

// Between its creation and its lock a file looks abandoned.
TEST_F(PartFileTest, AFileIsNeverLostToSomebodyWhoCleansUpMeanwhile)
{
    std::jthread cleaner([this](const std::stop_token& stop) {
        while (!stop.stop_requested())
            PartFile::removeAbandoned(destination);
    });
    for (int round = 0; round < 10000; ++round) {
        const PartFile file(destination, "the file");
        ASSERT_FALSE(names().empty());
    }
}
