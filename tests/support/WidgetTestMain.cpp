#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// As in GuiTestMain.cpp, for tests of widgets.
int main(int argc, char** argv)
{
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
