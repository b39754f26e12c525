#include "DocumentsFolder.h"

#include "AppError.h"
#include "EnvironmentVariable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class DocumentsFolderTest : public testing::Test
{
protected:
    void write(const QByteArray& line)
    {
        ASSERT_TRUE(QDir(m_home.path()).mkpath(".config"));
        QFile file(m_home.filePath(".config/user-dirs.dirs"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("# This file is written by xdg-user-dirs-update\n"
                   "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\n" +
                   line + "\nXDG_MUSIC_DIR=\"$HOME/Music\"\n");
    }

    std::filesystem::path inHome(const char* name) const
    {
        return std::filesystem::path(m_home.path().toStdString()) / name;
    }

    const QTemporaryDir m_home;
    const EnvironmentVariable m_homeVariable{"HOME", QFile::encodeName(m_home.path())};
    const EnvironmentVariable m_config{"XDG_CONFIG_HOME", ""};
};

TEST_F(DocumentsFolderTest, WithoutASettingItIsDocumentsBelowHome)
{
    EXPECT_EQ(DocumentsFolder::path(), inHome("Documents"));
    write("XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"");
    EXPECT_EQ(DocumentsFolder::path(), inHome("Documents"));
}

TEST_F(DocumentsFolderTest, ItIsTheDesktops)
{
    write("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"");
    EXPECT_EQ(DocumentsFolder::path(), inHome("Dokumente"));
    write("XDG_DOCUMENTS_DIR=\"/srv/documents\"");
    EXPECT_EQ(DocumentsFolder::path(), "/srv/documents");
}

TEST_F(DocumentsFolderTest, ItsNameMayHaveSpacesAndUmlauts)
{
    write("XDG_DOCUMENTS_DIR=\"$HOME/Änne's Büro 📄/Meine Texte\"");
    EXPECT_EQ(DocumentsFolder::path(), inHome("Änne's Büro 📄/Meine Texte"));
}

TEST_F(DocumentsFolderTest, ThoseWhoHaveTurnedItOffHaveTheHomeFolder)
{
    write("XDG_DOCUMENTS_DIR=\"$HOME\"");
    EXPECT_EQ(DocumentsFolder::path(), m_home.path().toStdString());
    write("XDG_DOCUMENTS_DIR=\"$HOME/\"");
    EXPECT_EQ(DocumentsFolder::path(), m_home.path().toStdString());
}

TEST_F(DocumentsFolderTest, ASettingThatIsNoneIsPassedOver)
{
    for (const char* line : {"XDG_DOCUMENTS_DIR=\"Documents elsewhere\"", "XDG_DOCUMENTS_DIR=",
                             "XDG_DOCUMENTS_DIR=\"\"", "XDG_DOCUMENTS_DIR", "\xFF\xFE", ""}) {
        write(line);
        EXPECT_EQ(DocumentsFolder::path(), inHome("Documents")) << line;
    }
}

TEST_F(DocumentsFolderTest, WithoutAHomeFolderThereIsNone)
{
    for (const char* home : {"", "relative"}) {
        const EnvironmentVariable variable("HOME", home);
        EXPECT_THROW(DocumentsFolder::path(), AppError);
    }
}

} // namespace
