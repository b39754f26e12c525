#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// As in TestMain.cpp, for tests that draw: they see no display.
int main(int argc, char** argv)
{
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
