#include "ScriptFixture.h"

#include <QFile>
#include <QStandardPaths>

#include <gmock/gmock.h>

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

constexpr const char* please = "Please install what is missing here, then run this again:\n";

/// scripts/setup on a system on which nothing is installed but what a test puts there, and where
/// apt-get only notes how it was called.
class SetupTest : public ScriptFixture
{
protected:
    struct Result
    {
        int status;
        std::string output;
        std::string error;
        std::string installed; // apt-get's calls, one a line
    };

    SetupTest()
    {
        addCommand("id", "echo 1000");
        addCommand("sudo", "echo sudo $1 >>\"$CALLS\"; \"$@\"");
        addCommand("apt-get", "echo apt-get \"$@\" >>\"$CALLS\"");
    }

    Result setUp(const QByteArray& osRelease, const QString& section)
    {
        add("etc/os-release", osRelease);
        add("calls", {});
        QProcessEnvironment environment;
        environment.insert("CALLS", m_root.filePath("calls"));
        environment.insert("PATH", m_root.filePath("bin"));
        environment.insert("PITHWISE_SETUP_ROOT", m_root.path());
        const auto [status, output, error] =
            run(m_bash, {PITHWISE_SCRIPTS "/setup", section}, environment);
        return {status, output, error, content("calls")};
    }

    /// The packages that Debian 13 gets.
    QStringList packages(const QString& section)
    {
        const QString calls =
            QString::fromStdString(setUp("ID=debian\nVERSION_ID=13\n", section).installed);
        const QString call = calls.trimmed().section('\n', -1);
        QStringList words = call.split(' ');
        words.removeIf([](const QString& word) { return word.startsWith('-'); });
        return words.mid(2); // without "apt-get install"
    }
};

TEST_F(SetupTest, OnFedoraOneCommandHasAllThatIsMissing)
{
    const Result result = setUp("ID=fedora\nVERSION_ID=42\n", "run");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error,
              std::string(please) +
                  "  sudo dnf install gcc-c++ cmake ninja-build git npm pkgconf-pkg-config"
                  " libicu-devel qt6-qtbase-devel qt6-qtpdf-devel qt6-qtsvg-devel"
                  " qt6-qtimageformats qcoro-qt6-devel json-devel cli11-devel libxcb-devel"
                  " xcb-util-keysyms-devel re2-devel cmark-devel libarchive-devel qpdf-devel"
                  " libheif-devel zlib-devel tesseract-devel tesseract-langpack-eng\n");
    EXPECT_EQ(result.installed, "");
}

TEST_F(SetupTest, OnArchOneCommandHasAllThatIsMissing)
{
    const Result result = setUp("ID=arch\n", "run");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error,
              std::string(please) +
                  "  sudo pacman -S --needed gcc cmake ninja git npm pkgconf icu qt6-base"
                  " qt6-webengine qt6-svg qt6-imageformats qcoro nlohmann-json cli11 libxcb"
                  " xcb-util-keysyms re2 cmark libarchive qpdf libheif zlib tesseract"
                  " tesseract-data-eng\n");
    EXPECT_EQ(result.installed, "");
}

TEST_F(SetupTest, WhatNoPackageBringsIsNamedAfterTheCommand)
{
    const Result result = setUp("ID=arch\n", "package");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error,
                EndsWith(" desktop-file-utils appstream\n"
                         "No package of this system has these:\n  command lintian\n"));
}

TEST_F(SetupTest, ElsewhereEachNeedIsListed)
{
    const Result result = setUp("ID=opensuse-leap\nVERSION_ID=15.6\n", "run");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, StartsWith(please));
    EXPECT_THAT(result.error, HasSubstr("\n  library re2 (Debian package libre2-dev)\n"));
    EXPECT_THAT(result.error, HasSubstr("\n  package Qt6Svg (Debian package qt6-svg-dev)\n"));
    EXPECT_THAT(result.error,
                HasSubstr("\n  codec libde265 (Debian package libheif-plugin-libde265)\n"));
    EXPECT_EQ(result.installed, "");
}

TEST_F(SetupTest, ASystemWithoutANameGetsTheListToo)
{
    const Result result = setUp("", "try-release");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error,
              std::string(please) + "  command debootstrap (Debian package debootstrap)\n");
}

TEST_F(SetupTest, OnDebianPackagesAreInstalled)
{
    const Result result = setUp("ID=debian\nVERSION_ID=\"12\"\n", "run");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.installed,
              "sudo apt-get\n"
              "apt-get -qq update\n"
              "sudo apt-get\n"
              "apt-get -qq install -y --no-install-recommends g++ cmake ninja-build git npm"
              " pkg-config libicu-dev qt6-base-dev qt6-pdf-dev qt6-svg-dev"
              " qt6-image-formats-plugins qcoro-qt6-dev nlohmann-json3-dev libcli11-dev"
              " libxcb1-dev libxcb-xfixes0-dev libxcb-xinput-dev libxcb-xtest0-dev"
              " libxcb-keysyms1-dev libre2-dev libcmark-dev libarchive-dev libqpdf-dev"
              " libheif-dev zlib1g-dev libtesseract-dev tesseract-ocr-eng ca-certificates\n");
}

TEST_F(SetupTest, RootNeedsNoSudo)
{
    addCommand("id", "echo 0");
    const Result installed = setUp("ID=debian\nVERSION_ID=13\n", "try-release");
    EXPECT_EQ(installed.installed,
              "apt-get -qq update\n"
              "apt-get -qq install -y --no-install-recommends debootstrap ca-certificates\n");
    const Result printed = setUp("ID=fedora\n", "try-release");
    EXPECT_EQ(printed.error, std::string(please) + "  dnf install debootstrap\n");
}

TEST_F(SetupTest, WhereCodecsArePackagesTheyAreInstalled)
{
    for (const char* release :
         {"ID=debian\nVERSION_ID=13\n", "ID=debian\n", "ID=ubuntu\nVERSION_ID=24.04\n"}) {
        EXPECT_THAT(setUp(release, "run").installed, AllOf(HasSubstr(" libheif-plugin-libde265 "),
                                                           Not(HasSubstr(" libheif-plugin-x265 "))))
            << release;
        EXPECT_THAT(setUp(release, "test").installed, HasSubstr(" libheif-plugin-x265 "))
            << release;
    }
    EXPECT_THAT(setUp("ID=debian\nVERSION_ID=12\n", "test").installed,
                Not(HasSubstr("libheif-plugin")));
}

TEST_F(SetupTest, APackageOfAnotherNameOnUbuntuIsTakenByThat)
{
    EXPECT_THAT(setUp("ID=ubuntu\nVERSION_ID=24.04\n", "test").installed,
                HasSubstr(" chromium-browser "));
    EXPECT_THAT(setUp("ID=debian\nVERSION_ID=13\n", "test").installed,
                AllOf(HasSubstr(" chromium "), Not(HasSubstr(" chromium-browser "))));
}

TEST_F(SetupTest, OnReleasesThatAreTooOldNothingIsInstalled)
{
    for (const char* release :
         {"ID=debian\nVERSION_ID=11\n", "ID=ubuntu\nVERSION_ID=23.10\nID_LIKE=debian\n"}) {
        const Result result = setUp(release, "run");
        EXPECT_EQ(result.status, 1) << release;
        EXPECT_THAT(result.error, HasSubstr("\n  library re2 (Debian package libre2-dev)\n"));
        EXPECT_EQ(result.installed, "") << release;
    }
}

TEST_F(SetupTest, RelativesGetTheCommandOnly)
{
    const Result mint = setUp("ID=linuxmint\nVERSION_ID=22\nID_LIKE=\"ubuntu debian\"\n", "run");
    EXPECT_EQ(mint.status, 1);
    EXPECT_THAT(mint.error, HasSubstr("\n  sudo apt-get install --no-install-recommends g++ "));
    EXPECT_EQ(mint.installed, "");
    EXPECT_THAT(setUp("ID=manjaro\nID_LIKE=arch\n", "run").error,
                HasSubstr("\n  sudo pacman -S --needed gcc "));
    EXPECT_THAT(setUp("ID=nobara\nID_LIKE=\"rhel centos fedora\"\n", "run").error,
                HasSubstr("\n  sudo dnf install gcc-c++ "));
}

TEST_F(SetupTest, WhatIsThereIsNotInstalled)
{
    addCommand("git");
    addCommand("chromium-browser"); // as good as "chromium"
    addCommand("pkg-config", "[ $2 != libheif ]");
    add("usr/lib/x86_64-linux-gnu/cmake/Qt6Svg/Qt6SvgConfig.cmake", {});
    add("usr/share/tesseract-ocr/5/tessdata/eng.traineddata", {});
    add("usr/lib/x86_64-linux-gnu/libheif/plugins/libheif-libde265.so", {});
    const QStringList installed = packages("test");
    EXPECT_TRUE(installed.contains("cmake"));
    EXPECT_TRUE(installed.contains("qt6-pdf-dev"));
    EXPECT_TRUE(installed.contains("libheif-dev"));
    EXPECT_TRUE(installed.contains("libheif-plugin-x265"));
    for (const char* there : {"git", "chromium", "pkg-config", "libre2-dev", "qt6-svg-dev",
                              "tesseract-ocr-eng", "libheif-plugin-libde265"})
        EXPECT_FALSE(installed.contains(there)) << there;
}

TEST_F(SetupTest, ACodecWithinTheLibraryIsThere)
{
    QFile::link(QStandardPaths::findExecutable("grep"), m_root.filePath("bin/grep"));
    add("usr/lib/x86_64-linux-gnu/libheif.so", QByteArray("\0libde265.so.0\0", 15));
    EXPECT_FALSE(packages("test").contains("libheif-plugin-libde265"));
    EXPECT_TRUE(packages("test").contains("libheif-plugin-x265"));
}

TEST_F(SetupTest, WhereAllIsThereNothingIsSaid)
{
    for (const char* command : {"c++", "cmake", "ninja", "git", "npm", "pkg-config"})
        addCommand(command);
    for (const char* file : {"cmake/Qt6Pdf/Qt6PdfConfig.cmake", "cmake/Qt6Svg/Qt6SvgConfig.cmake",
                             "cmake/QCoro6/QCoro6Config.cmake", "libheif/libheif-libde265.so",
                             "qt6/plugins/imageformats/libqtiff.so"})
        add(QStringLiteral("usr/lib64/") + file, {});
    add("usr/share/tesseract/tessdata/eng.traineddata", {});
    for (const char* release : {"ID=debian\nVERSION_ID=13\n", "ID=fedora\n", "ID=arch\n", ""}) {
        const Result result = setUp(release, "run");
        EXPECT_EQ(result.status, 0) << release;
        EXPECT_EQ(result.output + result.error + result.installed, "") << release;
    }
}

TEST_F(SetupTest, CheckingNeedsWhatTestingAndPackagingNeedAndClang)
{
    const QStringList check = packages("check");
    EXPECT_THAT(check, IsSupersetOf(packages("test")));
    EXPECT_THAT(check, IsSupersetOf(packages("package")));
    EXPECT_THAT(packages("test"), IsSupersetOf(packages("run")));
    EXPECT_THAT(packages("bench"), IsSupersetOf(packages("run")));
    EXPECT_TRUE(check.contains("clang-tidy"));
    for (const char* section : {"run", "test", "bench", "package"})
        EXPECT_EQ(packages(section).filter("clang"), QStringList()) << section;
}

TEST_F(SetupTest, AnUnknownSectionIsRefused)
{
    const Result result = setUp("ID=debian\nVERSION_ID=13\n", "everything");
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.error, StartsWith("Usage: "));
    EXPECT_EQ(result.installed, "");
}

} // namespace
