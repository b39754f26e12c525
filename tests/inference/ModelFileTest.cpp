#include "ModelFile.h"

#include "AppError.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

namespace fs = std::filesystem;

class ModelFileTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = fs::path(std::getenv("HOME")) /
                   testing::UnitTest::GetInstance()->current_test_info()->name();
        fs::create_directories(m_folder);
        setenv("HOME", m_folder.c_str(), 1);
        unsetenv("XDG_DATA_HOME");
    }

    fs::path m_folder;
};

TEST_F(ModelFileTest, TheFolderLiesInTheHomeFolderByDefaultAndIsCreated)
{
    EXPECT_EQ(ModelFile::directory(), m_folder / ".local/share/Pithwise");
    EXPECT_TRUE(fs::is_directory(m_folder / ".local/share/Pithwise"));
    EXPECT_EQ(ModelFile::path(),
              m_folder / ".local/share/Pithwise/Qwen2.5-1.5B-Instruct-Q4_K_M.gguf");
}

TEST_F(ModelFileTest, TheDataFolderOfTheDesktopIsHeeded)
{
    setenv("XDG_DATA_HOME", (m_folder / "elsewhere").c_str(), 1);
    EXPECT_EQ(ModelFile::directory(), m_folder / "elsewhere/Pithwise");
    EXPECT_TRUE(fs::is_directory(m_folder / "elsewhere/Pithwise"));
}

TEST_F(ModelFileTest, ARelativeOrEmptyDataFolderIsIgnored)
{
    setenv("XDG_DATA_HOME", "relative/path", 1);
    EXPECT_EQ(ModelFile::directory(), m_folder / ".local/share/Pithwise");
    setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(ModelFile::directory(), m_folder / ".local/share/Pithwise");
}

TEST_F(ModelFileTest, WithoutAHomeFolderThereIsNoneForTheModel)
{
    for (const char* home : {"", "relative", static_cast<const char*>(nullptr)}) {
        if (home != nullptr)
            setenv("HOME", home, 1);
        else
            unsetenv("HOME");
        try {
            ModelFile::path();
            ADD_FAILURE() << ModelFile::path();
        } catch (const AppError& error) {
            EXPECT_EQ(error.message(), "There is no home folder: the variable HOME names none.");
        }
    }
    setenv("XDG_DATA_HOME", (m_folder / "elsewhere").c_str(), 1);
    EXPECT_EQ(ModelFile::directory(), m_folder / "elsewhere/Pithwise");
}

TEST_F(ModelFileTest, AFolderThatCannotBeCreatedIsNoErrorHere)
{
    const fs::path file = m_folder / "file";
    std::ofstream(file) << "not a folder";
    setenv("XDG_DATA_HOME", file.c_str(), 1);
    EXPECT_EQ(ModelFile::directory(), file / "Pithwise");
}

} // namespace
